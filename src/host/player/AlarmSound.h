// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "media/AudioFormat.h"

#include <QString>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>
#include <vector>

class AudioOutput;
class QUrl;

/// The sound by which alarms ring when nothing else can be heard: a few bell notes, again and
/// again, that become louder. Computed by the host itself, so that it needs neither network nor
/// plug-in nor file. Supplies one AudioOutput, which must outlive it, on a thread of its own, until
/// it is destroyed or the output refuses; destroying it waits for the output's write(), so call
/// AudioOutput::refuse() before.
class AlarmSound {
public:
    /// The address under which it is played, in place of a stream's. Only the host has it.
    static QString address();
    static bool isAt(const QUrl &url);

    static constexpr AudioFormat Format {48000, 2};
    /// How long it becomes louder, in seconds.
    static constexpr int RiseTime = 60;

    /// The samples of \a count frames from \a first on. Pure, any thread.
    static std::vector<float> samples(std::int64_t first, std::size_t count);

    explicit AlarmSound(AudioOutput &output);
    ~AlarmSound();
    AlarmSound(const AlarmSound &) = delete;
    AlarmSound &operator=(const AlarmSound &) = delete;

private:
    void run();

    AudioOutput &m_output;
    std::atomic<bool> m_isEnding {false};
    std::thread m_thread;
};
