// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/PlayerMethods.h"

#include "api/core/ThreadCheck.h"
#include "api/core/vesk.h"
#include "host/player/PlayLogic.h"
#include "host/player/RowSearch.h"
#include "host/rpc/AddressGate.h"
#include "host/rpc/RpcMethods.h"
#include "host/rpc/RpcParams.h"

PlayerMethods::PlayerMethods(JsonRpcDispatcher *dispatcher, PlayLogic *logic, QObject *parent)
    : QObject(parent)
    , m_logic(logic)
    , m_sent(logic->state())
{
    const auto add = [&](const char *name, CMError (PlayLogic::*action)()) {
        dispatcher->addMethod(
            QString::fromLatin1(name), [logic, action](const JsonRpcCallPtr &call) {
                const CMError error = (logic->*action)();
                if (error.isEmpty())
                    call->finish(QVariantHash());
                else
                    call->fail(RpcMethods::toRpcError(error));
            });
    };
    add("player.pause", &PlayLogic::pause);
    add("player.resume", &PlayLogic::resume);
    add("player.stop", &PlayLogic::stop);
    dispatcher->addMethod(
        QStringLiteral("player.play"), [this](const JsonRpcCallPtr &call) { play(call); });
    dispatcher->addMethod(QStringLiteral("player.state"), [this](const JsonRpcCallPtr &call) {
        // This client learns of a change before the others do, so they all have to be notified when
        // it is undone.
        if (m_announced)
            m_sent.clear();
        call->finish(state());
    });
    veskConnect(logic, &PlayLogic::changed, this, &PlayerMethods::announce);
}

PlayerMethods::~PlayerMethods() = default;

void PlayerMethods::play(const JsonRpcCallPtr &call)
{
    RpcParams params(call->params());
    const CMPath screen = params.screen();
    const int row = params.row();
    const CMPath rowPath = params.rowPath();
    if (params.failed())
        return call->fail(params.error());
    if (m_gate && !m_gate->mayOpen(screen, call->peer()))
        return call->fail(AddressGate::refusal());
    m_logic->play({screen, row, rowPath}, [call](const CMError &error, const VeskHash &playId) {
        if (error.isEmpty())
            return call->finish(QVariantHash {{QStringLiteral("playId"), playId}});
        JsonRpcError failure = RpcMethods::toRpcError(error);
        if (error.name() == RowSearch::goneName())
            failure.code = JsonRpcError::RowGone;
        call->fail(failure);
    });
}

void PlayerMethods::announce()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_announced)
        return;
    m_announced = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_announced = false;
            const QVariant present = state();
            if (present == m_sent)
                return;
            m_sent = present;
            Q_EMIT changed(present);
        },
        Qt::QueuedConnection);
}

QVariant PlayerMethods::state() const
{
    const QVariantHash state = m_logic->state();
    if (m_iconSeen)
        m_iconSeen(state.value(QStringLiteral("icon")).toString());
    return state;
}
