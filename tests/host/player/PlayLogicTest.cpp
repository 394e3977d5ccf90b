#include "host/player/PlayLogic.h"

#include "api/core/Language.h"
#include "api/nodes/CMActivateNode.h"
#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMRootWorker.h"
#include "host/player/MediaPlayer.h"
#include "tests/support/WorkerThread.h"

#include <QSet>

#include <gmock/gmock.h>

namespace {

constexpr auto Stopped = VeskPlayLogicState::stopped;
constexpr auto Transitioning = VeskPlayLogicState::transitioning;
constexpr auto Playing = VeskPlayLogicState::playing;
constexpr auto Paused = VeskPlayLogicState::paused;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

/// Does as it is told by the test.
class FakePlayer : public MediaPlayer {
public:
    void play(const StreamSource &source) override
    {
        calls.append(QStringLiteral("play ") + source.url.toString()
            + (source.live ? QStringLiteral(" live") : QString()));
    }
    void pause() override { calls.append(QStringLiteral("pause")); }
    void resume() override { calls.append(QStringLiteral("resume")); }
    void stop() override { }
    void networkIsBack() override { }

    QStringList calls;
};

/// Answers the step before playing with the roles it got, led to another address; or with an error,
/// or not until it is told.
class PrePlayNode : public CMNode {
public:
    using CMNode::CMNode;

    bool setDataRequest(const CMSetDataRequest &request) override
    {
        EXPECT_EQ(request.role(), VeskRoles::PrePlay());
        held.append(request);
        if (!hold)
            answer();
        return true;
    }
    void answer()
    {
        const CMSetDataRequest request = held.takeFirst();
        if (!error.isEmpty())
            return request.reply().setError(error);
        VeskRoles roles(request.value().toHash());
        VeskMediaData media = roles.mediaData();
        VeskResource resource = media.activeResource();
        resource.setUri(text("http://stream/after"));
        VeskList<VeskResource> resources;
        resources.append(resource);
        media.setResources(resources);
        roles.setMediaData(media);
        roles.setPath(CMPath::fromEncoded(text("Test:after")));
        request.reply().setValue(roles.toHash());
    }

    bool hold = false;
    CMError error;
    QList<CMSetDataRequest> held;
};

/// Keeps what is posted to it.
class StateNode : public CMNode {
public:
    using CMNode::CMNode;

    bool setDataRequest(const CMSetDataRequest &request) override
    {
        EXPECT_EQ(request.role(), VeskRoles::Activate());
        posts.append(VeskPlayLogicData(request.value().toHash()));
        request.reply().setValue({});
        return true;
    }

    QList<VeskPlayLogicData> posts;
};

/// A screen "Test:list": 0 a station with a step before playing, 1 a file without one, 2 a folder,
/// 3 audio without an address.
class PlayLogicTest : public testing::Test {
protected:
    PlayLogicTest()
        : worker({}, text("Test"))
        , logic(&player)
    {
        prePlay = new PrePlayNode(worker.addPrefix(text("prePlay")));
        prePlay->setNodes(worker.nodes());
        states = new StateNode(worker.addPrefix(text("states")));
        states->setNodes(worker.nodes());
        CMListRowsNode *list
            = CMListRowsNode::create(worker.nodes(), worker.addPrefix(text("list")));
        list->rowsAppend(row("Station", "http://stream/before", true));
        list->rowsAppend(row("File", "http://stream/file", false));
        VeskRoles folder;
        folder.setType(VeskRolesType::Container());
        folder.setTitle(Language::ntr(text("Folder")));
        list->rowsAppend(folder);
        list->rowsAppend(row("Nothing", "", false));
        QObject::connect(&logic, &PlayLogic::changed, [this] { ++changes; });
    }

    VeskRoles row(const char *title, const char *uri, bool station)
    {
        VeskMetaData meta;
        meta.setLive(station);
        meta.setPlaybackStateChangePath(worker.addPrefix(text("states")));
        meta.setContentPlayContextPath(worker.addPrefix(text("menu?guideId=s1")));
        if (station)
            meta.setPrePlayPath(worker.addPrefix(text("prePlay")));
        VeskResource resource;
        resource.setUri(text(uri));
        resource.setBitRate(128000);
        VeskList<VeskResource> resources;
        resources.append(resource);
        VeskMediaData media;
        media.setMetaData(meta);
        media.setResources(resources);
        VeskRoles roles;
        roles.setTitle(Language::ntr(text(title)));
        roles.setDescription(Language::ntr(text("Words")));
        roles.setIcon(text("http://icon/"));
        roles.setType(VeskRolesType::Audio());
        roles.setPath(worker.addPrefix(text("row")));
        roles.setMediaData(media);
        return roles;
    }

