// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMListRowsNode.h"

#include "tests/api/nodes/TestNodes.h"

#include <QCoreApplication>

#include <climits>

namespace {

const QStringList titleAndPath {VeskRoles::Title(), VeskRoles::Path()};

QStringList titles(const VeskRowsRoles &answer)
{
    QStringList result;
    for (const QVariant &row : answer.rows())
        result.append(TrString::fromVariant(row.toList().value(0)).toString());
    return result;
}

QStringList paths(const VeskRowsRoles &answer)
{
    QStringList result;
    for (const QVariant &row : answer.rows())
        result.append(row.toList().value(1).toString());
    return result;
}

VeskRoles titled(const char *title)
{
    VeskRoles roles;
    roles.setTitle(text(title));
    return roles;
}

/// A list of five rows "r0" to "r4".
void buildFive(ScriptWorker &worker)
{
    CMListRowsNode *list = CMListRowsNode::create(worker.nodes(), path("W:list"));
    for (const char *title : {"r0", "r1", "r2", "r3", "r4"})
        list->rowsAppend(titled(title));
}

TEST(CMListRowsNode, ARowMayHaveGivenRolesBesideItsNodes)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMListRowsNode *list = CMListRowsNode::create(worker.nodes(), path("W:list"));
    auto *node = ScriptNode::create(worker.nodes(), path("W:a"));
    node->setTitle(text("asked"));
    VeskRoles given;
    given.setId(QStringLiteral("given"));
    given.setIcon(QStringLiteral("icon:given"));
    given.insert(VeskRoles::Search(), QVariant());
    list->rowsAppend(path("W:a"), given);
    list->rowsAppend(path("W:missing"), given);

    const QStringList roles {VeskRoles::Title(), VeskRoles::Id(), VeskRoles::Icon(),
        VeskRoles::Search(), VeskRoles::Path()};
    const Answer answer = getRows(worker, path("W:list"), roles, 0, 9);
    ASSERT_TRUE(answer.isThere());
    const QVariantList first = answer.rows().rows().value(0).toList();
    EXPECT_EQ(TrString::fromVariant(first.value(0)), text("asked"));
    EXPECT_EQ(first.mid(1),
        (QVariantList {QStringLiteral("given"), QStringLiteral("icon:given"), QVariant(),
            QStringLiteral("W:a")}));
    EXPECT_EQ(answer.rows().rows().value(1).toList(),
        (QVariantList {QVariant(), QStringLiteral("given"), QStringLiteral("icon:given"),
            QVariant(), QStringLiteral("W:missing")}))
        << "even when the node fails";
}

TEST(CMListRowsNode, AsksNoNodeForGivenRolesAlone)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMListRowsNode *list = CMListRowsNode::create(worker.nodes(), path("W:list"));
    int asked = 0;
    ScriptNode::create(worker.nodes(), path("W:a"), [&](const CMRequest &request) {
        ++asked;
        request.reply().setValue(QVariantList {QStringLiteral("asked"), QVariant()});
        return true;
    });
    VeskRoles given;
    given.setId(QStringLiteral("given"));
    given.insert(VeskRoles::Search(), QVariant());
    list->rowsAppend(path("W:a"), given);
    list->rowsAppend(path("W:a"));

    const Answer known = getRows(
        worker, path("W:list"), {VeskRoles::Id(), VeskRoles::Path(), VeskRoles::Search()}, 0, 0);
    ASSERT_TRUE(known.isThere());
    EXPECT_EQ(known.rows().rows().value(0).toList(),
        (QVariantList {QStringLiteral("given"), QStringLiteral("W:a"), QVariant()}));
    EXPECT_EQ(asked, 0);
    ASSERT_TRUE(
        getRows(worker, path("W:list"), {VeskRoles::Id(), VeskRoles::Icon()}, 0, 0).isThere());
    EXPECT_EQ(asked, 1) << "one of the roles is not given";
    ASSERT_TRUE(getRows(worker, path("W:list"), {VeskRoles::Path()}, 1, 1).isThere());
    EXPECT_EQ(asked, 2) << "nothing is given";
}

