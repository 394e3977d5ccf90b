// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/RequestScanner.h"

#include <gtest/gtest.h>
#include <vector>

using namespace directory;

namespace {

using Lines = std::vector<std::string>;

Lines scanned(const std::string &bytes, std::size_t step)
{
    Lines lines;
    RequestScanner scanner([&lines](std::string_view method, std::string_view target) {
        lines.push_back(std::string(method) + ' ' + std::string(target));
    });
    for (std::size_t at = 0; at < bytes.size(); at += step)
        scanner.feed(std::string_view(bytes).substr(at, step));
    return lines;
}

/// However the bytes are cut, the lines are the same.
void expectLines(const std::string &bytes, const Lines &expected)
{
    for (const std::size_t step : {std::size_t(1), std::size_t(2), std::size_t(7), bytes.size()})
        EXPECT_EQ(scanned(bytes, step), expected) << "in pieces of " << step;
}

TEST(RequestScanner, TellsTargetsAsTheyCame)
{
    expectLines(
        "GET /x%7e%zz?a=%c3%A4&b=a+b HTTP/1.1\r\nHost: a\r\n\r\n", {"GET /x%7e%zz?a=%c3%A4&b=a+b"});
    expectLines("GET /a b HTTP/1.0\r\n\r\n", {"GET /a b"});
}

TEST(RequestScanner, FollowsRequestsOnOneConnection)
{
    expectLines("GET /1 HTTP/1.1\r\n\r\n\r\nGET /2 HTTP/1.1\n\nGET /3 HTTP/1.1\r\n\r\n",
        {"GET /1", "GET /2", "GET /3"});
}

TEST(RequestScanner, SkipsBodiesThatLookLikeRequests)
{
    expectLines("POST /1 HTTP/1.1\r\ncontent-length: 19\r\n\r\nGET /no HTTP/1.1\r\n\r\n"
                "GET /2 HTTP/1.1\r\n\r\n",
        {"POST /1", "GET /2"});
}

TEST(RequestScanner, SkipsChunkedBodies)
{
    expectLines(
        "POST /1 HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n"
        "5;x=y\r\nGET /\r\nA\r\n0123456789\r\n0\r\nTrailer: x\r\n\r\nGET /2 HTTP/1.1\r\n\r\n",
        {"POST /1", "GET /2"});
}

TEST(RequestScanner, ReportsNothingBeforeTheHeadIsComplete)
{
    expectLines("GET /1 HTTP/1.1\r\nHost: a\r\n", {});
}

TEST(RequestScanner, GivesUpOnAHeadWithoutEnd)
{
    int reports = 0;
    RequestScanner scanner([&reports](std::string_view, std::string_view) { ++reports; });
    scanner.feed("GET /");
    const std::string piece(1000, 'a');
    for (std::size_t sent = 0; sent <= RequestScanner::maxHead; sent += piece.size()) {
        EXPECT_FALSE(scanner.lost());
        scanner.feed(piece);
    }
    EXPECT_TRUE(scanner.lost());
    scanner.feed(" HTTP/1.1\r\n\r\n");
    EXPECT_EQ(reports, 0);
}

TEST(RequestScanner, ReportsLinesThatAreNoRequestsAsTheyAre)
{
    expectLines("garbage\r\n\r\n", {"garbage "});
}

} // namespace
