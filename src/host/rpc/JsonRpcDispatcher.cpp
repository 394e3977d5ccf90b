// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/JsonRpcDispatcher.h"

#include "api/core/ThreadCheck.h"
#include "api/web/VeskJson.h"

#include <QTimer>

#include <algorithm>
#include <utility>

namespace {

JsonRpcError cancelledError()
{
    return {JsonRpcError::Cancelled, QStringLiteral("The request was cancelled."), {}};
}

} // namespace

/// One message under way: collects the answers of its calls, in their order, and sends them
/// together. The dispatcher holds it until then; the reply may destroy the dispatcher.
class JsonRpcExchange : public QObject, public std::enable_shared_from_this<JsonRpcExchange> {
public:
    JsonRpcExchange(JsonRpcDispatcher *dispatcher, const JsonRpcMessage &message,
        const MessageSender &sender, MessageHandler::Reply reply)
        : m_dispatcher(dispatcher)
        , m_message(message)
        , m_peer(sender.peer)
        , m_caller(sender.caller)
        , m_reply(std::move(reply))
        , m_slots(message.requests.size())
        , m_open(message.requests.size())
    {
        m_deadline.setSingleShot(true);
        connect(&m_deadline, &QTimer::timeout, this, [this] {
            abandonAll({JsonRpcError::TimedOut, QStringLiteral("The request timed out."), {}});
        });
    }

    void start(const QObject *client)
    {
        if (client)
            connect(client, &QObject::destroyed, this, [this] { abandonAll(cancelledError()); });
        for (int index = 0; index < m_message.requests.size(); ++index)
            begin(index);
        if (m_open > 0)
            m_deadline.start(m_dispatcher->m_deadlineMs);
    }

    bool isFrom(const MessagePeer *peer) const { return m_peer == peer; }

    void finish(int index, const QVariant &result)
    {
        complete(index, jsonRpcResult(m_message.requests.at(index).id, result));
    }

    void fail(int index, const JsonRpcError &error)
    {
        complete(index, jsonRpcFailure(m_message.requests.at(index).id, error));
    }

    void whenAbandoned(int index, std::function<void()> function)
    {
        Slot &slot = m_slots[index];
        if (!slot.done)
            slot.abandoned = std::move(function);
    }

    /// Abandons the call with that id, if it is under way.
    void cancel(const QVariant &id)
    {
        for (int index = 0; index < m_slots.size(); ++index) {
            const JsonRpcRequest &request = m_message.requests.at(index);
            if (!request.isNotification && request.id == id)
                abandon(index, cancelledError());
        }
    }

    /// Sends no reply any more.
    void silence() { m_reply = nullptr; }

private:
    struct Slot {
        QVariantHash answer;
        bool done = false;
        bool counted = false; ///< among the peer's running calls
        std::function<void()> abandoned;
    };

    void begin(int index);
    void complete(int index, const QVariantHash &answer);
    void abandon(int index, const JsonRpcError &error);
    void abandonAll(const JsonRpcError &error);
    void reply();

    const QPointer<JsonRpcDispatcher> m_dispatcher;
    const JsonRpcMessage m_message;
    MessagePeer *const m_peer; ///< there as long as a call is open
    const Caller m_caller;
    MessageHandler::Reply m_reply;
    QVector<Slot> m_slots;
    int m_open;
    QTimer m_deadline;
};

void JsonRpcExchange::begin(int index)
{
    const JsonRpcRequest &request = m_message.requests.at(index);
    if (m_slots.at(index).done) // the client has left during an earlier call
        return;
    if (request.isInvalid)
        return fail(index, request.error);
    const JsonRpcDispatcher::Method method = m_dispatcher->m_methods.value(request.method);
    if (!method.run) {
        return fail(index,
            {JsonRpcError::MethodNotFound, QStringLiteral("There is no method of this name."), {}});
    }
    if (m_peer) {
        int &running = m_dispatcher->m_running[m_peer];
        if (running >= JsonRpcDispatcher::MaxRunning) {
            return fail(index,
                {JsonRpcError::TooManyRequests,
                    QStringLiteral("Too many requests are waiting for their answers."), {}});
        }
        ++running;
        m_slots[index].counted = true;
    }
    const auto call = std::make_shared<JsonRpcCall>(
        weak_from_this(), index, request.params, MessageSender {m_peer, nullptr, m_caller});
    if (call->requireRole(method.role))
        method.run(call);
}