    /// Plays a row and waits for the answer; its id, or the error's message.
    QString play(int index)
    {
        QString answer;
        logic.play(worker.addPrefix(text("list")), index,
            [&answer](const CMError &error, const VeskHash &id) {
                answer = error.isEmpty() ? id[text("id")].toString() : error.message().toString();
            });
        EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
        return answer;
    }
    bool waitForPlayer(int calls)
    {
        return spinUntil([&] { return player.calls.size() >= calls; });
    }
    void beginAnew()
    {
        logic.forgetPosts();
        logic.postAgain();
    }
    /// "2 0:error", in the order in which they were posted.
    QString posts()
    {
        EXPECT_TRUE(spinUntil([this] { return !logic.hasUnansweredPosts(); }));
        QStringList list;
        for (const VeskPlayLogicData &post : states->posts) {
            list.append(QString::number(post.state())
                + (post.error().isEmpty() ? QString() : QLatin1Char(':') + post.error()));
        }
        return list.join(QLatin1Char(' '));
    }
    int state() const { return logic.state().value(text("state")).toInt(); }
    QString shown(const char *name) const { return logic.state().value(text(name)).toString(); }

    CMRootWorker root;
    CMNodesWorker worker;
    FakePlayer player;
    PlayLogic logic;
    PrePlayNode *prePlay;
    StateNode *states;
    int changes = 0;
};

TEST_F(PlayLogicTest, runsTheStepBeforePlayingAndPlaysWhatItLeadsTo)
{
    EXPECT_FALSE(play(0).isEmpty());
    ASSERT_TRUE(waitForPlayer(1));
    EXPECT_EQ(player.calls, QStringList {text("play http://stream/after live")});
    EXPECT_EQ(state(), Transitioning);
    EXPECT_EQ(posts(), QString());
}

TEST_F(PlayLogicTest, playsARowWithoutSuchAStepAsItIs)
{
    play(1);
    ASSERT_TRUE(waitForPlayer(1));
    EXPECT_EQ(player.calls, QStringList {text("play http://stream/file")});
}

TEST_F(PlayLogicTest, showsWhatPlays)
{
    const QString id = play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.titleChanged(text("Ann - One"));
    EXPECT_EQ(state(), Playing);
    EXPECT_EQ(logic.state().value(text("playId")).toHash().value(text("id")).toString(), id);
    EXPECT_EQ(shown("title"), text("Station"));
    EXPECT_EQ(shown("description"), text("Words"));
    EXPECT_EQ(shown("icon"), text("http://icon/"));
    EXPECT_EQ(shown("uri"), text("http://stream/after"));
    EXPECT_EQ(shown("bitrate"), text("128000"));
    EXPECT_EQ(shown("streamTitle"), text("Ann - One"));
    EXPECT_EQ(shown("path"), text("Test:after"));
    EXPECT_EQ(shown("contextPath"), text("Test:menu?guideId=s1"));
    EXPECT_EQ(shown("error"), QString());
    EXPECT_EQ(logic.currentData().state(), Playing);
    Q_EMIT player.bitRateChanged(192000);
    EXPECT_EQ(shown("bitrate"), text("192000"));
}

TEST_F(PlayLogicTest, postsWhatIsHeardWithTheRolesThatTheStepLedTo)
{
    const QString id = play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    EXPECT_EQ(posts(), text("2"));
    const VeskPlayLogicData post = states->posts.first();
    EXPECT_EQ(post.playId()[text("id")].toString(), id);
    EXPECT_EQ(post.trackRoles().path().toEncoded(), text("Test:after"));
    EXPECT_EQ(post.trackRoles().mediaData().activeResource().uri(), text("http://stream/after"));
}

TEST_F(PlayLogicTest, aReconnectIsABreakBetweenTwoTimesOfPlaying)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    EXPECT_EQ(state(), Transitioning);
    Q_EMIT player.audibleChanged(true);
    EXPECT_EQ(posts(), text("2 1 2"));
}

TEST_F(PlayLogicTest, pausesAndResumesAndStops)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    EXPECT_TRUE(logic.pause().isEmpty());
    EXPECT_EQ(state(), Paused);
    Q_EMIT player.audibleChanged(false);
    EXPECT_EQ(state(), Paused);
    EXPECT_TRUE(logic.pause().isEmpty());
    EXPECT_TRUE(logic.resume().isEmpty());
    EXPECT_EQ(state(), Transitioning);
    Q_EMIT player.audibleChanged(true);
    EXPECT_TRUE(logic.stop().isEmpty());
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(posts(), text("2 3 2 0"));
    EXPECT_EQ(player.calls.mid(1), (QStringList {text("pause"), text("resume")}));
}

