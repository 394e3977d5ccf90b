// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/player/PlayLogicInterface.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

class Player : public PlayLogicInterface {
public:
    VeskPlayLogicData currentData() const override
    {
        VeskPlayLogicData data;
        data.setState(VeskPlayLogicState::playing);
        return data;
    }
};

} // namespace

TEST(PlayLogicInterface, HasNoPlayerUntilTheHostGivesOne)
{
    EXPECT_EQ(PlayLogicInterface::playerInstance(), nullptr);
    Player player;
    PlayLogicInterface::setPlayerInstance(&player);
    PlayLogicInterface *seen = nullptr;
    std::thread([&seen] { seen = PlayLogicInterface::playerInstance(); }).join();
    EXPECT_EQ(seen, &player);
    EXPECT_EQ(seen->currentData().state(), VeskPlayLogicState::playing);
    PlayLogicInterface::setPlayerInstance(nullptr);
    EXPECT_EQ(PlayLogicInterface::playerInstance(), nullptr);
}
