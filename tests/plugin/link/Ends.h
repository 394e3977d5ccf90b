// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include <sys/socket.h>

/// \file
/// The two ends of a connection as tests hold them.

/// Two sockets that are connected; whoever takes one owns it.
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

/// Sends exactly these bytes; false when the other side does not take them.
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

/// What a channel hands on, kept for a test. Any thread.
class Received {
public:
    QString take(const QByteArray &payload)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        // The payload is the channel's own.
        m_payloads.emplace_back(payload.constData(), payload.size());
        m_condition.notify_all();
        return m_complaint;
    }

    void end(const QString &reason)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_reasons.push_back(reason);
        m_condition.notify_all();
    }

    /// The answer to every payload from now on.
    void complain(const QString &complaint)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_complaint = complaint;
    }

    /// Waits, without an event loop.
    bool waitFor(std::size_t count)
    {
        return wait([this, count] { return m_payloads.size() >= count; });
    }
    bool waitForEnd()
    {
        return wait([this] { return !m_reasons.empty(); });
    }

    std::vector<QByteArray> payloads() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_payloads;
    }
    /// One for each time that it was told of the end.
    std::vector<QString> reasons() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_reasons;
    }
    bool hasEnded() const { return !reasons().empty(); }

private:
    bool wait(const std::function<bool()> &condition)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_condition.wait_for(lock, std::chrono::seconds(20), condition);
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_condition;
    /// Guarded by m_mutex.
    std::vector<QByteArray> m_payloads;
    std::vector<QString> m_reasons;
    QString m_complaint;
};
