// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/AddressPace.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace {

class AddressPaceTest : public testing::Test {
protected:
    int taken(const QByteArray &address, bool isPaired, int tries)
    {
        int count = 0;
        for (int i = 0; i < tries; ++i)
            count += m_pace.take(address, isPaired, m_now) ? 1 : 0;
        return count;
    }

    AddressPace m_pace;
    AddressPace::Clock::time_point m_now = AddressPace::Clock::now();
};

TEST_F(AddressPaceTest, AStrangerHasABurstAndThenFiveInASecond)
{
    EXPECT_EQ(taken("10.0.0.1", false, 1000), 60);
    m_now += 1s;
    EXPECT_EQ(taken("10.0.0.1", false, 1000), 5);
    m_now += 1h;
    EXPECT_EQ(taken("10.0.0.1", false, 1000), 60) << "not more than the burst is saved up";
}

TEST_F(AddressPaceTest, ADeviceHasMoreThanAStrangerAtTheSameAddress)
{
    EXPECT_EQ(taken("10.0.0.1", false, 1000), 60);
    EXPECT_EQ(taken("10.0.0.1", true, 1000), 600);
    m_now += 1s;
    EXPECT_EQ(taken("10.0.0.1", true, 1000), 100);
}

TEST_F(AddressPaceTest, AddressesDoNotShare)
{
    EXPECT_EQ(taken("10.0.0.1", false, 1000), 60);
    EXPECT_EQ(taken("10.0.0.2", false, 1000), 60);
}

TEST_F(AddressPaceTest, EachWrongTokenTakesASecondLonger)
{
    EXPECT_EQ(m_pace.wrongToken("10.0.0.1", m_now), 1s);
    EXPECT_EQ(m_pace.wrongToken("10.0.0.1", m_now), 2s);
    EXPECT_EQ(m_pace.wrongToken("10.0.0.2", m_now), 1s);
    for (int i = 0; i < 1000; ++i)
        EXPECT_LE(m_pace.wrongToken("10.0.0.1", m_now), 10s);
    m_now += 61s;
    EXPECT_EQ(m_pace.wrongToken("10.0.0.1", m_now), 1s);
}

TEST_F(AddressPaceTest, ForgetsTheAddressSeenLongestAgo)
{
    m_pace.wrongToken("10.0.0.1", m_now);
    for (int i = 0; i < 3000; ++i) {
        m_now += 1ms;
        m_pace.take("fd00::" + QByteArray::number(i, 16), false, m_now);
    }
    EXPECT_EQ(m_pace.addresses(), AddressPace::MaxAddresses);
    EXPECT_EQ(m_pace.wrongToken("10.0.0.1", m_now), 1s);
}

} // namespace
