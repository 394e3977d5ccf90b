// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/VolumeMethods.h"

#include "host/rpc/RpcParams.h"
#include "host/sound/PlayerVolume.h"

VolumeMethods::VolumeMethods(JsonRpcDispatcher *dispatcher, PlayerVolume *volume)
    : m_volume(volume)
{
    dispatcher->addMethod(
        QStringLiteral("player.volume"), [this](const JsonRpcCallPtr &call) { change(call); });
    dispatcher->addMethod(
        QStringLiteral("player.mute"), [this](const JsonRpcCallPtr &call) { mute(call); });
}

void VolumeMethods::change(const JsonRpcCallPtr &call) const
{
    RpcParams params(call->params());
    const std::optional<int> volume
        = params.number(QStringLiteral("volume"), 0, PlayerVolume::Loudest);
    const std::optional<int> change
        = params.number(QStringLiteral("change"), -PlayerVolume::Loudest, PlayerVolume::Loudest);
    const std::optional<bool> mute = params.truth(QStringLiteral("mute"));
    if (params.failed())
        return call->fail(params.error());
    m_volume->setVolume(volume.value_or(m_volume->volume()) + change.value_or(0));
    m_volume->setMuted(mute.value_or(m_volume->isMuted()));
    call->finish(present());
}

void VolumeMethods::mute(const JsonRpcCallPtr &call) const
{
    RpcParams params(call->params());
    const std::optional<bool> mute = params.truth(QStringLiteral("mute"));
    if (params.failed())
        return call->fail(params.error());
    m_volume->setMuted(mute.value_or(!m_volume->isMuted()));
    call->finish(present());
}

QVariantHash VolumeMethods::present() const
{
    return {{QStringLiteral("volume"), m_volume->volume()},
        {QStringLiteral("mute"), m_volume->isMuted()}};
}
