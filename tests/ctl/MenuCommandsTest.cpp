#include "tests/ctl/FakeHost.h"

#include "api/values/VeskMediaData.h"

#include <gmock/gmock.h>

namespace {

const QString PlayCall = QStringLiteral("player.play");

/// A screen whose rows have no menu, one of their own, and one where they play; and a player that
/// plays with that last one.
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

TEST(MenuCommandsTest, ARowsMenuIsItsContextOrThatOfItsPlaying)
{
    MenuHost host;
    EXPECT_EQ(run(host.url(), words("menu a: 1")).out, "   0 ! Run  a:run\n");
    EXPECT_THAT(run(host.url(), words("menu a: 2")).out, testing::HasSubstr("1 > Why  a:why\n"));
    EXPECT_EQ(run(host.url(), words("menu a: 0")).errors, "veskctl: row 0 has no menu\n");
    EXPECT_EQ(run(host.url(), words("menu a: 0")).status, 1);
    EXPECT_EQ(run(host.url(), words("menu a: 9")).errors, "veskctl: there is no row 9\n");
}

TEST(MenuCommandsTest, ThePlayersMenuNeedsSomethingThatPlays)
{
    MenuHost host;
    const Outcome menu = run(host.url(), words("menu"));
    EXPECT_EQ(menu.status, 0) << menu.errors;
    EXPECT_THAT(menu.out, testing::StartsWith("   0 ! Add\ufffd  a:add\n   1 > Why  a:why\n"));
    EXPECT_THAT(run(host.url(), words("menu --json")).out, testing::HasSubstr("\"rowsCount\":5"));
    host.stopPlaying();
    for (const char *command : {"menu", "menu --choose 0", "streams", "streams 1"}) {
        const Outcome outcome = run(host.url(), words(command));
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.errors, testing::StartsWith("veskctl: nothing plays"));
    }
}

TEST(MenuCommandsTest, AnEntryIsRunAfterItsTitleWasRead)
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

TEST(MenuCommandsTest, AnEntryThatFailsIsAFailure)
{
    MenuHost host;
    host.setResult(QStringLiteral("setData a:add"), R"("error":{"code":-32000,"message":"No."})");
    const Outcome outcome = run(host.url(), words("menu --choose 0"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "veskctl: No.\n");
}

TEST(MenuCommandsTest, AnEntryIsOpenedOrPlayedAsItsKindWants)
{
    MenuHost host;
    EXPECT_EQ(run(host.url(), words("menu --choose 1")).out, "   0 > Because  a:because\n");
    EXPECT_EQ(run(host.url(), words("menu a: 2 --choose 3")).out, "playing  It\n");
    EXPECT_EQ(host.paramsOf(PlayCall).value(QStringLiteral("screen")), QStringLiteral("a:menu"));
    EXPECT_EQ(host.paramsOf(PlayCall).value(QStringLiteral("row")), 3);
    EXPECT_EQ(run(host.url(), words("menu --choose 4")).status, 1);
    EXPECT_EQ(run(host.url(), words("menu --choose 5")).errors, "veskctl: there is no row 5\n");
}

TEST(MenuCommandsTest, StreamsAreTheFirstScreenOfThePlayersMenuThatPlays)
{
    MenuHost host;
    EXPECT_EQ(
        run(host.url(), words("streams")).out, "   0 \u266a Fast  a:s1\n   1 \u266a Slow  a:s2\n");
    EXPECT_EQ(run(host.url(), words("streams 1")).out, "playing  It\n");
    EXPECT_EQ(host.paramsOf(PlayCall).value(QStringLiteral("screen")), QStringLiteral("a:streams"));
    EXPECT_EQ(host.paramsOf(PlayCall).value(QStringLiteral("row")), 1);
}

TEST(MenuCommandsTest, StreamsTellsWhenThereIsNoChoice)
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
