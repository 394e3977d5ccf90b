// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// A client with a WebSocket that keeps what it is sent.
#pragma once

#include "host/http/MessageHandler.h"

#include <QList>

class Peer : public MessagePeer {
public:
    void send(const QByteArray &message) override { sent.append(message); }

    QList<QByteArray> sent;
};
