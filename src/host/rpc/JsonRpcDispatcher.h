// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/rpc/JsonRpc.h"

#include <QHash>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class JsonRpcExchange;

/// A client with a connection that stays, so that it can be told of things later. Lives on the
/// dispatcher's thread; everything that concerns only this client ends when it is destroyed.
class JsonRpcPeer : public QObject {
    Q_OBJECT

public:
    /// Most calls of one peer that wait for their answers.
    static constexpr int MaxRunning = 64;

    using QObject::QObject;

    virtual void notify(const QString &method, const QVariant &params) = 0;

    void setSubscribed(bool subscribed) { m_subscribed = subscribed; }
    /// Whether it waits for something: for an answer, or to be told of changes.
    bool isWaiting() const { return m_running > 0 || m_subscribed; }

private:
    friend class JsonRpcExchange;
    int m_running = 0;
    bool m_subscribed = false;
};

/// One call that is being carried out. Is answered once: with a result, with an error, with an
/// internal error when the last one who holds it lets go, or with a time-out; what comes later is
/// dropped. Dispatcher's thread only.
class JsonRpcCall {
public:
    JsonRpcCall(
        JsonRpcExchange *exchange, int index, const QVariantHash &params, JsonRpcPeer *peer);
    JsonRpcCall(const JsonRpcCall &) = delete;
    JsonRpcCall &operator=(const JsonRpcCall &) = delete;
    ~JsonRpcCall();

    const QVariantHash &params() const { return m_params; }
    /// Null when the client has no lasting connection, or has gone.
    JsonRpcPeer *peer() const { return m_peer; }

    void finish(const QVariant &result);
    void fail(const JsonRpcError &error);
    /// Calls \a function when nobody waits for the answer any more: the client has gone or took the
    /// request back, or it took too long. At most once, and not once it is answered.
    void whenAbandoned(std::function<void()> function);

private:
    const QPointer<JsonRpcExchange> m_exchange;
    const int m_index;
    const QVariantHash m_params;
    const QPointer<JsonRpcPeer> m_peer;
};

using JsonRpcCallPtr = std::shared_ptr<JsonRpcCall>;
using JsonRpcMethod = std::function<void(const JsonRpcCallPtr &)>;

/// Carries out JSON-RPC messages by a table of methods: bytes in, bytes out, no sockets. Lives on
/// one thread. A method may answer at once or later; a message is answered when all of its calls
/// are, those that took longer than the deadline with an error. One method is its own: "cancel",
/// by which a client with a lasting connection takes the request with the "id" in the parameters
/// back, which is answered with an error then.
class JsonRpcDispatcher : public QObject {
    Q_OBJECT

public:
    using Answered = std::function<void(const QByteArray &)>;

    explicit JsonRpcDispatcher(QObject *parent = nullptr);
    ~JsonRpcDispatcher() override;

    void addMethod(const QString &name, const JsonRpcMethod &method);
    /// 60 seconds unless it is set.
    void setDeadline(int milliseconds) { m_deadlineMs = milliseconds; }
    int deadline() const { return m_deadlineMs; }

    /// Calls \a answered exactly once, maybe before this returns, with what to send back: nothing
    /// when the message held only notifications. Not called any more once this is destroyed. When
    /// \a client is destroyed before, all calls are abandoned; a peer is its own client.
    void handle(const QByteArray &message, JsonRpcPeer *peer, Answered answered,
        const QObject *client = nullptr);

private:
    friend class JsonRpcExchange;
    void cancel(const JsonRpcCallPtr &call);

    QHash<QString, JsonRpcMethod> m_methods;
    int m_deadlineMs = 60000;
};
