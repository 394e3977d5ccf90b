// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskPlayLogicData.h"

namespace {

namespace keys {
VESK_KEY(state, "state")
VESK_KEY(playId, "playId")
VESK_KEY(error, "error")
VESK_KEY(trackRoles, "trackRoles")
} // namespace keys

} // namespace

QString VeskPlayLogicState::toString(Enum state)
{
    switch (state) {
    case stopped:
        return QStringLiteral("stopped");
    case transitioning:
        return QStringLiteral("transitioning");
    case playing:
        return QStringLiteral("playing");
    case paused:
        return QStringLiteral("paused");
    }
    return QString::number(int(state));
}

VeskPlayLogicState::Enum VeskPlayLogicData::state() const
{
    return static_cast<VeskPlayLogicState::Enum>(number(keys::state()));
}

VeskHash VeskPlayLogicData::playId() const
{
    return hash(keys::playId());
}

QString VeskPlayLogicData::error() const
{
    return text(keys::error());
}

VeskRoles VeskPlayLogicData::trackRoles() const
{
    return hash(keys::trackRoles());
}

void VeskPlayLogicData::setState(VeskPlayLogicState::Enum state)
{
    insert(keys::state(), int(state));
}

void VeskPlayLogicData::setPlayId(const VeskHash &playId)
{
    insert(keys::playId(), playId);
}

void VeskPlayLogicData::setError(const QString &error)
{
    insert(keys::error(), error);
}

void VeskPlayLogicData::setTrackRoles(const VeskRoles &roles)
{
    insert(keys::trackRoles(), roles);
}
