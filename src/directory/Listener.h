// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Accepts connections at one address, plain or over TLS, and hands them off. The number of open
/// connections is bounded: a further one is closed at once. Lives on the thread whose main context
/// was the default when it was made.
#pragma once

#include <cstdint>
#include <functional>
#include <gio/gio.h>
#include <memory>
#include <string>

namespace directory {

class Listener {
public:
    static constexpr int MaxConnections = 256;
    static constexpr unsigned UsualIdleSeconds = 60;

    /// `stream` is the TLS stream if there is TLS, `connection` always the socket's.
    using Accept = std::function<void(GIOStream *stream, GSocketConnection *connection)>;

    /// "127.0.0.1:8080", "[::1]:0"; port 0 picks a free one. Without a certificate it speaks plain
    /// HTTP. A connection on which nothing arrives for idleSeconds fails. Throws std::runtime_error
    /// when it cannot listen.
    Listener(const std::string &address, GTlsCertificate *certificate, unsigned idleSeconds,
        Accept accept);
    ~Listener();
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    std::uint16_t port() const { return m_port; }
    /// "127.0.0.1:8080", fit for a URL on this machine.
    std::string hostAndPort() const;

private:
    void accepted(GSocketConnection *connection);

    GSocketService *m_service;
    GTlsCertificate *m_certificate;
    const unsigned m_idleSeconds;
    Accept m_accept;
    std::string m_host;
    std::uint16_t m_port = 0;
    /// Shared with the open connections, which may outlive the listener.
    std::shared_ptr<int> m_open = std::make_shared<int>(0);
};

/// Throws std::runtime_error when the files hold no certificate and key.
GTlsCertificate *loadCertificate(const std::string &certificate, const std::string &key);

} // namespace directory
