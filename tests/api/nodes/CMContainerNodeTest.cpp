// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMContainerNode.h"

#include "tests/api/nodes/TestNodes.h"

#include <climits>

namespace {

/// Has the rows "r0" to "r4"; the first one has a description, too.
class FiveNode : public CMContainerNode {
public:
    using CMContainerNode::CMContainerNode;

    bool getRowsRequest(const CMGetRowsRequest &request) override
    {
        QVector<VeskRoles> rows;
        for (const char *title : {"r0", "r1", "r2", "r3", "r4"}) {
            VeskRoles row;
            row.setTitle(text(title));
            if (rows.isEmpty())
                row.setDescription(text("first"));
            rows.append(row);
        }
        answerRows(request, rows);
        return true;
    }
};

struct Range {
    int first;
    int last;
    QStringList titles;
};

QStringList titlesOf(const VeskRowsRoles &answer, int role)
{
    QStringList titles;
    for (const QVariant &row : answer.rows())
        titles.append(TrString::fromVariant(row.toList().value(role)).toString());
    return titles;
}

TEST(CMContainerNode, AnswersTheRowsOfTheRange)
{
    ScriptWorker worker(QStringLiteral("W"));
    (new FiveNode(path("W:five")))->setNodes(worker.nodes());
    const QStringList all {QStringLiteral("r0"), QStringLiteral("r1"), QStringLiteral("r2"),
        QStringLiteral("r3"), QStringLiteral("r4")};
    const Range ranges[] = {{0, 4, all}, {0, INT_MAX, all}, {1, 2, all.mid(1, 2)},
        {4, 9, all.mid(4)}, {5, 9, {}}, {INT_MAX, INT_MAX, {}}};
    for (const Range &range : ranges) {
        SCOPED_TRACE(range.first);
        const Answer answer
            = getRows(worker, path("W:five"), {VeskRoles::Title()}, range.first, range.last);
        ASSERT_TRUE(answer.isThere());
        EXPECT_EQ(answer.rows().rowsCount(), 5);
        EXPECT_EQ(titlesOf(answer.rows(), 0), range.titles);
    }
}

TEST(CMContainerNode, RefusesARangeThatIsNone)
{
    ScriptWorker worker(QStringLiteral("W"));
    (new FiveNode(path("W:five")))->setNodes(worker.nodes());
    for (const auto &range : {std::pair(-1, 4), std::pair(3, 2), std::pair(0, -1)}) {
        const Answer answer
            = getRows(worker, path("W:five"), {VeskRoles::Title()}, range.first, range.second);
        EXPECT_EQ(answer.errorText(), QStringLiteral("The range of rows is not valid."));
    }
}

TEST(CMContainerNode, AnswersEachRowWithTheRequestedRolesInTheirOrder)
{
    ScriptWorker worker(QStringLiteral("W"));
    (new FiveNode(path("W:five")))->setNodes(worker.nodes());
    const Answer some
        = getRows(worker, path("W:five"), {VeskRoles::Description(), VeskRoles::Title()}, 0, 1);
    ASSERT_EQ(some.rows().rows().size(), 2);
    EXPECT_EQ(some.rows().rows().at(0).toList(),
        (QVariantList {QVariant(text("first")), QVariant(text("r0"))}));
    EXPECT_EQ(some.rows().rows().at(1).toList(), (QVariantList {QVariant(), QVariant(text("r1"))}));

    const Answer every = getRows(worker, path("W:five"), CMAllRoles(), 0, 0);
    EXPECT_EQ(every.rows().rows().value(0).toList().size(), VeskRoles::all().size());
    EXPECT_EQ(titlesOf(every.rows(), VeskRoles::all().indexOf(VeskRoles::Title())).value(0),
        QStringLiteral("r0"));
}

TEST(CMContainerNode, AnswersTheScreensOwnRolesAsItWasOpened)
{
    ScriptWorker worker(QStringLiteral("W"));
    auto *const node = new FiveNode(path("W:five"));
    node->setTitle(text("Five"));
    node->setNodes(worker.nodes());
    const Answer answer = getRows(worker, path("W:five?p=1"), {VeskRoles::Title()}, 0, 0);
    EXPECT_EQ(answer.rows().roles().title(), text("Five"));
    EXPECT_EQ(answer.rows().roles().path(), path("W:five?p=1"));
}

} // namespace
