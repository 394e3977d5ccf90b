// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/RpcMethods.h"

#include "api/values/VeskRoles.h"
#include "api/values/VeskRowsRoles.h"
#include "api/values/variants.h"
#include "host/rpc/AddressGate.h"
#include "host/rpc/RpcParams.h"
#include "host/rpc/ServiceFaults.h"

#include <utility>

namespace {

QVariant changeParams(const CMChange &change)
{
    return QVariantHash {{QStringLiteral("path"), change.path.toEncoded()},
        {QStringLiteral("kind"), change.kind}, {QStringLiteral("first"), change.first},
        {QStringLiteral("last"), change.last}};
}

} // namespace

RpcMethods::RpcMethods(JsonRpcDispatcher *dispatcher, QObject *parent)
    : QObject(parent)
{
    const auto add = [&](const QString &name, void (RpcMethods::*method)(const JsonRpcCallPtr &)) {
        dispatcher->addMethod(
            name, [this, method](const JsonRpcCallPtr &call) { (this->*method)(call); });
    };
    add(QStringLiteral("getRows"), &RpcMethods::getRows);
    add(QStringLiteral("getData"), &RpcMethods::getData);
    add(QStringLiteral("setData"), &RpcMethods::setData);
    add(QStringLiteral("subscribe"), &RpcMethods::subscribe);
    add(QStringLiteral("unsubscribe"), &RpcMethods::unsubscribe);
}

RpcMethods::~RpcMethods() = default;

JsonRpcError RpcMethods::toRpcError(const CMError &error)
{
    const int code = error.name() == CMError::NoNodeName() ? JsonRpcError::NoNode
                                                           : JsonRpcError::RequestFailed;
    return {code, error.message().toString(),
        {{QStringLiteral("name"), error.name()}, {QStringLiteral("title"), error.title()}}};
}

JsonRpcError RpcMethods::explained(
    const CMError &error, const CMPath &path, const VeskServiceFault &fault) const
{
    JsonRpcError result = toRpcError(error);
    // What the service itself reports is in the plug-in's error.
    if (!m_faults || fault.isEmpty() || fault.kind == VeskServiceFault::Reported)
        return result;
    const QString words = m_faults->words(path, fault).toString();
    // The user can correct the setting, so these words come first.
    if (fault.isBareRefusal())
        result.data.insert(QStringLiteral("serviceMessage"), std::exchange(result.message, words));
    else
        result.data.insert(QStringLiteral("problem"), words);
    return result;
}

void RpcMethods::seeIcon(const QVariant &icon) const
{
    if (m_iconSeen && icon.userType() == QMetaType::QString)
        m_iconSeen(icon.toString());
}

QVariantHash RpcMethods::rowsResult(const VeskRowsRoles &answer, int iconRole) const
{
    const QVariantList rows = answer.rows();
    if (iconRole >= 0) {
        for (const QVariant &row : rows)
            seeIcon(veskListIn(row).value(iconRole));
    }
    seeIcon(answer.roles().value(VeskRoles::Icon()));
    return {{QStringLiteral("rowsCount"), answer.rowsCount()}, {QStringLiteral("rows"), rows},
        {QStringLiteral("roles"), answer.roles().toHash()}};
}

QVariant RpcMethods::dataResult(const QVariant &value, int iconRole) const
{
    const QVariantList values = veskListIn(value);
    seeIcon(values.value(iconRole));
    return QVariantHash {{QStringLiteral("values"), values}};
}

void RpcMethods::getRows(const JsonRpcCallPtr &call)
{
    RpcParams params(call->params());
    Range range;
    range.path = params.path();
    range.roles = params.roles();
    range.refresh = params.refresh();
    params.range(range.first, range.last);
    if (params.failed())
        return call->fail(params.error());
    if (refuses(call, range.path))
        return;
    const auto abandon = m_screens.rows(call->peer(), range,
        [this, call, path = range.path, roles = range.roles](
            const ScreenSnapshots::Answer &answer) {
            if (!answer.error.isEmpty())
                return call->fail(explained(answer.error, path, answer.fault));
            if (m_gate)
                m_gate->offerRows(roles, answer.rows.rows(), call->peer());
            QVariantHash result = rowsResult(answer.rows, roles.indexOf(VeskRoles::Icon()));
            if (m_faults && !answer.fault.isEmpty()) {
                result.insert(
                    QStringLiteral("problem"), m_faults->words(path, answer.fault).toString());
            }
            call->finish(result);
        });
    call->whenAbandoned(abandon);
}

