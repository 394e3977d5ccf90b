// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/ScreenSnapshots.h"

#include "api/nodes/CMContainerNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "tests/host/rpc/Peer.h"
#include "tests/support/WorkerThread.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace {

CMPath path(const char *text)
{
    return CMPath::fromEncoded(QString::fromLatin1(text));
}

/// A list whose rows contain the number of their fetch.
class FetchedNode : public CMContainerNode {
public:
    explicit FetchedNode(const CMPath &path)
        : CMContainerNode(path)
    {
    }

    bool getRowsRequest(const CMGetRowsRequest &request) override
    {
        ranges.append(QStringLiteral("%1-%2").arg(request.first()).arg(request.last()));
        held.append(request);
        if (!hold)
            answer();
        return true;
    }
    void answer()
    {
        const CMGetRowsRequest request = held.takeFirst();
        if (!error.isEmpty())
            return request.reply().setError(error);
        if (request.last() - request.first() >= longest) {
            CMError tooLong(TrString("Test", "Too long."));
            tooLong.insert(CMError::Name(), CMError::TooLongName());
            return request.reply().setError(tooLong);
        }
        QVariantList rows;
        for (int i = request.first(); i <= request.last() && i < length; ++i) {
            QVariantList row;
            for (const QString &role : request.roles())
                row.append(role + QStringLiteral(" %1 of %2").arg(i).arg(ranges.size()) + padding);
            rows.append(QVariant(row));
        }
        VeskRowsRoles answer;
        answer.setRowsCount(length);
        answer.setRows(rows);
        request.reply().setValue(answer);
    }

    int length = 1000;
    int longest = 1000000;
    bool hold = false;
    CMError error;
    QString padding;
    QStringList ranges;
    QList<CMGetRowsRequest> held;
};

class ScreenSnapshotsTest : public testing::Test {
protected:
    ScreenSnapshotsTest()
        : worker({}, QStringLiteral("Test"))
        , list(node("list"))
    {
    }

    FetchedNode *node(const char *base)
    {
        auto *made = new FetchedNode(worker.addPrefix(QString::fromLatin1(base)));
        made->setNodes(worker.nodes());
        return made;
    }
    static ScreenSnapshots::Range range(int first, int last, const char *at = "Test:list")
    {
        return {path(at), {QStringLiteral("title")}, first, last, false};
    }
    /// The titles of the first and the last row: "title 0 of 1, title 99 of 1".
    QString read(const ScreenSnapshots::Range &range, MessagePeer *client)
    {
        QString answer;
        ask(range, client, &answer);
        EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
        return answer;
    }
    QString read(int first, int last, MessagePeer *client)
    {
        return read(range(first, last), client);
    }
    void ask(const ScreenSnapshots::Range &range, MessagePeer *client, QString *answer)
    {
        screens.rows(client, range, [answer](const ScreenSnapshots::Answer &given) {
            const QVariantList got = given.rows.rows();
            if (!given.error.isEmpty())
                *answer = given.error.message().toString();
            else if (got.isEmpty())
                *answer = QStringLiteral("none of %1").arg(given.rows.rowsCount());
            else
                *answer = got.first().toList().value(0).toString() + QStringLiteral(", ")
                    + got.last().toList().value(0).toString();
        });
    }
    /// Delivers all queued notifications.
    void settle()
    {
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
    }

    CMRootWorker root;
    CMNodesWorker worker;
    FetchedNode *list;
    ScreenSnapshots screens;
    Peer peer;
};

TEST_F(ScreenSnapshotsTest, ServesAllRangesFromOneFetch)
{
    for (int first = 0; first < 1000; first += 100) {
        EXPECT_EQ(read(first, first + 99, &peer),
            QStringLiteral("title %1 of 1, title %2 of 1").arg(first).arg(first + 99));
    }
    EXPECT_EQ(read(950, 1049, &peer), QStringLiteral("title 950 of 1, title 999 of 1"));
    EXPECT_EQ(read(1000, 1099, &peer), QStringLiteral("none of 1000"));
    EXPECT_EQ(read(500, 500, &peer), QStringLiteral("title 500 of 1, title 500 of 1"));
    EXPECT_EQ(list->ranges.size(), 1);
}

TEST_F(ScreenSnapshotsTest, ServesSimultaneousRequestsFromOneFetch)
{
    list->hold = true;
    QString first;
    QString second;
    ask(range(0, 99), &peer, &first);
    ask(range(100, 199), &peer, &second);
    ASSERT_TRUE(spinUntil([this] { return !list->held.isEmpty(); }));
    list->answer();
    EXPECT_TRUE(spinUntil([&] { return !first.isEmpty() && !second.isEmpty(); }));
    EXPECT_EQ(first, QStringLiteral("title 0 of 1, title 99 of 1"));
    EXPECT_EQ(second, QStringLiteral("title 100 of 1, title 199 of 1"));
}

