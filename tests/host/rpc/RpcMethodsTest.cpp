// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/RpcMethods.h"

#include "api/core/Language.h"
#include "api/nodes/CMListRowsNode.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/VeskRowsRoles.h"
#include "api/web/VeskJson.h"
#include "host/rpc/ServiceFaults.h"
#include "tests/host/rpc/Peer.h"
#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>

namespace {

CMPath path(const char *text)
{
    return CMPath::fromEncoded(QString::fromLatin1(text));
}

/// A node that fails every request.
class FailingNode : public CMNode {
public:
    using CMNode::CMNode;

    bool getDataRequest(const CMGetDataRequest &request) override
    {
        request.reply().setError(CMError(QStringLiteral("err:7"),
            TrString("Test", "No associated account"), TrString("Test", "Sorry")));
        return true;
    }
    bool getRowsRequest(const CMGetRowsRequest &) override { return false; }
};

/// A screen without rows, or an error; either reports a fault of its service.
class FaultyNode : public CMNode {
public:
    using CMNode::CMNode;

    bool getRowsRequest(const CMGetRowsRequest &request) override
    {
        tell(request);
        VeskRowsRoles screen;
        screen.setRowsCount(count);
        screen.setRows(count > 0 ? QVariantList {QVariant(QVariantList {1})} : QVariantList());
        request.reply().setValue(screen);
        return true;
    }
    bool getDataRequest(const CMGetDataRequest &request) override
    {
        tell(request);
        request.reply().setError(CMError(TrString("Test", "Invalid data.")));
        return true;
    }

    VeskServiceFault fault;
    int count = 0;

private:
    void tell(const CMRequest &request) const
    {
        request.replyData()->setServiceFault([fault = fault] { return fault; });
    }
};

/// A values worker ("settings") and a nodes worker ("Test") with a list of two rows at "list".
class RpcMethodsTest : public testing::Test {
protected:
    RpcMethodsTest()
        : m_worker({}, QStringLiteral("Test"))
    {
        m_values.define(path("settings:name"), VeskValue::fromString(QStringLiteral("old")),
            CMValuesWorker::Writable, TrString("Test", "Name"));
        m_values.define(path("settings:fixed"), VeskValue::fromBool(true));
        m_root.addWorker(QStringLiteral("settings"), &m_values);

        CMListRowsNode *list
            = CMListRowsNode::create(m_worker.nodes(), m_worker.addPrefix(QStringLiteral("list")));
        list->setTitle(TrString("Test", "A list"));
        VeskRoles row;
        row.setTitle(Language::ntr(QStringLiteral("A \"row\"")));
        row.setType(VeskRolesType::Audio());
        row.setPath(m_worker.addPrefix(QStringLiteral("x?a=b c")));
        list->rowsAppend(row);
        list->rowsAppend(path("settings:name"));
        (new FailingNode(m_worker.addPrefix(QStringLiteral("failing"))))
            ->setNodes(m_worker.nodes());
    }
    ~RpcMethodsTest() override { m_root.removeWorker(&m_values); }

    QVariantHash ask(
        const QByteArray &method, const QByteArray &params, MessagePeer *peer = nullptr)
    {
        QByteArray answer;
        bool answered = false;
        m_rpc.handle("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"" + method
                + "\",\"params\":" + params + "}",
            {peer, peer, {}}, [&](const QByteArray &bytes) {
                answer = bytes;
                answered = true;
            });
        EXPECT_TRUE(spinUntil([&] { return answered; }));
        VeskError error;
        return VeskJson::parse(answer, error).toHash();
    }

    QByteArray resultOf(
        const QByteArray &method, const QByteArray &params, MessagePeer *peer = nullptr)
    {
        return VeskJson::write(ask(method, params, peer).value(QStringLiteral("result")));
    }

    QVariantHash errorOf(
        const QByteArray &method, const QByteArray &params, MessagePeer *peer = nullptr)
    {
        return ask(method, params, peer).value(QStringLiteral("error")).toHash();
    }

    int codeOf(const QByteArray &method, const QByteArray &params, MessagePeer *peer = nullptr)
    {
        return errorOf(method, params, peer).value(QStringLiteral("code")).toInt();
    }

