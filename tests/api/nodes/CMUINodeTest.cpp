// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMUINode.h"

#include "api/nodes/CMActivateNode.h"
#include "api/nodes/CMContainerNode.h"
#include "api/nodes/CMQueryNode.h"
#include "tests/api/nodes/TestNodes.h"

#include <QCoreApplication>

namespace {

/// Sends a request to a node that lives in this thread.
QVariantList ask(CMNode &node, const CMPath &to, const QStringList &roles)
{
    const Answer answer;
    EXPECT_TRUE(node.request(CMGetDataRequest(to, roles, answer.reply())));
    EXPECT_TRUE(answer.isThere());
    EXPECT_FALSE(answer.isError());
    return answer.list();
}

/// A node of others, which has null texts for what it does not have.
class NullTextNode : public CMUINode {
public:
    using CMUINode::CMUINode;

    QVariant getRoleData(const QString &, const Params &) override { return QString(); }
};

VeskMediaData mediaData()
{
    VeskMetaData metaData;
    metaData.setServiceID(QStringLiteral("tunein"));
    VeskMediaData data;
    data.setMetaData(metaData);
    return data;
}

TEST(CMUINode, AnswersAValuePerRoleInTheirOrder)
{
    CMUINode node(path("W:x"));
    node.setTitle(text("Title"));
    node.setDescription(text("Description"));
    node.setIcon(QStringLiteral("icon"));
    node.setMediaData(mediaData());
    const QVariantList values = ask(node, path("W:x"),
        {VeskRoles::Icon(), QStringLiteral("unknown"), VeskRoles::MediaData(), VeskRoles::Title(),
            VeskRoles::Description(), VeskRoles::Type(), VeskRoles::Icon()});
    ASSERT_EQ(values.size(), 7);
    EXPECT_EQ(values.at(0), QVariant(QStringLiteral("icon")));
    EXPECT_FALSE(values.at(1).isValid());
    EXPECT_EQ(VeskMediaData(VeskHash(values.at(2).toHash())), mediaData());
    EXPECT_EQ(values.at(3).value<TrString>(), text("Title"));
    EXPECT_EQ(values.at(4).value<TrString>(), text("Description"));
    EXPECT_FALSE(values.at(5).isValid());
    EXPECT_EQ(values.at(6), values.at(0));
}

TEST(CMUINode, HasNoValueForWhatWasNotSet)
{
    CMUINode node(path("W:x"));
    for (const QVariant &value : ask(node, path("W:x"),
             {VeskRoles::Title(), VeskRoles::Description(), VeskRoles::Icon(),
                 VeskRoles::MediaData(), VeskRoles::Disabled()}))
        EXPECT_FALSE(value.isValid());
}

TEST(CMUINode, AnswersThePathItWasAskedAt)
{
    CMUINode node(path("W:x"));
    EXPECT_EQ(ask(node, path("W:x/y?p=1"), {VeskRoles::Path()}),
        QVariantList {QStringLiteral("W:x/y?p=1")});
}

TEST(CMUINode, AnswersEveryRoleInTheirOwnOrder)
{
    CMUINode node(path("W:x"));
    node.setIcon(QStringLiteral("icon"));
    const QVariantList values = ask(node, path("W:x"), CMAllRoles());
    ASSERT_EQ(values.size(), VeskRoles::all().size());
    for (int i = 0; i < values.size(); ++i) {
        const QString &role = VeskRoles::all().at(i);
        EXPECT_EQ(values.at(i).isValid(), role == VeskRoles::Icon() || role == VeskRoles::Path())
            << role.toStdString();
    }
}

TEST(CMUINode, CollectsItsRolesWithoutNulls)
{
    CMUINode node(path("W:x?own=1"));
    node.setIcon(QStringLiteral("icon"));
    node.setTitle(text("Title"));
    const CMUINode::Params params {{QStringLiteral("p"), QStringLiteral("2")}};
    const VeskRoles some = node.getDataRoles({VeskRoles::Icon(), VeskRoles::Description()}, params);
    EXPECT_EQ(some.toHash(),
        (QVariantHash {{VeskRoles::Icon(), QStringLiteral("icon")},
            {VeskRoles::Path(), QStringLiteral("W:x?own=1&p=2")}}));

    const VeskRoles all = node.getDataRoles(CMAllRoles(), {});
    EXPECT_EQ(all.size(), 3);
    EXPECT_EQ(all.title(), text("Title"));
    EXPECT_EQ(all.path(), path("W:x?own=1"));
    EXPECT_EQ(node.getDataRoles({}, {}).size(), 1);
    EXPECT_EQ(NullTextNode(path("W:x")).getDataRoles(CMAllRoles(), {}).toHash(),
        (QVariantHash {{VeskRoles::Path(), QStringLiteral("W:x")}}));
}

TEST(CMUINode, AnswersWhetherItIsDisabledAndNotifiesSubscribers)
{
    CMRootWorker root;
    ScriptWorker worker(QStringLiteral("W"));
    ScriptNode *node = ScriptNode::create(worker.nodes(), path("W:x"));
    QObject context;
    int told = 0;
    const auto subscription
        = root.subscribe(path("W:x?p=1"), &context, [&](const CMChange &change) {
              EXPECT_EQ(change.kind, CMSubscribe::ValueChanged());
              ++told;
          });
    node->setDisabled(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(ask(*node, path("W:x"), {VeskRoles::Disabled()}), QVariantList {true});
    node->setDisabled(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(told, 1);
    node->setDisabled(false);
    QCoreApplication::processEvents();
    EXPECT_EQ(told, 2);
    EXPECT_FALSE(ask(*node, path("W:x"), {VeskRoles::Disabled()}).first().isValid());
}

TEST(CMUINode, MayBeDisabledBeforeItIsRegistered)
{
    CMUINode node(path("W:x"));
    node.setDisabled(true);
    node.languageChanged();
    EXPECT_EQ(node.subscribe(), nullptr);
    EXPECT_EQ(ask(node, path("W:x"), {VeskRoles::Disabled()}), QVariantList {true});
}

TEST(CMContainerNode, AnswersItsTypeAndContainerType)
{
    CMContainerNode node(path("W:x"));
    const QStringList roles {
        VeskRoles::Type(), VeskRoles::ContainerType(), VeskRoles::Playable(), VeskRoles::Icon()};
    EXPECT_EQ(ask(node, path("W:x"), roles), (QVariantList {1, {}, {}, {}}));
    node.setContainerType(VeskRolesContainerType::ContextMenu);
    node.setPlayable(true);
    node.setIcon(QStringLiteral("i"));
    EXPECT_EQ(ask(node, path("W:x"), roles), (QVariantList {1, 100, true, QStringLiteral("i")}));
    EXPECT_TRUE(node.servesBelow());
}

TEST(CMContainerNode, ResetsItsScreensWhenTheLanguageChanges)
{
    CMRootWorker root;
    ScriptWorker worker(QStringLiteral("W"));
    auto *node = new CMContainerNode(path("W:x"));
    node->setNodes(worker.nodes());
    QObject context;
    QStringList told;
    const auto subscription = root.subscribe(
        path("W:x/y?p=1"), &context, [&](const CMChange &change) { told.append(change.kind); });
    root.notifyLanguageChanged();
    EXPECT_TRUE(spinUntil([&] { return !told.isEmpty(); }));
    EXPECT_EQ(told, QStringList {CMSubscribe::RowsChangeReset()});
}

TEST(CMQueryNode, AnswersItsQueryAndPath)
{
    ScriptWorker worker(QStringLiteral("W"));
    CMQueryNode *node = CMQueryNode::create(worker.nodes(), path("W:search"));
    const QStringList roles {
        VeskRoles::Type(), VeskRoles::Query(), VeskRoles::QueryPath(), VeskRoles::Title()};
    EXPECT_EQ(ask(*node, path("W:search"), roles), (QVariantList {5, {}, {}, {}}));
    node->setQuery(QStringLiteral("query"));
    node->setQueryPath(path("W:browse?veskTuneInMethod=search"));
    EXPECT_EQ(ask(*node, path("W:search"), roles).mid(0, 3),
        (QVariantList {
            5, QStringLiteral("query"), QStringLiteral("W:browse?veskTuneInMethod=search")}));
    EXPECT_FALSE(node->servesBelow());
}

} // namespace
