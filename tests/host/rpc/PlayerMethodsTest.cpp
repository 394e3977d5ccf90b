// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/PlayerMethods.h"

#include "api/core/Language.h"
#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMRootWorker.h"
#include "api/web/VeskJson.h"
#include "host/player/MediaPlayer.h"
#include "host/player/PlayLogic.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

namespace {

class SilentPlayer : public MediaPlayer {
public:
    void play(const StreamSource &) override { }
    void pause() override { }
    void resume() override { }
    void stop() override { }
    void networkIsBack() override { }
};

/// A screen "Test:list" with one row of audio.
class PlayerMethodsTest : public testing::Test {
protected:
    PlayerMethodsTest()
        : worker({}, text("Test"))
        , logic(&player)
        , methods(&rpc, &logic)
    {
        VeskResource resource;
        resource.setUri(text("http://stream/"));
        VeskList<VeskResource> resources;
        resources.append(resource);
        VeskMediaData media;
        media.setResources(resources);
        VeskRoles row;
        row.setType(VeskRolesType::Audio());
        row.setTitle(Language::ntr(text("A \"song\"")));
        row.setMediaData(media);
        row.setPath(worker.addPrefix(text("song?id=1")));
        CMListRowsNode::create(worker.nodes(), worker.addPrefix(text("list")))->rowsAppend(row);
        QObject::connect(&methods, &PlayerMethods::changed,
            [this](const QVariant &state) { notified.append(state.toHash()); });
    }

    QVariantHash call(const QByteArray &method, const QByteArray &params = "{}")
    {
        QByteArray answer;
        rpc.handle("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"player." + method
                + "\",\"params\":" + params + "}",
            nullptr, nullptr, [&answer](const QByteArray &bytes) { answer = bytes; });
        EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
        VeskError error;
        return VeskJson::parse(answer, error).toHash();
    }
    static int code(const QVariantHash &answer)
    {
        return answer.value(text("error")).toHash().value(text("code")).toInt();
    }

