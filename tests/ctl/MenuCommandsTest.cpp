// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include "api/values/VeskMediaData.h"

#include <gmock/gmock.h>

namespace {

const QString PlayCall = QStringLiteral("player.play");

/// A screen with three rows: without a menu, with a context menu, and with a menu for playing
/// content; and a player that plays the third.
class MenuHost : public FakeHost {
public:
    MenuHost()
    {
        VeskRoles own = row(3, "Own", "a:1");
        VeskRoles context;
        context.setPath(CMPath::fromEncoded(QStringLiteral("a:own")));
        own.setContext(context);
        VeskRoles playing = row(3, "Playing", "a:2");
        VeskMetaData metaData;
        metaData.setContentPlayContextPath(CMPath::fromEncoded(QStringLiteral("a:menu")));
        VeskMediaData mediaData;
        mediaData.setMetaData(metaData);
        playing.setMediaData(mediaData);
        setScreen(QStringLiteral("a:"), {row(1, "None", "a:0"), own, playing});
        setScreen(QStringLiteral("a:own"), {row(6, "Run", "a:run")});
        setScreen(QStringLiteral("a:menu"),
            {row(6, "Add\x1b", "a:add"), row(1, "Why", "a:why"), row(1, "Streams", "a:streams"),
                row(3, "Sample", "a:sample"), row(2, "Nothing", "")});
        setScreen(QStringLiteral("a:why"), {row(1, "Because", "a:because")});
        setScreen(QStringLiteral("a:streams"), {row(3, "Fast", "a:s1"), row(3, "Slow", "a:s2")});
        setResult(QStringLiteral("player.state"),
            R"("result":{"state":2,"title":"It","contextPath":"a:menu"})");
        setResult(QStringLiteral("setData a:add"), R"("result":{"value":null})");
        setResult(PlayCall, R"("result":{"playId":{}})");
    }

    void stopPlaying()
    {
        setResult(QStringLiteral("player.state"), R"("result":{"state":0,"contextPath":""})");
    }
};

Outcome runOnTerminal(const MenuHost &host, const char *line)
{
    return run(host.url(), words(line), {{}, 80, {}, {}, {}});
}

TEST(MenuCommandsTest, MenuShowsTheRowsMenuOrTheOneThatItHasWhileItPlays)
{
    MenuHost host;
    EXPECT_EQ(runOnTerminal(host, "menu a: 1").out, "   0 ! Run\n");
    EXPECT_EQ(runOnTerminal(host, "menu a:#1 -l").out, "   0 ! Run\n       a:run\n");
    EXPECT_EQ(run(host.url(), words("menu a:#1")).out, "a:own#0\taction\tRun\t\t\n");
    EXPECT_THAT(runOnTerminal(host, "menu a: 2").out, testing::HasSubstr("1 > Why\n"));
    EXPECT_EQ(run(host.url(), words("menu a: 0")).errors, "veskctl: row 0 has no menu\n");
    EXPECT_EQ(run(host.url(), words("menu a: 0")).status, 1);
    EXPECT_EQ(run(host.url(), words("menu a: 9")).errors, "veskctl: there is no row 9\n");
}

TEST(MenuCommandsTest, MenuWithoutARowIsThatOfWhatPlays)
{
    MenuHost host;
    const Outcome menu = runOnTerminal(host, "menu");
    EXPECT_EQ(menu.status, 0) << menu.errors;
    EXPECT_THAT(menu.out, testing::StartsWith("   0 ! Add\ufffd\n   1 > Why\n"));
    EXPECT_THAT(run(host.url(), words("menu --json")).out, testing::HasSubstr("\"rowsCount\":5"));
    host.stopPlaying();
    for (const char *command : {"menu", "menu --choose 0", "streams", "streams --choose 1"}) {
        const Outcome outcome = run(host.url(), words(command));
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.errors, testing::StartsWith("veskctl: nothing plays"));
    }
}