TEST(CMListRowsNode, AnswersRowsOfBothKindsInTheirOrder)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMListRowsNode *list = CMListRowsNode::create(worker.nodes(), path("W:list"));
    list->setTitle(text("List"));
    list->rowsAppend(titled("given"));
    ScriptNode::create(worker.nodes(), path("W:a"))->setTitle(text("asked"));
    list->rowsAppend(path("W:a"));

    const Answer answer = getRows(worker, path("W:list?p=1"), titleAndPath, 0, 99);
    ASSERT_TRUE(answer.isThere()) << "own rows need no event loop";
    EXPECT_EQ(answer.rows().rowsCount(), 2);
    EXPECT_EQ(
        titles(answer.rows()), (QStringList {QStringLiteral("given"), QStringLiteral("asked")}));
    EXPECT_EQ(paths(answer.rows()), (QStringList {QString(), QStringLiteral("W:a")}));
    EXPECT_EQ(answer.rows().roles().title(), text("List"));
    EXPECT_EQ(answer.rows().roles().path(), path("W:list?p=1"));
    EXPECT_FALSE(list->servesBelow());
}

TEST(CMListRowsNode, AnswersAllRolesInTheirOrder)
{
    ScriptWorker worker(QStringLiteral("W"));
    buildFive(worker);
    const Answer answer = getRows(worker, path("W:list"), CMAllRoles(), 0, 0);
    const QVariantList row = answer.rows().rows().value(0).toList();
    ASSERT_EQ(row.size(), VeskRoles::all().size());
    EXPECT_EQ(
        TrString::fromVariant(row.at(VeskRoles::all().indexOf(VeskRoles::Title()))), text("r0"));
}

struct Range {
    int first;
    int last;
    QStringList expected;
};

TEST(CMListRowsNode, CutsTheRangeAndCountsAll)
{
    ScriptWorker worker(QStringLiteral("W"));
    buildFive(worker);
    const auto row = [](int i) { return QStringLiteral("r%1").arg(i); };
    const std::vector<Range> ranges {
        {0, 0, {row(0)}},
        {1, 2, {row(1), row(2)}},
        {3, 99, {row(3), row(4)}},
        {4, INT_MAX, {row(4)}},
        {5, 9, {}},
        {INT_MAX, INT_MAX, {}},
    };
    for (const Range &range : ranges) {
        const Answer answer
            = getRows(worker, path("W:list"), titleAndPath, range.first, range.last);
        ASSERT_TRUE(answer.isThere());
        ASSERT_FALSE(answer.isError());
        EXPECT_EQ(titles(answer.rows()), range.expected) << range.first << "-" << range.last;
        EXPECT_EQ(answer.rows().rowsCount(), 5);
    }
}

TEST(CMListRowsNode, RefusesAnInvalidRange)
{
    ScriptWorker worker(QStringLiteral("W"));
    buildFive(worker);
    for (const auto &[first, last] :
        {std::pair(-1, 3), {0, -1}, {3, 2}, {INT_MIN, INT_MAX}, {INT_MAX, INT_MIN}}) {
        const Answer answer = getRows(worker, path("W:list"), titleAndPath, first, last);
        ASSERT_TRUE(answer.isThere());
        EXPECT_EQ(answer.errorText(), QStringLiteral("The range of rows is not valid."));
    }
}

TEST(CMListRowsNode, AnEmptyListHasNoRows)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMListRowsNode::create(worker.nodes(), path("W:list"));
    const Answer answer = getRows(worker, path("W:list"), titleAndPath, 0, 99);
    ASSERT_TRUE(answer.isThere());
    EXPECT_EQ(answer.rows().rowsCount(), 0);
    EXPECT_TRUE(answer.rows().rows().isEmpty());
    EXPECT_FALSE(answer.isError());
}

TEST(CMListRowsNode, AFailedRowHasNullsExceptForItsPath)
{
    CMRootWorker root;
    ScriptWorker worker(QStringLiteral("W"));
    CMListRowsNode *list = CMListRowsNode::create(worker.nodes(), path("W:list"));
    list->rowsAppend(path("Gone:x"));
    list->rowsAppend(path("W:gone"));
    list->rowsAppend(path("W:refuses"));
    list->rowsAppend(path("W:odd"));
    ScriptNode::create(worker.nodes(), path("W:refuses"), [](const CMRequest &) { return false; });
    ScriptNode::create(worker.nodes(), path("W:odd"), [](const CMRequest &request) {
        request.reply().setValue(QStringLiteral("no list"));
        return true;
    });
    const Answer answer = getRows(worker, path("W:list"), titleAndPath, 0, 99);
    ASSERT_TRUE(answer.isThere());
    EXPECT_EQ(paths(answer.rows()),
        (QStringList {QStringLiteral("Gone:x"), QStringLiteral("W:gone"),
            QStringLiteral("W:refuses"), QStringLiteral("W:odd")}));
    for (const QVariant &row : answer.rows().rows()) {
        ASSERT_EQ(row.toList().size(), 2);
        EXPECT_TRUE(row.toList().at(0).isNull());
    }
}

