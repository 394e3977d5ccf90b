// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// A WebSocket client that records the messages sent to it.
#pragma once

#include "host/http/MessageHandler.h"

#include <QList>

class Peer : public MessagePeer {
public:
    void send(const QByteArray &message) override { sent.append(message); }

    QList<QByteArray> sent;
};