    CMRootWorker m_root;
    CMValuesWorker m_values;
    CMNodesWorker m_worker;
    JsonRpcDispatcher m_rpc;
    RpcMethods m_methods {&m_rpc};
};

TEST_F(RpcMethodsTest, GetRowsAnswersValuesInTheOrderOfTheRoles)
{
    const QVariantHash answer
        = ask("getRows", R"({"path":"Test:list","roles":["path","title","icon"]})")
              .value(QStringLiteral("result"))
              .toHash();
    EXPECT_EQ(answer.value(QStringLiteral("rowsCount")), 2);
    EXPECT_EQ(VeskJson::write(answer.value(QStringLiteral("rows"))),
        R"([["Test:x?a=b%20c","A \"row\"",null],["settings:name","Name",null]])");
    EXPECT_EQ(answer.value(QStringLiteral("roles")).toHash().value(QStringLiteral("title")),
        QStringLiteral("A list"));
}

TEST_F(RpcMethodsTest, ReportsTheIconsThatItAnswersWith)
{
    CMListRowsNode *list
        = CMListRowsNode::create(m_worker.nodes(), m_worker.addPrefix(QStringLiteral("icons")));
    list->setIcon(QStringLiteral("http://e/list"));
    VeskRoles row;
    row.setIcon(QStringLiteral("http://e/row"));
    list->rowsAppend(row);
    list->rowsAppend(VeskRoles());
    QStringList seen;
    m_methods.setIconSeen([&](const QString &icon) { seen.append(icon); });

    ask("getRows", R"({"path":"Test:icons","roles":["title"]})");
    EXPECT_EQ(seen.filter(QStringLiteral("row")), QStringList());
    ask("getRows", R"({"path":"Test:icons","roles":["title","icon"]})");
    EXPECT_TRUE(seen.contains(QStringLiteral("http://e/row")));
    seen.clear();
    ask("getData", R"({"path":"Test:icons","roles":["title","icon"]})");
    EXPECT_EQ(seen, QStringList {QStringLiteral("http://e/list")});
}

TEST_F(RpcMethodsTest, GetRowsAnswersTheRangeThatIsAskedFor)
{
    EXPECT_THAT(resultOf("getRows", R"({"path":"Test:list","roles":["title"],"first":1,"last":1})")
                    .toStdString(),
        testing::HasSubstr(R"("rows":[["Name"]],"rowsCount":2)"));
    EXPECT_THAT(
        resultOf("getRows", R"({"path":"Test:list","roles":["title"],"first":5})").toStdString(),
        testing::HasSubstr(R"("rows":[],"rowsCount":2)"));
}

TEST_F(RpcMethodsTest, GetRowsWithoutRolesAnswersAllOfThem)
{
    const QVariantList rows = ask("getRows", R"({"path":"Test:list"})")
                                  .value(QStringLiteral("result"))
                                  .toHash()
                                  .value(QStringLiteral("rows"))
                                  .toList();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows.first().toList().size(), VeskRoles::all().size());
    EXPECT_EQ(rows.first().toList().value(VeskRoles::all().indexOf(VeskRoles::Type())), 3);
}

TEST_F(RpcMethodsTest, GetDataAnswersInTheOrderOfTheRoles)
{
    EXPECT_EQ(
        resultOf("getData", R"({"path":"settings:name","roles":["title","value","nothing"]})"),
        R"({"values":["Name",{"string_":"old","type":4},null]})");
}

TEST_F(RpcMethodsTest, SetDataChangesAValue)
{
    resultOf("setData", R"({"path":"settings:name","role":"value","value":"new"})");
    EXPECT_EQ(m_values.value(path("settings:name")).string_(), QStringLiteral("new"));
}

TEST_F(RpcMethodsTest, SetDataFailsForAReadOnlyValue)
{
    EXPECT_EQ(
        codeOf("setData", R"({"path":"settings:fixed","role":"value","value":false})"), -32000);
    EXPECT_TRUE(m_values.value(path("settings:fixed")).bool_());
}

TEST_F(RpcMethodsTest, APathWithoutNodeHasItsOwnErrorCode)
{
    for (const char *missing : {"Test:nothing", "Other:list", "settings:nothing"}) {
        const QByteArray params = QByteArray("{\"path\":\"") + missing + "\"}";
        EXPECT_EQ(codeOf("getRows", params), -32001) << missing;
        EXPECT_EQ(codeOf("getData", params), -32001) << missing;
    }
}

