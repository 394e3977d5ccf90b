// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/stations/StationsFixture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <array>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

using testing::Contains;

namespace {

class StationsFolderTest : public StationsFixture {
protected:
    StationsFolderTest() { start(m_folder.path()); }

    QString name(const char *file) const { return m_folder.filePath(text(file)); }
    QByteArray path(const char *file) const { return QFile::encodeName(name(file)); }
    void write(const char *file, const QByteArray &bytes) const
    {
        QFile written(name(file));
        ASSERT_TRUE(written.open(QFile::WriteOnly));
        written.write(bytes);
    }
    /// The row of a file that cannot be read says why.
    static void expectBroken(const char *file, const char *why)
    {
        const VeskRoles row = rows(text("Stations:")).row(file);
        EXPECT_EQ(row.description().toString(), text(why));
        EXPECT_TRUE(row.value(VeskRoles::Disabled()).toBool());
        EXPECT_NE(rows(row.path()).error, QString());
    }

    QTemporaryDir m_folder;
};

} // namespace

TEST_F(StationsFolderTest, ShowsTheFilesBesideTheList)
{
    add("Mine", "http://mine");
    write("b.m3u", "#EXTM3U\n#EXTINF:1,B\nhttp://b\nx.mp3");
    write("A.opml",
        "<opml><head><title>Titled</title></head><body><outline text='F'>"
        "<outline text='G'><outline text='A' URL='http://a'/></outline></outline></body></opml>");
    write("c.PLS", "[playlist]\nFile1=http://c");
    write("notes.txt", "http://no");
    write(".hidden.m3u", "http://no");
    QDir(m_folder.path()).mkdir(text("d.m3u"));
    const StationsShown root = rows(text("Stations:"));
    EXPECT_EQ(root.titles(),
        QStringList({text("Search"), text("Add a station by its address"), text("Mine"),
            text("Titled"), text("b.m3u"), text("c.PLS"), text("Change this list")}));
    EXPECT_EQ(root.row("Titled").description().toString(), text("1 station"));

    const StationsShown file = rows(root.row("b.m3u").path());
    EXPECT_EQ(file.screen.title().toString(), text("b.m3u"));
    EXPECT_EQ(file.titles(),
        QStringList({text("B"), text("Left out, without an http or https address: 1")}));
    EXPECT_EQ(file.rows.at(0).mediaData().activeResource().uri(), text("http://b"));

    const StationsShown outer = rows(rows(root.row("Titled").path()).row("F").path());
    EXPECT_EQ(outer.screen.title().toString(), text("F"));
    EXPECT_EQ(rows(outer.row("G").path()).titles(), QStringList(text("A")));
    EXPECT_EQ(rows(text("Stations:file?name=A.opml&folder=Other")).error,
        text("This is not in the list any more."));
}

TEST_F(StationsFolderTest, KeepsAFilesStationInTheList)
{
    write("a.m3u", "#EXTM3U\n#EXTINF:1,A\n#EXTIMG:http://p/a.png\n#EXTDESC:All day\nhttp://a");
    const VeskRoles row = rows(text("Stations:file?name=a.m3u")).row("A");
    EXPECT_EQ(menu(row).titles(), QStringList(text("Keep it in the list")));
    EXPECT_EQ(activate(menu(row).rows.value(0)), QString());
    const VeskRoles kept = itemCalled("A");
    EXPECT_EQ(kept.icon(), text("http://p/a.png"));
    EXPECT_EQ(kept.description().toString(), text("All day"));
    EXPECT_EQ(menu(row).titles(), QStringList({text("This address is in the list:"), text("A")}));
}

TEST_F(StationsFolderTest, FindsStationsOfFiles)
{
    write("a.opml",
        "<opml><body><outline text='F'><outline text='Jazz' "
        "URL='http://a'/></outline></body></opml>");
    add("More jazz", "http://b");
    EXPECT_EQ(rows(text("Stations:results?text=jazz")).titles(),
        QStringList({text("More jazz"), text("Jazz")}));
}