TEST_F(PlayLogicTest, aPauseAlwaysFollowsPlaying)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    EXPECT_TRUE(logic.pause().isEmpty());
    EXPECT_EQ(posts(), text("2 1 2 3"));
    // Paused again before anything is heard: nothing new to tell.
    EXPECT_TRUE(logic.resume().isEmpty());
    EXPECT_TRUE(logic.pause().isEmpty());
    EXPECT_EQ(posts(), text("2 1 2 3"));
    EXPECT_EQ(state(), Paused);
}

TEST_F(PlayLogicTest, whatWasNeverHeardCannotBePaused)
{
    EXPECT_EQ(logic.pause().message().toString(), text("Nothing is playing."));
    EXPECT_EQ(logic.resume().message().toString(), text("Nothing is paused."));
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    EXPECT_EQ(logic.pause().message().toString(), text("Nothing is playing."));
    EXPECT_TRUE(logic.stop().isEmpty());
    EXPECT_TRUE(logic.stop().isEmpty());
    EXPECT_EQ(posts(), QString());
}

TEST_F(PlayLogicTest, betweenTwoPlaysThereIsAStop)
{
    const QString first = play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    const QString second = play(1);
    ASSERT_TRUE(waitForPlayer(2));
    Q_EMIT player.audibleChanged(true);
    EXPECT_NE(first, second);
    EXPECT_EQ(posts(), text("2 0 2"));
    EXPECT_EQ(states->posts.at(1).playId()[text("id")].toString(), first);
    EXPECT_EQ(states->posts.at(2).playId()[text("id")].toString(), second);
}

TEST_F(PlayLogicTest, anErrorComesWithTheStopAndWithNothingBefore)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.gaveUp(TrString("Player", "No."));
    EXPECT_EQ(posts(), text("0:No."));
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(shown("error"), text("No."));
    EXPECT_EQ(shown("title"), text("Station"));
    // The next play begins without it.
    play(1);
    EXPECT_EQ(shown("error"), QString());
    EXPECT_EQ(posts(), text("0:No."));
}

TEST_F(PlayLogicTest, theEndOfAFileIsAStop)
{
    play(1);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.ended();
    EXPECT_EQ(posts(), text("2 0"));
    EXPECT_EQ(shown("title"), QString());
}

TEST_F(PlayLogicTest, aStepThatFailsIsAnError)
{
    prePlay->error = CMError(TrString("Test", "No available streams."));
    play(0);
    ASSERT_TRUE(spinUntil([this] { return state() == Stopped; }));
    EXPECT_EQ(shown("error"), text("No available streams."));
    EXPECT_EQ(posts(), text("0:No available streams."));
    EXPECT_TRUE(player.calls.isEmpty());
}

TEST_F(PlayLogicTest, rowsThatCannotBePlayedAreRefused)
{
    EXPECT_EQ(play(2), text("There is nothing to play in this row."));
    EXPECT_EQ(play(3), text("There is nothing to play in this row."));
    EXPECT_EQ(play(4), text("There is no such row."));
    QString answer;
    logic.play(CMPath::fromEncoded(text("Nobody:x")), 0,
        [&answer](const CMError &error, const VeskHash &) { answer = error.name(); });
    ASSERT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
    EXPECT_EQ(answer, CMError::NoNodeName());
    EXPECT_EQ(state(), Stopped);
}

TEST_F(PlayLogicTest, aRefusedRowLeavesAloneWhatPlays)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    play(2);
    EXPECT_EQ(state(), Playing);
    EXPECT_EQ(shown("title"), text("Station"));
}

TEST_F(PlayLogicTest, ofTwoPlaysAtOnceTheLaterWins)
{
    QStringList answers;
    const auto note = [&answers](const CMError &error, const VeskHash &) {
        answers.append(error.isEmpty() ? text("plays") : error.message().toString());
    };
    logic.play(worker.addPrefix(text("list")), 0, note);
    logic.play(worker.addPrefix(text("list")), 1, note);
    ASSERT_TRUE(spinUntil([&] { return answers.size() == 2; }));
    EXPECT_THAT(answers,
        testing::UnorderedElementsAre(
            text("Something else was played in the meantime."), text("plays")));
    ASSERT_TRUE(waitForPlayer(1));
    EXPECT_EQ(shown("title"), text("File"));
}

