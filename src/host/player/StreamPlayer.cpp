// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamPlayer.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "host/player/SpareDecoder.h"
#include "host/player/StreamPlay.h"

#include <QDeadlineTimer>
#include <QTimer>

VESK_LOGGER("Player")

StreamPlayer::StreamPlayer(std::shared_ptr<SoundOutput> sound, QObject *parent)
    : MediaPlayer(parent)
    , m_sound(std::move(sound))
    , m_spare(std::make_shared<SpareDecoder>())
{
}

StreamPlayer::StreamPlayer(const AudioOutputSpec &output, QObject *parent)
    : StreamPlayer(std::make_shared<SoundOutput>(output), parent)
{
}

StreamPlayer::~StreamPlayer()
{
    if (waitForEnd(EndTime))
        return;
    // Leak the QThread objects of threads that still run: destroying one is fatal.
    for (std::unique_ptr<PlayThread> &thread : m_ending)
        static_cast<void>(thread.release());
    static_cast<void>(std::make_unique<std::shared_ptr<SoundOutput>>(std::move(m_sound)).release());
}

void StreamPlayer::play(const StreamSource &source)
{
    VESK_ASSERT_OWN_THREAD();
    leave();
    ++m_number;
    m_step = 0;
    auto owned = std::make_unique<StreamPlay>(source, m_sound, m_spare, m_times);
    m_clock = owned->clock();
    connectTo(owned.get());
    m_thread = std::make_unique<PlayThread>(std::move(owned));
    m_thread->start();
}

/// Queued signals of a play that is over may still arrive; its number is outdated.
void StreamPlayer::connectTo(StreamPlay *play)
{
    const int number = m_number;
    connect(play, &StreamPlay::audibleChanged, this, [this, number](bool audible, int step) {
        if (number == m_number && step == m_step)
            noteAudible(audible);
    });
    connect(play, &StreamPlay::titleChanged, this, [this, number](const QString &title) {
        if (number == m_number)
            Q_EMIT titleChanged(title);
    });
    connect(play, &StreamPlay::bitRateChanged, this, [this, number](int bitRate) {
        if (number == m_number)
            Q_EMIT bitRateChanged(bitRate);
    });
    connect(play, &StreamPlay::problemChanged, this, [this, number](const TrString &problem) {
        if (number == m_number)
            showProblem(problem);
    });
    connect(play, &StreamPlay::ended, this, [this, number] {
        if (number != m_number)
            return;
        stopCurrent();
        Q_EMIT ended();
    });
    connect(play, &StreamPlay::gaveUp, this, [this, number](const TrString &problem) {
        if (number != m_number)
            return;
        stopCurrent();
        Q_EMIT gaveUp(problem);
    });
    connect(play, &StreamPlay::outputFailed, this, [this, number](const TrString &problem) {
        if (number != m_number)
            return;
        stop();
        Q_EMIT outputFailed(problem);
    });
    connect(play, &StreamPlay::placeChanged, this, [this, number] {
        if (number == m_number)
            Q_EMIT placeChanged();
    });
    connect(play, &StreamPlay::sought, this, [this, number](const TrString &problem, int seek) {
        if (number == m_number && seek == m_seek)
            Q_EMIT sought(problem);
    });
}

void StreamPlayer::noteAudible(bool audible)
{
    m_isAudible = audible;
    if (audible) {
        // The sound output has crossed over to it.
        end(std::move(m_leaving));
        m_spare->prepare();
    }
    Q_EMIT audibleChanged(audible);
}

/// Queues a call of \a act with the current play on the play's thread.
template <class Act>
void StreamPlayer::tell(Act act)
{
    if (!m_thread)
        return;
    StreamPlay *play = m_thread->play();
    QMetaObject::invokeMethod(
        play, [play, act] { act(*play); }, Qt::QueuedConnection);
}

void StreamPlayer::pause()
{
    VESK_ASSERT_OWN_THREAD();
    m_isAudible = false;
    tell([step = ++m_step, keep = m_pauseBuffer](StreamPlay &play) { play.pause(step, keep); });
}

void StreamPlayer::resume()
{
    VESK_ASSERT_OWN_THREAD();
    tell([step = ++m_step](StreamPlay &play) { play.resume(step); });
}

void StreamPlayer::seek(std::chrono::milliseconds position)
{
    VESK_ASSERT_OWN_THREAD();
    tell([position, number = ++m_seek](StreamPlay &play) { play.seek(position, number); });
}

void StreamPlayer::rejoinLive()
{
    VESK_ASSERT_OWN_THREAD();
    tell([number = ++m_seek](StreamPlay &play) { play.rejoinLive(number); });
}

PlayPlace StreamPlayer::place() const
{
    return m_clock ? m_clock->place() : PlayPlace();
}

void StreamPlayer::stop()
{
    VESK_ASSERT_OWN_THREAD();
    stopCurrent();
    end(std::move(m_leaving));
}

void StreamPlayer::leave()
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_isSeamless || !m_isAudible)
        return m_isSeamless ? stopCurrent() : stop();
    ++m_number;
    m_clock.reset();
    m_isAudible = false;
    showProblem({});
    end(std::move(m_leaving));
    m_leaving = std::move(m_thread);
}

/// Stops the current play; one that is heard until it has sound goes on.
void StreamPlayer::stopCurrent()
{
    m_clock.reset();
    if (!m_thread)
        return;
    ++m_number;
    m_isAudible = false;
    showProblem({});
    end(std::move(m_thread));
}

void StreamPlayer::end(std::unique_ptr<PlayThread> thread)
{
    if (!thread)
        return;
    thread->quit();
    m_ending.push_back(std::move(thread));
    connect(m_ending.back().get(), &QThread::finished, this,
        [this] { m_ending.remove_if([](const auto &each) { return each->isFinished(); }); });
    // Only the log; nothing waits for it.
    QTimer::singleShot(EndTime, this, [ending = m_ending.back()->ending()] {
        if (!ending->wait(std::chrono::milliseconds(0)))
            VESK_ERROR("A play that was stopped does not end; it is left behind.");
    });
}

void StreamPlayer::showProblem(const TrString &problem)
{
    if (problem == m_problem)
        return;
    m_problem = problem;
    Q_EMIT problemChanged(problem);
}

void StreamPlayer::networkIsBack()
{
    VESK_ASSERT_OWN_THREAD();
    tell([](StreamPlay &play) { play.tryNow(); });
}

bool StreamPlayer::waitForEnd(std::chrono::milliseconds time)
{
    VESK_ASSERT_OWN_THREAD();
    stop();
    const QDeadlineTimer deadline(time);
    while (!m_ending.empty()) {
        if (!m_ending.front()->wait(deadline))
            return false;
        m_ending.pop_front();
    }
    return m_sound->close(std::chrono::milliseconds(deadline.remainingTime()));
}
