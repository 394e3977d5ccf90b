// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/AudioOutput.h"

#include "api/core/ThreadCheck.h"
#include "host/player/AudioPipeline.h"

#include <algorithm>

namespace {

using Milliseconds = std::chrono::milliseconds;

/// The shortest interval of the underrun check.
constexpr Milliseconds ShortestWatch {20};

} // namespace

AudioOutput::AudioOutput(const AudioOutputSpec &spec, QObject *parent)
    : QObject(parent)
    , m_spec(spec)
    , m_pipeline(std::make_unique<Pipeline>(*this, spec))
    , m_silentSince(Clock::now().time_since_epoch().count())
{
    connect(&m_watch, &QTimer::timeout, this, &AudioOutput::watch);
    m_watch.setSingleShot(true);
    m_watch.setTimerType(Qt::PreciseTimer);
}

AudioOutput::~AudioOutput()
{
    m_pipeline->close();
}

StreamConsumer::Taken AudioOutput::write(
    const AudioFormat &format, const char *samples, std::size_t size)
{
    const StreamConsumer::Taken taken = m_pipeline->write(format, samples, size);
    if (taken != StreamConsumer::Taken::All)
        return taken;
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
    return taken;
}

void AudioOutput::finish()
{
    VESK_ASSERT_OWN_THREAD();
    m_finished = true;
    m_pipeline->finish();
    watch();
}

AudioFormat AudioOutput::format() const
{
    return m_pipeline->format();
}

void AudioOutput::pause()
{
    VESK_ASSERT_OWN_THREAD();
    m_paused = true;
    m_running = false;
    m_pipeline->setRunning(false);
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
    m_pipeline->flush();
}

void AudioOutput::refuse(bool refuse)
{
    m_pipeline->refuse(refuse);
}

void AudioOutput::close()
{
    VESK_ASSERT_OWN_THREAD();
    m_watch.stop();
    m_pipeline->close();
    setAudible(false);
}

Milliseconds AudioOutput::ahead() const
{
    return m_pipeline->ahead();
}

Milliseconds AudioOutput::silence() const
{
    const Clock::rep since = m_silentSince;
    if (since == 0)
        return Milliseconds(0);
    return std::chrono::duration_cast<Milliseconds>(
        Clock::now() - Clock::time_point(Clock::duration(since)));
}

/// Starts once enough audio is buffered, pauses on an underrun.
void AudioOutput::watch()
{
    if (m_paused || m_pipeline->isBroken())
        return;
    const Milliseconds ahead = m_pipeline->ahead();
    if (!m_running) {
        const Milliseconds needed = m_wasAudible ? Restart : Start;
        if (ahead < needed && !(m_finished && m_pipeline->format().isKnown()))
            return;
        m_running = true;
        m_pipeline->setRunning(true);
        setAudible(true);
    } else if (ahead.count() == 0 && !m_finished) {
        m_running = false;
        m_pipeline->setRunning(false);
        setAudible(false);
    }
    watchLater();
}

/// Checks again when the audio buffered now will have run out. After finish() no check is needed:
/// the pipeline reports the end of the stream.
void AudioOutput::watchLater()
{
    if (m_running && !m_finished)
        m_watch.start(std::max(m_pipeline->ahead(), ShortestWatch));
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
