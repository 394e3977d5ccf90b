// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/stations/StationsFixture.h"

#include <chrono>

namespace {

class StationsStoreTest : public StationsFixture {
protected:
    StationsStoreTest() { start(); }

    QVariantHash lastWrite() const { return m_stored.writes().constLast(); }

    StationsStored &m_stored = stored();
};

} // namespace

TEST_F(StationsStoreTest, ShowsWhatWasKeptAfterARestart)
{
    const QString folder = addFolder("F");
    CMPath path(text("Stations"), text("do/add"),
        {{text("title"), text("A")}, {text("address"), text("http://a")},
            {text("picture"), text("http://a/p.png")}, {text("description"), text("All day")},
            {text("folder"), folder}});
    set(path, VeskRoles::Activate(), QVariant());
    const VeskRoles before = itemCalled("A", folder);
    start();
    EXPECT_EQ(list(), QStringList(text("F")));
    EXPECT_EQ(itemCalled("A", folder), before);
    EXPECT_EQ(before.icon(), text("http://a/p.png"));
    EXPECT_EQ(before.description().toString(), text("All day"));
}

TEST_F(StationsStoreTest, ARefusedWriteChangesNothingAndTellsWhy)
{
    const QString folder = addFolder("F");
    add("A", "http://a");
    add("B", "http://b");
    const QString id = itemCalled("A").path().param(text("id"));
    const QHash<QString, QByteArray> before = m_stored.values();
    const StationsShown screen = rows(text("Stations:"));
    m_stored.refuse(text("The disk is full."));
    for (const QString &action : {text("add?address=http%3A%2F%2Fc"), text("folder?title=G"),
             text("rename?title=X&id=") + id, text("down?id=") + id, text("sort"),
             text("move?folder=") + folder + text("&id=") + id, text("remove?id=") + id}) {
        const QString error = activate(text("Stations:do/") + action);
        // It is in order already.
        EXPECT_EQ(error, action == text("sort") ? QString() : text("The disk is full.")) << action;
        EXPECT_EQ(rows(text("Stations:")).rows, screen.rows);
    }
    EXPECT_EQ(m_stored.values(), before);
    m_stored.refuse(QString());
    add("C", "http://c");
    EXPECT_EQ(list().size(), 4);
}

TEST_F(StationsStoreTest, WritesOnlyWhatAChangeConcerns)
{
    for (int i = 0; i < 20; ++i)
        add(QByteArray::number(i).constData(), ("http://" + QByteArray::number(i)).constData());
    EXPECT_EQ(lastWrite().size(), 1);
    const QString id = itemCalled("10").path().param(text("id"));
    struct Case {
        const char *action;
        int keys;
    };
    for (const Case &each : {Case {"rename?title=X&id=", 1}, Case {"up?id=", 2},
             Case {"down?id=", 2}, Case {"remove?id=", 1}}) {
        const int writes = m_stored.writes().size();
        EXPECT_EQ(activate(text("Stations:do/") + text(each.action) + id), QString());
        EXPECT_EQ(m_stored.writes().size(), writes + 1);
        EXPECT_EQ(lastWrite().size(), each.keys) << each.action;
    }
}

TEST_F(StationsStoreTest, WritesFewBytesHoweverLongTheListIs)
{
    for (int i = 0; i < 1000; ++i)
        m_stored.set(QStringLiteral("s%1").arg(i, 10, 10, QLatin1Char('0')),
            QByteArray::number(i) + "\n\nStation\nhttp://a/" + QByteArray::number(i));
    start();
    add("One more", "http://streams.radio.example/station/mp3-128");
    qint64 bytes = 0;
    const QVariantHash write = lastWrite();
    for (auto it = write.constBegin(); it != write.constEnd(); ++it)
        bytes += it.key().size() + it->toByteArray().size();
    EXPECT_EQ(write.size(), 1);
    EXPECT_LT(bytes, 100);
}

