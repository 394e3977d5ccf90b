// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/process/PlayerMirror.h"

PlayerMirror::PlayerMirror(const VeskPlayLogicData &data)
    : m_data(data)
{
}

void PlayerMirror::take(const VeskPlayLogicData &data)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_data = data;
}

VeskPlayLogicData PlayerMirror::currentData() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_data;
}
