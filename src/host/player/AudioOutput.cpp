// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/AudioOutput.h"

#include "api/core/ThreadCheck.h"
#include "host/sound/SoundMixer.h"
#include "host/sound/SoundOutput.h"

#include <algorithm>

namespace {

using Milliseconds = std::chrono::milliseconds;

/// The shortest interval of the underrun check.
constexpr Milliseconds ShortestWatch {20};

} // namespace

AudioOutput::AudioOutput(std::shared_ptr<SoundOutput> sound, QObject *parent)
    : QObject(parent)
    , m_sound(std::move(sound))
    , m_silentSince(Clock::now().time_since_epoch().count())
{
    connect(&m_watch, &QTimer::timeout, this, &AudioOutput::watch);
    m_watch.setSingleShot(true);
    m_watch.setTimerType(Qt::PreciseTimer);
    m_voice = m_sound->attach([this](SoundVoice::Event event, const TrString &problem) {
        QMetaObject::invokeMethod(
            this, [this, event, problem] { take(event, problem); }, Qt::QueuedConnection);
    });
}

AudioOutput::~AudioOutput()
{
    if (!m_closed)
        m_sound->leave(m_voice);
}

StreamConsumer::Taken AudioOutput::write(
    const AudioFormat &format, const char *samples, std::size_t size)
{
    const auto deadline = Clock::now() + StreamConsumer::MaxWait;
    switch (m_sound->mixer().write(*m_voice, format, samples, size, Ahead, deadline)) {
    case SoundMixer::Written::Refused:
        return StreamConsumer::Taken::Refused;
    case SoundMixer::Written::None:
        return StreamConsumer::Taken::None;
    case SoundMixer::Written::All:
        break;
    }
    // While not running, no timer checks whether there is enough audio to start.
    if (!m_running && !m_lookPosted.exchange(true)) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_lookPosted = false;
                watch();
            },
            Qt::QueuedConnection);
    }
    return StreamConsumer::Taken::All;
}

void AudioOutput::finish()
{
    VESK_ASSERT_OWN_THREAD();
    m_finished = true;
    m_sound->mixer().finish(*m_voice);
    watch();
}

AudioFormat AudioOutput::format() const
{
    return m_sound->mixer().format(*m_voice);
}

void AudioOutput::pause()
{
    VESK_ASSERT_OWN_THREAD();
    m_paused = true;
    m_running = false;
    m_watch.stop();
    m_sound->mixer().hold(m_voice);
    m_silentSince = 0;
    setAudible(false);
}

void AudioOutput::resume()
{
    VESK_ASSERT_OWN_THREAD();
    m_paused = false;
    m_silentSince = Clock::now().time_since_epoch().count();
    watch();
}

void AudioOutput::flush()
{
    m_finished = false;
    m_fresh = true;
    m_sound->mixer().flush(m_voice);
}

void AudioOutput::refuse(bool refuse)
{
    m_sound->mixer().refuse(*m_voice, refuse);
}

void AudioOutput::close()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_closed)
        return;
    m_closed = true;
    m_watch.stop();
    m_sound->leave(m_voice);
    setAudible(false);
}

Milliseconds AudioOutput::ahead() const
{
    return m_sound->mixer().ahead(*m_voice);
}

Milliseconds AudioOutput::silence() const
{
    const Clock::rep since = m_silentSince;
    if (since == 0)
        return Milliseconds(0);
    return std::chrono::duration_cast<Milliseconds>(
        Clock::now() - Clock::time_point(Clock::duration(since)));
}

/// The voice's events, late by the way through the event loop.
void AudioOutput::take(SoundVoice::Event event, const TrString &problem)
{
    if (m_closed)
        return;
    switch (event) {
    case SoundVoice::Event::Sounding:
        if (m_running)
            setAudible(true);
        break;
    case SoundVoice::Event::RanDry:
        if (m_running) {
            m_running = false;
            watch();
        }
        break;
    case SoundVoice::Event::Failed:
        m_broken = true;
        m_watch.stop();
        Q_EMIT failed(problem);
        break;
    }
}

/// Starts once enough audio is buffered, and notices the end of what is heard.
void AudioOutput::watch()
{
    if (m_paused || m_broken || m_closed || m_drained)
        return;
    if (!m_running) {
        const Milliseconds needed = m_fresh ? Start : Restart;
        if (ahead() >= needed || (m_finished && format().isKnown())) {
            m_running = true;
            m_fresh = false;
            m_sound->start(m_voice);
        }
    }
    watchForSilence();
}

/// The sound has ended when all that was written was heard: after an underrun, or after finish().
void AudioOutput::watchForSilence()
{
    const bool mayEnd = m_running ? m_finished.load() : m_audible.load();
    if (!mayEnd)
        return;
    // After an underrun, what was written since waits for more.
    const Milliseconds left = m_running ? ahead() : m_sound->mixer().onItsWay(*m_voice);
    if (left.count() > 0) {
        m_watch.start(std::max(left, ShortestWatch));
        return;
    }
    setAudible(false);
    if (m_running && m_finished) {
        m_drained = true;
        Q_EMIT drained();
    }
}

void AudioOutput::setAudible(bool audible)
{
    if (audible == m_audible)
        return;
    m_audible = audible;
    if (audible)
        m_wasAudible = true;
    m_silentSince = audible || m_paused ? 0 : Clock::now().time_since_epoch().count();
    Q_EMIT audibleChanged(audible);
}
