// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/directory/Fetch.h"
#include "tests/directory/RunningServer.h"
#include "tests/directory/StreamClient.h"
#include "tests/support/Ear.h"

#include "directory/Api.h"

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

using namespace directory;
using namespace directory::test;
using namespace ear;
using End = StreamClient::End;
using testing::HasSubstr;

namespace {

constexpr char Mp3[] = "/stream/s29001/1.mp3";
constexpr char Aac[] = "/stream/s29001/2.aac";
/// Less than the burst, so it arrives at once.
constexpr std::size_t Some = 40000;

class StreamFaults : public testing::Test {
protected:
    std::string faults() const { return fetch(m_server.url("/_faults")).body; }
    std::vector<double> notes() const
    {
        return Json::parse(fetch(m_server.url("/_tunes?id=s29001")).body)["streams"][0]["notes"];
    }
    int port() const { return m_server.port(); }

    RunningServer m_server;
};

TEST_F(StreamFaults, EndARunningStream)
{
    for (const auto &[fault, end] : {std::pair<std::string, End> {"stream-close", End::Closed},
             std::pair<std::string, End> {"stream-reset", End::Reset}}) {
        StreamClient hit(port(), Mp3);
        StreamClient spared(port(), Aac);
        ASSERT_TRUE(hit.readBytes(Some));
        ASSERT_TRUE(spared.readBytes(Some));
        m_server.fail(fault + "@" + Mp3 + ":0*1");
        EXPECT_EQ(hit.readToEnd(), end) << fault;
        EXPECT_EQ(faults(), "{\"faults\":[]}\n");
        // The fault affects neither other streams nor the next one.
        StreamClient next(port(), Mp3);
        EXPECT_TRUE(next.readBytes(Some));
        EXPECT_TRUE(spared.readBytes(Some + 10000));
    }
}

TEST_F(StreamFaults, EndAStreamAfterADelay)
{
    m_server.fail(std::string("stream-close@") + Mp3 + ":1*1");
    const auto start = std::chrono::steady_clock::now();
    StreamClient client(port(), Mp3);
    EXPECT_EQ(client.readToEnd(), End::Closed);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_GE(taken.count(), 1.0);
    EXPECT_LT(taken.count(), 4.0);
    EXPECT_GT(client.body().size(), Some);
}

TEST_F(StreamFaults, EndAStreamAfterANumberOfBytes)
{
    for (const char *fault : {"truncated", "cut"}) {
        m_server.fail(std::string(fault) + "@/stream/:12345*1");
        StreamClient client(port(), Mp3);
        EXPECT_EQ(client.readToEnd(), End::Closed);
        EXPECT_EQ(client.body().size(), 12345u) << fault;
    }
}

TEST_F(StreamFaults, StallAStreamButKeepTheConnection)
{
    StreamClient client(port(), Mp3);
    ASSERT_TRUE(client.readBytes(Some));
    m_server.fail("stream-stall:0*1");
    client.readFor(300); // drains what was in flight
    const std::size_t size = client.body().size();
    client.readFor(1000);
    EXPECT_EQ(client.body().size(), size);
    EXPECT_EQ(client.end(), End::Open);
}

TEST_F(StreamFaults, StallAStreamFromItsStart)
{
    m_server.fail("stall@/stream/*1");
    StreamClient client(port(), Mp3);
    client.readFor(700);
    EXPECT_EQ(client.end(), End::Open);
    EXPECT_EQ(client.status(), 200);
    EXPECT_EQ(client.body(), "");
}

TEST_F(StreamFaults, TrickleAStream)
{
    m_server.fail("trickle@/stream/:4000");
    const auto start = std::chrono::steady_clock::now();
    StreamClient client(port(), Mp3);
    client.readFor(1500);
    ASSERT_TRUE(client.readBytes(3001));
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_LT(static_cast<double>(client.body().size()), 3000 + 4000 * taken.count());
}

TEST_F(StreamFaults, ReplaceAStreamWithGarbage)
{
    m_server.fail("stream-garbage@/stream/:0*1");
    StreamClient client(port(), Mp3);
    ASSERT_TRUE(client.readBytes(Some));
    EXPECT_FALSE(isPartOf(decoded(client.body()).notes(), notes(), 1));
}

TEST_F(StreamFaults, ReplaceSomeBytesOfAStreamWithGarbage)
{
    m_server.fail("stream-garbage@/stream/:0,8000*1");
    StreamClient client(port(), Mp3);
    ASSERT_TRUE(client.readBytes(60000));
    const std::string rest = client.body().substr(8000);
    EXPECT_TRUE(isPartOf(decoded(rest).notes(), notes(), 5));
    StreamClient sound(port(), Mp3);
    ASSERT_TRUE(sound.readBytes(60000));
    EXPECT_NE(sound.body().substr(0, 8000), client.body().substr(0, 8000));
    EXPECT_EQ(sound.body().substr(8000, 50000), client.body().substr(8000, 50000));
}

TEST_F(StreamFaults, RefuseAStreamForACount)
{
    m_server.fail("http-status@/stream/:503*2");
    for (const int status : {503, 503, 200}) {
        StreamClient client(port(), Mp3);
        client.readBytes(1);
        EXPECT_EQ(client.status(), status);
    }
    m_server.fail("retry-after@/stream/:7*1");
    StreamClient client(port(), Mp3);
    client.readToEnd();
    EXPECT_EQ(client.status(), 503);
    EXPECT_EQ(client.header("retry-after"), "7");
}

TEST_F(StreamFaults, RedirectAStream)
{
    for (const long hops : {5, 6}) {
        m_server.fail("redirect-chain@/stream/:" + std::to_string(hops) + "*1");
        FetchOptions options;
        options.timeoutMilliseconds = 1500;
        options.redirects = hops;
        const Fetched answer = fetch(m_server.url(Mp3), options);
        EXPECT_EQ(answer.code, CURLE_OPERATION_TIMEDOUT);
        EXPECT_EQ(answer.status, 200);
        EXPECT_TRUE(isPartOf(decoded(answer.body).notes(), notes(), 5));
        m_server.fail("redirect-chain@/stream/:" + std::to_string(hops) + "*1");
        options.redirects = hops - 1;
        EXPECT_EQ(fetch(m_server.url(Mp3), options).code, CURLE_TOO_MANY_REDIRECTS);
    }
}

TEST_F(StreamFaults, ActOnARedirectedStreamByItsOwnPath)
{
    m_server.fail("redirect-chain@/stream/:2*1");
    StreamClient client(port(), "/_hops/0" + std::string(Mp3));
    ASSERT_TRUE(client.readBytes(Some));
    m_server.fail(std::string("stream-close@") + Mp3 + ":0*1");
    EXPECT_EQ(client.readToEnd(), End::Closed);
}

TEST_F(StreamFaults, AnswerAStreamWithALoginPage)
{
    m_server.fail("login-page@/stream/*1");
    const Fetched answer = fetch(m_server.url(Mp3));
    EXPECT_EQ(answer.status, 200);
    EXPECT_THAT(answer.headers, HasSubstr("Content-Type: text/html"));
    EXPECT_THAT(answer.body, HasSubstr("<form"));
}

TEST_F(StreamFaults, TakeStreamsDownForATime)
{
    StreamClient running(port(), Mp3);
    ASSERT_TRUE(running.readBytes(Some));
    m_server.fail("down@/stream/:1");
    EXPECT_EQ(running.readToEnd(), End::Reset);
    StreamClient refused(port(), Mp3);
    EXPECT_EQ(refused.readToEnd(), End::Reset);
    EXPECT_EQ(refused.status(), 0);
    EXPECT_EQ(fetch(m_server.url("/Browse.ashx")).status, 200);
    EXPECT_EQ(faults(), "{\"faults\":[\"down@/stream/:1\"]}\n");
    int status = 0;
    for (int i = 0; i < 300 && status == 0; ++i) {
        StreamClient again(port(), Mp3);
        again.readBytes(1);
        status = again.status();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(status, 200);
    EXPECT_EQ(faults(), "{\"faults\":[]}\n");
}

TEST_F(StreamFaults, TakeTheWholeServerDownForATime)
{
    const auto start = std::chrono::steady_clock::now();
    m_server.fail("down:1");
    // The reset may arrive before or after the request is sent.
    const auto reset = testing::AnyOf(CURLE_COULDNT_CONNECT, CURLE_SEND_ERROR, CURLE_RECV_ERROR);
    EXPECT_THAT(fetch(m_server.url("/Browse.ashx")).code, reset);
    EXPECT_THAT(fetch(m_server.url("/_faults")).code, reset);
    int attempts = 0;
    while (fetch(m_server.url("/_faults")).code != CURLE_OK && attempts++ < 300)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_GE(taken.count(), 0.9);
    EXPECT_LT(attempts, 300);
}

} // namespace
