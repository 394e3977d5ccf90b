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
    void seek(std::chrono::milliseconds position) override
    {
        seeks.append(static_cast<int>(position.count()));
        if (refusal.isEmpty())
            now.position = position;
        if (!hold)
            Q_EMIT sought(Language::ntr(refusal));
    }
    void rejoinLive() override
    {
        now.behind = {};
        Q_EMIT sought({});
    }
    PlayPlace place() const override { return now; }

    PlayPlace now;
    QList<int> seeks;
    QString refusal;
    bool hold = false; ///< sought() is up to the test
};

/// A screen "Test:list" with two rows of audio, a file and a station.
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
        VeskMetaData meta;
        meta.setLive(true);
        VeskMediaData live = media;
        live.setMetaData(meta);
        VeskRoles row;
        row.setType(VeskRolesType::Audio());
        row.setTitle(Language::ntr(text("A \"song\"")));
        row.setMediaData(media);
        row.setPath(worker.addPrefix(text("song?id=1")));
        CMListRowsNode *list
            = CMListRowsNode::create(worker.nodes(), worker.addPrefix(text("list")));
        list->rowsAppend(row);
        row.setMediaData(live);
        list->rowsAppend(row);
        QObject::connect(&methods, &PlayerMethods::changed,
            [this](const QVariant &state) { notified.append(state.toHash()); });
    }

    QVariantHash call(const QByteArray &method, const QByteArray &params = "{}")
    {
        QByteArray answer;
        rpc.handle("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"player." + method
                + "\",\"params\":" + params + "}",
            {}, [&answer](const QByteArray &bytes) { answer = bytes; });
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
        text("behind bitrate contextPath description duration error icon path playId position "
             "problem seekable state streamTitle title uri"));
    EXPECT_TRUE(state.value(text("position")).isNull());
    EXPECT_TRUE(state.value(text("duration")).isNull());
    EXPECT_FALSE(state.value(text("seekable")).toBool());
    EXPECT_EQ(state.value(text("behind")).toDouble(), 0);
    EXPECT_EQ(state.value(text("state")).toInt(), 0);
    EXPECT_TRUE(state.value(text("playId")).isNull());
}

TEST_F(PlayerMethodsTest, AFileCanBeSeeked)
{
    call("play", R"({"screen":"Test:list","row":0})");
    player.now.position = std::chrono::milliseconds(10000);
    player.now.duration = std::chrono::milliseconds(600000);
    player.now.isSeekable = true;
    Q_EMIT player.audibleChanged(true);
    const QVariantHash state = call("state").value(text("result")).toHash();
    EXPECT_EQ(state.value(text("position")).toDouble(), 10);
    EXPECT_EQ(state.value(text("duration")).toDouble(), 600);
    EXPECT_TRUE(state.value(text("seekable")).toBool());
    const QVariantHash result
        = call("seek", R"({"position":90.25})").value(text("result")).toHash();
    EXPECT_EQ(result.value(text("position")).toDouble(), 90.25);
    EXPECT_EQ(result.value(text("behind")).toDouble(), 0);
    call("seek", R"({"offset":-30})");
    call("seek", R"({"offset":-300})");
    EXPECT_EQ(player.seeks, (QList<int> {90250, 60250, 0}));
    player.refusal = text("No parts.");
    const QVariantHash refused = call("seek", R"({"position":5})");
    EXPECT_EQ(code(refused), JsonRpcError::RequestFailed);
    EXPECT_EQ(
        refused.value(text("error")).toHash().value(text("message")).toString(), text("No parts."));
    EXPECT_EQ(code(call("seek", R"({"live":true})")), JsonRpcError::RequestFailed);
}

