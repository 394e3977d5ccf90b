// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskHash.h"
#include "api/values/VeskRoles.h"

/// The states of the player. The codes appear in values, so they are fixed.
struct VeskPlayLogicState {
    enum Enum : int { stopped = 0, transitioning = 1, playing = 2, paused = 3 };
    /// "stopped", "transitioning", "playing", "paused"; any other code as its number.
    VESK_API static QString toString(Enum state);
};

/// A playback report of the player. Hash entries: "state" (a VeskPlayLogicState), "playId" (a hash
/// that identifies one play), "error" (empty unless playing failed), "trackRoles".
class VESK_API VeskPlayLogicData : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskPlayLogicData() = default;

    VeskPlayLogicState::Enum state() const;
    VeskHash playId() const;
    QString error() const;
    VeskRoles trackRoles() const;

    void setState(VeskPlayLogicState::Enum state);
    void setPlayId(const VeskHash &playId);
    void setError(const QString &error);
    void setTrackRoles(const VeskRoles &roles);
};
