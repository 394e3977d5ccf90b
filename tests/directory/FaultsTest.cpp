// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Faults.h"
#include "directory/FaultControl.h"

#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>

using namespace directory;

namespace {

Fault parsed(const std::string &text)
{
    const auto fault = Faults::parse(text);
    EXPECT_TRUE(fault) << text << ": " << fault.error();
    return fault ? *fault : Fault();
}

bool accepted(const std::string &text)
{
    const auto fault = Faults::parse(text);
    EXPECT_TRUE(fault || fault.error().find('\n') == std::string::npos) << fault.error();
    return bool(fault);
}

Answer soundAnswer()
{
    return success("Title", Json::array({{{"text", "row"}}}));
}

FaultyAnswer spoiled(const std::string &text)
{
    return spoil(parsed(text), "/Browse.ashx?c=music", soundAnswer);
}

TEST(Faults, ReadsNamePathArgumentAndCount)
{
    const Fault fault = parsed("http-status@Browse.ashx:403*3");
    EXPECT_EQ(fault.kind, FaultKind::HttpStatus);
    EXPECT_EQ(fault.path, "Browse.ashx");
    EXPECT_EQ(fault.number, 403);
    EXPECT_EQ(fault.remaining, 3);
    EXPECT_EQ(parsed("stall").remaining, -1);
    EXPECT_EQ(parsed("body:/tmp/a*b:c.json").argument, "/tmp/a*b:c.json");
}

TEST(Faults, RefusesInvalidFaults)
{
    for (const char *text : {"", "nonsense", "http-status", "http-status:", "http-status:99",
             "http-status:600", "http-status:4o3", "stall:5", "empty@:", "empty@", "empty*0",
             "trickle:0", "redirect-chain:101", "stream-close", "stream-garbage:x",
             "stream-garbage:1,0", "stream-garbage:1,x", "down:0", "retry-after:soon",
             "login-page:1", "oversized:999999999", "body", "head-fault"})
        EXPECT_FALSE(accepted(text)) << text;
}

TEST(Faults, LimitsAFaultToAPath)
{
    Faults faults;
    faults.add(parsed("stall@browse.ashx"));
    faults.add(parsed("empty@/stream/"));
    EXPECT_EQ(faults.take("/Browse.ashx")->kind, FaultKind::Stall);
    EXPECT_EQ(faults.take("/")->kind, FaultKind::Stall);
    EXPECT_EQ(faults.take("/stream/s1/1.mp3")->kind, FaultKind::Empty);
    EXPECT_FALSE(faults.take("/Tune.ashx").has_value());
}

TEST(Faults, AfterItsCountTheNextFaultActs)
{
    Faults faults;
    faults.add(parsed("empty*2"));
    faults.add(parsed("stall"));
    EXPECT_EQ(faults.take("/x")->kind, FaultKind::Empty);
    EXPECT_EQ(faults.texts(), (std::vector<std::string> {"empty*1", "stall"}));
    EXPECT_EQ(faults.take("/x")->kind, FaultKind::Empty);
    EXPECT_EQ(faults.take("/x")->kind, FaultKind::Stall);
    EXPECT_EQ(faults.take("/x")->kind, FaultKind::Stall);
}

TEST(Faults, HttpStatusAnswersWithAnHtmlPage)
{
    const FaultyAnswer answer = spoiled("http-status:403");
    EXPECT_EQ(answer.answer.status, 403);
    EXPECT_EQ(answer.answer.contentType, "text/html; charset=utf-8");
    EXPECT_FALSE(Json::accept(answer.answer.body));
    EXPECT_FALSE(answer.delivery.has_value());
}

TEST(Faults, AHeadFaultIsAWellFormedFailure)
{
    EXPECT_EQ(spoiled("head-fault:400,validation.email,Not, an address").answer.body,
        R"({"head":{"status":"400","fault":"Not, an address","fault_code":"validation.email"},)"
        R"("body":[]})");
    EXPECT_EQ(
        spoiled("head-fault:403").answer.body, R"({"head":{"status":"403","fault":""},"body":[]})");
}

TEST(Faults, CutAnswersAreShortButComplete)
{
    EXPECT_EQ(spoiled("cut:10").answer.body, soundAnswer().body.substr(0, 10));
    EXPECT_EQ(spoiled("cut:100000").answer.body, soundAnswer().body);
    EXPECT_EQ(spoiled("empty").answer.body, "");
}

TEST(Faults, TruncatedAnswersAnnounceTheLengthOfTheWholeBody)
{
    const FaultyAnswer answer = spoiled("truncated:7");
    EXPECT_EQ(answer.answer.body, soundAnswer().body);
    ASSERT_TRUE(answer.delivery.has_value());
    EXPECT_EQ(answer.delivery->bodyBytes, 7u);
    EXPECT_EQ(answer.delivery->end, Delivery::End::Close);
}

TEST(Faults, OversizedAnswersAreJsonOfTheGivenSize)
{
    const std::string body = spoiled("oversized:5000").answer.body;
    EXPECT_EQ(body.size(), 5000u);
    EXPECT_EQ(Json::parse(body)["body"][0]["text"], "row");
    EXPECT_TRUE(Json::accept(spoiled("oversized:1").answer.body));
}

TEST(Faults, MalformedAnswersAreNotJson)
{
    EXPECT_FALSE(Json::accept(spoiled("malformed").answer.body));
}

TEST(Faults, FaultsThatReplaceTheAnswerDoNotComputeIt)
{
    for (const char *text : {"http-status:500", "head-fault:400", "empty", "malformed", "reset",
             "redirect-chain:2", "redirect-loop"}) {
        bool asked = false;
        spoil(parsed(text), "/", [&asked] {
            asked = true;
            return Answer();
        });
        EXPECT_FALSE(asked) << text;
    }
}

TEST(Faults, ARedirectChainHasTheGivenNumberOfHops)
{
    const std::string target = "/Browse.ashx?c=music&x=%2F";
    Answer answer = spoil(parsed("redirect-chain:3"), target, soundAnswer).answer;
    std::string location;
    int redirections = 0;
    while (answer.status == 302 && redirections < 10) {
        ++redirections;
        ASSERT_EQ(answer.headers[0].first, "Location");
        location = answer.headers[0].second;
        const std::optional<Hop> hop = hopOf(location);
        ASSERT_TRUE(hop.has_value()) << location;
        EXPECT_EQ(hop->target, target);
        answer = hop->location.empty() ? Answer() : redirection(hop->location);
    }
    EXPECT_EQ(redirections, 3);
}

TEST(Faults, ARedirectLoopLeadsToItself)
{
    const std::string location
        = spoil(parsed("redirect-loop"), "/x", soundAnswer).answer.headers[0].second;
    EXPECT_EQ(hopOf(location)->location, location);
}

TEST(Faults, StreamFaultsAreTakenOnlyByStreams)
{
    Faults faults;
    faults.add(parsed("stream-garbage@/stream/:3,500*1"));
    faults.add(parsed("stream-reset:1"));
    EXPECT_FALSE(faults.take("/stream/s1/1.mp3").has_value());
    EXPECT_EQ(faults.takeDisturbance("/other")->kind, Disturbance::Kind::Reset);
    const std::optional<Disturbance> first = faults.takeDisturbance("/stream/s1/1.mp3");
    EXPECT_EQ(first->kind, Disturbance::Kind::Garbage);
    EXPECT_EQ(first->seconds, 3);
    EXPECT_EQ(first->bytes, 500u);
    EXPECT_EQ(faults.takeDisturbance("/stream/s1/1.mp3")->kind, Disturbance::Kind::Reset);
    EXPECT_FALSE(faults.takeDisturbance("/stream/s1/1.mp3", 1).has_value());
}

TEST(Faults, DownIsLimitedToItsPathAndHasNoCount)
{
    Faults faults;
    faults.add(parsed("down@/stream/:60"));
    EXPECT_TRUE(faults.isDown("/stream/s1/1.mp3"));
    EXPECT_FALSE(faults.isDown("/Browse.ashx"));
    EXPECT_FALSE(faults.isDown());
    EXPECT_FALSE(faults.take("/stream/s1/1.mp3").has_value());
    faults.add(parsed("down:60"));
    EXPECT_TRUE(faults.isDown());
    EXPECT_TRUE(faults.isDown("/Browse.ashx"));
}

TEST(Faults, ALoginPageIsHtmlWithStatus200)
{
    const FaultyAnswer answer = spoiled("login-page");
    EXPECT_EQ(answer.answer.status, 200);
    EXPECT_EQ(answer.answer.contentType, "text/html; charset=utf-8");
    EXPECT_EQ(spoiled("retry-after:30").answer.headers,
        (decltype(Answer::headers) {{"Retry-After", "30"}}));
}

TEST(Faults, OtherTargetsAreNotHops)
{
    for (const char *target : {"/", "/_hops", "/_hops/", "/_hops/3", "/_hops/x/y", "/_hops/-1/y"})
        EXPECT_FALSE(hopOf(target).has_value()) << target;
}

TEST(Faults, AnswersWithTheBytesOfAFile)
{
    const std::string file = testing::TempDir() + "hostile-answer.json";
    std::ofstream(file, std::ios::binary) << "{\"a\":\xFF}";
    EXPECT_EQ(spoiled("body:" + file).answer.body, "{\"a\":\xFF}");
    EXPECT_EQ(spoiled("body:" + file).answer.contentType, "application/json; charset=utf-8");
    std::remove(file.c_str());
    EXPECT_EQ(spoiled("body:" + file).answer.status, 500);
}

TEST(FaultControl, AddsListsAndClears)
{
    Faults faults;
    EXPECT_EQ(controlFaults(faults, "POST", "stall*2\r\n\nempty@Tune.ashx\n").status, 200);
    EXPECT_EQ(controlFaults(faults, "POST", R"(["reset"])").status, 200);
    EXPECT_EQ(controlFaults(faults, "GET", "").body,
        "{\"faults\":[\"stall*2\",\"empty@Tune.ashx\",\"reset\"]}\n");
    EXPECT_EQ(controlFaults(faults, "DELETE", "").body, "{\"faults\":[]}\n");
}

TEST(FaultControl, AddsAllFaultsOrNone)
{
    Faults faults;
    EXPECT_EQ(controlFaults(faults, "POST", "stall\nnonsense").status, 400);
    EXPECT_EQ(controlFaults(faults, "POST", "[\"stall\", 5]").status, 400);
    EXPECT_TRUE(faults.texts().empty());
    std::string many;
    for (std::size_t i = 0; i <= Faults::MaxFaults; ++i)
        many += "stall\n";
    EXPECT_EQ(controlFaults(faults, "POST", many).status, 400);
    EXPECT_EQ(controlFaults(faults, "PUT", "").status, 405);
}

} // namespace