TEST_F(PlayerMethodsTest, WhatCannotBeSeekedIsToldInWords)
{
    const auto words = [this](const QByteArray &params) {
        return call("seek", params)
            .value(text("error"))
            .toHash()
            .value(text("message"))
            .toString()
            .toStdString();
    };
    EXPECT_EQ(words(R"({"position":5})"), "Nothing is playing.");
    call("play", R"({"screen":"Test:list","row":0})");
    EXPECT_EQ(
        words(R"({"position":5})"), "It is not known yet how long this is. Please try again.");
    call("play", R"({"screen":"Test:list","row":1})");
    for (const char *params : {R"({"position":5})", R"({"offset":-30})"}) {
        EXPECT_EQ(words(params),
            "This is live: there is no other place to go to. It can be paused for a while.");
    }
    player.now.behind = std::chrono::milliseconds(4500);
    EXPECT_EQ(call("state").value(text("result")).toHash().value(text("behind")).toDouble(), 4.5);
    const QVariantHash result = call("seek", R"({"live":true})").value(text("result")).toHash();
    EXPECT_TRUE(result.value(text("position")).isNull());
    EXPECT_EQ(result.value(text("behind")).toDouble(), 0);
}

TEST_F(PlayerMethodsTest, TheNextSeekAndTheEndAnswerAnUnfinishedOne)
{
    call("play", R"({"screen":"Test:list","row":0})");
    player.now.isSeekable = true;
    player.hold = true;
    QStringList answers;
    const auto note
        = [&answers](const CMError &error) { answers.append(error.message().toString()); };
    logic.seek(std::chrono::seconds(1), note);
    logic.seek(std::chrono::seconds(2), note);
    EXPECT_EQ(answers, QStringList {text("Another place was asked for in the meantime.")});
    logic.stop();
    EXPECT_EQ(answers.value(1), text("Nothing is playing."));
    EXPECT_EQ(answers.size(), 2);
}

TEST_F(PlayerMethodsTest, ThePositionIsNewsOnlyAfterASeek)
{
    call("play", R"({"screen":"Test:list","row":0})");
    player.now.position = std::chrono::milliseconds(10000);
    player.now.isSeekable = true;
    Q_EMIT player.audibleChanged(true);
    EXPECT_TRUE(spinUntil([this] { return !notified.isEmpty(); }));
    QCoreApplication::processEvents();
    notified.clear();
    // The time that passes is none, whatever asks for a new look.
    player.now.position = std::chrono::milliseconds(11000);
    Q_EMIT player.placeChanged();
    QCoreApplication::processEvents();
    EXPECT_TRUE(notified.isEmpty());
    player.now.duration = std::chrono::milliseconds(600000);
    Q_EMIT player.placeChanged();
    EXPECT_TRUE(spinUntil([this] { return notified.size() == 1; }));
    call("seek", R"({"position":90})");
    EXPECT_TRUE(spinUntil([this] { return notified.size() == 2; }));
    EXPECT_EQ(notified.last().value(text("position")).toDouble(), 90);
    player.refusal = text("No.");
    call("seek", R"({"position":20})");
    QCoreApplication::processEvents();
    EXPECT_EQ(notified.size(), 2);
}

TEST_F(PlayerMethodsTest, RefusesBadPlaces)
{
    for (const char *params : {"{}", R"({"position":"5"})", R"({"position":true})",
             R"({"position":1e300})", R"({"offset":[]})", R"({"live":1})", R"({"live":false})",
             R"({"position":5,"offset":5})", R"({"position":5,"live":true})"})
        EXPECT_EQ(code(call("seek", params)), JsonRpcError::InvalidParams) << params;
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
    rpc.handle(R"({"jsonrpc":"2.0","id":1,"method":"player.state"})", {},
        [&answer](const QByteArray &bytes) { answer = bytes; });
    Q_EMIT player.titleChanged({});
    EXPECT_THAT(answer.toStdString(), testing::HasSubstr("On the air"));
    QCoreApplication::sendPostedEvents();
    ASSERT_EQ(notified.size(), 1);
    EXPECT_EQ(notified.first(), logic.state());
}

} // namespace
