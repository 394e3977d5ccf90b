// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/stations/StationsFixture.h"

#include "api/values/VeskPlayLogicData.h"

using testing::Contains;
using testing::ElementsAre;

namespace {

class StationsScreensTest : public StationsFixture {
protected:
    StationsScreensTest() { start(); }

    /// The player's report about a row.
    void report(const VeskRoles &row, VeskPlayLogicState::Enum state, const char *error = "")
    {
        VeskPlayLogicData data;
        data.setState(state);
        data.setError(text(error));
        data.setTrackRoles(row);
        set(row.mediaData().metaData().playbackStateChangePath(), VeskRoles::Activate(),
            data.toHash());
    }
    CMPath addScreen(const char *address)
    {
        return asked(rows(text("Stations:")).row("Add a station by its address"), text(address));
    }
};

} // namespace

TEST_F(StationsScreensTest, BeginsWithTheListAndWhatChangesIt)
{
    const StationsShown empty = rows(text("Stations:"));
    EXPECT_EQ(empty.screen.title().toString(), text("Stations"));
    EXPECT_EQ(empty.titles(),
        QStringList(
            {text("Search"), text("Add a station by its address"), text("Change this list")}));
    add("A", "http://a");
    addFolder("F");
    EXPECT_EQ(rows(text("Stations:")).titles(),
        QStringList({text("Search"), text("Add a station by its address"), text("A"), text("F"),
            text("Change this list")}));
}

TEST_F(StationsScreensTest, OffersAStationToThePlayer)
{
    const VeskRoles row = add("A", "http://a/?x=1");
    EXPECT_EQ(row.type(), VeskRolesType::Audio());
    EXPECT_EQ(row.audioType(), VeskRolesAudioType::AudioBroadcast());
    EXPECT_EQ(row.mediaData().activeResource().uri(), text("http://a/?x=1"));
    const VeskMetaData metaData = row.mediaData().metaData();
    EXPECT_TRUE(metaData.live());
    EXPECT_EQ(metaData.serviceID(), text("stations"));
    EXPECT_EQ(metaData.matchingMediaRoles().first().path(), row.path());
    EXPECT_EQ(metaData.contentPlayContextPath(), row.context().path());
    EXPECT_TRUE(metaData.prePlayPath().isEmpty());
    EXPECT_EQ(data(row.path()).title().toString(), text("A"));
    EXPECT_EQ(data(row.path()).mediaData(), row.mediaData());
}

TEST_F(StationsScreensTest, ShowsAFolderWithHowManyStationsAreInIt)
{
    const QString outer = addFolder("Outer");
    const QString inner = addFolder("Inner", outer);
    add("A", "http://a", outer);
    add("B", "http://b", inner);
    const VeskRoles row = itemCalled("Outer");
    EXPECT_EQ(row.type(), VeskRolesType::Container());
    EXPECT_EQ(row.description().toString(), text("2 stations"));
    EXPECT_EQ(itemCalled("Inner", outer).description().toString(), text("1 station"));
    const StationsShown screen = rows(row.path());
    EXPECT_EQ(screen.screen.title().toString(), text("Outer"));
    EXPECT_EQ(screen.titles(), QStringList({text("Inner"), text("A"), text("Change this folder")}));
}

TEST_F(StationsScreensTest, AnswersOnlyTheRangeThatIsAskedFor)
{
    for (int i = 0; i < 5; ++i)
        add(QByteArray::number(i).constData(), ("http://" + QByteArray::number(i)).constData());
    const CMPath root(text("Stations"), QString());
    struct Case {
        int first;
        int last;
        QStringList titles;
    };
    for (const Case &each :
        {Case {3, 4, {text("1"), text("2")}}, Case {6, 99, {text("4"), text("Change this list")}},
            Case {8, 9, {}}, Case {INT_MAX - 1, INT_MAX, {}}}) {
        const StationsShown screen = rows(root, each.first, each.last);
        EXPECT_EQ(screen.titles(), each.titles) << each.first;
        EXPECT_EQ(screen.count, 8);
    }
    EXPECT_EQ(rows(root, 5, 4).error, text("The range of rows is not valid."));
    EXPECT_EQ(rows(root, -1, 4).error, text("The range of rows is not valid."));
}

