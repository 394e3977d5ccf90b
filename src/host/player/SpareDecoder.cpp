// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/SpareDecoder.h"

#include "api/core/ThreadCheck.h"
#include "host/player/DecoderProcess.h"

#include <QThreadPool>

SpareDecoder::SpareDecoder(std::chrono::milliseconds lifetime, QObject *parent)
    : QObject(parent)
{
    m_end.setSingleShot(true);
    m_end.setInterval(lifetime);
    connect(&m_end, &QTimer::timeout, this, &SpareDecoder::drop);
}

SpareDecoder::~SpareDecoder() = default;

void SpareDecoder::prepare()
{
    VESK_ASSERT_OWN_THREAD();
    m_end.start();
    const VeskMutexLock lock(m_mutex);
    if (!m_process || m_process->hasEnded())
        m_process = std::make_unique<DecoderProcess>();
}

std::unique_ptr<DecoderProcess> SpareDecoder::take()
{
    std::unique_ptr<DecoderProcess> process;
    {
        const VeskMutexLock lock(m_mutex);
        process = std::move(m_process);
    }
    if (!process || process->hasEnded())
        process = std::make_unique<DecoderProcess>();
    return process;
}

void SpareDecoder::drop()
{
    std::shared_ptr<DecoderProcess> process;
    {
        const VeskMutexLock lock(m_mutex);
        process = std::move(m_process);
    }
    // The end of a process may take a moment, which is not the main thread's.
    if (process)
        QThreadPool::globalInstance()->start([process = std::move(process)] { process->kill(); });
}
