// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/PlayThread.h"

#include "api/core/vesk.h"
#include "host/player/StreamPlay.h"

void PlayThread::Ending::set()
{
    {
        const VeskMutexLock lock(m_mutex);
        m_ended = true;
    }
    m_changed.notify_all();
}

bool PlayThread::Ending::wait(std::chrono::milliseconds time)
{
    const auto deadline = std::chrono::steady_clock::now() + time;
    VeskMutexLock lock(m_mutex);
    while (!m_ended && lock.waitUntil(m_changed, deadline)) { }
    return m_ended;
}

PlayThread::PlayThread(std::unique_ptr<StreamPlay> play)
    : m_play(std::move(play))
    , m_ending(std::make_shared<Ending>())
{
    m_play->moveToThread(this);
}

PlayThread::~PlayThread() = default;

void PlayThread::run()
{
    veskSetThreadName(QStringLiteral("Player"));
    m_play->start();
    exec();
    // Here, because the play's objects live on this thread; may block while the output closes.
    m_play.reset();
    m_ending->set();
}
