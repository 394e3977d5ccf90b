// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/stations/StationsFixture.h"

using testing::Contains;
using testing::Not;

namespace {

class StationsChangesTest : public StationsFixture {
protected:
    StationsChangesTest() { start(); }

    void addThree()
    {
        add("A", "http://a");
        add("B", "http://b");
        add("C", "http://c");
    }
    QString choose(const char *item, const char *entry)
    {
        return activate(menu(itemCalled(item)).row(entry));
    }
    QString ask(const VeskRoles &query, const char *answer)
    {
        return activate(rows(asked(query, text(answer))).rows.value(0));
    }
    VeskRoles listMenuRow(const char *entry) { return rows(text("Stations:menu")).row(entry); }
};

QStringList words(const char *all)
{
    return text(all).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

TEST_F(StationsChangesTest, MovesUpAndDown)
{
    addThree();
    EXPECT_THAT(menu(itemCalled("A")).titles(), Not(Contains(text("Move up"))));
    EXPECT_THAT(menu(itemCalled("C")).titles(), Not(Contains(text("Move down"))));
    EXPECT_EQ(choose("C", "Move up"), QString());
    EXPECT_EQ(list(), words("A C B"));
    EXPECT_EQ(choose("A", "Move down"), QString());
    EXPECT_EQ(list(), words("C A B"));
    // Beyond the end, from a menu that was opened before.
    EXPECT_EQ(
        activate(text("Stations:do/up?id=") + itemCalled("C").path().param(text("id"))), QString());
    EXPECT_EQ(list(), words("C A B"));
    start();
    EXPECT_EQ(list(), words("C A B"));
}

TEST_F(StationsChangesTest, Renames)
{
    addThree();
    const VeskRoles row = itemCalled("B");
    const StationsShown confirm = rows(asked(menu(row).row("Rename"), text(" Bee \n ")));
    EXPECT_EQ(confirm.titles(), QStringList(text("Rename \"B\" to \"Bee\"")));
    EXPECT_EQ(activate(confirm.rows.value(0)), QString());
    EXPECT_EQ(list(), words("A Bee C"));
    EXPECT_EQ(itemCalled("Bee").path(), row.path());
    EXPECT_TRUE(rows(asked(menu(row).row("Rename"), text(" "))).rows.isEmpty());
    EXPECT_EQ(activate(text("Stations:do/rename?title=%20&id=") + row.path().param(text("id"))),
        text("The name is missing."));
}

TEST_F(StationsChangesTest, Removes)
{
    addThree();
    EXPECT_EQ(choose("B", "Remove"), QString());
    EXPECT_EQ(list(), words("A C"));
    add("B again", "http://b");
    EXPECT_EQ(list().size(), 3);
}

TEST_F(StationsChangesTest, MakesFoldersWithNamesOfTheirOwn)
{
    EXPECT_EQ(ask(listMenuRow("Make a folder"), "F"), QString());
    EXPECT_EQ(list(), words("F"));
    EXPECT_EQ(
        ask(listMenuRow("Make a folder"), "F"), text("There is a folder of this name already."));
    EXPECT_EQ(ask(menu(itemCalled("F")).row("Make a folder"), "F"), QString());
    addFolder("G");
    EXPECT_EQ(ask(menu(itemCalled("G")).row("Rename"), "F"),
        text("There is a folder of this name already."));
    EXPECT_EQ(list(), words("F G"));
}

TEST_F(StationsChangesTest, BoundsFoldersInEachOther)
{
    QString folder;
    QStringList folders;
    for (int i = 0; i < StationsLimits::Depth; ++i) {
        folder = addFolder("F", folder);
        folders.append(folder);
    }
    EXPECT_EQ(activate(text("Stations:do/folder?title=F&folder=") + folder),
        text("There are too many folders in each other."));
    EXPECT_THAT(
        rows(text("Stations:menu?id=") + folder).titles(), Not(Contains(text("Make a folder"))));
    const QString other = addFolder("Other");
    addFolder("Inner", other);
    EXPECT_EQ(activate(text("Stations:do/move?id=") + other + text("&folder=") + folders.at(6)),
        text("The folder cannot be moved to this place."));
    EXPECT_EQ(activate(text("Stations:do/move?id=") + other + text("&folder=") + folders.at(5)),
        QString());
    EXPECT_EQ(list(), words("F"));
}

TEST_F(StationsChangesTest, MovesToFolders)
{
    addThree();
    const QString outer = addFolder("Outer");
    const QString inner = addFolder("Inner", outer);
    const StationsShown places = rows(menu(itemCalled("A")).row("Move to a folder").path());
    EXPECT_EQ(places.screen.title().toString(), text("Move \"A\" to"));
    EXPECT_EQ(places.titles(), QStringList({text("Outer"), text("Outer / Inner")}));
    EXPECT_EQ(activate(places.rows.at(1)), QString());
    EXPECT_EQ(list(inner), words("A"));
    EXPECT_EQ(list(), words("B C Outer"));
    EXPECT_EQ(rows(menu(itemCalled("A", inner)).row("Move to a folder").path()).titles(),
        QStringList({text("No folder"), text("Outer")}));
    // Neither into itself nor into what is in it.
    EXPECT_THAT(menu(itemCalled("Outer")).titles(), Not(Contains(text("Move to a folder"))));
    for (const QString &into : {outer, inner}) {
        EXPECT_EQ(activate(text("Stations:do/move?id=") + outer + text("&folder=") + into),
            into == outer ? text("The folder cannot be moved to this place.")
                          : text("The folder cannot be moved to this place."));
    }
    EXPECT_EQ(activate(text("Stations:do/move?id=") + itemCalled("B").path().param(text("id"))
                  + text("&folder=") + itemCalled("C").path().param(text("id"))),
        text("This is not in the list any more."));
}

TEST_F(StationsChangesTest, MovesNoFolderBesideOneOfTheSameName)
{
    const QString outer = addFolder("Outer");
    addFolder("F", outer);
    const QString second = addFolder("F");
    EXPECT_EQ(activate(text("Stations:do/move?id=") + second + text("&folder=") + outer),
        text("The folder cannot be moved to this place."));
}

TEST_F(StationsChangesTest, RemovesAFolderThatIsNotEmptyOnlyWhenToldTwice)
{
    const QString outer = addFolder("Outer");
    const QString inner = addFolder("Inner", outer);
    add("A", "http://a", inner);
    add("B", "http://b");
    EXPECT_EQ(activate(text("Stations:do/remove?id=") + outer), text("The folder is not empty."));
    const VeskRoles removal = menu(itemCalled("Outer")).row("Remove");
    EXPECT_EQ(removal.type(), VeskRolesType::Container());
    const StationsShown confirm = rows(removal.path());
    EXPECT_EQ(confirm.titles(),
        QStringList(text("Remove the folder with everything in it (stations: 1)")));
    EXPECT_EQ(activate(confirm.rows.value(0)), QString());
    EXPECT_EQ(list(), words("B"));
    EXPECT_EQ(stored().values().size(), 1);
    addFolder("Empty");
    EXPECT_EQ(choose("Empty", "Remove"), QString());
    EXPECT_EQ(list(), words("B"));
}

TEST_F(StationsChangesTest, SortsByNameWithFoldersFirst)
{
    add("radio 10", "http://1");
    add("Radio 9", "http://2");
    add("Zebra", "http://3");
    addFolder("Zoo");
    add("caf\xC3\xA9", "http://4");
    addFolder("Bar");
    EXPECT_EQ(activate(listMenuRow("Sort by name")), QString());
    EXPECT_EQ(list(),
        QStringList({text("Bar"), text("Zoo"), text("caf\xC3\xA9"), text("Radio 9"),
            text("radio 10"), text("Zebra")}));
    const int writes = stored().writes().size();
    EXPECT_EQ(activate(listMenuRow("Sort by name")), QString());
    EXPECT_EQ(stored().writes().size(), writes) << "it was sorted already";
    start();
    EXPECT_EQ(list().value(3), text("Radio 9"));
}

TEST_F(StationsChangesTest, RefusesAnAddressThatTheListHas)
{
    addThree();
    EXPECT_EQ(activate(text("Stations:do/add?address=http%3A%2F%2Fb")),
        text("This address is in the list already."));
    EXPECT_EQ(list(), words("A B C"));
}
