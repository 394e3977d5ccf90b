// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/process/PlayerMirror.h"

PlayerMirror::PlayerMirror(const VeskPlayLogicData &data)
    : m_data(data)
{
}

void PlayerMirror::setData(const VeskPlayLogicData &data)
{
    const VeskMutexLock lock(m_mutex);
    m_data = data;
}

VeskPlayLogicData PlayerMirror::currentData() const
{
    const VeskMutexLock lock(m_mutex);
    return m_data;
}
