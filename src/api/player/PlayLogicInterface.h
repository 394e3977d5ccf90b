// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/values/VeskPlayLogicData.h"

/// The host's player as plug-ins see it. All calls may come from any thread and return at once.
class VESK_API PlayLogicInterface {
public:
    virtual ~PlayLogicInterface();

    /// The host's player, null while there is none. Any thread; owned by the host.
    static PlayLogicInterface *playerInstance();
    /// Set by the host before it loads plug-ins, and set back to null after it unloaded them.
    static void setPlayerInstance(PlayLogicInterface *player);

    /// What plays now.
    virtual VeskPlayLogicData currentData() const = 0;
};
