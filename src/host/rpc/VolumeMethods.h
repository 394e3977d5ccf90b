// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/rpc/JsonRpcDispatcher.h"

class PlayerVolume;

/// The methods player.volume and player.mute. Main thread; what it is made with must outlive it.
class VolumeMethods {
public:
    VolumeMethods(JsonRpcDispatcher *dispatcher, PlayerVolume *volume);

private:
    void change(const JsonRpcCallPtr &call) const;
    void mute(const JsonRpcCallPtr &call) const;
    QVariantHash present() const;

    PlayerVolume *const m_volume;
};
