// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/AlarmSound.h"

#include "api/core/vesk.h"
#include "host/player/AudioOutput.h"

#include <QUrl>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.14159265358979323846;

struct Note {
    double start; ///< in seconds
    double pitch; ///< in Hz
};

/// Upwards, and a rest.
constexpr Note Melody[] = {{0, 659.26}, {0.22, 830.61}, {0.44, 987.77}, {0.66, 1318.51}};
constexpr double MelodyTime = 2.4;
/// After which a note has died away to a third.
constexpr double Decay = 0.28;
constexpr double Attack = 0.006;
/// Of notes that sound together.
constexpr double NoteLevel = 0.34;
constexpr double QuietLevel = 0.06;
/// Written at once, in seconds: so often its thread wakes up.
constexpr double Batch = 0.5;

constexpr auto MelodyFrames = static_cast<std::int64_t>(MelodyTime * AlarmSound::Format.rate);

/// A bell: a tone and a quieter, shorter one above it.
double bell(double time, double pitch)
{
    if (time < 0)
        return 0;
    const double attack = std::min(time / Attack, 1.0);
    return attack
        * (0.75 * std::sin(2 * Pi * pitch * time) * std::exp(-time / Decay)
            + 0.25 * std::sin(2 * Pi * 2.76 * pitch * time) * std::exp(-2.5 * time / Decay));
}

const std::vector<float> &melody()
{
    static const std::vector<float> samples = [] {
        std::vector<float> made(MelodyFrames);
        for (std::int64_t i = 0; i < MelodyFrames; ++i) {
            const double time = static_cast<double>(i) / AlarmSound::Format.rate;
            double sum = 0;
            for (const Note &note : Melody)
                sum += bell(time - note.start, note.pitch);
            made[static_cast<std::size_t>(i)] = static_cast<float>(NoteLevel * sum);
        }
        return made;
    }();
    return samples;
}

} // namespace

QString AlarmSound::address()
{
    return QStringLiteral("vesk-alarm:bell");
}

bool AlarmSound::isAt(const QUrl &url)
{
    return url.toString() == address();
}

std::vector<float> AlarmSound::samples(std::int64_t first, std::size_t count)
{
    const std::vector<float> &notes = melody();
    std::vector<float> samples;
    samples.reserve(count * Format.channels);
    for (std::size_t i = 0; i < count; ++i) {
        const std::int64_t frame = first + static_cast<std::int64_t>(i);
        const double risen
            = std::min(static_cast<double>(frame) / (double(RiseTime) * Format.rate), 1.0);
        const auto level = static_cast<float>(std::pow(QuietLevel, 1 - risen));
        const float sample = level * notes[static_cast<std::size_t>(frame % MelodyFrames)];
        samples.insert(samples.end(), Format.channels, sample);
    }
    return samples;
}

AlarmSound::AlarmSound(AudioOutput &output)
    : m_output(output)
    , m_thread([this] { run(); })
{
}

AlarmSound::~AlarmSound()
{
    m_isEnding = true;
    m_thread.join();
}

void AlarmSound::run()
{
    veskSetThreadName(QStringLiteral("AlarmSound"));
    constexpr auto Count = static_cast<std::size_t>(Batch * Format.rate);
    for (std::int64_t frame = 0; !m_isEnding; frame += Count) {
        const std::vector<float> batch = samples(frame, Count);
        auto taken = StreamConsumer::Taken::None;
        while (taken == StreamConsumer::Taken::None && !m_isEnding) {
            taken = m_output.write(
                Format, reinterpret_cast<const char *>(batch.data()), batch.size() * sizeof(float));
        }
        if (taken == StreamConsumer::Taken::Refused)
            return;
    }
}