    CMRootWorker root;
    CMNodesWorker worker;
    SilentPlayer player;
    JsonRpcDispatcher rpc;
    PlayLogic logic;
    PlayerMethods methods;
    QList<QVariantHash> notified;
};

TEST_F(PlayerMethodsTest, PlayAnswersWithThePlayId)
{
    const QVariantHash result
        = call("play", R"({"screen":"Test:list","row":0})").value(text("result")).toHash();
    const QVariantHash state = call("state").value(text("result")).toHash();
    EXPECT_FALSE(result.value(text("playId")).toHash().isEmpty());
    EXPECT_EQ(state.value(text("playId")), result.value(text("playId")));
    EXPECT_EQ(state.value(text("title")).toString(), text("A \"song\""));
    EXPECT_EQ(state.value(text("state")).toInt(), 1);
}

TEST_F(PlayerMethodsTest, PlayFindsAMovedRowByItsPath)
{
    const QVariantHash answer
        = call("play", R"({"screen":"Test:list","row":7,"path":"Test:song?id=1"})");
    EXPECT_FALSE(answer.value(text("result")).toHash().value(text("playId")).toHash().isEmpty());
}

TEST_F(PlayerMethodsTest, PlayingARowThatIsGoneIsAnErrorAndThePresentPlayGoesOn)
{
    call("play", R"({"screen":"Test:list","row":0})");
    Q_EMIT player.audibleChanged(true);
    const QVariantHash before = logic.state();
    const QVariantHash answer
        = call("play", R"({"screen":"Test:list","row":0,"path":"Test:song?id=2"})");
    EXPECT_EQ(code(answer), -32004);
    EXPECT_EQ(answer.value(text("error")).toHash().value(text("message")).toString(),
        text("This entry is no longer in the list."));
    EXPECT_EQ(logic.state(), before);
}

TEST_F(PlayerMethodsTest, StateHasAllItsMembersWhenNothingPlays)
{
    const QVariantHash state = call("state").value(text("result")).toHash();
    QStringList names = state.keys();
    names.sort();
    EXPECT_EQ(names.join(QLatin1Char(' ')),
        text("bitrate contextPath description error icon path playId problem state streamTitle "
             "title uri"));
    EXPECT_EQ(state.value(text("state")).toInt(), 0);
    EXPECT_TRUE(state.value(text("playId")).isNull());
}

TEST_F(PlayerMethodsTest, RefusesBadParameters)
{
    for (const char *params :
        {"{}", R"({"screen":"Test:list"})", R"({"row":0})", R"({"screen":"Test:list","row":-1})",
            R"({"screen":"Test:list","row":"0"})", R"({"screen":"Test:list","row":0,"path":""})",
            R"({"screen":"Test:list","row":0,"path":5})", R"({"screen":"no path","row":0})",
            R"({"screen":7,"row":0})"})
        EXPECT_EQ(code(call("play", params)), JsonRpcError::InvalidParams) << params;
}

TEST_F(PlayerMethodsTest, AnswersAnImpossibleActionWithAnError)
{
    EXPECT_EQ(code(call("pause")), JsonRpcError::RequestFailed);
    EXPECT_EQ(code(call("resume")), JsonRpcError::RequestFailed);
    EXPECT_EQ(call("stop").value(text("result")).toHash(), QVariantHash());
    EXPECT_EQ(code(call("play", R"({"screen":"Test:list","row":5})")), JsonRpcError::RequestFailed);
    EXPECT_EQ(code(call("play", R"({"screen":"Nobody:x","row":5})")), JsonRpcError::NoNode);
}

TEST_F(PlayerMethodsTest, NotifiesOfSeveralChangesOnceWithTheWholeState)
{
    call("play", R"({"screen":"Test:list","row":0})");
    ASSERT_TRUE(spinUntil([this] { return !notified.isEmpty(); }));
    notified.clear();
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.titleChanged(text("On the air"));
    ASSERT_TRUE(spinUntil([this] { return !notified.isEmpty(); }));
    EXPECT_EQ(notified.size(), 1);
    EXPECT_EQ(notified.first().value(text("state")).toInt(), 2);
    EXPECT_EQ(notified.first().value(text("streamTitle")).toString(), text("On the air"));
    EXPECT_EQ(notified.first(), logic.state());
}

TEST_F(PlayerMethodsTest, DoesNotNotifyWhenTheStateIsAsItWas)
{
    call("stop");
    call("stop");
    EXPECT_EQ(notified.size(), 0);
    call("play", R"({"screen":"Test:list","row":0})");
    ASSERT_TRUE(spinUntil([this] { return !notified.isEmpty(); }));
    notified.clear();
    call("stop");
    ASSERT_TRUE(spinUntil([this] { return !notified.isEmpty(); }));
    call("stop");
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(notified.size(), 1);
}

TEST_F(PlayerMethodsTest, NotifiesOfAnUndoneChangeThatAClientHasRead)
{
    call("play", R"({"screen":"Test:list","row":0})");
    Q_EMIT player.audibleChanged(true);
    ASSERT_TRUE(spinUntil([this] { return !notified.isEmpty(); }));
    QCoreApplication::sendPostedEvents();
    notified.clear();
    Q_EMIT player.titleChanged(text("On the air"));
    QByteArray answer;
    rpc.handle(R"({"jsonrpc":"2.0","id":1,"method":"player.state"})", nullptr, nullptr,
        [&answer](const QByteArray &bytes) { answer = bytes; });
    Q_EMIT player.titleChanged({});
    EXPECT_THAT(answer.toStdString(), testing::HasSubstr("On the air"));
    QCoreApplication::sendPostedEvents();
    ASSERT_EQ(notified.size(), 1);
    EXPECT_EQ(notified.first(), logic.state());
}

} // namespace