TEST(CMListRowsNode, ANullTextIsNoPathOfARow)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMListRowsNode *list = CMListRowsNode::create(worker.nodes(), path("W:list"));
    ScriptNode::create(worker.nodes(), path("W:a"), [](const CMRequest &request) {
        request.reply().setValue(QVariantList {text("a"), QString()});
        return true;
    });
    list->rowsAppend(path("W:a"));
    EXPECT_EQ(paths(getRows(worker, path("W:list"), titleAndPath, 0, 0).rows()),
        QStringList {QStringLiteral("W:a")});
}

TEST(CMListRowsNode, AsksRowsOfAnotherWorkerWithoutWaiting)
{
    CMRootWorker root;
    Gate released;
    ScriptThread other(QStringLiteral("Other"), [&](ScriptWorker &self) {
        ScriptNode::create(self.nodes(), path("Other:slow"), [&](const CMRequest &request) {
            EXPECT_TRUE(released.wait());
            request.reply().setValue(QVariantList {text("slow"), request.path().toEncoded()});
            return true;
        });
        ScriptNode::create(self.nodes(), path("Other:title"))->setTitle(text("other"));
    });
    ScriptThread thread(QStringLiteral("W"), [](ScriptWorker &self) {
        CMListRowsNode *list = CMListRowsNode::create(self.nodes(), path("W:list"));
        list->rowsAppend(path("Other:slow"));
        list->rowsAppend(titled("own"));
        list->rowsAppend(path("Other:title"));
        ScriptNode::create(self.nodes(), path("W:free"))->setTitle(text("free"));
    });
    const Answer answer = getRows(root, path("W:list"), titleAndPath, 0, 99);
    // The list's worker serves other requests while a row's response is outstanding.
    ASSERT_TRUE(getData(root, path("W:free"), titleAndPath).wait());
    EXPECT_FALSE(answer.isThere());
    released.open();
    ASSERT_TRUE(answer.wait());
    EXPECT_EQ(titles(answer.rows()),
        (QStringList {QStringLiteral("slow"), QStringLiteral("own"), QStringLiteral("other")}));
}

TEST(CMListRowsNode, AnswersWithAnErrorWhenDestroyedBeforeARowHasAnswered)
{
    CMRootWorker root;
    std::vector<CMRequest> kept;
    ScriptThread other(QStringLiteral("Other"), [&](ScriptWorker &self) {
        ScriptNode::create(self.nodes(), path("Other:x"), [&](const CMRequest &request) {
            kept.push_back(request);
            return true;
        });
    });
    Answer answer;
    {
        ScriptThread thread(QStringLiteral("W"), [](ScriptWorker &self) {
            CMListRowsNode::create(self.nodes(), path("W:list"))->rowsAppend(path("Other:x"));
        });
        answer = getRows(root, path("W:list"), titleAndPath, 0, 99);
        EXPECT_TRUE(spinUntil([&] {
            bool asked = false;
            other.call([&] { asked = !kept.empty(); });
            return asked;
        }));
        EXPECT_FALSE(answer.isThere());
    }
    ASSERT_TRUE(answer.isThere());
    EXPECT_EQ(answer.errorName(), CMError::UnansweredName());
    other.call([&] { kept.clear(); });
}

