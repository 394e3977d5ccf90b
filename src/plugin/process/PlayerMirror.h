// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/player/PlayLogicInterface.h"

#include <mutex>

/// The host's player as the plug-in of a worker process sees it.
class PlayerMirror : public PlayLogicInterface {
public:
    explicit PlayerMirror(const VeskPlayLogicData &data);

    /// What plays now. Any thread.
    void take(const VeskPlayLogicData &data);

    VeskPlayLogicData currentData() const override;

private:
    mutable std::mutex m_mutex;
    /// Guarded by m_mutex.
    VeskPlayLogicData m_data;
};
