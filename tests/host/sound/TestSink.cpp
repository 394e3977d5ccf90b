// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/sound/TestSink.h"

#include "media/GstHandles.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

using Counter = std::shared_ptr<std::atomic<int>>;

void onDestroyed(gpointer counter, GObject *)
{
    const std::unique_ptr<Counter> open(static_cast<Counter *>(counter));
    --**open;
}

Result<SoundSink, TrString> make(const QString &file, const Counter &open, const Counter &made)
{
    GstElement *bin = gst_parse_bin_from_description(
        "audioconvert ! audio/x-raw,format=F32LE ! filesink name=end async=false sync=false "
        "buffer-mode=2",
        TRUE, nullptr);
    if (!bin)
        return failure(TrString("Test", "no elements"));
    const GstPtr<GstElement> end(gst_bin_get_by_name(GST_BIN(bin), "end"));
    g_object_set(end.get(), "location", file.toUtf8().constData(), nullptr);
    ++*open;
    ++*made;
    g_object_weak_ref(G_OBJECT(bin), &onDestroyed, std::make_unique<Counter>(open).release());
    SoundSink sink;
    sink.element = bin;
    sink.takesAll = true;
    return sink;
}

} // namespace

TestSink::TestSink(const QString &file)
    : m_file(file)
{
    startGStreamer();
}

SoundOutput::MakeSink TestSink::maker() const
{
    return [file = m_file, open = m_open, made = m_made](const AudioOutputSpec &spec) {
        return make(spec.file.isEmpty() ? file : spec.file, open, made);
    };
}

std::vector<float> rawSamples(const QString &file)
{
    QFile raw(file);
    if (!raw.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = raw.readAll();
    std::vector<float> samples(static_cast<std::size_t>(bytes.size()) / sizeof(float));
    if (!samples.empty())
        std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(float));
    return samples;
}

std::vector<float> TestSink::samples() const
{
    return rawSamples(m_file);
}

std::vector<float> TestSink::left() const
{
    const std::vector<float> both = samples();
    std::vector<float> left;
    for (std::size_t at = 0; at < both.size(); at += 2)
        left.push_back(both[at]);
    return left;
}

float largestStep(const std::vector<float> &samples)
{
    float largest = 0;
    float last = 0;
    for (const float sample : samples) {
        largest = std::max(largest, std::abs(sample - last));
        last = sample;
    }
    return largest;
}