TEST_F(PlayLogicTest, aStopDuringTheStepBeforePlayingCounts)
{
    prePlay->hold = true;
    play(0);
    ASSERT_TRUE(spinUntil([this] { return !prePlay->held.isEmpty(); }));
    logic.stop();
    prePlay->answer();
    EXPECT_FALSE(spinUntil([this] { return !player.calls.isEmpty(); }, 100));
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(posts(), QString());
}

// Whoever begins anew knows nothing of what was posted before.

TEST_F(PlayLogicTest, whoBeginsAnewIsToldOfThePlaying)
{
    const QString id = play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    beginAnew();
    EXPECT_EQ(posts(), text("2 2"));
    const VeskPlayLogicData again = states->posts.last();
    EXPECT_EQ(again.playId()[text("id")].toString(), id);
    EXPECT_EQ(again.trackRoles().path().toEncoded(), text("Test:after"));
    logic.pause();
    logic.resume();
    Q_EMIT player.audibleChanged(true);
    logic.stop();
    EXPECT_EQ(posts(), text("2 2 3 2 0"));
}

TEST_F(PlayLogicTest, aPauseBeforeTheNewBeginningIsTheEndOfAPlaying)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.forgetPosts();
    logic.pause();
    EXPECT_EQ(posts(), text("2 2 3"));
    logic.postAgain();
    logic.stop();
    EXPECT_EQ(posts(), text("2 2 3 0"));
}

TEST_F(PlayLogicTest, whatWasPostedBeforeTheNewBeginningIsNotPostedAgain)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.forgetPosts();
    logic.pause();
    logic.resume();
    Q_EMIT player.audibleChanged(true);
    logic.postAgain();
    EXPECT_EQ(posts(), text("2 2 3 2"));
}

TEST_F(PlayLogicTest, aBreakAfterThePostsBeforeTheNewBeginningIsPosted)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.forgetPosts();
    Q_EMIT player.audibleChanged(false);
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    logic.postAgain();
    logic.stop();
    EXPECT_EQ(posts(), text("2 2 1 0"));
}

TEST_F(PlayLogicTest, aStopBeforeTheNewBeginningIsNoNews)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.forgetPosts();
    logic.stop();
    logic.postAgain();
    EXPECT_EQ(posts(), text("2"));
}

TEST_F(PlayLogicTest, whoBeginsAnewInABreakIsToldWhenItIsOver)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    beginAnew();
    EXPECT_EQ(posts(), text("2 1"));
    Q_EMIT player.audibleChanged(true);
    logic.stop();
    EXPECT_EQ(posts(), text("2 1 2 0"));
}

TEST_F(PlayLogicTest, whoBeginsAnewInABreakIsToldOfThePlayingBeforeAPause)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    beginAnew();
    EXPECT_TRUE(logic.pause().isEmpty());
    logic.stop();
    EXPECT_EQ(posts(), text("2 1 2 3 0"));
}

TEST_F(PlayLogicTest, whoBeginsAnewInABreakIsNotToldOfAStop)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    Q_EMIT player.audibleChanged(false);
    beginAnew();
    logic.stop();
    EXPECT_EQ(posts(), text("2 1"));
}

TEST_F(PlayLogicTest, whoBeginsAnewInAPauseIsToldWhenItIsOver)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.pause();
    beginAnew();
    EXPECT_EQ(posts(), text("2 3"));
    logic.resume();
    EXPECT_EQ(posts(), text("2 3"));
    Q_EMIT player.audibleChanged(true);
    logic.stop();
    EXPECT_EQ(posts(), text("2 3 2 0"));
}

TEST_F(PlayLogicTest, whoBeginsAnewInAPauseIsNotToldOfAStop)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.pause();
    beginAnew();
    logic.stop();
    EXPECT_EQ(posts(), text("2 3"));
}

TEST_F(PlayLogicTest, whoBeginsAnewIsToldOfAFailureAllTheSame)
{
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    beginAnew();
    EXPECT_EQ(posts(), QString());
    Q_EMIT player.gaveUp(TrString("Player", "No."));
    EXPECT_EQ(posts(), text("0:No."));
}

TEST_F(PlayLogicTest, whoBeginsAnewWhileNothingPlaysIsToldNothing)
{
    beginAnew();
    EXPECT_EQ(posts(), QString());
    play(0);
    ASSERT_TRUE(waitForPlayer(1));
    Q_EMIT player.audibleChanged(true);
    logic.stop();
    beginAnew();
    EXPECT_EQ(posts(), text("2 0"));
}

TEST_F(PlayLogicTest, everyPlayHasAnIdOfItsOwn)
{
    QSet<QString> ids;
    for (int i = 0; i < 20; ++i)
        ids.insert(play(1));
    EXPECT_EQ(ids.size(), 20);
}

} // namespace
