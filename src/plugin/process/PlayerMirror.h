// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/player/PlayLogicInterface.h"

/// The host's player in a plug-in process: the state that PlayLogicInterface offers to plug-ins, as
/// of the host's last PlayerMessage. Any thread.
class PlayerMirror : public PlayLogicInterface {
public:
    explicit PlayerMirror(const VeskPlayLogicData &data);

    void setData(const VeskPlayLogicData &data);

    VeskPlayLogicData currentData() const override;

private:
    mutable VeskMutex m_mutex;
    VeskPlayLogicData m_data VESK_GUARDED_BY(m_mutex);
};
