// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamPlayer.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "host/player/StreamPlay.h"

#include <QDeadlineTimer>
#include <QTimer>

VESK_LOGGER("Player")

StreamPlayer::StreamPlayer(const AudioOutputSpec &output, QObject *parent)
    : MediaPlayer(parent)
    , m_spec(output)
{
}

StreamPlayer::~StreamPlayer()
{
    if (waitForEnd(EndTime))
        return;
    // Leak the QThread objects of threads that still run: destroying one is fatal.
    for (std::unique_ptr<PlayThread> &thread : m_ending)
        static_cast<void>(thread.release());
}

void StreamPlayer::play(const StreamSource &source)
{
    VESK_ASSERT_OWN_THREAD();
    stop();
    const int number = ++m_number;
    m_step = 0;
    auto owned = std::make_unique<StreamPlay>(source, m_spec, m_times);
    StreamPlay *play = owned.get();
    m_thread = std::make_unique<PlayThread>(std::move(owned), m_lastEnding);
    m_lastEnding = m_thread->ending();

    // Queued signals of a play that is over may still arrive; its number is outdated.
    connect(play, &StreamPlay::audibleChanged, this, [this, number](bool audible, int step) {
        if (number == m_number && step == m_step)
            Q_EMIT audibleChanged(audible);
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
        stop();
        Q_EMIT ended();
    });
    connect(play, &StreamPlay::gaveUp, this, [this, number](const TrString &problem) {
        if (number != m_number)
            return;
        stop();
        Q_EMIT gaveUp(problem);
    });
    connect(play, &StreamPlay::outputFailed, this, [this, number](const TrString &problem) {
        if (number != m_number)
            return;
        stop();
        Q_EMIT outputFailed(problem);
    });
    m_thread->start();
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
    tell([step = ++m_step](StreamPlay &play) { play.pause(step); });
}

void StreamPlayer::resume()
{
    VESK_ASSERT_OWN_THREAD();
    tell([step = ++m_step](StreamPlay &play) { play.resume(step); });
}

void StreamPlayer::stop()
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_thread)
        return;
    ++m_number;
    showProblem({});
    m_thread->quit();
    m_ending.push_back(std::move(m_thread));
    connect(m_ending.back().get(), &QThread::finished, this,
        [this] { m_ending.remove_if([](const auto &thread) { return thread->isFinished(); }); });
    // Only the log; the next play does not wait for this one beyond PlayThread's limit.
    QTimer::singleShot(EndTime, this, [ending = m_lastEnding] {
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
    return true;
}