TEST_F(ScreenSnapshotsTest, FetchesAgainForTheFirstRowsAndOnRefresh)
{
    read(0, 99, &peer);
    EXPECT_EQ(read(0, 99, &peer), QStringLiteral("title 0 of 2, title 99 of 2"));
    EXPECT_EQ(read(100, 199, &peer), QStringLiteral("title 100 of 2, title 199 of 2"));
    ScreenSnapshots::Range refreshed = range(200, 299);
    refreshed.refresh = true;
    EXPECT_EQ(read(refreshed, &peer), QStringLiteral("title 200 of 3, title 299 of 3"));
    EXPECT_EQ(read(100, 199, &peer), QStringLiteral("title 100 of 3, title 199 of 3"));
    EXPECT_EQ(screens.count(), 1);
}

TEST_F(ScreenSnapshotsTest, ARangeInTheMiddleStartsASnapshot)
{
    EXPECT_EQ(read(300, 399, &peer), QStringLiteral("title 300 of 1, title 399 of 1"));
    EXPECT_EQ(read(100, 199, &peer), QStringLiteral("title 100 of 1, title 199 of 1"));
}

TEST_F(ScreenSnapshotsTest, FetchesASingleRowAlone)
{
    EXPECT_EQ(read(5, 5, &peer), QStringLiteral("title 5 of 1, title 5 of 1"));
    EXPECT_EQ(read(0, 0, &peer), QStringLiteral("title 0 of 2, title 0 of 2"));
    EXPECT_EQ(list->ranges, (QStringList {QStringLiteral("5-5"), QStringLiteral("0-0")}));
    EXPECT_EQ(screens.count(), 0);
}

TEST_F(ScreenSnapshotsTest, DropsAScreenThatWasReadCompletely)
{
    list->length = 100;
    read(0, 99, &peer);
    EXPECT_EQ(screens.count(), 0);
    list->length = 101;
    read(0, 99, &peer);
    EXPECT_EQ(screens.count(), 1);
    EXPECT_GT(screens.bytes(), 0);
}

TEST_F(ScreenSnapshotsTest, EachWebSocketHasItsOwnAndPostsShareTheirs)
{
    Peer other;
    read(0, 99, &peer);
    EXPECT_EQ(read(100, 199, &other), QStringLiteral("title 100 of 2, title 199 of 2"));
    EXPECT_EQ(read(100, 199, nullptr), QStringLiteral("title 100 of 3, title 199 of 3"));
    EXPECT_EQ(read(200, 299, nullptr), QStringLiteral("title 200 of 3, title 299 of 3"));
    EXPECT_EQ(read(100, 199, &peer), QStringLiteral("title 100 of 1, title 199 of 1"));
    EXPECT_EQ(read(100, 199, &other), QStringLiteral("title 100 of 2, title 199 of 2"));
}

TEST_F(ScreenSnapshotsTest, EndWithTheirConnection)
{
    QString answer;
    {
        Peer passing;
        read(0, 99, &passing);
        EXPECT_EQ(screens.count(), 1);
        list->hold = true;
        ask(range(0, 99), &passing, &answer);
        ASSERT_TRUE(spinUntil([this] { return !list->held.isEmpty(); }));
    }
    list->answer();
    settle();
    EXPECT_EQ(screens.count(), 0);
    EXPECT_EQ(screens.bytes(), 0);
}

TEST_F(ScreenSnapshotsTest, FetchesAgainForOtherRoles)
{
    read(0, 99, &peer);
    ScreenSnapshots::Range icons = range(100, 199);
    icons.roles = QStringList {QStringLiteral("icon")};
    EXPECT_EQ(read(icons, &peer), QStringLiteral("icon 100 of 2, icon 199 of 2"));
    EXPECT_EQ(read(100, 199, &peer), QStringLiteral("title 100 of 1, title 199 of 1"));
}

TEST_F(ScreenSnapshotsTest, AreDroppedWhenTheScreenChanges)
{
    const auto isDropped = [&](const std::function<void()> &change) {
        read(0, 99, &peer);
        const int before = list->ranges.size();
        change();
        read(100, 199, &peer);
        return list->ranges.size() > before;
    };
    CMSubscribe changes;
    const QString reset = CMSubscribe::RowsChangeReset();
    EXPECT_TRUE(isDropped([&] { changes.changed(path("Test:list"), reset, -1, -1); }));
    EXPECT_TRUE(isDropped(
        [&] { changes.changed(path("Test:list"), CMSubscribe::RowsChangeChanged(), 3, 3); }));
    EXPECT_TRUE(isDropped([&] { changes.changedStartingWith(path("Test:"), reset, -1, -1); }));
    EXPECT_FALSE(isDropped([&] { changes.changed(path("Test:list/below"), reset, -1, -1); }));
    EXPECT_FALSE(isDropped([&] { changes.changed(path("Test:"), reset, -1, -1); }));
    EXPECT_FALSE(isDropped([&] { changes.changedStartingWith(path("Other:"), reset, -1, -1); }));
}

