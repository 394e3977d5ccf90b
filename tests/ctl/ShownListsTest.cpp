// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/ShownLists.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace {

const QString Host = QStringLiteral("http://a/");
const QString Tty = QStringLiteral("7");

CMPath path(const char *text)
{
    return CMPath::fromEncoded(QString::fromUtf8(text));
}

class ShownListsTest : public testing::Test {
protected:
    ShownLists lists(const QString &terminal = Tty, const QString &host = Host) const
    {
        return ShownLists(m_folder.filePath(QStringLiteral("veskctl")), terminal, host);
    }
    QString file() const { return m_folder.filePath(QStringLiteral("veskctl/lists-7.json")); }

    const QTemporaryDir m_folder;
    const QStringList m_rows {
        QStringLiteral("a:x?id=s1"), QString(), QStringLiteral("a:x?id=s2&q=s1")};
};

TEST_F(ShownListsTest, LastFindsTheRowThatWasShownUnderANumber)
{
    lists().add(path("a:list"), 10, m_rows, {1, 2, 3});
    const ShownRow row = lists().last(12);
    EXPECT_EQ(row.type, 3);
    EXPECT_EQ(lists().find(path("a:x?id=s1")).type, 1);
    EXPECT_EQ(row.screen, path("a:list"));
    EXPECT_EQ(row.row, 12);
    EXPECT_EQ(row.path, path("a:x?id=s2&q=s1"));
    EXPECT_TRUE(lists().last(11).path.isEmpty());
    EXPECT_TRUE(lists().last(9).path.isEmpty());
    EXPECT_EQ(lists().last(99).screen, path("a:list"));
}

TEST_F(ShownListsTest, NumbersRunOnThroughListsThatWereShownTogether)
{
    const ShownPart first {
        path("a:list"), 4, {QStringLiteral("a:1"), QStringLiteral("a:2")}, {1, 2}};
    const ShownPart second {
        path("b:list"), 0, {QStringLiteral("b:1"), QStringLiteral("b:2")}, {3, 4}};
    lists().add(QList<ShownPart> {first});
    lists().add(QList<ShownPart> {first, second});
    EXPECT_EQ(lists().last(1).row, 5);
    EXPECT_EQ(lists().last(1).screen, path("a:list"));
    EXPECT_EQ(lists().last(2).screen, path("b:list"));
    EXPECT_EQ(lists().last(3).row, 1);
    EXPECT_EQ(lists().last(3).type, 4);
    EXPECT_EQ(lists().last(3).path, path("b:2"));
    EXPECT_TRUE(lists().last(4).path.isEmpty());
    EXPECT_EQ(lists().find(path("b:1")).screen, path("b:list"));
    EXPECT_EQ(lists().find(path("a:2")).row, 5);
}

TEST_F(ShownListsTest, LastKnowsOnlyItsOwnTerminalAndHost)
{
    lists().add(path("a:one"), 0, m_rows);
    lists(QStringLiteral("8")).add(path("a:two"), 0, m_rows);
    EXPECT_EQ(lists().last(0).screen, path("a:one"));
    EXPECT_TRUE(lists(QStringLiteral("9")).last(0).screen.isEmpty());
    EXPECT_TRUE(lists(QString()).last(0).screen.isEmpty());
    EXPECT_TRUE(lists(Tty, QStringLiteral("http://b/")).last(0).screen.isEmpty());
}

TEST_F(ShownListsTest, FindSearchesAllTerminalsThisOneFirst)
{
    lists(QStringLiteral("8")).add(path("a:two"), 0, m_rows);
    EXPECT_EQ(lists().find(path("a:x?id=s1")).screen, path("a:two"));
    EXPECT_EQ(lists(QString()).findId(QStringLiteral("s2")).row, 2);
    lists().add(path("a:one"), 5, m_rows);
    EXPECT_EQ(lists().findId(QStringLiteral("s1")).screen, path("a:one"));
    EXPECT_EQ(lists().findId(QStringLiteral("s1")).row, 5);
    EXPECT_EQ(lists().findId(QStringLiteral("s")).row, -1);
    EXPECT_EQ(lists().find(path("a:y")).row, -1);
}

TEST_F(ShownListsTest, FindIdIgnoresMenus)
{
    lists().add(path("a:list"), 0, m_rows);
    lists().add(path("a:menu"), 0, {QStringLiteral("a:menu/add?of=s1")}, {6}, true);
    EXPECT_EQ(lists().findId(QStringLiteral("s1")).screen, path("a:list"));
    EXPECT_EQ(lists().last(0).screen, path("a:menu"));
}

TEST_F(ShownListsTest, KeepsALimitedNumberOfListsAndRows)
{
    for (int i = 0; i < 30; ++i) {
        lists().add(path(QStringLiteral("a:%1").arg(i).toUtf8().constData()), 0,
            {QStringLiteral("b:%1").arg(i)});
    }
    EXPECT_EQ(lists().find(path("b:29")).row, 0);
    EXPECT_EQ(lists().find(path("b:22")).row, 0);
    EXPECT_EQ(lists().find(path("b:21")).row, -1);
    QStringList many;
    for (int i = 0; i < ShownLists::MaxRows + 5; ++i)
        many.append(QStringLiteral("c:%1").arg(i));
    lists().add(path("a:long"), 0, many);
    EXPECT_EQ(lists().find(path("c:9999")).row, 9999);
    EXPECT_EQ(lists().find(path("c:10000")).row, -1);
}

TEST_F(ShownListsTest, IsReadableForItsOwnerAlone)
{
    lists().add(path("a:list"), 0, m_rows);
    struct stat status { };
    ASSERT_EQ(::stat(file().toLocal8Bit().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    ASSERT_EQ(
        ::stat(m_folder.filePath(QStringLiteral("veskctl")).toLocal8Bit().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700U);
}

TEST_F(ShownListsTest, IgnoresFilesThatCannotBeReadOrWritten)
{
    lists().add(path("a:list"), 0, m_rows);
    for (const char *damage : {"", "{", "[1,[],{}]", R"([{"host":"http://a/","screen":"%zz"}])"}) {
        QFile damaged(file());
        ASSERT_TRUE(damaged.open(QFile::WriteOnly));
        damaged.write(damage);
        damaged.close();
        EXPECT_TRUE(lists().last(0).screen.isEmpty()) << damage;
    }
    QFile::remove(file());
    // Opening a FIFO would block until there is a writer.
    ASSERT_EQ(::mkfifo(file().toLocal8Bit().constData(), 0600), 0);
    EXPECT_TRUE(lists().last(0).screen.isEmpty());
    ShownLists nowhere(QStringLiteral("/proc/none"), Tty, Host);
    nowhere.add(path("a:list"), 0, m_rows);
    EXPECT_TRUE(nowhere.last(0).screen.isEmpty());
    ShownLists none(QString(), Tty, Host);
    none.add(path("a:list"), 0, m_rows);
    EXPECT_TRUE(none.last(0).screen.isEmpty());
}

} // namespace
