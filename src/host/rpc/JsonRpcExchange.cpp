// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/JsonRpcExchange.h"

#include "api/core/vesk.h"
#include "api/web/VeskJson.h"

namespace {

JsonRpcError cancelledError()
{
    return {JsonRpcError::Cancelled, QStringLiteral("The request was cancelled."), {}};
}

} // namespace

JsonRpcExchange::JsonRpcExchange(JsonRpcDispatcher *dispatcher, JsonRpcPeer *peer,
    JsonRpcDispatcher::Answered answered, const JsonRpcMessage &message, const QObject *client)
    : QObject(dispatcher)
    , m_dispatcher(dispatcher)
    , m_peer(peer)
    , m_message(message)
    , m_answered(std::move(answered))
    , m_slots(message.requests.size())
    , m_open(message.requests.size())
{
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        abandonAll({JsonRpcError::TimedOut, QStringLiteral("The request timed out."), {}});
    });
    if (const QObject *gone = peer ? peer : client)
        connect(gone, &QObject::destroyed, this, [this] { abandonAll(cancelledError()); });
}

void JsonRpcExchange::start()
{
    for (int index = 0; index < m_message.requests.size(); ++index)
        begin(index);
    if (m_open > 0)
        m_deadline.start(m_dispatcher->deadline());
}

void JsonRpcExchange::begin(int index)
{
    const JsonRpcRequest &request = m_message.requests.at(index);
    if (request.isInvalid)
        return fail(index, request.error);
    const JsonRpcMethod method = m_dispatcher->m_methods.value(request.method);
    if (!method) {
        return fail(index,
            {JsonRpcError::MethodNotFound, QStringLiteral("There is no method of this name."), {}});
    }
    if (m_peer) {
        if (m_peer->m_running >= JsonRpcPeer::MaxRunning) {
            return fail(index,
                {JsonRpcError::TooManyRequests,
                    QStringLiteral("Too many requests are waiting for their answers."), {}});
        }
        ++m_peer->m_running;
        m_slots[index].counted = true;
    }
    method(std::make_shared<JsonRpcCall>(this, index, request.params, m_peer));
}

void JsonRpcExchange::complete(int index, const QVariantHash &answer)
{
    Slot &slot = m_slots[index];
    if (slot.done)
        return;
    slot.done = true;
    slot.abandoned = nullptr;
    slot.answer = answer;
    if (slot.counted && m_peer)
        --m_peer->m_running;
    --m_open;
    answerWhenDone();
}

void JsonRpcExchange::finish(int index, const QVariant &result)
{
    complete(index, jsonRpcResult(m_message.requests.at(index).id, result));
}

void JsonRpcExchange::fail(int index, const JsonRpcError &error)
{
    complete(index, jsonRpcFailure(m_message.requests.at(index).id, error));
}

void JsonRpcExchange::whenAbandoned(int index, std::function<void()> function)
{
    Slot &slot = m_slots[index];
    if (!slot.done)
        slot.abandoned = std::move(function);
}

void JsonRpcExchange::cancel(const QVariant &id)
{
    for (int index = 0; index < m_slots.size(); ++index) {
        const JsonRpcRequest &request = m_message.requests.at(index);
        if (!request.isNotification && request.id == id)
            abandon(index, cancelledError());
    }
}

void JsonRpcExchange::abandon(int index, const JsonRpcError &error)
{
    const std::function<void()> abandoned = std::move(m_slots[index].abandoned);
    m_slots[index].abandoned = nullptr;
    fail(index, error);
    if (abandoned)
        abandoned();
}

/// The last answer hands everything out but leaves this object in place until the event loop runs.
void JsonRpcExchange::abandonAll(const JsonRpcError &error)
{
    for (int index = 0; index < m_slots.size(); ++index)
        abandon(index, error);
}

void JsonRpcExchange::answerWhenDone()
{
    if (m_open > 0)
        return;
    m_deadline.stop();
    deleteLater();

    QVariantList answers;
    for (int index = 0; index < m_slots.size(); ++index) {
        if (!m_message.requests.at(index).isNotification)
            answers.append(QVariant(m_slots.at(index).answer));
    }
    QByteArray bytes;
    if (!answers.isEmpty())
        bytes = VeskJson::write(m_message.isBatch ? QVariant(answers) : answers.first());
    const JsonRpcDispatcher::Answered answered = std::move(m_answered);
    answered(bytes);
}