TEST_F(StationsStoreTest, CarriesOutChangesInTheirOrder)
{
    std::vector<std::shared_ptr<CMReplyData<QVariant>>> replies;
    QStringList expected;
    for (int i = 0; i < 100; ++i) {
        const QString number = QString::number(i);
        replies.push_back(std::make_shared<CMReplyData<QVariant>>());
        CMRoot()->request(CMSetDataRequest(
            CMPath(text("Stations"), text("do/add"),
                {{text("title"), number}, {text("address"), text("http://a/") + number}}),
            VeskRoles::Activate(), QVariant(), CMReply<QVariant>(replies.back())));
        expected.append(number);
    }
    for (const auto &reply : replies) {
        ASSERT_TRUE(reply->waitForFinished(60000));
        EXPECT_TRUE(reply->error().isEmpty());
    }
    EXPECT_EQ(list(), expected);
    start();
    EXPECT_EQ(list(), expected);
}

TEST_F(StationsStoreTest, OpensWhatIsLeftOfADamagedStore)
{
    m_stored.set(text("s1"), "1\nf1\nIn a folder\nhttp://1");
    m_stored.set(text("f1"), "2\n\nF");
    m_stored.set(text("s2"), "2\nf9\nFolder gone\nhttp://2");
    m_stored.set(text("s3"), "2\ns2\nIn a station\nhttp://3");
    m_stored.set(text("f2"), "5\nf3\nRound");
    m_stored.set(text("f3"), "5\nf2\nAnd round");
    m_stored.set(text("s4"), "1\n\nNo web address\nfile:///x");
    m_stored.set(text("s5"), "1");
    m_stored.set(text("s6"), "");
    m_stored.set(text("f4"), "1\n\nNo folder\nhttp://4");
    m_stored.set(text("x1"), "from another version");
    start();
    const QStringList top = list();
    EXPECT_THAT(top,
        testing::UnorderedElementsAre(text("F"), text("Folder gone"), text("In a station"),
            testing::AnyOf(text("Round"), text("And round"))));
    EXPECT_EQ(list(text("f1")), QStringList(text("In a folder")));
    // Equal numbers do not keep entries from being moved.
    const QString second = top.at(1);
    const VeskRoles row = itemCalled(second.toUtf8().constData());
    EXPECT_EQ(activate(menu(row).row("Move up")), QString());
    EXPECT_EQ(list().value(0), second);
    EXPECT_TRUE(m_stored.values().contains(text("x1")));
}

TEST_F(StationsStoreTest, FailsWithoutAStore)
{
    StationsList list({});
    CMError told;
    list.add(QString(), {text("A"), text("http://a"), {}, {}},
        [&told](const CMError &error) { told = error; });
    EXPECT_TRUE(spinUntil([&told] { return !told.isEmpty(); }));
    EXPECT_EQ(list.size(), 0);
}

TEST_F(StationsStoreTest, HoldsFiveThousandUsualStationsInAMebibyte)
{
    qint64 bytes = 0;
    for (int i = 0; i < StationsLimits::Entries; ++i) {
        const QByteArray number = QByteArray::number(i);
        const QString key = QStringLiteral("s%1").arg(i, 10, 10, QLatin1Char('0'));
        const QByteArray value = number + "\nf123456789a\nRadio Example number " + number
            + "\nhttps://streams.radio.example/station-" + number
            + "/mp3-128\nhttps://radio.example/logos/" + number + ".png";
        m_stored.set(key, value);
        bytes += key.size() + value.size();
    }
    EXPECT_LT(bytes, VeskStore::MaxBytes);
    EXPECT_LT(StationsLimits::Entries, VeskStore::MaxKeys);
    start();
    EXPECT_EQ(rows(CMPath(text("Stations"), QString()), 0, 0).count, StationsLimits::Entries + 3);
    EXPECT_EQ(activate(text("Stations:do/add?address=http%3A%2F%2Fone.more")),
        text("The list is full: it has 5,000 entries."));
    EXPECT_EQ(activate(text("Stations:do/folder?title=One")),
        text("The list is full: it has 5,000 entries."));
}
