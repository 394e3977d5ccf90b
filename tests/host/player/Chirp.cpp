// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/player/Chirp.h"

#include "media/GstHandles.h"

#include <QFile>
#include <QTemporaryDir>

#include <cmath>
#include <vector>

namespace chirp {

namespace {

constexpr double Pi = 3.14159265358979;
constexpr int Rate = 48000;

QByteArray samples(int seconds)
{
    std::vector<qint16> values(static_cast<std::size_t>(seconds) * Rate);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double t = static_cast<double>(i) / Rate;
        const double phase = 2 * Pi * (Lowest * t + PerSecond * t * t / 2);
        values[i] = static_cast<qint16>(std::lround(8000 * std::sin(phase)));
    }
    return {reinterpret_cast<const char *>(values.data()),
        static_cast<int>(values.size() * sizeof(qint16))};
}

} // namespace

QByteArray recorded(const char *encoder, int seconds)
{
    startGStreamer();
    const QTemporaryDir folder;
    const QString raw = folder.filePath(QStringLiteral("raw"));
    const QString out = folder.filePath(QStringLiteral("out"));
    QFile file(raw);
    if (!file.open(QIODevice::WriteOnly) || file.write(samples(seconds)) < 0)
        return {};
    file.close();
    const QString description
        = QStringLiteral("filesrc location=%1 ! rawaudioparse format=pcm pcm-format=s16le "
                         "sample-rate=48000 num-channels=1 ! audioconvert ! %2 ! filesink "
                         "location=%3")
              .arg(raw, QString::fromLatin1(encoder), out);
    const GstPtr<GstElement> pipeline(gst_parse_launch(description.toUtf8().constData(), nullptr));
    if (!pipeline)
        return {};
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
    const GstPtr<GstBus> bus(gst_element_get_bus(pipeline.get()));
    GstMessage *message = gst_bus_timed_pop_filtered(bus.get(), 60 * GST_SECOND,
        static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    const bool ok = message && GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS;
    if (message)
        gst_message_unref(message);
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    QFile encoded(out);
    return ok && encoded.open(QIODevice::ReadOnly) ? encoded.readAll() : QByteArray();
}

double placeAt(const ear::Sound &sound, double at, double length)
{
    const auto first = static_cast<std::size_t>(std::max(at, 0.0) * ear::Sound::Rate);
    const auto count = static_cast<std::size_t>(length * ear::Sound::Rate);
    if (first + count > sound.samples.size())
        return -1;
    // The time between the first and the last rise through zero, and how many lie between.
    double firstRise = -1;
    double lastRise = -1;
    int rises = 0;
    for (std::size_t i = first + 1; i < first + count; ++i) {
        const auto before = static_cast<double>(sound.samples[i - 1]);
        const auto now = static_cast<double>(sound.samples[i]);
        if (before < 0 && now >= 0) {
            const double rise = static_cast<double>(i) - now / (now - before);
            firstRise = rises == 0 ? rise : firstRise;
            lastRise = rise;
            ++rises;
        }
    }
    if (rises < 3)
        return -1;
    const double frequency = (rises - 1) / (lastRise - firstRise) * ear::Sound::Rate;
    // That of the middle; the place is that of the end.
    return (frequency - Lowest) / PerSecond + length / 2;
}

double placeAtEnd(const ear::Sound &sound, double before, double length)
{
    return placeAt(sound, sound.seconds() - before - length, length) + before;
}

} // namespace chirp
