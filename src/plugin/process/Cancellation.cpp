// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/process/Cancellation.h"

#include "api/web/HttpClient.h"

#include <algorithm>

Cancellation::Cancellation()
{
    CMWorker::addHandlingListener(this);
}

Cancellation::~Cancellation()
{
    CMWorker::removeHandlingListener(this);
}

void Cancellation::cancel(const std::shared_ptr<CMReplyAbstractData> &reply)
{
    const VeskMutexLock lock(m_mutex);
    if (m_cancelled
        || std::find(m_handled.begin(), m_handled.end(), reply.get()) == m_handled.end())
        return;
    m_cancelled = reply.get();
    HttpClient::abandonReading(true);
}

void Cancellation::begin(const std::shared_ptr<CMReplyAbstractData> &reply)
{
    const VeskMutexLock lock(m_mutex);
    m_handled.push_back(reply.get());
}

void Cancellation::end()
{
    const VeskMutexLock lock(m_mutex);
    if (m_cancelled && m_handled.back() == m_cancelled) {
        m_cancelled = nullptr;
        HttpClient::abandonReading(false);
    }
    m_handled.pop_back();
}
