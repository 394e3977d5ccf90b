// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/http/MessageHandler.h"
#include "host/rpc/JsonRpc.h"

#include <QHash>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <vector>

class JsonRpcExchange;

/// One call that is being carried out. Is answered once: with a result, with an error, with an
/// internal error when the last reference to it goes, or with a time-out; later answers are
/// dropped. Main thread.
class JsonRpcCall {
public:
    JsonRpcCall(std::weak_ptr<JsonRpcExchange> exchange, int index, const QVariantHash &params,
        const MessageSender &sender);
    JsonRpcCall(const JsonRpcCall &) = delete;
    JsonRpcCall &operator=(const JsonRpcCall &) = delete;
    ~JsonRpcCall();

    const QVariantHash &params() const { return m_params; }
    /// Null when the client has no WebSocket, or has gone.
    MessagePeer *peer() const { return m_peer; }
    const Caller &caller() const { return m_caller; }
    /// Whether the client may do what \a role may; the call has failed otherwise.
    bool requireRole(AccessRole role);

    void finish(const QVariant &result);
    void fail(const JsonRpcError &error);
    /// Calls \a function when the answer is no longer wanted: the client has left or cancelled the
    /// request, or it took too long. At most once, and not once it is answered.
    void whenAbandoned(std::function<void()> function);

private:
    const std::weak_ptr<JsonRpcExchange> m_exchange;
    const int m_index;
    const QVariantHash m_params;
    const QPointer<MessagePeer> m_peer;
    const Caller m_caller;
};

using JsonRpcCallPtr = std::shared_ptr<JsonRpcCall>;
using JsonRpcMethod = std::function<void(const JsonRpcCallPtr &)>;

/// Carries out JSON-RPC messages by a table of methods: bytes in, bytes out, no sockets. A method
/// may answer at once or later; a message is answered when all of its calls are, those that took
/// longer than the deadline with an error. The dispatcher itself has one method, "cancel", by which
/// a client with a WebSocket cancels the request with the "id" in the parameters. Main thread.
class JsonRpcDispatcher : public QObject, public MessageHandler {
    Q_OBJECT

public:
    /// Most calls of one peer that wait for their answers.
    static constexpr int MaxRunning = 64;

    explicit JsonRpcDispatcher(QObject *parent = nullptr);
    /// Replies to nothing any more.
    ~JsonRpcDispatcher() override;

    /// Callers below \a role are refused.
    void addMethod(
        const QString &name, const JsonRpcMethod &method, AccessRole role = AccessRole::Listener);
    /// 60 seconds unless it is set.
    void setDeadline(int milliseconds) { m_deadlineMs = milliseconds; }

    /// Replies exactly once, with nothing when the message held only notifications. When the
    /// sender's client is destroyed, the calls are abandoned.
    void handle(const QByteArray &message, const MessageSender &sender, Reply reply) override;

private:
    friend class JsonRpcExchange;
    void cancel(const JsonRpcCallPtr &call);

    struct Method {
        JsonRpcMethod run;
        AccessRole role = AccessRole::Owner;
    };

    QHash<QString, Method> m_methods;
    int m_deadlineMs = 60000;
    std::vector<std::shared_ptr<JsonRpcExchange>> m_exchanges; ///< those without a reply yet
    QHash<const MessagePeer *, int> m_running; ///< calls of each peer without an answer yet
};
