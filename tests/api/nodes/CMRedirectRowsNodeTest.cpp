// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMRedirectRowsNode.h"

#include "api/nodes/CMListRowsNode.h"
#include "tests/api/nodes/TestNodes.h"

#include <QCoreApplication>

#include <csignal>

namespace {

const QStringList roles {VeskRoles::Title(), VeskRoles::Icon(), VeskRoles::Path()};

/// A list at \a at with an icon and one row.
void buildTarget(ScriptWorker &worker, const char *at)
{
    CMListRowsNode *list = CMListRowsNode::create(worker.nodes(), path(at));
    list->setTitle(text("target"));
    list->setIcon(QStringLiteral("target icon"));
    VeskRoles row;
    row.setTitle(text("row"));
    list->rowsAppend(row);
}

TEST(CMRedirectRowsNode, ShowsTheRowsOfItsTarget)
{
    ScriptWorker worker(QStringLiteral("W"));
    buildTarget(worker, "W:target");
    CMRedirectRowsNode *node
        = CMRedirectRowsNode::create(worker.nodes(), path("W:"), path("W:target"));
    const Answer rows = getRows(worker, path("W:"), roles, 0, 9);
    ASSERT_TRUE(rows.isThere());
    EXPECT_EQ(rows.rows().rowsCount(), 1);
    EXPECT_EQ(rows.rows().roles().path(), path("W:target"));
    EXPECT_EQ(matchRow(worker, path("W:"), VeskRoles::Title(), text("row")).value(), QVariant(0));
    EXPECT_FALSE(node->servesBelow());
}

TEST(CMRedirectRowsNode, ShowsTheRowsOfATargetOnAnotherThread)
{
    CMRootWorker root;
    ScriptThread other(
        QStringLiteral("Other"), [](ScriptWorker &self) { buildTarget(self, "Other:target"); });
    ScriptThread thread(QStringLiteral("W"), [](ScriptWorker &self) {
        CMRedirectRowsNode::create(self.nodes(), path("W:x"), path("Other:target"));
    });
    const Answer rows = getRows(root, path("W:x"), roles, 0, 9);
    ASSERT_TRUE(rows.wait());
    EXPECT_EQ(rows.rows().rowsCount(), 1);
    const Answer data = getData(root, path("W:x"), roles);
    ASSERT_TRUE(data.wait());
    EXPECT_EQ(TrString::fromVariant(data.list().value(0)), text("target"));
}

TEST(CMRedirectRowsNode, AnswersItsOwnValuesAndTheTargetsForTheRest)
{
    ScriptWorker worker(QStringLiteral("W"));
    buildTarget(worker, "W:target");
    CMRedirectRowsNode::create(worker.nodes(), path("W:x"), path("W:target"))
        ->setTitle(text("own"));
    const Answer answer = getData(worker, path("W:x?p=1"), roles);
    ASSERT_TRUE(answer.isThere());
    EXPECT_EQ(TrString::fromVariant(answer.list().value(0)), text("own"));
    EXPECT_EQ(answer.list().value(1), QVariant(QStringLiteral("target icon")));
    EXPECT_EQ(answer.list().value(2), QVariant(QStringLiteral("W:x?p=1")));
}

TEST(CMRedirectRowsNode, DoesNotAskTheTargetForWhatItHasItself)
{
    ScriptWorker worker(QStringLiteral("W"));
    int asked = 0;
    ScriptNode::create(worker.nodes(), path("W:target"), [&](const CMRequest &) {
        ++asked;
        return false;
    });
    CMRedirectRowsNode::create(worker.nodes(), path("W:x"), path("W:target"))
        ->setTitle(text("own"));
    const Answer answer
        = getData(worker, path("W:x"), {VeskRoles::Title(), VeskRoles::Path(), VeskRoles::Type()});
    ASSERT_TRUE(answer.isThere());
    EXPECT_EQ(answer.list().value(2), QVariant(1));
    EXPECT_EQ(asked, 0);
}

TEST(CMRedirectRowsNode, AnswersAllRoles)
{
    ScriptWorker worker(QStringLiteral("W"));
    buildTarget(worker, "W:target");
    CMRedirectRowsNode::create(worker.nodes(), path("W:x"), path("W:target"));
    const QVariantList values = getData(worker, path("W:x"), CMAllRoles()).list();
    ASSERT_EQ(values.size(), VeskRoles::all().size());
    EXPECT_EQ(values.at(VeskRoles::all().indexOf(VeskRoles::Icon())),
        QVariant(QStringLiteral("target icon")));
    EXPECT_EQ(
        values.at(VeskRoles::all().indexOf(VeskRoles::Path())), QVariant(QStringLiteral("W:x")));
}

TEST(CMRedirectRowsNode, KeepsItsOwnValuesWhenTheTargetFails)
{
    CMRootWorker root;
    ScriptWorker worker(QStringLiteral("W"));
    CMRedirectRowsNode *node
        = CMRedirectRowsNode::create(worker.nodes(), path("W:x"), path("Gone:x"));
    const Answer nothing = getData(worker, path("W:x"), roles);
    EXPECT_EQ(nothing.errorName(), CMError::NoNodeName());
    node->setTitle(text("own"));
    const Answer own = getData(worker, path("W:x"), roles);
    ASSERT_FALSE(own.isError());
    EXPECT_EQ(TrString::fromVariant(own.list().value(0)), text("own"));
    EXPECT_TRUE(own.list().value(1).isNull());
    EXPECT_EQ(getRows(worker, path("W:x"), roles, 0, 9).errorName(), CMError::NoNodeName());
}

TEST(CMRedirectRowsNode, TakesNoValuesFromWhatIsNoList)
{
    ScriptWorker worker(QStringLiteral("W"));
    ScriptNode::create(worker.nodes(), path("W:odd"), [](const CMRequest &request) {
        request.reply().setValue(QStringLiteral("no list"));
        return true;
    });
    CMRedirectRowsNode::create(worker.nodes(), path("W:x"), path("W:odd"));
    EXPECT_EQ(getData(worker, path("W:x"), roles).list(),
        (QVariantList {QVariant(), QVariant(), QStringLiteral("W:x")}));
}

TEST(CMRedirectRowsNode, EndsACircleWithAnError)
{
    CMRootWorker root;
    ScriptThread a(QStringLiteral("A"), [](ScriptWorker &self) {
        CMRedirectRowsNode::create(self.nodes(), path("A:x"), path("B:x"));
        CMRedirectRowsNode::create(self.nodes(), path("A:self"), path("A:self"));
    });
    ScriptThread b(QStringLiteral("B"), [](ScriptWorker &self) {
        CMRedirectRowsNode::create(self.nodes(), path("B:x"), path("A:x"));
    });
    for (const char *start : {"A:x", "B:x", "A:self"}) {
        for (const Answer &answer :
            {getRows(root, path(start), roles, 0, 9), getData(root, path(start), roles),
                matchRow(root, path(start), VeskRoles::Title(), 1)}) {
            ASSERT_TRUE(answer.wait());
            EXPECT_EQ(answer.errorText(), QStringLiteral("The request was redirected too often."));
        }
    }
}

TEST(CMRedirectRowsNode, FollowsAsManyRedirectsAsAreAllowed)
{
    ScriptWorker worker(QStringLiteral("W"));
    buildTarget(worker, "W:0");
    const auto at = [](int i) { return CMPath(QStringLiteral("W"), QString::number(i)); };
    for (int i = 1; i <= CMRequest::MaxHops + 1; ++i)
        CMRedirectRowsNode::create(worker.nodes(), at(i), at(i - 1));
    EXPECT_EQ(getRows(worker, at(CMRequest::MaxHops), roles, 0, 9).rows().rowsCount(), 1);
    EXPECT_FALSE(getData(worker, at(CMRequest::MaxHops), roles).isError());
    EXPECT_TRUE(getRows(worker, at(CMRequest::MaxHops + 1), roles, 0, 9).isError());
    EXPECT_TRUE(getData(worker, at(CMRequest::MaxHops + 1), roles).isError());
}

TEST(CMRedirectRowsNode, ForwardsChangesOfItsTarget)
{
    CMRootWorker root;
    ScriptThread thread(QStringLiteral("W"), [](ScriptWorker &self) {
        CMRedirectRowsNode::create(self.nodes(), path("W:"), path("Other:target"));
    });
    QObject context;
    std::vector<CMChange> told;
    auto subscription = root.subscribe(
        path("W:"), &context, [&](const CMChange &change) { told.push_back(change); });
    ASSERT_TRUE(getData(root, path("W:"), roles).wait());
    CMSubscribe().changedStartingWith(
        path("Other:target"), CMSubscribe::RowsChangeInserted(), 2, 4);
    ASSERT_TRUE(spinUntil([&] { return !told.empty(); }));
    EXPECT_EQ(told.front().path, path("W:"));
    EXPECT_EQ(told.front().kind, CMSubscribe::RowsChangeInserted());
    EXPECT_EQ(told.front().first, 2);
    EXPECT_EQ(told.front().last, 4);
    subscription.reset();
    getData(root, path("W:"), roles).wait();
}

TEST(CMRedirectRowsNode, RedirectsInACircleStopForwardingChanges)
{
    CMRootWorker root;
    ScriptThread thread(QStringLiteral("W"), [](ScriptWorker &self) {
        CMRedirectRowsNode::create(self.nodes(), path("W:a"), path("W:b"));
        CMRedirectRowsNode::create(self.nodes(), path("W:b"), path("W:a"));
    });
    QObject context;
    std::vector<CMChange> told;
    const auto subscription = root.subscribe(
        path("W:a"), &context, [&](const CMChange &change) { told.push_back(change); });
    // The worker's event loop handles each node's subscription to the other in a turn of its own.
    for (int i = 0; i < 2; ++i)
        getData(root, path("W:b"), roles).wait();
    CMSubscribe().changed(path("W:b"), CMSubscribe::RowsChangeInserted(), 0, 0);
    ASSERT_TRUE(
        spinUntil([&] { return !told.empty() && told.back().hops >= CMRequest::MaxHops - 1; }));
    // Time for more hops than are allowed.
    for (int i = 0; i < 2 * CMRequest::MaxHops; ++i) {
        ASSERT_TRUE(getData(root, path("W:b"), roles).wait());
        QCoreApplication::processEvents();
    }
    EXPECT_LE(told.size(), static_cast<std::size_t>(CMRequest::MaxHops));
}

TEST(CMRequest, RedirectsOnlyAsOftenAsAllowed)
{
    const Answer answer;
    CMRequest request = CMGetRowsRequest(path("A:0"), roles, 1, 2, answer.reply());
    for (int i = 0; i < CMRequest::MaxHops; ++i)
        request = request.redirectedTo(path("B:x"));
    EXPECT_EQ(request.path(), path("B:x"));
    EXPECT_EQ(CMGetRowsRequest(request).first(), 1);
    EXPECT_EQ(CMGetRowsRequest(request).last(), 2);
    EXPECT_EQ(CMGetRowsRequest(request).roles(), roles);
    EXPECT_FALSE(answer.isThere());
    const CMRequest once = request.redirectedTo(path("B:x"));
    EXPECT_EQ(once.kind(), CMRequest::None);
    EXPECT_TRUE(answer.isError());
}

TEST(CMRequest, IsEmptyByDefault)
{
    const CMRequest empty;
    EXPECT_EQ(empty.kind(), CMRequest::None);
    EXPECT_TRUE(empty.path().isEmpty());
    EXPECT_TRUE(empty.reply().isNull());
    EXPECT_EQ(empty.redirectedTo(path("A:x")).kind(), CMRequest::None);
}

TEST(CMRequestDeathTest, CannotBeReadAsAnotherKind)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const CMGetDataRequest request(path("A:x"), roles, CMReply<QVariant>());
    EXPECT_EXIT(CMGetRowsRequest(static_cast<const CMRequest &>(request)),
        testing::KilledBySignal(SIGABRT), "");
}

TEST(CMRequest, KeepsItsHopsWhenItIsRebuilt)
{
    const Answer answer;
    const CMRequest request = CMGetDataRequest(path("A:x"), {VeskRoles::Value()}, answer.reply());
    EXPECT_EQ(request.hops(), 0);
    EXPECT_EQ(request.redirectedTo(path("B:x")).hops(), 1);
    const CMRequest late = request.withHops(CMRequest::MaxHops);
    EXPECT_EQ(late.hops(), CMRequest::MaxHops);
    EXPECT_EQ(late.path(), path("A:x"));
    EXPECT_EQ(request.hops(), 0);
    EXPECT_EQ(late.redirectedTo(path("B:x")).kind(), CMRequest::None);
    EXPECT_TRUE(answer.isError());
}

} // namespace
