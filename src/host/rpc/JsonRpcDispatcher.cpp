// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/JsonRpcDispatcher.h"

#include "api/core/vesk.h"
#include "host/rpc/JsonRpcExchange.h"

JsonRpcCall::JsonRpcCall(
    JsonRpcExchange *exchange, int index, const QVariantHash &params, JsonRpcPeer *peer)
    : m_exchange(exchange)
    , m_index(index)
    , m_params(params)
    , m_peer(peer)
{
}

JsonRpcCall::~JsonRpcCall()
{
    fail({JsonRpcError::InternalError, QStringLiteral("The request was not answered."), {}});
}

void JsonRpcCall::finish(const QVariant &result)
{
    if (m_exchange)
        m_exchange->finish(m_index, result);
}

void JsonRpcCall::fail(const JsonRpcError &error)
{
    if (m_exchange)
        m_exchange->fail(m_index, error);
}

void JsonRpcCall::whenAbandoned(std::function<void()> function)
{
    if (m_exchange)
        m_exchange->whenAbandoned(m_index, std::move(function));
}

JsonRpcDispatcher::JsonRpcDispatcher(QObject *parent)
    : QObject(parent)
{
    addMethod(QStringLiteral("cancel"), [this](const JsonRpcCallPtr &call) { cancel(call); });
}

JsonRpcDispatcher::~JsonRpcDispatcher() = default;

void JsonRpcDispatcher::cancel(const JsonRpcCallPtr &call)
{
    const QVariant id = call->params().value(QStringLiteral("id"));
    if (id.isNull()) {
        return call->fail(
            {JsonRpcError::InvalidParams, QStringLiteral("The parameter \"id\" is missing."), {}});
    }
    if (JsonRpcPeer *peer = call->peer()) {
        const auto exchanges
            = findChildren<JsonRpcExchange *>(QString(), Qt::FindDirectChildrenOnly);
        for (JsonRpcExchange *exchange : exchanges) {
            if (exchange->peer() == peer)
                exchange->cancel(id);
        }
    }
    call->finish(QVariantHash());
}

void JsonRpcDispatcher::addMethod(const QString &name, const JsonRpcMethod &method)
{
    VESK_ASSERT(method);
    VESK_ASSERT(!m_methods.contains(name));
    m_methods.insert(name, method);
}

void JsonRpcDispatcher::handle(
    const QByteArray &message, JsonRpcPeer *peer, Answered answered, const QObject *client)
{
    auto *exchange
        = new JsonRpcExchange(this, peer, std::move(answered), parseJsonRpc(message), client);
    exchange->start();
}