TEST_F(StationsScreensTest, FindsStationsByAllWordsInAnyFolder)
{
    add("Jazz Radio", "http://a");
    add("Radio Blues", "http://b", addFolder("F"));
    CMPath described(text("Stations"), text("do/add"),
        {{text("title"), text("C")}, {text("address"), text("http://c")},
            {text("description"), text("Jazz and more")}});
    set(described, VeskRoles::Activate(), QVariant());
    const VeskRoles searches(
        data(CMPath(text("Stations"), QString())).value(VeskRoles::Search()).toHash());
    const StationsShown list = rows(searches.path());
    ASSERT_EQ(list.rows.size(), 1);
    const auto found = [&](const char *words) { return rows(asked(list.rows.at(0), text(words))); };
    EXPECT_EQ(found("jazz").titles(), QStringList({text("Jazz Radio"), text("C")}));
    EXPECT_EQ(found("RADIO").titles(), QStringList({text("Jazz Radio"), text("Radio Blues")}));
    EXPECT_EQ(found("blues  radio").titles(), QStringList(text("Radio Blues")));
    EXPECT_EQ(found("nothing").titles(), QStringList());
    EXPECT_EQ(found(" ").titles(), QStringList());
    EXPECT_EQ(found("jazz").screen.title().toString(), text("Stations with \"jazz\""));
}

TEST_F(StationsScreensTest, KeepsAnAddressWithoutListening)
{
    const CMPath path = addScreen("http://radio.example/jazz");
    const StationsShown screen = rows(path);
    EXPECT_EQ(screen.titles(),
        QStringList({text("radio.example/jazz"), text("Keep it without listening")}));
    EXPECT_EQ(
        screen.rows.at(0).mediaData().activeResource().uri(), text("http://radio.example/jazz"));
    EXPECT_EQ(activate(screen.rows.at(1)), QString());
    EXPECT_EQ(list(), QStringList(text("radio.example/jazz")));
    const StationsShown kept = rows(path);
    EXPECT_EQ(kept.titles(),
        QStringList({text("This address is in the list:"), text("radio.example/jazz"),
            text("Give it another name")}));
    EXPECT_EQ(activate(rows(asked(kept.rows.at(2), text("Jazz"))).rows.value(0)), QString());
    EXPECT_EQ(list(), QStringList(text("Jazz")));
}

TEST_F(StationsScreensTest, AsksWhetherToKeepAnAddressThatPlays)
{
    const CMPath path = addScreen("http://a/list.pls");
    const VeskRoles row = rows(path).rows.value(0);
    report(row, VeskPlayLogicState::transitioning);
    EXPECT_THAT(rows(path).titles(), Contains(text("Keep it without listening")));
    report(row, VeskPlayLogicState::playing);
    const QStringList asking {
        text("a/list.pls"), text("This address plays. Keep it?"), text("Keep it")};
    EXPECT_EQ(rows(path).titles(), asking);
    report(row, VeskPlayLogicState::stopped);
    EXPECT_EQ(rows(path).titles(), asking);
    EXPECT_EQ(activate(rows(path).row("Keep it")), QString());
    // A playlist's address is kept as it is.
    EXPECT_EQ(
        itemCalled("a/list.pls").mediaData().activeResource().uri(), text("http://a/list.pls"));
}

