// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "base/Result.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <sys/socket.h>
#include <utility>
#include <vector>

/// \file
/// The two ends of a connection, as tests use them.

/// Two connected sockets, for the caller to own.
inline std::pair<int, int> connectedSockets()
{
    int sockets[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0)
        std::abort();
    return {sockets[0], sockets[1]};
}

/// A payload with its length in front.
inline QByteArray framed(const QByteArray &payload)
{
    const auto size = static_cast<quint32>(payload.size());
    return QByteArray(reinterpret_cast<const char *>(&size), sizeof size) + payload;
}

/// Sends these bytes; false when the connection has ended.
inline bool sendAll(int socket, const QByteArray &bytes)
{
    int sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count = ::send(socket, bytes.constData() + sent,
            static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        sent += static_cast<int>(count);
    }
    return true;
}

/// Records what a channel passes to its handler. Any thread.
class Received {
public:
    Result<void, QString> handle(const QByteArray &payload)
    {
        const VeskMutexLock lock(m_mutex);
        // A copy, because the payload points into the channel's buffer.
        m_payloads.emplace_back(payload.constData(), payload.size());
        m_condition.notify_all();
        if (!m_complaint.isEmpty())
            return failure(m_complaint);
        return {};
    }

    void end(const QString &reason)
    {
        const VeskMutexLock lock(m_mutex);
        m_reasons.push_back(reason);
        m_condition.notify_all();
    }

    /// Makes handle() refuse every further payload with \a complaint.
    void complain(const QString &complaint)
    {
        const VeskMutexLock lock(m_mutex);
        m_complaint = complaint;
    }

    /// Waits without running an event loop.
    bool waitFor(std::size_t count)
    {
        const auto deadline = std::chrono::steady_clock::now() + Patience;
        VeskMutexLock lock(m_mutex);
        while (m_payloads.size() < count) {
            if (!lock.waitUntil(m_condition, deadline))
                return m_payloads.size() >= count;
        }
        return true;
    }
    bool waitForEnd()
    {
        const auto deadline = std::chrono::steady_clock::now() + Patience;
        VeskMutexLock lock(m_mutex);
        while (m_reasons.empty()) {
            if (!lock.waitUntil(m_condition, deadline))
                return !m_reasons.empty();
        }
        return true;
    }

    std::vector<QByteArray> payloads() const
    {
        const VeskMutexLock lock(m_mutex);
        return m_payloads;
    }
    /// One for each call of ended().
    std::vector<QString> reasons() const
    {
        const VeskMutexLock lock(m_mutex);
        return m_reasons;
    }
    bool hasEnded() const { return !reasons().empty(); }

private:
    static constexpr std::chrono::seconds Patience {20};

    mutable VeskMutex m_mutex;
    std::condition_variable m_condition;
    std::vector<QByteArray> m_payloads VESK_GUARDED_BY(m_mutex);
    std::vector<QString> m_reasons VESK_GUARDED_BY(m_mutex);
    QString m_complaint VESK_GUARDED_BY(m_mutex);
};