TEST_F(ScreenSnapshotsTest, AChangeDuringTheFetchMakesLaterRequestsFetchAgain)
{
    list->hold = true;
    QString first;
    ask(range(0, 99), &peer, &first);
    ASSERT_TRUE(spinUntil([this] { return !list->held.isEmpty(); }));
    CMSubscribe().changed(path("Test:list"), CMSubscribe::RowsChangeReset(), -1, -1);
    settle();
    QString second;
    ask(range(100, 199), &peer, &second);
    ASSERT_TRUE(spinUntil([this] { return list->held.size() == 2; }));
    list->answer();
    list->answer();
    ASSERT_TRUE(spinUntil([&] { return !first.isEmpty() && !second.isEmpty(); }));
    EXPECT_EQ(list->ranges.size(), 2);
    EXPECT_EQ(screens.count(), 1);
}

TEST_F(ScreenSnapshotsTest, AreDroppedWhenAValueChangesOrTheServiceIsWrittenTo)
{
    read(0, 99, &peer);
    screens.forgetService(QStringLiteral("Other"));
    read(100, 199, &peer);
    EXPECT_EQ(list->ranges.size(), 1);
    screens.forgetService(QStringLiteral("Test"));
    read(100, 199, &peer);
    EXPECT_EQ(list->ranges.size(), 2);
    screens.forgetAll();
    EXPECT_EQ(screens.count(), 0);
    read(100, 199, &peer);
    EXPECT_EQ(list->ranges.size(), 3);
}

TEST_F(ScreenSnapshotsTest, ExpireAfterTheirLastUse)
{
    screens.setLifetimes({60000, 60000});
    read(0, 99, nullptr);
    read(0, 99, &peer);
    EXPECT_EQ(screens.count(), 2);
    screens.setLifetimes({60000, 2000});
    EXPECT_TRUE(spinUntil([this] { return screens.count() == 1; }));
    read(100, 199, &peer);
    EXPECT_EQ(list->ranges.size(), 2);
    read(100, 199, nullptr);
    EXPECT_EQ(list->ranges.size(), 3);
}

TEST_F(ScreenSnapshotsTest, AreBoundedPerConnection)
{
    QList<FetchedNode *> lists;
    const char *const paths[] = {"Test:a", "Test:b", "Test:c", "Test:d", "Test:e"};
    for (const char *each : paths) {
        lists.append(node(each + 5));
        read(range(0, 99, each), &peer);
        if (lists.size() == 2)
            read(range(100, 199, "Test:a"), &peer);
    }
    EXPECT_EQ(screens.count(), ScreenSnapshots::MaxScreens);
    // The least recently used screen was dropped.
    for (const char *each : {"Test:a", "Test:c", "Test:d", "Test:e", "Test:b"})
        read(range(100, 199, each), &peer);
    EXPECT_EQ(lists.at(0)->ranges.size(), 1);
    EXPECT_EQ(lists.at(1)->ranges.size(), 2);
    EXPECT_EQ(lists.at(4)->ranges.size(), 1);
}

TEST_F(ScreenSnapshotsTest, AreBoundedInMemory)
{
    list->padding = QString(10000, QLatin1Char('x'));
    std::vector<std::unique_ptr<Peer>> peers;
    for (int i = 0; i < 5; ++i) {
        peers.push_back(std::make_unique<Peer>());
        read(0, 99, peers.back().get());
        EXPECT_LE(screens.bytes(), ScreenSnapshots::MaxBytes);
    }
    EXPECT_EQ(screens.count(), 3);
    read(100, 199, peers.back().get());
    EXPECT_EQ(list->ranges.size(), 5);
    list->padding = QString(40000, QLatin1Char('x'));
    read(0, 99, &peer);
    EXPECT_LE(screens.bytes(), ScreenSnapshots::MaxBytes);
    read(100, 199, &peer);
    EXPECT_EQ(list->ranges.size(), 7);
}

TEST_F(ScreenSnapshotsTest, FetchesRangesOfAScreenThatIsTooLongForOneAnswer)
{
    list->longest = 100;
    EXPECT_EQ(read(0, 99, &peer), QStringLiteral("title 0 of 2, title 99 of 2"));
    EXPECT_EQ(screens.count(), 0);
}

TEST_F(ScreenSnapshotsTest, FetchesRowsBeyondThoseThatAreKept)
{
    list->length = ScreenSnapshots::MaxRows + 500;
    read(0, 99, &peer);
    EXPECT_EQ(read(9900, 9999, &peer), QStringLiteral("title 9900 of 1, title 9999 of 1"));
    EXPECT_EQ(read(9950, 10049, &peer), QStringLiteral("title 9950 of 2, title 10049 of 2"));
    EXPECT_EQ(list->ranges.last(), QStringLiteral("9950-10049"));
}

TEST_F(ScreenSnapshotsTest, PassesAnErrorToAllRequestsAndDropsIt)
{
    list->error = CMError(TrString("Test", "Away."));
    EXPECT_EQ(read(0, 99, &peer), QStringLiteral("Away."));
    EXPECT_EQ(read(100, 199, &peer), QStringLiteral("Away."));
    list->error = {};
    EXPECT_EQ(read(100, 199, &peer), QStringLiteral("title 100 of 3, title 199 of 3"));
}

} // namespace
