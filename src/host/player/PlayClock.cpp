// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/PlayClock.h"

#include "host/player/AudioOutput.h"

#include <algorithm>

namespace {

using Microseconds = std::chrono::microseconds;

std::size_t framesOf(Microseconds time, int rate)
{
    return static_cast<std::size_t>(time.count() * rate / 1000000);
}

Microseconds timeOf(std::size_t frames, int rate)
{
    return Microseconds(rate > 0 ? static_cast<qint64>(frames) * 1000000 / rate : 0);
}

} // namespace

void PlayClock::setOutput(const AudioOutput *output)
{
    const VeskMutexLock lock(m_mutex);
    m_output = output;
}

void PlayClock::begin(Microseconds position, Microseconds skip)
{
    const VeskMutexLock lock(m_mutex);
    m_begin = position;
    m_skip = std::max(skip, Microseconds(0));
    m_dropped = 0;
    m_frames = 0;
}

std::size_t PlayClock::toDrop(const AudioFormat &format, std::size_t frames) const
{
    const VeskMutexLock lock(m_mutex);
    const std::size_t all = framesOf(m_skip, format.rate);
    return std::min(frames, all - std::min(all, m_dropped));
}

void PlayClock::dropped(std::size_t frames)
{
    const VeskMutexLock lock(m_mutex);
    m_dropped += frames;
}

void PlayClock::wrote(const AudioFormat &format, std::size_t frames)
{
    const VeskMutexLock lock(m_mutex);
    m_rate = format.rate;
    m_frames += frames;
}

bool PlayClock::setFile(const PlayPlace &place)
{
    const VeskMutexLock lock(m_mutex);
    const bool isNews = place.duration != m_file.duration || place.isSeekable != m_file.isSeekable
        || place.behind != m_file.behind;
    m_file = place;
    return isNews;
}

PlayPlace PlayClock::place() const
{
    const VeskMutexLock lock(m_mutex);
    PlayPlace place = m_file;
    if (!m_begin)
        return place;
    // What was written before m_begin may still be heard for a moment.
    const Microseconds ahead = m_output ? Microseconds(m_output->ahead()) : Microseconds(0);
    const Microseconds heard
        = *m_begin + std::max(timeOf(m_frames, m_rate) - ahead, Microseconds(0));
    place.position = std::chrono::duration_cast<PlayPlace::Milliseconds>(heard);
    if (place.duration)
        place.position = std::min(*place.position, *place.duration);
    return place;
}
