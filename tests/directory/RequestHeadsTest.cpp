// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/RequestHeads.h"

#include <gtest/gtest.h>
#include <vector>

using namespace directory;

namespace {

using Lines = std::vector<std::string>;
using Lengths = std::vector<std::uint64_t>;

/// The request lines found in `bytes` that arrive in pieces of `step`; `bodies` are the lengths of
/// the requests' bodies.
Lines found(const std::string &bytes, std::size_t step, const Lengths &bodies)
{
    Lines lines;
    RequestHeads heads([&lines](std::string_view method, std::string_view target) {
        lines.push_back(std::string(method) + ' ' + std::string(target));
    });
    std::size_t told = 0;
    for (std::size_t at = 0; at < bytes.size(); at += step) {
        heads.feed(std::string_view(bytes).substr(at, step));
        for (; told < lines.size(); ++told)
            heads.skipBody(told < bodies.size() ? bodies[told] : 0);
    }
    return lines;
}

struct Case {
    const char *name;
    std::string bytes;
    Lines lines;
    Lengths bodies;
};

class RequestHeadsIn : public testing::TestWithParam<Case> { };

TEST_P(RequestHeadsIn, AreReportedHoweverTheBytesAreCut)
{
    const Case &given = GetParam();
    for (const std::size_t step : {std::size_t(1), std::size_t(2), std::size_t(7), std::size_t(99)})
        EXPECT_EQ(found(given.bytes, step, given.bodies), given.lines) << "in pieces of " << step;
}

INSTANTIATE_TEST_SUITE_P(RequestHeads, RequestHeadsIn,
    testing::Values(Case {"OddTarget", "GET /x%7e%zz?a=%c3%A4&b=a+b HTTP/1.1\r\nHost: a\r\n\r\n",
                        {"GET /x%7e%zz?a=%c3%A4&b=a+b"}, {}},
        Case {"BlankInTarget", "GET /a b HTTP/1.0\r\n\r\n", {"GET /a b"}, {}},
        Case {"NoRequest", "garbage\r\n\r\n", {"garbage "}, {}},
        Case {"NoVersion", "GET x\n\n", {"GET x"}, {}},
        Case {"IncompleteHead", "GET /1 HTTP/1.1\r\nHost: a\r\n", {}, {}},
        Case {"SeveralRequests",
            "GET /1 HTTP/1.1\r\n\r\n\r\nGET /2 HTTP/1.1\n\nGET /3 HTTP/1.1\r\n\r\n",
            {"GET /1", "GET /2", "GET /3"}, {}},
        Case {"BodyThatLooksLikeARequest",
            "POST /1 HTTP/1.1\r\n\r\nGET /no HTTP/1.1\r\n\r\nGET /2 HTTP/1.1\r\n\r\n",
            {"POST /1", "GET /2"}, {20}},
        Case {"BodyOfUnknownLength", "POST /1 HTTP/1.1\r\n\r\n0\r\n\r\nGET /2 HTTP/1.1\r\n\r\n",
            {"POST /1"}, {RequestHeads::UnknownLength}}),
    [](const auto &each) { return each.param.name; });

TEST(RequestHeads, GiveUpOnAHeadThatIsTooLong)
{
    int reports = 0;
    RequestHeads heads([&reports](std::string_view, std::string_view) { ++reports; });
    heads.feed("GET /");
    const std::string piece(1000, 'a');
    for (std::size_t sent = 5; sent <= RequestHeads::MaxHead; sent += piece.size()) {
        EXPECT_FALSE(heads.isTooLong());
        heads.feed(piece);
    }
    EXPECT_TRUE(heads.isTooLong());
    heads.feed(" HTTP/1.1\r\n\r\n");
    EXPECT_EQ(reports, 0);
}

TEST(RequestHeads, TellWhetherARequestHasBegun)
{
    RequestHeads heads([](std::string_view, std::string_view) {});
    EXPECT_TRUE(heads.isBetweenRequests());
    heads.feed("P");
    EXPECT_FALSE(heads.isBetweenRequests());
    heads.feed("OST / HTTP/1.1\r\n\r\n1");
    EXPECT_FALSE(heads.isBetweenRequests());
    heads.skipBody(2);
    EXPECT_FALSE(heads.isBetweenRequests());
    heads.feed("2");
    EXPECT_TRUE(heads.isBetweenRequests());
}

} // namespace
