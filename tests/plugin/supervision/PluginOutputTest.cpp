// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/PluginOutput.h"

#include "tests/support/LogCapture.h"

#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <unistd.h>

namespace {

/// Writes as a plug-in process does: blocks while the pipe is full.
void print(const PluginOutput &output, const std::string &text)
{
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t count
            = ::write(output.writingEnd(), text.data() + written, text.size() - written);
        ASSERT_GT(count, 0);
        written += static_cast<std::size_t>(count);
    }
}

std::string lineOf(std::size_t size)
{
    return std::string(size, 'x') + '\n';
}

} // namespace

TEST(PluginOutputTest, LogsEveryLineOfABurst)
{
    const LogCapture lines("LinesOfPlugins");
    PluginOutput output;
    constexpr int Count = 2000;
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < Count; ++i)
        print(output, lineOf(2000));
    // With a pause after each 16 KiB, these 4 MB would take 5 s.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
    EXPECT_EQ(output.finish(), QString(2000, QLatin1Char('x')));
    EXPECT_EQ(lines.lines().size(), Count);
}

TEST(PluginOutputTest, DropsAndCountsWhatIsTooMuch)
{
    const LogCapture lines("LinesOfPlugins");
    const LogCapture host("Host");
    PluginOutput output;
    constexpr std::size_t LineSize = 16'000;
    constexpr auto Count = static_cast<int>(2 * PluginOutput::MaxBurst / LineSize);
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < Count; ++i)
        print(output, lineOf(LineSize));
    print(output, "the end\n");
    EXPECT_EQ(output.finish(), QStringLiteral("the end")) << "also when it was dropped";
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    const int logged = lines.lines().size();
    const auto most = double(PluginOutput::MaxBurst) + took.count() * PluginOutput::MaxPerSecond;
    EXPECT_GE(logged, int(PluginOutput::MaxBurst / LineSize));
    EXPECT_LE(logged * double(LineSize), most);
    int dropped = 0;
    for (const QString &line : host.lines(QStringLiteral("WARN")))
        dropped += line.section(QLatin1Char(' '), 0, 0).toInt();
    EXPECT_EQ(logged + dropped, Count + 1);
}
