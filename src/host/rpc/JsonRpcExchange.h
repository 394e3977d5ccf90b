// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/rpc/JsonRpcDispatcher.h"

#include <QTimer>

/// One message under way: collects the answers of its calls, in their order, and hands them out
/// together. Belongs to the dispatcher and deletes itself when it is done.
class JsonRpcExchange : public QObject {
    Q_OBJECT

public:
    JsonRpcExchange(JsonRpcDispatcher *dispatcher, JsonRpcPeer *peer,
        JsonRpcDispatcher::Answered answered, const JsonRpcMessage &message, const QObject *client);

    void start();
    /// Completes the call at \a index; does nothing when it is complete.
    void complete(int index, const QVariantHash &answer);
    void finish(int index, const QVariant &result);
    void fail(int index, const JsonRpcError &error);
    void whenAbandoned(int index, std::function<void()> function);

    JsonRpcPeer *peer() const { return m_peer; }
    /// Abandons the call with that id, if it is under way.
    void cancel(const QVariant &id);

private:
    struct Slot {
        QVariantHash answer;
        bool done = false;
        bool counted = false; ///< among the peer's running calls
        std::function<void()> abandoned;
    };

    void begin(int index);
    void abandon(int index, const JsonRpcError &error);
    void abandonAll(const JsonRpcError &error);
    void answerWhenDone();

    JsonRpcDispatcher *const m_dispatcher;
    const QPointer<JsonRpcPeer> m_peer;
    const JsonRpcMessage m_message;
    JsonRpcDispatcher::Answered m_answered;
    QVector<Slot> m_slots;
    int m_open;
    QTimer m_deadline;
};