TEST_F(StationsScreensTest, SaysThatAnAddressDoesNotPlay)
{
    const CMPath path = addScreen("http://a");
    report(rows(path).rows.value(0), VeskPlayLogicState::stopped, "There is no such server.");
    const StationsShown screen = rows(path);
    EXPECT_EQ(screen.titles(),
        QStringList(
            {text("a"), text("This address does not play."), text("Keep it all the same")}));
    EXPECT_EQ(screen.rows.at(1).description().toString(), text("There is no such server."));
    EXPECT_THAT(rows(addScreen("http://b")).titles(), Contains(text("Keep it without listening")));
    EXPECT_EQ(activate(screen.rows.at(2)), QString());
    EXPECT_EQ(list(), QStringList(text("a")));
}

TEST_F(StationsScreensTest, NeedsAWebAddress)
{
    EXPECT_EQ(rows(addScreen("radio.example:8000/x")).titles().value(0), text("radio.example/x"));
    for (const char *address : {"file:///etc/passwd", "", "mms://a", "http://", "javascript://x"}) {
        EXPECT_EQ(rows(addScreen(address)).titles(),
            QStringList(text("This is no address that begins with http or https.")))
            << address;
    }
    EXPECT_EQ(activate(text("Stations:do/add?address=file%3A%2F%2F%2Fetc")),
        text("This is no address that begins with http or https."));
}

TEST_F(StationsScreensTest, KeepsWhatItIsAskedToInAFolder)
{
    const QString folder = addFolder("F");
    const VeskRoles query = menu(itemCalled("F")).row("Add a station by its address");
    EXPECT_EQ(
        activate(rows(asked(query, text("http://a"))).row("Keep it without listening")), QString());
    EXPECT_EQ(list(folder), QStringList(text("a")));
    EXPECT_EQ(list(), QStringList(text("F")));
}

TEST_F(StationsScreensTest, SaysThatAnEntryIsGone)
{
    const VeskRoles row = add("A", "http://a");
    EXPECT_EQ(activate(menu(row).row("Remove")), QString());
    const QString gone = text("This is not in the list any more.");
    EXPECT_EQ(menu(row).error, gone);
    const QString id = row.path().param(text("id"));
    for (const char *screen : {"folder", "rename", "move", "remove", "menu"})
        EXPECT_EQ(rows(text("Stations:") + text(screen) + text("?title=x&id=") + id).error, gone)
            << screen;
    for (const char *action : {"rename", "up", "down", "move", "remove"})
        EXPECT_EQ(activate(text("Stations:do/") + text(action) + text("?title=x&id=") + id), gone)
            << action;
    for (const char *action : {"add", "folder", "sort"})
        EXPECT_EQ(activate(text("Stations:do/") + text(action)
                      + text("?address=http%3A%2F%2Fb&title=x&folder=") + id),
            gone)
            << action;
    EXPECT_TRUE(data(row.path()).title().isEmpty());
    EXPECT_NE(activate(text("Stations:do/format")), QString());
}

TEST_F(StationsScreensTest, TellsSubscribersOfEveryScreenOfChanges)
{
    const QString folder = addFolder("F");
    QStringList told;
    std::vector<std::unique_ptr<CMSubscription>> subscriptions;
    QObject context;
    for (const QString &path : {text("Stations:"), text("Stations:folder?id=") + folder,
             text("Stations:results?text=a"), text("Stations:menu")}) {
        subscriptions.push_back(CMRoot()->subscribe(
            CMPath::fromEncoded(path), &context, [&told](const CMChange &change) {
                told.append(change.path.toEncoded() + text(" ") + change.kind);
            }));
    }
    add("A", "http://a", folder);
    EXPECT_TRUE(spinUntil([&told] { return told.size() == 4; })) << told.join(text(", "));
    told.clear();
    EXPECT_NE(activate(text("Stations:do/add?address=http%3A%2F%2Fa")), QString());
    add("B", "http://b");
    EXPECT_TRUE(spinUntil([&told] { return told.size() >= 4; }));
    EXPECT_EQ(told.size(), 4) << "what was refused is no change";
}