void JsonRpcExchange::complete(int index, const QVariantHash &answer)
{
    Slot &slot = m_slots[index];
    if (slot.done)
        return;
    slot.done = true;
    slot.abandoned = nullptr;
    slot.answer = answer;
    if (slot.counted && m_dispatcher && --m_dispatcher->m_running[m_peer] == 0)
        m_dispatcher->m_running.remove(m_peer);
    if (--m_open == 0)
        reply();
}

void JsonRpcExchange::abandon(int index, const JsonRpcError &error)
{
    const std::function<void()> abandoned = std::move(m_slots[index].abandoned);
    m_slots[index].abandoned = nullptr;
    fail(index, error);
    if (abandoned)
        abandoned();
}

void JsonRpcExchange::abandonAll(const JsonRpcError &error)
{
    const auto self = shared_from_this(); // the dispatcher drops it with the reply
    for (int index = 0; index < m_slots.size(); ++index)
        abandon(index, error);
}

void JsonRpcExchange::reply()
{
    m_deadline.stop();
    QVariantList answers;
    for (int index = 0; index < m_slots.size(); ++index) {
        if (!m_message.requests.at(index).isNotification)
            answers.append(QVariant(m_slots.at(index).answer));
    }
    QByteArray bytes;
    if (!answers.isEmpty())
        bytes = VeskJson::write(m_message.isBatch ? QVariant(answers) : answers.first());

    const auto self = shared_from_this();
    if (m_dispatcher) {
        auto &open = m_dispatcher->m_exchanges;
        open.erase(std::remove(open.begin(), open.end(), self), open.end());
    }
    if (const MessageHandler::Reply send = std::exchange(m_reply, nullptr))
        send(bytes);
}

JsonRpcCall::JsonRpcCall(std::weak_ptr<JsonRpcExchange> exchange, int index,
    const QVariantHash &params, const MessageSender &sender)
    : m_exchange(std::move(exchange))
    , m_index(index)
    , m_params(params)
    , m_peer(sender.peer)
    , m_caller(sender.caller)
{
}

JsonRpcCall::~JsonRpcCall()
{
    fail({JsonRpcError::InternalError, QStringLiteral("The request was not answered."), {}});
}

void JsonRpcCall::finish(const QVariant &result)
{
    if (const auto exchange = m_exchange.lock())
        exchange->finish(m_index, result);
}

void JsonRpcCall::fail(const JsonRpcError &error)
{
    if (const auto exchange = m_exchange.lock())
        exchange->fail(m_index, error);
}

bool JsonRpcCall::requireRole(AccessRole role)
{
    if (m_caller.role >= role)
        return true;
    fail({JsonRpcError::NotAllowed, QStringLiteral("Only an owner of this host may do that."),
        {{QStringLiteral("name"), QStringLiteral("notAllowed")}}});
    return false;
}

void JsonRpcCall::whenAbandoned(std::function<void()> function)
{
    if (const auto exchange = m_exchange.lock())
        exchange->whenAbandoned(m_index, std::move(function));
}

JsonRpcDispatcher::JsonRpcDispatcher(QObject *parent)
    : QObject(parent)
{
    addMethod(QStringLiteral("cancel"), [this](const JsonRpcCallPtr &call) { cancel(call); });
}

JsonRpcDispatcher::~JsonRpcDispatcher()
{
    // An exchange may hold references to calls of another one.
    const auto exchanges = std::exchange(m_exchanges, {});
    for (const auto &exchange : exchanges)
        exchange->silence();
}

void JsonRpcDispatcher::cancel(const JsonRpcCallPtr &call)
{
    const QVariant id = call->params().value(QStringLiteral("id"));
    if (id.isNull()) {
        return call->fail(
            {JsonRpcError::InvalidParams, QStringLiteral("The parameter \"id\" is missing."), {}});
    }
    if (const MessagePeer *peer = call->peer()) {
        const auto exchanges = m_exchanges; // those that end leave the list
        for (const auto &exchange : exchanges) {
            if (exchange->isFrom(peer))
                exchange->cancel(id);
        }
    }
    call->finish(QVariantHash());
}

void JsonRpcDispatcher::addMethod(const QString &name, const JsonRpcMethod &method, AccessRole role)
{
    VESK_ASSERT_OWN_THREAD();
    VESK_ASSERT(method);
    VESK_ASSERT(!m_methods.contains(name));
    m_methods.insert(name, {method, role});
}

void JsonRpcDispatcher::handle(const QByteArray &message, const MessageSender &sender, Reply reply)
{
    VESK_ASSERT_OWN_THREAD();
    const auto exchange
        = std::make_shared<JsonRpcExchange>(this, parseJsonRpc(message), sender, std::move(reply));
    m_exchanges.push_back(exchange);
    exchange->start(sender.client);
}
