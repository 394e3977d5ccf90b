// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

Outcome complete(const QString &url, QStringList typed)
{
    return run(url, QStringList {QStringLiteral("complete"), QStringLiteral("--")} + typed);
}

class CompletionTest : public testing::Test {
protected:
    CompletionTest()
    {
        m_host.setScreen(QStringLiteral("host:services"), {serviceRow("good", "Good")});
        m_host.setScreen(QStringLiteral("Good:music"),
            {row(3, "Jazz \x1b]0;x\x07$(reboot)", "Good:1"), row(3, "Rock 'n' Roll", "Good:2")});
        m_host.setResult(QStringLiteral("outputs.list"),
            R"("result":{"outputs":[{"output":"pulse:a b","name":"Speaker\nx"},
                {"output":"pulse:\u001b[2J","name":"Hostile"}]})");
    }

    FakeHost m_host;
};

TEST_F(CompletionTest, OffersCommandsAndOptionsWithoutTheHost)
{
    EXPECT_EQ(complete(m_host.url(), {QStringLiteral("fav")}).out,
        "favorites\tShow the favorites\nfavorite\tChange the favorites\n");
    EXPECT_EQ(complete(m_host.url(), words("ls --li")).out, "--limit\tHow many rows to show\n");
    EXPECT_EQ(complete(m_host.url(), words("favorite re")).out,
        "remove\tMake a row no favorite any more\n");
    EXPECT_EQ(complete(m_host.url(), words("export --format x")).out, "xspf\t\n");
    EXPECT_EQ(complete(m_host.url(), words("import a")).out, ":files\n");
    EXPECT_EQ(m_host.asked(), QStringList());
}

TEST_F(CompletionTest, OffersRowsWithTheirTitles)
{
    EXPECT_EQ(
        complete(m_host.url(), {QStringLiteral("play"), QStringLiteral("Good:music"), {}}).out,
        "0\tJazz \ufffd]0;x\ufffd$(reboot)\n1\tRock 'n' Roll\n");
    EXPECT_EQ(complete(m_host.url(), words("play Good:music rock")).out, "1\tRock 'n' Roll\n");
    EXPECT_EQ(complete(m_host.url(), words("play Good:music 1")).out, "1\tRock 'n' Roll\n");
}

TEST_F(CompletionTest, OffersNothingWithControlCharacters)
{
    EXPECT_EQ(complete(m_host.url(), words("outputs --choose p")).out, "pulse:a b\tSpeaker x\n");
}

TEST_F(CompletionTest, OffersWhatIsKnownWithoutAHost)
{
    const QString nowhere = QStringLiteral("http://127.0.0.1:1/");
    const Outcome outcome = complete(nowhere, {QStringLiteral("ls"), {}});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, StartsWith("/\tThe first list\n"));
    EXPECT_EQ(
        complete(nowhere, {QStringLiteral("outputs"), QStringLiteral("--choose"), {}}).out, "");
}

TEST_F(CompletionTest, IsInNoHelp)
{
    EXPECT_THAT(run(m_host.url(), words("--help")).out, Not(HasSubstr("complete")));
}

} // namespace
