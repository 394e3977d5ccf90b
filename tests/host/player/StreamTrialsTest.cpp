// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamTrials.h"

#include "host/player/ChosenStreams.h"
#include "tests/host/player/PlayLogicFixture.h"

#include <QElapsedTimer>

namespace {

/// Serves a list of rows that tests change, and counts its requests.
class ChoiceNode : public CMContainerNode {
public:
    explicit ChoiceNode(const CMPath &path)
        : CMContainerNode(path)
    {
    }

    bool getRowsRequest(const CMGetRowsRequest &request) override
    {
        ++asked;
        QVariantList list;
        for (const VeskRoles &row : rows) {
            QVariantList values;
            for (const QString &role : request.roles())
                values.append(row.value(role));
            list.append(QVariant(values));
        }
        VeskRowsRoles answer;
        answer.setRowsCount(rows.size());
        answer.setRows(list);
        request.reply().setValue(answer);
        return true;
    }

    QList<VeskRoles> rows;
    int asked = 0;
};

/// Row 0 of "Test:stations" is a station with the streams a (64 kbit/s), b (128), c (192) and d
/// (128), which "Test:choice" lists; its service chooses 128 kbit/s. Row 1 is an episode with the
/// same streams.
class StreamTrialsTest : public PlayLogicTest {
protected:
    StreamTrialsTest()
    {
        logic.setTimes({40, 250, 150, 20});
        auto *menu = new ChoiceNode(worker.addPrefix(text("menu")));
        menu->setNodes(worker.nodes());
        menu->rows = {entry("wizard", false), entry("choice", true)};
        wizard = new ChoiceNode(worker.addPrefix(text("wizard")));
        wizard->setNodes(worker.nodes());
        choice = new ChoiceNode(worker.addPrefix(text("choice")));
        choice->setNodes(worker.nodes());
        choice->rows
            = {stream("a", 64000), stream("b", 128000), stream("c", 192000), stream("d", 128000)};
        CMListRowsNode *list
            = CMListRowsNode::create(worker.nodes(), worker.addPrefix(text("stations")));
        list->rowsAppend(station(true));
        list->rowsAppend(station(false));
        CMListRowsNode *streams
            = CMListRowsNode::create(worker.nodes(), worker.addPrefix(text("streams")));
        for (const VeskRoles &row : std::as_const(choice->rows))
            streams->rowsAppend(row);
    }

    VeskRoles entry(const char *path, bool activity)
    {
        VeskRoles roles;
        roles.setType(VeskRolesType::Container());
        roles.setPath(worker.addPrefix(text(path)));
        if (activity)
            roles.insert(VeskRoles::Activity(), true);
        return roles;
    }
    VeskRoles withMatch(VeskRoles roles, bool live)
    {
        VeskRoles match;
        match.setPath(worker.addPrefix(text("row")));
        VeskList<VeskRoles> matching;
        matching.append(match);
        VeskMediaData media = roles.mediaData();
        VeskMetaData meta = media.metaData();
        meta.setMatchingMediaRoles(matching);
        meta.setAlternativeStreams(true);
        meta.setLive(live);
        media.setMetaData(meta);
        roles.setMediaData(media);
        return roles;
    }
    VeskRoles station(bool live) { return withMatch(row("Station", "http://call/", true), live); }
    VeskRoles stream(const char *name, int bitRate)
    {
        VeskRoles roles = withMatch(row("Station", "", false), true);
        VeskMediaData media = roles.mediaData();
        VeskResource resource;
        resource.setUri(text("http://stream/") + text(name));
        resource.setBitRate(bitRate);
        VeskList<VeskResource> resources;
        resources.append(resource);
        media.setResources(resources);
        roles.setMediaData(media);
        roles.setPath(worker.addPrefix(text("stream/") + text(name)));
        return roles;
    }