TEST(CMListRowsNode, CopiesItsPathsParametersToItsRows)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMListRowsNode *list = CMListRowsNode::create(worker.nodes(), path("W:list"));
    ScriptNode::create(worker.nodes(), path("W:a"));
    list->rowsAppend(path("W:a?own=1&both=row"));
    list->rowsAppend(path("W:gone"));
    const CMPath opened = path("W:list?both=opened&sid=s1");
    EXPECT_EQ(paths(getRows(worker, opened, titleAndPath, 0, 99).rows()),
        (QStringList {QStringLiteral("W:a?both=row&own=1"), QStringLiteral("W:gone")}));
    list->setCopyPathParams(true);
    EXPECT_EQ(paths(getRows(worker, opened, titleAndPath, 0, 99).rows()),
        (QStringList {QStringLiteral("W:a?both=row&own=1&sid=s1"),
            QStringLiteral("W:gone?both=opened&sid=s1")}));
}

TEST(CMListRowsNode, FindsTheRowWithAValue)
{
    CMRootWorker root;
    ScriptThread other(QStringLiteral("Other"), [](ScriptWorker &self) {
        ScriptNode::create(self.nodes(), path("Other:x"))->setIcon(QStringLiteral("icon"));
    });
    ScriptThread thread(QStringLiteral("W"), [](ScriptWorker &self) {
        CMListRowsNode *list = CMListRowsNode::create(self.nodes(), path("W:list"));
        list->rowsAppend(titled("first"));
        list->rowsAppend(titled("second"));
        list->rowsAppend(path("Other:x"));
    });
    const auto match = [&](const QString &role, const QVariant &value) {
        const Answer answer = matchRow(root, path("W:list"), role, value);
        EXPECT_TRUE(answer.wait());
        EXPECT_FALSE(answer.isError());
        return answer.value();
    };
    EXPECT_EQ(match(VeskRoles::Title(), text("second")), QVariant(1));
    EXPECT_EQ(match(VeskRoles::Title(), QStringLiteral("second")), QVariant(1));
    EXPECT_EQ(match(VeskRoles::Icon(), QStringLiteral("icon")), QVariant(2));
    EXPECT_EQ(match(VeskRoles::Path(), QStringLiteral("Other:x")), QVariant(2));
    EXPECT_EQ(match(VeskRoles::Icon(), QStringLiteral("none")), QVariant(-1));
}

class ListSubscription : public testing::Test {
protected:
    std::unique_ptr<CMSubscription> subscribe(const char *to)
    {
        auto subscription = root.subscribe(path(to), &context, [this](const CMChange &change) {
            told.append(QStringLiteral("%1 %2 %3")
                            .arg(change.path.toEncoded(), change.kind)
                            .arg(change.first));
        });
        // Queued behind the notice of the subscription, so the worker has handled that.
        EXPECT_TRUE(getData(root, path("W:list"), {}).wait());
        return subscription;
    }

    CMRootWorker root;
    QObject context;
    QStringList told;
    CMListRowsNode *list = nullptr;
    ScriptNode *row = nullptr;
    ScriptThread other {QStringLiteral("Other"),
        [this](ScriptWorker &self) { row = ScriptNode::create(self.nodes(), path("Other:x")); }};
    ScriptThread thread {QStringLiteral("W"), [this](ScriptWorker &self) {
                             list = CMListRowsNode::create(self.nodes(), path("W:list"));
                             list->setCopyPathParams(true);
                             list->rowsAppend(titled("given"));
                             list->rowsAppend(path("Other:x"));
                         }};
};

TEST_F(ListSubscription, ForwardsChangesOfARow)
{
    const auto subscription = subscribe("W:list?p=1");
    other.call([&] { row->setDisabled(true); });
    EXPECT_TRUE(spinUntil([&] { return !told.isEmpty(); }));
    EXPECT_EQ(told, QStringList {QStringLiteral("W:list?p=1 rowsChanged 1")});

    CMSubscribe().changed(path("Other:x?p=1"), CMSubscribe::RowsChangeReset(), -1, -1);
    EXPECT_TRUE(spinUntil([&] { return told.size() == 2; }));
    EXPECT_EQ(told.last(), QStringLiteral("W:list?p=1 rowsChanged 1"));
}

TEST_F(ListSubscription, DoesNotForwardChangesOfARowsOwnScreen)
{
    const auto subscription = subscribe("W:list");
    CMSubscribe().changed(path("Other:x"), CMSubscribe::RowsChangeInserted(), 0, 0);
    CMSubscribe().changed(path("Other:x"), CMSubscribe::RowsChangeChanged(), 0, 0);
    CMSubscribe().changed(path("Other:x"), CMSubscribe::ValueChanged(), -1, -1);
    EXPECT_TRUE(spinUntil([&] { return !told.isEmpty(); }));
    EXPECT_EQ(told, QStringList {QStringLiteral("W:list rowsChanged 1")});
}

