// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/support/RawClient.h"

/// A WebSocket client (RFC 6455) that sends exactly the frames of a test.
class RawWebSocket {
public:
    enum Opcode { Continuation = 0, Text = 1, Binary = 2, Close = 8, Ping = 9, Pong = 10 };

    struct Frame {
        int opcode = -1; ///< -1: the connection ended
        QByteArray payload;
        /// Of a close frame.
        int closeCode() const;
    };

    /// Connects and performs the handshake; \a headers end with "\r\n" each.
    explicit RawWebSocket(quint16 port, const QByteArray &headers = {});

    const QByteArray &handshake() const { return m_handshake; }
    bool send(int opcode, const QByteArray &payload, bool isFinal = true);
    Frame receive();
    /// Sends a text message and returns the next frame's payload.
    QByteArray ask(const QByteArray &message);
    /// Reads until the server closes the connection.
    void drain() { m_client.readAll(); }

private:
    RawClient m_client;
    QByteArray m_handshake;
};