    /// Plays a row of "stations" and waits until the player is called.
    void begin(int row = 0)
    {
        play(row, "stations");
        ASSERT_TRUE(waitForPlayer(1));
    }
    void refuse(const char *why = "No.") { Q_EMIT player.gaveUp(TrString("Player", why)); }
    void trouble() { Q_EMIT player.problemChanged(TrString("Player", "Trying again in 1 s.")); }
    void sound(bool audible) { Q_EMIT player.audibleChanged(audible); }
    /// The last part of each address that the player got: "after a b".
    QString tried() const
    {
        QStringList names;
        for (const QString &call : player.calls) {
            if (call.startsWith(text("play ")))
                names.append(call.section(QLatin1Char('/'), -1).section(QLatin1Char(' '), 0, 0));
        }
        return names.join(QLatin1Char(' '));
    }
    bool triesInTheEnd(const char *names)
    {
        return spinUntil([&] { return tried() == text(names); });
    }
    /// Whether the player gets no more calls for so long: longer than each of the times set above.
    bool triesNoMore(int milliseconds = 400)
    {
        const int before = player.calls.size();
        return !spinUntil([&] { return player.calls.size() > before; }, milliseconds);
    }

    ChoiceNode *wizard;
    ChoiceNode *choice;
};

const char *const goingOn = "Trying another stream ...";

TEST_F(StreamTrialsTest, TriesTheOthersByBitRateAndTheServicesOwnChoiceLast)
{
    logic.setTimes({60000, 60000, 60000, 20});
    begin();
    EXPECT_EQ(shown("problem"), QString());
    for (const char *names : {"after c", "after c d", "after c d a", "after c d a b"}) {
        refuse();
        EXPECT_EQ(shown("problem"), text(goingOn));
        EXPECT_EQ(state(), Transitioning);
        EXPECT_TRUE(triesInTheEnd(names)) << tried().toStdString();
    }
    EXPECT_EQ(posts(), QString());
    sound(true);
    EXPECT_EQ(state(), Playing);
    EXPECT_EQ(shown("problem"), QString());
    EXPECT_EQ(shown("uri"), text("http://stream/b"));
    EXPECT_EQ(shown("bitrate"), text("128000"));
    EXPECT_EQ(posts(), text("2"));
    EXPECT_EQ(states->posts.first().trackRoles().mediaData().activeResource().uri(),
        text("http://stream/b"));
    EXPECT_EQ(choice->asked, 1);
    // A menu entry that asks the user questions is not opened.
    EXPECT_EQ(wizard->asked, 0);
}

TEST_F(StreamTrialsTest, WhenNoStreamIsHeardTheFailureOfTheFirstIsReportedOnce)
{
    logic.setTimes({60000, 60000, 60000, 20});
    begin();
    refuse("The first.");
    for (const char *names : {"after c", "after c d", "after c d a", "after c d a b"}) {
        ASSERT_TRUE(triesInTheEnd(names));
        refuse("Another.");
    }
    ASSERT_TRUE(spinUntil([this] { return state() == Stopped; }));
    EXPECT_EQ(shown("error"), text("The first."));
    EXPECT_EQ(shown("problem"), QString());
    EXPECT_EQ(posts(), text("0:The first."));
    EXPECT_EQ(states->posts.first().trackRoles().mediaData().activeResource().uri(),
        text("http://stream/after"));
    EXPECT_TRUE(triesNoMore());
}

TEST_F(StreamTrialsTest, AStreamWithTroubleMayTryAgainForAMoment)
{
    logic.setTimes({40, 60000, 60000, 20});
    begin();
    trouble();
    EXPECT_EQ(shown("problem"), text("Trying again in 1 s."));
    EXPECT_TRUE(triesInTheEnd("after c"));
    EXPECT_EQ(shown("problem"), text(goingOn));
    trouble();
    sound(true);
    EXPECT_TRUE(triesNoMore());
    EXPECT_EQ(posts(), text("2"));
}

TEST_F(StreamTrialsTest, ASilentStreamIsLeftByItself)
{
    logic.setTimes({60000, 3500, 60000, 20});
    begin();
    EXPECT_TRUE(triesInTheEnd("after c"));
    EXPECT_TRUE(triesInTheEnd("after c d"));
    sound(true);
    EXPECT_TRUE(triesNoMore(4000));
}

TEST_F(StreamTrialsTest, TheFirstStreamThatWasLeftIsTheLastResort)
{
    logic.setTimes({40, 60000, 60000, 20});
    begin();
    trouble();
    for (const char *names : {"after c", "after c d", "after c d a", "after c d a b"}) {
        ASSERT_TRUE(triesInTheEnd(names));
        refuse("Another.");
    }
    ASSERT_TRUE(triesInTheEnd("after c d a b after"));
    trouble();
    EXPECT_EQ(shown("problem"), text("Trying again in 1 s."));
    EXPECT_TRUE(triesNoMore());
    refuse("The first.");
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(posts(), text("0:The first."));
}

TEST_F(StreamTrialsTest, TheOnlyStreamIsLeftToThePlayer)
{
    choice->rows = {stream("b", 128000)};
    begin();
    trouble();
    EXPECT_TRUE(triesNoMore());
    EXPECT_EQ(tried(), text("after"));
    EXPECT_EQ(shown("problem"), text("Trying again in 1 s."));
    refuse();
    EXPECT_EQ(posts(), text("0:No."));
    EXPECT_EQ(tried(), text("after"));
}

TEST_F(StreamTrialsTest, WithoutAChoiceThereIsNothingElse)
{
    choice->rows.clear();
    begin();
    refuse();
    ASSERT_TRUE(spinUntil([this] { return state() == Stopped; }));
    EXPECT_EQ(posts(), text("0:No."));
}

TEST_F(StreamTrialsTest, RowsOfOtherItemsAreNoStreams)
{
    logic.setTimes({60000, 60000, 60000, 20});
    VeskRoles other = stream("x", 320000);
    VeskMediaData media = other.mediaData();
    VeskMetaData meta = media.metaData();
    meta.setMatchingMediaRoles({});
    media.setMetaData(meta);
    other.setMediaData(media);
    choice->rows.prepend(other);
    begin();
    refuse();
    EXPECT_TRUE(triesInTheEnd("after c"));
}

TEST_F(StreamTrialsTest, AStreamThatWasChosenByHandIsTheOnlyOneUntilItIsHeard)
{
    play(2, "streams");
    ASSERT_TRUE(triesInTheEnd("c"));
    trouble();
    EXPECT_TRUE(triesNoMore());
    refuse();
    EXPECT_EQ(state(), Stopped);
    EXPECT_EQ(posts(), text("0:No."));
    EXPECT_EQ(choice->asked, 0);
}

TEST_F(StreamTrialsTest, AStationThatIsLostIsLookedForInAllItsStreams)
{
    logic.setTimes({60000, 60000, 3500, 20});
    begin();
    sound(true);
    sound(false);
    EXPECT_TRUE(triesInTheEnd("after c"));
    EXPECT_EQ(shown("problem"), text(goingOn));
    refuse();
    EXPECT_TRUE(triesInTheEnd("after c d"));
    refuse();
    EXPECT_TRUE(triesInTheEnd("after c d a"));
    refuse();
    EXPECT_TRUE(triesInTheEnd("after c d a b"));
    refuse();
    // The next round follows after a pause.
    EXPECT_TRUE(triesInTheEnd("after c d a b after"));
    sound(true);
    EXPECT_TRUE(triesNoMore(4000));
    EXPECT_EQ(posts(), text("2 1 2"));
    EXPECT_EQ(choice->asked, 1);
}

TEST_F(StreamTrialsTest, AListThatWasAwayWithTheStationIsAskedForAgain)
{
    logic.setTimes({60000, 60000, 2000, 20});
    const QList<VeskRoles> streams = choice->rows;
    choice->rows.clear();
    begin();
    sound(true);
    sound(false);
    ASSERT_TRUE(spinUntil([this] { return choice->asked == 2; }));
    EXPECT_EQ(tried(), text("after"));
    choice->rows = streams;
    EXPECT_TRUE(triesInTheEnd("after c"));
    EXPECT_EQ(posts(), text("2 1"));
}

TEST_F(StreamTrialsTest, AShortBreakIsLeftToThePlayer)
{
    begin();
    sound(true);
    sound(false);
    trouble();
    sound(true);
    EXPECT_TRUE(triesNoMore());
    EXPECT_EQ(tried(), text("after"));
}

TEST_F(StreamTrialsTest, AnEpisodeIsNotChangedInTheMiddle)
{
    begin(1);
    sound(true);
    sound(false);
    EXPECT_TRUE(triesNoMore());
    refuse();
    EXPECT_EQ(posts(), text("2 1 0:No."));
    EXPECT_EQ(tried(), text("after"));
}

TEST_F(StreamTrialsTest, AStopEndsTheTrials)
{
    begin();
    refuse();
    logic.stop();
    EXPECT_TRUE(triesNoMore());
    EXPECT_EQ(shown("problem"), QString());
    EXPECT_EQ(posts(), QString());
    begin();
    trouble();
    logic.stop();
    EXPECT_TRUE(triesNoMore());
}

TEST_F(StreamTrialsTest, APauseWhileAStreamIsLookedForIsKept)
{
    logic.setTimes({60000, 60000, 2000, 20});
    begin();
    sound(true);
    sound(false);
    ASSERT_TRUE(triesInTheEnd("after c"));
    EXPECT_TRUE(logic.pause().isEmpty());
    EXPECT_TRUE(triesNoMore(3000));
    EXPECT_EQ(state(), Paused);
    EXPECT_TRUE(logic.resume().isEmpty());
    EXPECT_EQ(player.calls.last(), text("resume"));
    sound(true);
    EXPECT_EQ(posts(), text("2 1 2 3 2"));
}

TEST_F(StreamTrialsTest, AfterAPauseAStreamThatHadFailedIsBegunAnew)
{
    logic.setTimes({60000, 60000, 2000, 20});
    begin();
    sound(true);
    sound(false);
    ASSERT_TRUE(triesInTheEnd("after c"));
    choice->rows.clear();
    refuse();
    EXPECT_TRUE(logic.pause().isEmpty());
    player.calls.clear();
    EXPECT_TRUE(logic.resume().isEmpty());
    EXPECT_TRUE(spinUntil([this] { return !tried().isEmpty(); }));
}

TEST_F(StreamTrialsTest, WhatWasChosenByHandIsTriedFirstTheNextTime)
{
    logic.setTimes({60000, 60000, 60000, 20});
    ChosenStreams chosen {QString()};
    logic.setChosenStreams(&chosen);
    play(0, "streams");
    ASSERT_TRUE(triesInTheEnd("a"));
    // A stream is remembered once it is heard.
    EXPECT_TRUE(chosen.streamOf(worker.addPrefix(text("row"))).isEmpty());
    sound(true);
    EXPECT_EQ(chosen.streamOf(worker.addPrefix(text("row"))), worker.addPrefix(text("stream/a")));

    player.calls.clear();
    begin();
    EXPECT_TRUE(triesInTheEnd("a"));
    EXPECT_TRUE(prePlay->held.isEmpty());
    EXPECT_EQ(shown("problem"), QString());
    refuse();
    EXPECT_TRUE(triesInTheEnd("a c"));
    sound(true);
    // An automatic replacement does not change the choice.
    EXPECT_EQ(chosen.streamOf(worker.addPrefix(text("row"))), worker.addPrefix(text("stream/a")));
}

TEST_F(StreamTrialsTest, AChosenStreamThatIsListedNoMoreLeavesTheChoiceToTheService)
{
    logic.setTimes({60000, 60000, 60000, 20});
    ChosenStreams chosen {QString()};
    chosen.remember(worker.addPrefix(text("row")), worker.addPrefix(text("stream/z")));
    logic.setChosenStreams(&chosen);
    begin();
    EXPECT_TRUE(triesInTheEnd("after"));
    refuse();
    EXPECT_TRUE(triesInTheEnd("after c"));
    EXPECT_EQ(choice->asked, 1);
}

} // namespace