TEST(MenuCommandsTest, ChooseReadsTheTitleBeforeItRunsTheEntry)
{
    MenuHost host;
    const Outcome outcome = run(host.url(), words("menu --choose 0"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "done: Add\ufffd\n");
    EXPECT_EQ(host.asked(),
        (QStringList {QStringLiteral("player.state"), QStringLiteral("getRows a:menu"),
            QStringLiteral("setData a:add")}));
    EXPECT_TRUE(host.paramsOf(QStringLiteral("getRows"))
                    .value(QStringLiteral("roles"))
                    .toStringList()
                    .contains(QStringLiteral("title")));
    EXPECT_EQ(host.lastParams().value(QStringLiteral("role")), QStringLiteral("activate"));
    EXPECT_TRUE(host.lastParams().contains(QStringLiteral("value")));
    EXPECT_EQ(run(host.url(), words("menu --choose 0 --json")).out, "{\"value\":null}\n");
}

TEST(MenuCommandsTest, ChooseFailsWithTheEntry)
{
    MenuHost host;
    host.setResult(QStringLiteral("setData a:add"), R"("error":{"code":-32000,"message":"No."})");
    const Outcome outcome = run(host.url(), words("menu --choose 0"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "veskctl: No.\n");
}

TEST(MenuCommandsTest, ChooseOpensFoldersAndPlaysAudio)
{
    MenuHost host;
    EXPECT_EQ(run(host.url(), words("menu --choose 1")).out, "a:why#0\tfolder\tBecause\t\t\n");
    EXPECT_EQ(run(host.url(), words("menu a: 2 --choose 3")).out, "playing  It\n");
    EXPECT_EQ(host.paramsOf(PlayCall).value(QStringLiteral("screen")), QStringLiteral("a:menu"));
    EXPECT_EQ(host.paramsOf(PlayCall).value(QStringLiteral("row")), 3);
    EXPECT_EQ(run(host.url(), words("menu --choose 4")).status, 1);
    EXPECT_EQ(run(host.url(), words("menu --choose 5")).errors, "veskctl: there is no row 5\n");
}

TEST(MenuCommandsTest, StreamsShowsTheFirstScreenWithAudioInThePlayersMenu)
{
    MenuHost host;
    EXPECT_EQ(runOnTerminal(host, "streams").out, "   0 \u266a Fast\n   1 \u266a Slow\n");
    EXPECT_EQ(run(host.url(), words("streams --choose 1")).out, "playing  It\n");
    EXPECT_EQ(host.paramsOf(PlayCall).value(QStringLiteral("path")), QStringLiteral("a:s2"));
    EXPECT_EQ(host.paramsOf(PlayCall).value(QStringLiteral("screen")), QStringLiteral("a:streams"));
    EXPECT_EQ(host.paramsOf(PlayCall).value(QStringLiteral("row")), 1);
}

TEST(MenuCommandsTest, StreamsShowsThoseOfARow)
{
    MenuHost host;
    host.stopPlaying();
    EXPECT_EQ(runOnTerminal(host, "streams a: 2").out, "   0 \u266a Fast\n   1 \u266a Slow\n");
    EXPECT_EQ(run(host.url(), words("streams a: 2 --choose 0")).status, 0);
    EXPECT_EQ(host.paramsOf(PlayCall).value(QStringLiteral("path")), QStringLiteral("a:s1"));
    EXPECT_EQ(run(host.url(), words("streams a: 1")).errors, "veskctl: row 1 has no menu\n");
    EXPECT_THAT(run(host.url(), words("streams a:b")).errors,
        testing::HasSubstr("\"a:b\" is a list, or a row that was not shown lately"));
}

TEST(MenuCommandsTest, StreamsMarksTheOneThatPlays)
{
    MenuHost host;
    VeskRoles fast = row(3, "Fast", "a:s1");
    VeskRoles slow = row(3, "Slow", "a:s2");
    const auto setBitRate = [](VeskRoles &roles, int bitRate) {
        VeskResource resource;
        resource.setBitRate(bitRate);
        VeskMediaData mediaData;
        VeskList<VeskResource> resources;
        resources.append(resource);
        mediaData.setResources(resources);
        roles.setMediaData(mediaData);
    };
    setBitRate(fast, 320000);
    setBitRate(slow, 64000);
    host.setScreen(QStringLiteral("a:streams"), {fast, slow});
    const auto play = [&](const char *path, int bitRate) {
        host.setResult(QStringLiteral("player.state"),
            R"("result":{"state":2,"contextPath":"a:menu","path":")" + QByteArray(path)
                + R"(","bitrate":)" + QByteArray::number(bitRate) + "}");
    };
    play("a:s2", 320000);
    EXPECT_EQ(runOnTerminal(host, "streams").out, "   0 \u266a Fast\n   1 \u25b6 Slow\n");
    play("a:other", 320000);
    EXPECT_EQ(runOnTerminal(host, "streams").out, "   0 \u25b6 Fast\n   1 \u266a Slow\n");
    EXPECT_EQ(runOnTerminal(host, "streams a: 2").out, "   0 \u266a Fast\n   1 \u266a Slow\n")
        << "another station's";
}

TEST(MenuCommandsTest, StreamsFailsWhenThereAreNone)
{
    MenuHost host;
    host.setScreen(QStringLiteral("a:streams"), {});
    const Outcome outcome = run(host.url(), words("streams"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: there are no streams to choose from\n");
    host.setResult(QStringLiteral("getRows a:why"), R"("error":{"code":-32000,"message":"No."})");
    EXPECT_EQ(run(host.url(), words("streams")).errors, "veskctl: No.\n");
}

} // namespace