TEST_F(ListSubscription, DoesNotForwardAResetThatCoversTheList)
{
    thread.call([&] {
        CMNode *below = ScriptNode::create(thread.worker().nodes(), path("W:list/row"));
        list->rowsAppend(below->path());
    });
    const auto subscription = subscribe("W:list?p=1&q=2");
    CMSubscribe().changedStartingWith(path("W:list?p=1"), CMSubscribe::RowsChangeReset(), -1, -1);
    EXPECT_TRUE(spinUntil([&] { return !told.isEmpty(); }));
    // Changes of the row alone, and of prefixes that do not cover the list, are passed on.
    const auto tellsNext = [&](const char *news) {
        const int before = told.size();
        EXPECT_TRUE(spinUntil([&] { return told.size() > before; }));
        EXPECT_EQ(told.last(), QLatin1String(news));
    };
    CMSubscribe().changed(path("W:list/row?p=1&q=2"), CMSubscribe::RowsChangeReset(), -1, -1);
    tellsNext("W:list?p=1&q=2 rowsChanged 2");
    CMSubscribe().changedStartingWith(path("W:list/row"), CMSubscribe::RowsChangeReset(), -1, -1);
    tellsNext("W:list?p=1&q=2 rowsChanged 2");
    CMSubscribe().changedStartingWith(path("Other:"), CMSubscribe::RowsChangeReset(), -1, -1);
    tellsNext("W:list?p=1&q=2 rowsChanged 1");
    EXPECT_EQ(told.size(), 4);
    EXPECT_EQ(told.first(), QStringLiteral("W:list?p=1&q=2 rowsReset -1"));
}

TEST_F(ListSubscription, FollowsItsRowsOnlyWhileItHasSubscribers)
{
    auto subscription = subscribe("W:list");
    EXPECT_TRUE(getData(root, path("Other:x"), {}).wait());
    other.call([&] { EXPECT_EQ(row->added.size(), 1U); });
    subscription.reset();
    EXPECT_TRUE(getData(root, path("W:list"), {}).wait());
    EXPECT_TRUE(getData(root, path("Other:x"), {}).wait());
    other.call([&] { EXPECT_EQ(row->removed, row->added); });
}

TEST_F(ListSubscription, NotifiesOfAppendedRowsAndFollowsThem)
{
    const auto subscription = subscribe("W:list");
    thread.call([&] { list->rowsAppend(path("Other:x")); });
    EXPECT_TRUE(spinUntil([&] { return !told.isEmpty(); }));
    EXPECT_EQ(told, QStringList {QStringLiteral("W:list rowsInserted 2")});
    other.call([&] { row->setDisabled(true); });
    EXPECT_TRUE(spinUntil([&] { return told.size() == 3; }));
    told.sort();
    EXPECT_EQ(told.mid(0, 2),
        (QStringList {
            QStringLiteral("W:list rowsChanged 1"), QStringLiteral("W:list rowsChanged 2")}));
}

TEST_F(ListSubscription, ResetsItselfWhenTheLanguageChanges)
{
    const auto subscription = subscribe("W:list?p=1");
    root.notifyLanguageChanged();
    EXPECT_TRUE(
        spinUntil([&] { return told.contains(QStringLiteral("W:list?p=1 rowsReset -1")); }));
}

TEST_F(ListSubscription, ListsInACircleStopForwardingChanges)
{
    thread.call([&] {
        CMListRowsNode::create(thread.worker().nodes(), path("W:b"))->rowsAppend(path("W:list"));
        list->rowsAppend(path("W:b"));
    });
    const auto subscription = subscribe("W:list");
    EXPECT_TRUE(getData(root, path("W:b"), {}).wait());
    CMSubscribe().changed(path("W:b"), CMSubscribe::ValueChanged(), -1, -1);
    EXPECT_TRUE(spinUntil([&] { return !told.isEmpty(); }));
    for (int i = 0; i < 10; ++i) {
        ASSERT_TRUE(getData(root, path("W:list"), {}).wait());
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(told, QStringList {QStringLiteral("W:list rowsChanged 2")});
}

} // namespace