TEST_F(RpcMethodsTest, AnErrorHasMessageNameAndTitle)
{
    const QVariantHash error = errorOf("getData", R"({"path":"Test:failing"})");
    EXPECT_EQ(VeskJson::write(error),
        R"({"code":-32000,"data":{"name":"err:7","title":"Sorry"},"message":"No associated account"})");
}

TEST_F(RpcMethodsTest, ARequestThatItsNodeDoesNotTakeIsAnsweredWithAnError)
{
    EXPECT_NE(codeOf("getRows", R"({"path":"Test:failing"})"), 0);
}

TEST_F(RpcMethodsTest, RefusesBadParameters)
{
    for (const char *method : {"getRows", "getData", "setData"}) {
        for (const char *params : {"{}", R"({"path":1})", R"({"path":""})",
                 R"({"path":"Test:%zz","role":"value","value":1})",
                 R"({"path":"Test:list","roles":"title","role":5,"value":1})"})
            EXPECT_EQ(codeOf(method, params), -32602) << method << params;
    }
    EXPECT_EQ(codeOf("getRows", R"({"path":"Test:list","first":-1})"), -32602);
    EXPECT_EQ(codeOf("getData", R"({"path":"Test:list","poll":1})"), -32602);
    EXPECT_EQ(codeOf("setData", R"({"path":"settings:name","role":"value"})"), -32602);
}

TEST_F(RpcMethodsTest, NotifiesASubscriberUntilItUnsubscribes)
{
    Peer peer;
    EXPECT_EQ(resultOf("subscribe", R"({"path":"settings:name"})", &peer), "{}");
    m_values.setValue(path("settings:name"), VeskValue::fromString(QStringLiteral("a")));
    ASSERT_TRUE(spinUntil([&] { return peer.sent.size() == 1; }));
    EXPECT_EQ(peer.sent.first(),
        R"({"jsonrpc":"2.0","method":"changed","params":{"first":-1,"kind":"valueChanged","last":-1,"path":"settings:name"}})");

    EXPECT_EQ(resultOf("unsubscribe", R"({"path":"settings:name"})", &peer), "{}");
    EXPECT_EQ(resultOf("subscribe", R"({"path":"settings:fixed"})", &peer), "{}");
    m_values.setValue(path("settings:name"), VeskValue::fromString(QStringLiteral("b")));
    m_values.setValue(path("settings:fixed"), VeskValue::fromBool(false));
    ASSERT_TRUE(spinUntil([&] { return peer.sent.size() == 2; }));
    EXPECT_THAT(peer.sent.last().toStdString(), testing::HasSubstr("settings:fixed"));
}

TEST_F(RpcMethodsTest, AnEmptyScreenHasAProblemWhenTheServiceFailed)
{
    const auto node = new FaultyNode(m_worker.addPrefix(QStringLiteral("faulty")));
    node->setNodes(m_worker.nodes());
    ServiceFaults faults;
    m_methods.setServiceFaults(&faults);
    const auto problem = [this](const char *params) {
        const QVariantHash result = ask("getRows", params).value(QStringLiteral("result")).toHash();
        EXPECT_TRUE(result.contains(QStringLiteral("rows")));
        return result.value(QStringLiteral("problem")).toString().toStdString();
    };
    node->fault = {VeskServiceFault::Reported, 500};
    const char *words = "The Test service is out of order (500). Please try again later.";
    EXPECT_EQ(problem(R"({"path":"Test:faulty"})"), words);
    EXPECT_EQ(problem(R"({"path":"Test:faulty","first":0,"last":0})"), words);
    node->count = 1;
    EXPECT_EQ(problem(R"({"path":"Test:faulty"})"), "");
    node->count = 0;
    node->fault = {};
    EXPECT_EQ(resultOf("getRows", R"({"path":"Test:faulty"})"),
        R"({"roles":{},"rows":[],"rowsCount":0})");
}

