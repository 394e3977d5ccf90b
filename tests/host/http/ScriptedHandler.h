// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Replies to a message as its first word says:
///
/// - keep: when the test does,
/// - nothing: with nothing,
/// - subscribe: after it has marked the client as subscribed,
/// - tell: after a message that the client did not ask for,
/// - much: with a mebibyte,
/// - anything else: with the message itself.
#pragma once

#include "host/http/MessageHandler.h"

#include <QList>
#include <QPointer>

class ScriptedHandler : public MessageHandler {
public:
    struct Kept {
        QPointer<const QObject> client;
        Reply reply;
    };

    void handle(
        const QByteArray &message, MessagePeer *peer, const QObject *client, Reply reply) override
    {
        const QByteArray word = message.split(' ').first();
        if (word == "keep")
            return kept.append({client, std::move(reply)});
        if (word == "nothing")
            return reply({});
        if (word == "much")
            return reply(QByteArray(1024 * 1024, 'x'));
        if (word == "subscribe")
            peer->setSubscribed(true);
        if (word == "tell")
            peer->send("told");
        reply(message);
    }

    QList<Kept> kept;
};
