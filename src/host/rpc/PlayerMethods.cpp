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
#include "host/sound/Outputs.h"
#include "host/sound/PlayerVolume.h"

namespace {

QVariantHash withoutPosition(QVariantHash state)
{
    state.remove(QStringLiteral("position"));
    return state;
}

} // namespace

PlayerMethods::PlayerMethods(JsonRpcDispatcher *dispatcher, PlayLogic *logic, QObject *parent)
    : QObject(parent)
    , m_logic(logic)
    , m_sent(withoutPosition(logic->state()))
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
    dispatcher->addMethod(
        QStringLiteral("player.seek"), [this](const JsonRpcCallPtr &call) { seek(call); });
    veskConnect(logic, &PlayLogic::changed, this, &PlayerMethods::announce);
    connect(logic, &PlayLogic::moved, this, [this] {
        m_sent.clear();
        announce();
    });
}

PlayerMethods::~PlayerMethods() = default;

void PlayerMethods::setVolume(PlayerVolume *volume)
{
    VESK_ASSERT_OWN_THREAD();
    m_volume = volume;
    veskConnect(volume, &PlayerVolume::changed, this, &PlayerMethods::announce);
    m_sent = state();
}

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

void PlayerMethods::seek(const JsonRpcCallPtr &call)
{
    RpcParams params(call->params());
    const std::optional<std::chrono::milliseconds> position = params.seconds("position");
    const std::optional<std::chrono::milliseconds> offset = params.seconds("offset");
    const bool live = params.live();
    if (!params.failed() && int(position.has_value()) + int(offset.has_value()) + int(live) != 1)
        params.fail(QStringLiteral("One of \"position\", \"offset\" and \"live\" is needed."));
    if (params.failed())
        return call->fail(params.error());
    const auto sought = [this, call](const CMError &error) {
        if (!error.isEmpty())
            return call->fail(RpcMethods::toRpcError(error));
        const QVariantHash now = m_logic->state();
        call->finish(
            QVariantHash {{QStringLiteral("position"), now.value(QStringLiteral("position"))},
                {QStringLiteral("behind"), now.value(QStringLiteral("behind"))}});
    };
    if (live)
        m_logic->rejoinLive(sought);
    else if (position)
        m_logic->seek(*position, sought);
    else
        m_logic->seekBy(*offset, sought);
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
            const QVariantHash present = state();
            const QVariantHash lasting = withoutPosition(present);
            if (lasting == m_sent)
                return;
            m_sent = lasting;
            Q_EMIT changed(present);
        },
        Qt::QueuedConnection);
}

void PlayerMethods::setOutputs(Outputs *outputs)
{
    m_outputs = outputs;
    m_sent = withoutPosition(state());
    veskConnect(outputs, &Outputs::changed, this, &PlayerMethods::announce);
}

QVariantHash PlayerMethods::state() const
{
    QVariantHash state = m_logic->state();
    if (m_volume) {
        state.insert(QStringLiteral("volume"), m_volume->volume());
        state.insert(QStringLiteral("mute"), m_volume->isMuted());
    }
    if (m_iconSeen)
        m_iconSeen(state.value(QStringLiteral("icon")).toString());
    if (m_outputs) {
        state.insert(QStringLiteral("output"), m_outputs->current().text());
        state.insert(QStringLiteral("outputProblem"), m_outputs->problem().toString());
    }
    return state;
}
