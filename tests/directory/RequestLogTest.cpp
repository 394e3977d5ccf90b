// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/RequestLog.h"

#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

using namespace directory;

namespace {

TEST(RequestLog, KeepsTargetsByteForByte)
{
    for (const char *target : {"/", "/Browse.ashx", "/x?", "/x?&&a", "/x?a=%7e%C3&b=+&c", "*",
             "/x?a=1&", "/x?passwordx=1&xpassword=2&pass=3"})
        EXPECT_EQ(withoutPasswords(target), target);
}

TEST(RequestLog, HidesPasswordsInEverySpelling)
{
    EXPECT_EQ(withoutPasswords("/Account.ashx?c=auth&password=s%26x&serial=S"),
        "/Account.ashx?c=auth&password=***&serial=S");
    EXPECT_EQ(withoutPasswords("/x?PassWord=a"), "/x?PassWord=***");
    EXPECT_EQ(withoutPasswords("/x?%70assword=a&password="), "/x?%70assword=***&password=***");
    EXPECT_EQ(withoutPasswords("/x?password=a=b"), "/x?password=***");
}

TEST(RequestLog, AppendsALinePerRequest)
{
    const std::string file = testing::TempDir() + "request-log-test.log";
    std::ofstream(file) << "before\n";
    RequestLog log(file);
    log.write("GET", "/Browse.ashx?c=music");
    std::stringstream text;
    text << std::ifstream(file).rdbuf();
    EXPECT_EQ(text.str(), "before\nGET /Browse.ashx?c=music\n");
    std::remove(file.c_str());
}

TEST(RequestLog, ThrowsWhenItCannotBeOpened)
{
    EXPECT_THROW(RequestLog("/nonexistent/folder/log"), std::runtime_error);
}

TEST(RequestLog, RefusesAFifoWithoutBlocking)
{
    const std::string file = testing::TempDir() + "request-log-test.fifo";
    std::remove(file.c_str());
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    auto opened = std::async(std::launch::async, [&file]() -> std::string {
        try {
            const RequestLog log(file);
        } catch (const std::runtime_error &error) {
            return error.what();
        }
        return "it was opened";
    });
    const bool isOver = opened.wait_for(std::chrono::seconds(5)) == std::future_status::ready;
    EXPECT_TRUE(isOver);
    if (!isOver) // unblocks it
        ::close(::open(file.c_str(), O_RDONLY | O_NONBLOCK));
    EXPECT_EQ(opened.get(), "the request log " + file + ": this is no regular file");
    std::remove(file.c_str());
}

} // namespace
