// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/player/PlayLogicInterface.h"

#include <atomic>

namespace {

std::atomic<PlayLogicInterface *> instance {nullptr};

}

PlayLogicInterface::~PlayLogicInterface() = default;

PlayLogicInterface *PlayLogicInterface::playerInstance()
{
    return instance.load(std::memory_order_acquire);
}

void PlayLogicInterface::setPlayerInstance(PlayLogicInterface *player)
{
    instance.store(player, std::memory_order_release);
}