TEST_F(RpcMethodsTest, AnErrorNamesTheFaultOfTheService)
{
    const auto node = new FaultyNode(m_worker.addPrefix(QStringLiteral("faulty")));
    node->setNodes(m_worker.nodes());
    const char *params = R"({"path":"Test:faulty"})";
    node->fault = {VeskServiceFault::TimedOut, 0};
    EXPECT_EQ(VeskJson::write(errorOf("getData", params)),
        R"({"code":-32000,"data":{"name":"VeskError","title":"Error"},"message":"Invalid data."})");
    ServiceFaults faults;
    m_methods.setServiceFaults(&faults);
    EXPECT_EQ(VeskJson::write(errorOf("getData", params)),
        R"({"code":-32000,"data":{"name":"VeskError",)"
        R"("problem":"The Test service does not answer. Please try again later.",)"
        R"("title":"Error"},"message":"Invalid data."})");
    // A fault that the user can correct in the settings takes precedence.
    node->fault = {VeskServiceFault::HttpStatus, 403};
    EXPECT_EQ(VeskJson::write(errorOf("getData", params)),
        R"({"code":-32000,"data":{"name":"VeskError","serviceMessage":"Invalid data.",)"
        R"("title":"Error"},"message":"The Test service refuses this device (HTTP 403)."})");
    // A fault that the service reported is already described by its message.
    node->fault = {VeskServiceFault::Reported, 403};
    EXPECT_EQ(errorOf("getData", params).value(QStringLiteral("message")),
        QStringLiteral("Invalid data."));
}

TEST_F(RpcMethodsTest, SubscribingTwiceNotifiesOnce)
{
    Peer peer;
    resultOf("subscribe", R"({"path":"settings:name"})", &peer);
    resultOf("subscribe", R"({"path":"settings:name"})", &peer);
    resultOf("subscribe", R"({"path":"settings:fixed"})", &peer);
    m_values.setValue(path("settings:name"), VeskValue::fromString(QStringLiteral("a")));
    m_values.setValue(path("settings:fixed"), VeskValue::fromBool(false));
    ASSERT_TRUE(
        spinUntil([&] { return !peer.sent.isEmpty() && peer.sent.last().contains("fixed"); }));
    EXPECT_EQ(peer.sent.size(), 2);
}

TEST_F(RpcMethodsTest, SubscriptionsNeedAWebSocket)
{
    EXPECT_EQ(codeOf("subscribe", R"({"path":"settings:name"})"), -32601);
    EXPECT_EQ(codeOf("unsubscribe", R"({"path":"settings:name"})"), -32601);
}

TEST_F(RpcMethodsTest, OnePeerHasAtMost256Subscriptions)
{
    Peer peer;
    for (int i = 0; i < 256; ++i) {
        const QByteArray params = "{\"path\":\"Test:list?n=" + QByteArray::number(i) + "\"}";
        EXPECT_EQ(resultOf("subscribe", params, &peer), "{}");
    }
    EXPECT_EQ(codeOf("subscribe", R"({"path":"Test:list?n=x"})", &peer), -32003);
    resultOf("unsubscribe", R"({"path":"Test:list?n=0"})", &peer);
    EXPECT_EQ(resultOf("subscribe", R"({"path":"Test:list?n=x"})", &peer), "{}");
}

TEST_F(RpcMethodsTest, DropsSubscriptionsOfAClientThatHasLeft)
{
    {
        Peer peer;
        resultOf("subscribe", R"({"path":"settings:name"})", &peer);
        m_values.setValue(path("settings:name"), VeskValue::fromString(QStringLiteral("a")));
    }
    m_values.setValue(path("settings:name"), VeskValue::fromString(QStringLiteral("b")));
    EXPECT_EQ(resultOf("getData", R"({"path":"settings:name","roles":["title"]})"),
        R"({"values":["Name"]})");
}

TEST_F(RpcMethodsTest, LetsListenersRunRowsAndChangeNoValues)
{
    const auto codeFor = [this](const QByteArray &role) {
        QByteArray answer;
        m_rpc.handle(
            R"({"jsonrpc":"2.0","id":1,"method":"setData","params":{"path":"settings:name",)"
            R"("value":"new","role":")"
                + role + "\"}}",
            {nullptr, nullptr, {AccessRole::Listener, QStringLiteral("tablet")}},
            [&](const QByteArray &bytes) { answer = bytes; });
        EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
        VeskError error;
        return VeskJson::parse(answer, error)
            .toHash()
            .value(QStringLiteral("error"))
            .toHash()
            .value(QStringLiteral("code"))
            .toInt();
    };
    for (const char *role : {"value", "title", "activatE"})
        EXPECT_EQ(codeFor(role), -32007) << role;
    EXPECT_NE(codeFor("activate"), -32007);
    EXPECT_EQ(m_values.value(path("settings:name")).string_(), QStringLiteral("old"));
}

} // namespace