TEST_F(StationsFolderTest, ReadsAFileAgainWhenItHasChanged)
{
    write("a.m3u", "http://one");
    EXPECT_EQ(rows(text("Stations:file?name=a.m3u")).titles(), QStringList(text("one")));
    write("a.m3u", "http://other");
    EXPECT_EQ(rows(text("Stations:file?name=a.m3u")).titles(), QStringList(text("other")));
    write("new.m3u", "http://third");
    ASSERT_TRUE(QFile::remove(name("a.m3u")));
    ASSERT_TRUE(QFile::rename(name("new.m3u"), name("a.m3u")));
    EXPECT_EQ(rows(text("Stations:file?name=a.m3u")).titles(), QStringList(text("third")));
    ASSERT_TRUE(QFile::remove(name("a.m3u")));
    EXPECT_EQ(
        rows(text("Stations:file?name=a.m3u")).error, text("This is not in the list any more."));
    EXPECT_EQ(rows(text("Stations:")).count, 3);
}

TEST_F(StationsFolderTest, SaysWhatIsWrongWithAFile)
{
    write("broken.opml", "<opml>");
    expectBroken("broken.opml", "The file is damaged: line 1 cannot be read as XML.");
    write("empty.m3u", "");
    expectBroken("empty.m3u", "This is no list of stations.");
    write("large.m3u", "#EXTM3U\n" + QByteArray(StationsLimits::Bytes, '\n'));
    expectBroken("large.m3u", "The file is larger than 1 MiB.");
    ASSERT_EQ(symlink("loop.pls", path("loop.pls").constData()), 0);
    expectBroken("loop.pls", "The file cannot be read (Too many levels of symbolic links).");
    ASSERT_EQ(symlink("/dev/zero", path("zero.pls").constData()), 0);
    expectBroken("zero.pls", "This is no file.");
    ASSERT_EQ(symlink("nowhere", path("gone.pls").constData()), 0);
    expectBroken("gone.pls", "The file cannot be read (No such file or directory).");
}

TEST_F(StationsFolderTest, DoesNotOpenAFifo)
{
    ASSERT_EQ(mkfifo(path("a.m3u").constData(), 0600), 0);
    // Who writes into it would be told of a reader by being able to open it.
    expectBroken("a.m3u", "This is no file.");
    EXPECT_LT(open(path("a.m3u").constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC), 0);
}

TEST_F(StationsFolderTest, BoundsTheNumberOfFiles)
{
    for (int i = 0; i < StationsFolder::MaxFiles + 2; ++i)
        write(QStringLiteral("%1.m3u").arg(i, 3, 10, QLatin1Char('0')).toUtf8().constData(),
            "http://a");
    const StationsShown root = rows(text("Stations:"));
    EXPECT_EQ(root.count, 3 + StationsFolder::MaxFiles + 1);
    EXPECT_THAT(root.titles(), Contains(text("More files, which are not shown: 2")));
}

TEST_F(StationsFolderTest, BoundsTheBytesOfAllFiles)
{
    const QByteArray file = "#EXTM3U\nhttp://a\n" + QByteArray(StationsLimits::Bytes - 17, '\n');
    for (const char *name : {"1.m3u", "2.m3u", "3.m3u", "4.m3u"})
        write(name, file);
    write("5.m3u", "http://a");
    const StationsShown root = rows(text("Stations:"));
    EXPECT_EQ(root.row("4.m3u").description().toString(), text("1 station"));
    expectBroken("5.m3u", "The files are larger than 4 MiB together.");
}

TEST_F(StationsFolderTest, NeedsNoFolder)
{
    start(text("/nowhere/at/all"));
    EXPECT_EQ(rows(text("Stations:")).count, 3);
    start();
    EXPECT_EQ(rows(text("Stations:")).count, 3);
}
