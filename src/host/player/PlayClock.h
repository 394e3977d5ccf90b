// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "host/player/PlayPlace.h"
#include "media/AudioFormat.h"

#include <chrono>
#include <cstddef>
#include <optional>

class AudioOutput;

/// Where a play is in its file: the place that is heard, not the one that was decoded. Counts the
/// samples that go to the output, which tells how many of them were not heard yet. Shared by the
/// play's threads and the main thread; any thread.
class PlayClock {
public:
    using Microseconds = std::chrono::microseconds;

    /// The output that the samples go to; null before it is destroyed.
    void setOutput(const AudioOutput *output);

    /// The next sample is \a skip before \a position and is the first of what was found there: the
    /// samples before \a position are not for the output.
    void begin(Microseconds position, Microseconds skip);
    /// How many of the next \a frames are not for the output. Call dropped() once they are gone.
    std::size_t toDrop(const AudioFormat &format, std::size_t frames) const;
    void dropped(std::size_t frames);
    /// \a frames went to the output.
    void wrote(const AudioFormat &format, std::size_t frames);

    /// What is known of the file, without the position; returns whether that is news.
    bool setFile(const PlayPlace &place);
    PlayPlace place() const;

private:
    mutable VeskMutex m_mutex;
    const AudioOutput *m_output VESK_GUARDED_BY(m_mutex) = nullptr;
    PlayPlace m_file VESK_GUARDED_BY(m_mutex);
    /// Unset while there are no positions, as for stations.
    std::optional<Microseconds> m_begin VESK_GUARDED_BY(m_mutex);
    Microseconds m_skip VESK_GUARDED_BY(m_mutex) {0};
    std::size_t m_dropped VESK_GUARDED_BY(m_mutex) = 0; ///< frames of m_skip
    std::size_t m_frames VESK_GUARDED_BY(m_mutex) = 0; ///< written since m_begin
    int m_rate VESK_GUARDED_BY(m_mutex) = 0;
};
