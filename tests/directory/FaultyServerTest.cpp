// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/Fetch.h"
#include "tests/directory/RunningServer.h"

#include "directory/Api.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace directory;
using namespace directory::test;

namespace {

class FaultyServer : public testing::TestWithParam<bool> {
protected:
    std::string url() const
    {
        const char *target = "/Browse.ashx?c=music&render=json";
        return GetParam() ? m_server.secureUrl(target) : m_server.url(target);
    }
    Fetched get(long milliseconds = 10000, long redirects = 0) const
    {
        FetchOptions options;
        options.timeoutMilliseconds = milliseconds;
        options.redirects = redirects;
        options.caFile = TEST_CERTIFICATE;
        return fetch(url(), options);
    }

    RunningServer m_server;
    std::string m_sound = get().body;
};

TEST_P(FaultyServer, TruncatesAfterTheGivenBytes)
{
    m_server.fail("truncated:100");
    const Fetched answer = get();
    EXPECT_EQ(answer.code, CURLE_PARTIAL_FILE);
    EXPECT_EQ(answer.body, m_sound.substr(0, 100));
}

TEST_P(FaultyServer, CutsTheBodyWithAMatchingLength)
{
    m_server.fail("cut:100");
    const Fetched answer = get();
    EXPECT_EQ(answer.code, CURLE_OK);
    EXPECT_EQ(answer.body, m_sound.substr(0, 100));
}

TEST_P(FaultyServer, ResetsTheConnection)
{
    m_server.fail("reset");
    EXPECT_EQ(get().code, CURLE_RECV_ERROR);
}

TEST_P(FaultyServer, StallsInTheMiddleOfTheBody)
{
    m_server.fail("stall");
    const Fetched answer = get(400);
    EXPECT_EQ(answer.code, CURLE_OPERATION_TIMEDOUT);
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, m_sound.substr(0, m_sound.size() / 2));
}

TEST_P(FaultyServer, DelaysTheHeaders)
{
    m_server.fail("slow-headers:1");
    const Fetched answer = get();
    EXPECT_EQ(answer.body, m_sound);
    EXPECT_GE(answer.seconds, 1.0);
}

TEST_P(FaultyServer, SendsNothingBeforeDelayedHeaders)
{
    m_server.fail("slow-headers:3600");
    const Fetched answer = get(300);
    EXPECT_EQ(answer.code, CURLE_OPERATION_TIMEDOUT);
    EXPECT_EQ(answer.status, 0);
}

TEST_P(FaultyServer, TricklesTheBody)
{
    m_server.fail("trickle:" + std::to_string(m_sound.size() * 2));
    const Fetched answer = get();
    EXPECT_EQ(answer.code, CURLE_OK);
    EXPECT_EQ(answer.body, m_sound);
    EXPECT_GE(answer.seconds, 0.4);
}

TEST_P(FaultyServer, PadsTheAnswerToTheGivenSize)
{
    m_server.fail("oversized:3000000");
    const Fetched answer = get();
    EXPECT_EQ(answer.body.size(), 3000000u);
    EXPECT_EQ(Json::parse(answer.body)["head"]["status"], "200");
}

TEST_P(FaultyServer, AnswersWithAnEmptyBody)
{
    m_server.fail("empty");
    const Fetched answer = get();
    EXPECT_EQ(answer.code, CURLE_OK);
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "");
}

TEST_P(FaultyServer, AnswersAnHttpStatusWithAPage)
{
    m_server.fail("http-status@Browse.ashx:403*1");
    EXPECT_EQ(get().status, 403);
    EXPECT_EQ(get().status, 200);
}

TEST_P(FaultyServer, RedirectsTheGivenNumberOfTimes)
{
    m_server.fail("redirect-chain:4");
    EXPECT_EQ(get(10000, 4).body, m_sound);
    EXPECT_EQ(get(10000, 3).code, CURLE_TOO_MANY_REDIRECTS);
}

TEST_P(FaultyServer, RedirectsEndlessly)
{
    m_server.fail("redirect-loop");
    EXPECT_EQ(get(10000, 30).code, CURLE_TOO_MANY_REDIRECTS);
}

TEST_P(FaultyServer, WorksAgainWhenTheFaultsAreCleared)
{
    m_server.fail("reset");
    FetchOptions options;
    options.method = "DELETE";
    EXPECT_EQ(fetch(m_server.url("/_faults"), options).body, "{\"faults\":[]}\n");
    EXPECT_EQ(get().body, m_sound);
}

INSTANTIATE_TEST_SUITE_P(Plain, FaultyServer, testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Tls, FaultyServer, testing::Values(true));

} // namespace
