// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/AddressGate.h"

#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMQueryNode.h"
#include "api/nodes/CMRootWorker.h"
#include "api/values/VeskRoles.h"
#include "api/web/VeskJson.h"
#include "host/rpc/RpcMethods.h"
#include "tests/host/rpc/Peer.h"
#include "tests/support/WorkerThread.h"

#include <gtest/gtest.h>

namespace {

CMPath pathOf(const char *text)
{
    return CMPath::fromEncoded(QString::fromLatin1(text));
}

/// Counts how often it is opened.
class CountingNode : public CMContainerNode {
public:
    using CMContainerNode::CMContainerNode;

    bool getRowsRequest(const CMGetRowsRequest &request) override
    {
        ++opened;
        request.reply().setValue(QVariantHash());
        return true;
    }
    bool getDataRequest(const CMGetDataRequest &request) override
    {
        ++read;
        request.reply().setValue(QVariantList());
        return true;
    }

    int opened = 0;
    int read = 0;
};

/// A service whose paths below "change" have side effects when opened; it offers some of them.
class AddressGateTest : public testing::Test {
protected:
    AddressGateTest()
        : m_worker({}, QStringLiteral("Radio"))
        , m_changing(new CountingNode(pathOf("Radio:change")))
    {
        m_changing->setNodes(m_worker.nodes());
        ChangingAddresses changing;
        changing.base = QStringLiteral("change");
        changing.words = QStringList {QStringLiteral("change")};
        m_gate.declare(pathOf("Radio:"), {changing});
        m_methods.setGate(&m_gate);

        CMListRowsNode *list = CMListRowsNode::create(m_worker.nodes(), pathOf("Radio:list"));
        VeskRoles row;
        row.setPath(pathOf("Radio:change/path?id=1"));
        VeskRoles menu;
        menu.setPath(pathOf("Radio:change/menu"));
        row.insert(VeskRoles::Context(), menu);
        row.setQueryPath(pathOf("Radio:change/query"));
        row.setTitle(TrString("Test", "Radio:change/title"));
        list->rowsAppend(row);
    }

    int codeOf(const char *method, const char *path, MessagePeer *peer = nullptr)
    {
        QByteArray answer;
        m_rpc.handle(QByteArray("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"") + method
                + "\",\"params\":{\"path\":\"" + path + "\",\"role\":\"activate\",\"value\":1}}",
            {peer, peer, {}}, [&](const QByteArray &bytes) { answer = bytes; });
        EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
        VeskError error;
        m_error = VeskJson::parse(answer, error).toHash().value(QStringLiteral("error")).toHash();
        return m_error.value(QStringLiteral("code")).toInt();
    }

    CMRootWorker m_root;
    CMNodesWorker m_worker;
    CountingNode *const m_changing;
    JsonRpcDispatcher m_rpc;
    AddressGate m_gate;
    RpcMethods m_methods {&m_rpc};
    QVariantHash m_error;
    Peer m_page;
};

constexpr int NotOffered = JsonRpcError::NotOffered;

} // namespace

TEST_F(AddressGateTest, RefusesAPathThatNoListHasOffered)
{
    for (const char *method : {"getRows", "getData"}) {
        for (MessagePeer *peer :
            {static_cast<MessagePeer *>(nullptr), static_cast<MessagePeer *>(&m_page)}) {
            EXPECT_EQ(codeOf(method, "Radio:change/path?id=1", peer), NotOffered);
            EXPECT_EQ(m_error.value(QStringLiteral("message")),
                QStringLiteral("This address changes something. It can only be opened from a list "
                               "that offers it."));
            EXPECT_EQ(m_error.value(QStringLiteral("data")).toHash().value(QStringLiteral("name")),
                QStringLiteral("notOffered"));
        }
    }
    EXPECT_EQ(m_changing->opened, 0);
    EXPECT_EQ(m_changing->read, 0);
}

TEST_F(AddressGateTest, OpensAPathThatAListHasOffered)
{
    for (MessagePeer *peer :
        {static_cast<MessagePeer *>(&m_page), static_cast<MessagePeer *>(nullptr)}) {
        EXPECT_EQ(codeOf("getRows", "Radio:list", peer), 0);
        EXPECT_EQ(codeOf("getRows", "Radio:change/path?id=1", peer), 0);
        EXPECT_EQ(codeOf("getRows", "Radio:change/path?i%64=%31", peer), 0)
            << "the same, written differently";
        EXPECT_EQ(codeOf("getData", "Radio:change/menu", peer), 0);
        EXPECT_EQ(codeOf("getRows", "Radio:change/query", peer), 0);
        EXPECT_EQ(codeOf("getRows", "Radio:change/title", peer), NotOffered)
            << "a path in a text is not an offer";
        EXPECT_EQ(codeOf("getRows", "Radio:change/path?id=2", peer), NotOffered);
        EXPECT_EQ(codeOf("getRows", "Radio:change/path", peer), NotOffered);
    }
    EXPECT_EQ(m_changing->opened, 6);
}

TEST_F(AddressGateTest, AnOfferOnOneWebSocketDoesNotCountOnAnother)
{
    EXPECT_EQ(codeOf("getRows", "Radio:list", &m_page), 0);
    Peer other;
    EXPECT_EQ(codeOf("getRows", "Radio:change/path?id=1", &other), NotOffered);
    EXPECT_EQ(codeOf("getRows", "Radio:change/path?id=1"), 0) << "pages of other sites cannot post";
}

TEST_F(AddressGateTest, AnOfferEndsWithItsConnection)
{
    auto page = std::make_unique<Peer>();
    EXPECT_EQ(codeOf("getRows", "Radio:list", page.get()), 0);
    void *const place = page.get();
    page->~Peer();
    Peer *const next = new (place) Peer; // the allocator may reuse the address
    EXPECT_EQ(codeOf("getRows", "Radio:change/path?id=1", next), NotOffered);
}

TEST_F(AddressGateTest, DoesNotRestrictSetData)
{
    EXPECT_NE(codeOf("setData", "Radio:change/path?id=1", &m_page), NotOffered);
    EXPECT_EQ(codeOf("subscribe", "Radio:change/path?id=1", &m_page), 0);
    EXPECT_EQ(m_changing->opened, 0) << "subscribing opens nothing";
}

TEST_F(AddressGateTest, OpensEverythingWithoutADeclaration)
{
    m_methods.setGate(nullptr);
    EXPECT_EQ(codeOf("getRows", "Radio:change/path?id=1", &m_page), 0);
    const AddressGate nothingDeclared;
    EXPECT_TRUE(nothingDeclared.mayOpen(pathOf("Radio:change/path?id=1"), nullptr));
}

TEST(OfferedPathsTest, KeepsTheLatest)
{
    OfferedPaths offered(3);
    const auto path = [](int i) { return pathOf("Radio:list") + QString::number(i); };
    for (int i = 0; i < 3; ++i)
        offered.add(path(i));
    offered.add(path(0));
    offered.add(path(3));
    EXPECT_EQ(offered.size(), 3);
    EXPECT_TRUE(offered.contains(path(0)));
    EXPECT_FALSE(offered.contains(path(1)));
    EXPECT_TRUE(offered.contains(path(2)));
    EXPECT_TRUE(offered.contains(path(3)));
}
