// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Replies as a message's first word selects:
///
/// - keep: not before the test completes the reply in `kept`,
/// - nothing: with an empty reply,
/// - subscribe: with the message, after marking the client as subscribed,
/// - tell: with the message, after an unsolicited one,
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

    void handle(const QByteArray &message, const MessageSender &sender, Reply reply) override
    {
        const QByteArray word = message.split(' ').first();
        if (word == "keep")
            return kept.append({sender.client, std::move(reply)});
        if (word == "nothing")
            return reply({});
        if (word == "much")
            return reply(QByteArray(1024 * 1024, 'x'));
        if (word == "subscribe")
            sender.peer->setSubscribed(true);
        if (word == "tell")
            sender.peer->send("told");
        reply(message);
    }

    QList<Kept> kept;
};
