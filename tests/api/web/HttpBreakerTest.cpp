// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/private/HttpBreaker.h"

#include <gtest/gtest.h>

namespace {

class HttpBreakerTest : public testing::Test {
protected:
    HttpBreaker::Clock::time_point now;
    HttpBreaker breaker {[this] { return now; }};
};

TEST_F(HttpBreakerTest, IsOpenForAWhileForAnAddressThatTimedOut)
{
    EXPECT_FALSE(breaker.isOpen("http://a/"));
    breaker.timedOut("http://a/");
    EXPECT_TRUE(breaker.isOpen("http://a/"));
    EXPECT_FALSE(breaker.isOpen("http://a/b"));
    now += HttpBreaker::OpenTime - std::chrono::milliseconds(1);
    EXPECT_TRUE(breaker.isOpen("http://a/"));
    now += std::chrono::milliseconds(1);
    EXPECT_FALSE(breaker.isOpen("http://a/"));
}

TEST_F(HttpBreakerTest, IsClosedByAnAnswer)
{
    breaker.timedOut("http://a/");
    breaker.answered("http://a/");
    EXPECT_FALSE(breaker.isOpen("http://a/"));
}

TEST_F(HttpBreakerTest, ForgetsTheOldestOfTooManyAddresses)
{
    for (int i = 0; i <= HttpBreaker::MaxAddresses; ++i) {
        breaker.timedOut("http://a/" + QByteArray::number(i));
        now += std::chrono::milliseconds(1);
    }
    EXPECT_FALSE(breaker.isOpen("http://a/0"));
    EXPECT_TRUE(breaker.isOpen("http://a/1"));
    EXPECT_TRUE(breaker.isOpen("http://a/" + QByteArray::number(HttpBreaker::MaxAddresses)));
}

} // namespace
