// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/RowSearch.h"

#include "api/core/Language.h"
#include "api/nodes/CMContainerNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMRootWorker.h"
#include "tests/support/Text.h"
#include "tests/support/WorkerThread.h"

#include <gtest/gtest.h>

namespace {

CMPath rowPath(int id)
{
    return CMPath::fromEncoded(QStringLiteral("Test:row?id=%1").arg(id));
}

/// A long list that counts its requests and rejects ranges of more than `longest` rows.
class ListNode : public CMContainerNode {
public:
    explicit ListNode(const CMPath &path)
        : CMContainerNode(path)
    {
    }

    bool getRowsRequest(const CMGetRowsRequest &request) override
    {
        ++asked;
        if (request.last() - request.first() >= longest) {
            CMError error(TrString("Test", "Too long."));
            error.insert(CMError::Name(), CMError::TooLongName());
            request.reply().setError(error);
            return true;
        }
        QVariantList rows;
        for (int i = request.first(); i <= request.last() && i < ids.size(); ++i) {
            QVariantList row;
            for (const QString &role : request.roles()) {
                row.append(role == VeskRoles::Path() ? QVariant(rowPath(ids.at(i)).toEncoded())
                        : role == VeskRoles::Id()    ? QVariant(QString::number(i))
                                                     : QVariant());
            }
            rows.append(QVariant(row));
        }
        VeskRowsRoles answer;
        answer.setRowsCount(ids.size());
        answer.setRows(rows);
        request.reply().setValue(answer);
        return true;
    }

    QList<int> ids;
    int asked = 0;
    int longest = 1000000;
};

class RowSearchTest : public testing::Test {
protected:
    RowSearchTest()
        : worker({}, text("Test"))
        , list(new ListNode(worker.addPrefix(text("list"))))
    {
        list->setNodes(worker.nodes());
        for (int i = 0; i < 3000; ++i)
            list->ids.append(i);
    }

    /// The id of the row that was found, or the error's name.
    QString find(int row, int id = -1)
    {
        QString answer;
        RowSearch search;
        search.start({list->path(), row, id < 0 ? CMPath() : rowPath(id)},
            [&answer](const CMError &error, const VeskRoles &roles) {
                answer = error.isEmpty() ? roles.id() : error.name();
            });
        EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
        return answer;
    }

    CMRootWorker root;
    CMNodesWorker worker;
    ListNode *list;
};

TEST_F(RowSearchTest, FindsARowByItsPlaceAlone)
{
    EXPECT_EQ(find(7), text("7"));
    EXPECT_EQ(find(2999), text("2999"));
    EXPECT_EQ(find(3000), CMError::DefaultName());
    EXPECT_EQ(list->asked, 3);
}

TEST_F(RowSearchTest, FindsARowThatMovedALittleInOneFetch)
{
    EXPECT_EQ(find(100, 100), text("100"));
    EXPECT_EQ(find(100, 80), text("80"));
    EXPECT_EQ(find(100, 120), text("120"));
    EXPECT_EQ(find(0, 20), text("20"));
    EXPECT_EQ(list->asked, 4);
}

TEST_F(RowSearchTest, FindsARowThatMovedFarInTwo)
{
    EXPECT_EQ(find(100, 2999), text("2999"));
    EXPECT_EQ(find(2999, 0), text("0"));
    EXPECT_EQ(find(2147483647, 5), text("5"));
    EXPECT_EQ(list->asked, 6);
}

TEST_F(RowSearchTest, TakesTheNearestOfThoseWithOnePath)
{
    for (const int place : {10, 50, 95, 103, 2000})
        list->ids[place] = 7777;
    EXPECT_EQ(find(100, 7777), text("103"));
    EXPECT_EQ(find(98, 7777), text("95"));
    EXPECT_EQ(find(1000, 7777), text("103"));
    EXPECT_EQ(find(1900, 7777), text("2000"));
}

TEST_F(RowSearchTest, SaysThatARowIsGone)
{
    EXPECT_EQ(find(100, 4000), RowSearch::goneName());
    EXPECT_EQ(list->asked, 2);
    list->ids = {1, 2, 3};
    EXPECT_EQ(find(1, 4000), RowSearch::goneName());
    EXPECT_EQ(list->asked, 3);
    EXPECT_EQ(find(100, 4000), RowSearch::goneName());
    list->ids.clear();
    EXPECT_EQ(find(0, 0), RowSearch::goneName());
}

TEST_F(RowSearchTest, AsksForRangesWhereAllRowsAreTooMany)
{
    list->longest = RowSearch::RangeRows;
    EXPECT_EQ(find(100, 2600), text("2600"));
    EXPECT_EQ(find(100, 4000), RowSearch::goneName());
    EXPECT_EQ(list->asked, (1 + 1 + 6) * 2);
}

TEST_F(RowSearchTest, LooksAtSoManyRowsAndNoMore)
{
    while (list->ids.size() < RowSearch::MaxRows + 100)
        list->ids.append(list->ids.size());
    EXPECT_EQ(find(0, RowSearch::MaxRows - 1), QString::number(RowSearch::MaxRows - 1));
    EXPECT_EQ(find(0, RowSearch::MaxRows), RowSearch::goneName());
    EXPECT_EQ(find(RowSearch::MaxRows + 50, RowSearch::MaxRows + 60),
        QString::number(RowSearch::MaxRows + 60));
}

TEST_F(RowSearchTest, PassesOnWhyTheListIsNotToBeHad)
{
    QString answer;
    RowSearch search;
    search.start({CMPath::fromEncoded(text("Nobody:x")), 0, rowPath(1)},
        [&answer](const CMError &error, const VeskRoles &) { answer = error.name(); });
    EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
    EXPECT_EQ(answer, CMError::NoNodeName());
}

/// A list without rows, because its service cannot be reached.
class GoneNode : public CMContainerNode {
public:
    using CMContainerNode::CMContainerNode;

    bool getRowsRequest(const CMGetRowsRequest &request) override
    {
        request.replyData()->setServiceFault([fault = fault] { return fault; });
        if (isError) {
            request.reply().setError(CMError(TrString("Test", "Invalid.")));
        } else {
            VeskRowsRoles screen;
            screen.setRowsCount(0);
            request.reply().setValue(screen);
        }
        return true;
    }

    VeskServiceFault fault {VeskServiceFault::TimedOut, 0};
    bool isError = false;
};

TEST_F(RowSearchTest, SaysThatTheServiceIsGoneNotTheRow)
{
    auto *gone = new GoneNode(worker.addPrefix(text("gone")));
    gone->setNodes(worker.nodes());
    const auto find = [&](const RowSearch::FaultWords &words) {
        QString answer;
        RowSearch search(words);
        search.start(
            {gone->path(), 3, rowPath(3)}, [&answer](const CMError &error, const VeskRoles &) {
                answer = error.name() == RowSearch::goneName() ? text("gone")
                                                               : error.message().toString();
            });
        EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
        return answer;
    };
    const auto words = [&](const CMPath &path, const VeskServiceFault &fault) {
        EXPECT_EQ(path, gone->path());
        return TrString(text("Test"), QString::number(fault.kind));
    };
    EXPECT_EQ(find({}), text("gone"));
    EXPECT_EQ(find(words), QString::number(VeskServiceFault::TimedOut));
    gone->isError = true;
    EXPECT_EQ(find(words), text("Invalid."));
    gone->fault = {VeskServiceFault::HttpStatus, 403};
    EXPECT_EQ(find(words), QString::number(VeskServiceFault::HttpStatus));
}

} // namespace
