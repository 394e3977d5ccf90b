// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/http/Caller.h"

#include <QByteArray>
#include <QObject>

#include <functional>

/// A client with a WebSocket, as the handler of its messages sees it: it can be sent messages that
/// it did not ask for. Destroyed when the client leaves. Main thread.
class MessagePeer : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void send(const QByteArray &message) = 0;

    /// Whether the client gets notifications of changes. When connections run out, clients without
    /// a subscription or an open request are closed first.
    void setSubscribed(bool subscribed) { m_isSubscribed = subscribed; }
    bool isSubscribed() const { return m_isSubscribed; }

private:
    bool m_isSubscribed = false;
};

/// Where a message comes from.
struct MessageSender {
    /// Null for a POST.
    MessagePeer *peer = nullptr;
    /// Destroyed when the client leaves without waiting for the reply; it is the peer for a
    /// WebSocket, and null when there is no way to tell.
    const QObject *client = nullptr;
    Caller caller;
};

/// What the server does with the messages of its clients: the bodies of POST requests, and the text
/// messages of WebSockets. Main thread.
class MessageHandler {
public:
    /// Sends the reply. An empty one says that there is nothing to say.
    using Reply = std::function<void(const QByteArray &)>;

    MessageHandler() = default;
    MessageHandler(const MessageHandler &) = delete;
    MessageHandler &operator=(const MessageHandler &) = delete;
    virtual ~MessageHandler() = default;

    /// Calls \a reply once and drops it, maybe before this returns, and also when the client has
    /// left: a POST's connection stays open until then.
    virtual void handle(const QByteArray &message, const MessageSender &sender, Reply reply) = 0;
};
