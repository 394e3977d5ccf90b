// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/PlayerFade.h"

#include "api/core/vesk.h"
#include "host/player/PlayLogic.h"

#include <utility>

PlayerFade::PlayerFade(const PlayLogic *logic, Fade fade, QObject *parent)
    : QObject(parent)
    , m_logic(logic)
    , m_fade(std::move(fade))
{
    veskConnect(logic, &PlayLogic::changed, this, &PlayerFade::look);
}

void PlayerFade::start(double from, double to, std::chrono::milliseconds time)
{
    m_isToEnd = false;
    m_fade(from, to, time);
}

void PlayerFade::end()
{
    start(1, 1, std::chrono::milliseconds(0));
}

void PlayerFade::look()
{
    if (!m_isToEnd)
        return;
    const auto state = m_logic->currentData().state();
    if (state == VeskPlayLogicState::playing || state == VeskPlayLogicState::transitioning)
        end();
}