void RpcMethods::getData(const JsonRpcCallPtr &call)
{
    RpcParams params(call->params());
    const CMPath path = params.path();
    const QStringList roles = params.roles();
    const bool poll = params.poll();
    if (params.failed())
        return call->fail(params.error());
    if (refuses(call, path))
        return;
    ask(
        call,
        [&](const CMReply<QVariant> &reply) {
            const CMRequest request = CMGetDataRequest(path, roles, reply);
            return poll ? request.asPoll() : request;
        },
        [this, roles, peer = QPointer<MessagePeer>(call->peer())](const QVariant &value) {
            if (m_gate)
                m_gate->offerData(roles, veskListIn(value), peer);
            return dataResult(value, roles.indexOf(VeskRoles::Icon()));
        });
}

void RpcMethods::setData(const JsonRpcCallPtr &call)
{
    RpcParams params(call->params());
    const CMPath path = params.path();
    const QString role = params.role();
    const QVariant value = params.value();
    if (params.failed())
        return call->fail(params.error());
    // To run a row is what listeners do, favorites among it; values are settings and accounts.
    if (role != VeskRoles::Activate() && !call->requireRole(AccessRole::Owner))
        return;
    ask(
        call,
        [&](const CMReply<QVariant> &reply) { return CMSetDataRequest(path, role, value, reply); },
        [this, prefix = path.prefix()](const QVariant &answer) {
            m_screens.forgetService(prefix);
            return QVariantHash {{QStringLiteral("value"), answer}};
        });
}

bool RpcMethods::refuses(const JsonRpcCallPtr &call, const CMPath &path) const
{
    if (!m_gate || m_gate->mayOpen(path, call->peer()))
        return false;
    call->fail(AddressGate::refusal());
    return true;
}

void RpcMethods::ask(
    const JsonRpcCallPtr &call, const MakeRequest &makeRequest, MakeResult makeResult)
{
    const auto data = std::make_shared<CMReplyData<QVariant>>();
    const CMRequest request = makeRequest(CMReply<QVariant>(data));
    data->whenFinished(
        this, [this, data, call, path = request.path(), makeResult = std::move(makeResult)] {
            const CMError error = data->error();
            if (error.isEmpty())
                call->finish(makeResult(data->value()));
            else
                call->fail(explained(error, path, CMUnexplainedFault(*data)));
        });
    // A change is carried out even if its client no longer waits.
    if (request.kind() != CMRequest::SetData)
        call->whenAbandoned([data] { data->setError(CMCancelledError()); });
    CMRoot()->request(request);
}

void RpcMethods::subscribe(const JsonRpcCallPtr &call)
{
    RpcParams params(call->params());
    const CMPath path = params.path();
    MessagePeer *peer = call->peer();
    if (!peer) {
        return call->fail({JsonRpcError::MethodNotFound,
            QStringLiteral("Subscriptions need a WebSocket connection."), {}});
    }
    if (params.failed())
        return call->fail(params.error());

    Subscriptions &subscriptions = subscriptionsOf(peer);
    if (subscriptions.find(path) == subscriptions.end()) {
        if (static_cast<int>(subscriptions.size()) >= MaxSubscriptions) {
            return call->fail({JsonRpcError::TooManyRequests,
                QStringLiteral("At most %1 paths can be subscribed to.").arg(MaxSubscriptions),
                {}});
        }
        subscriptions.emplace(path, CMRoot()->subscribe(path, peer, [peer](const CMChange &change) {
            peer->send(jsonRpcNotification(QStringLiteral("changed"), changeParams(change)));
        }));
        peer->setSubscribed(true);
    }
    call->finish(QVariantHash());
}

void RpcMethods::unsubscribe(const JsonRpcCallPtr &call)
{
    RpcParams params(call->params());
    const CMPath path = params.path();
    if (!call->peer()) {
        return call->fail({JsonRpcError::MethodNotFound,
            QStringLiteral("Subscriptions need a WebSocket connection."), {}});
    }
    if (params.failed())
        return call->fail(params.error());
    Subscriptions &subscriptions = subscriptionsOf(call->peer());
    subscriptions.erase(path);
    call->peer()->setSubscribed(!subscriptions.empty());
    call->finish(QVariantHash());
}

RpcMethods::Subscriptions &RpcMethods::subscriptionsOf(MessagePeer *peer)
{
    const auto it = m_subscriptions.find(peer);
    if (it != m_subscriptions.end())
        return it->second;
    connect(peer, &QObject::destroyed, this, [this, peer] { m_subscriptions.erase(peer); });
    return m_subscriptions[peer];
}
