// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/tunein/TuneInAccountFixture.h"

#include "api/web/CMErrorHelper.h"

#include <log4cplus/logger.h>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

using Operation = VeskTuneInAccountOperation;

const QByteArray QueryLine = "POST /Account.ashx?render=json&partnerId=partner&c=query&serial=ABC";
const QByteArray DropLine = "POST /Account.ashx?render=json&partnerId=partner&c=drop&username=me&"
                            "password=sesame&serial=ABC";

QByteArray outline(const char *text)
{
    return screen(QByteArray(R"({"element":"outline","type":"text","text":")") + text + R"("})");
}

struct Fault {
    const char *code;
    int number;
    const char *message;
};

const Fault Faults[] = {
    {"validation.email", 1, "The given email address is of invalid form (empty or incorrect)."},
    {"validation.password", 2, "The given password is of invalid form (empty or incorrect)."},
    {"validation.location", 3, "The given postalCode or city/country combination is invalid."},
    {"validation.userNameExists", 4, "The requested account name is already taken."},
    {"validation.emailExists", 5, "The requested email is already registered."},
    {"validation.error", 6, "A validation error occurred."},
    {"validation.deviceNotAssociated", 7, "No associated account"},
    {"validation.deviceExists", 8, "Account already associated."},
    {"request.idInvalid", 0, "TuneIn request failed."},
};

class TuneInAccountRequestTest : public TuneInAccountFixture {
protected:
    TuneInAccountRequestTest()
    {
        start();
        log().clear();
    }

    void expectStandardError(const Answer &answer, const char *message)
    {
        EXPECT_EQ(answer.error.name(), CMError::DefaultName());
        EXPECT_EQ(answer.error.message(), TrString("TuneIn", message));
        EXPECT_EQ(answer.error.title().toString(), CMError::DefaultTitle());
        EXPECT_EQ(answer.error.size(), 3);
    }

    static void expectFault(const Answer &answer, int number, const char *message)
    {
        EXPECT_EQ(answer.error.name(), CMError::DefaultName() + ":"_s + QString::number(number));
        EXPECT_EQ(answer.error.message(), TrString("TuneIn", message));
        EXPECT_EQ(answer.error.title().toString(), CMError::DefaultTitle());
        EXPECT_TRUE(answer.value.isNull());
    }

    /// Whether the node's mutex is held while the account server has the request that \a ask sends.
    bool isLockedDuring(const std::function<void()> &ask)
    {
        bool locked = false;
        accountServer().setHandler([this, &locked](const ScriptedServer::Request &) {
            locked = !m_node->mutex()->tryLock();
            if (!locked)
                m_node->mutex()->unlock();
            ScriptedServer::Response response;
            response.body = outline("me");
            return response;
        });
        onWorker([this] { m_node = node(); });
        ask();
        EXPECT_EQ(accountServer().requests().size(), 1);
        return locked;
    }

private:
    TuneInAccountNode *m_node = nullptr;
};

} // namespace

// The node

TEST_F(TuneInAccountRequestTest, IsANodeWithoutAMetaObjectOfItsOwn)
{
    onWorker([this] {
        ASSERT_NE(node(), nullptr);
        EXPECT_EQ(node()->metaObject(), &CMNode::staticMetaObject);
        EXPECT_EQ(node()->path(), path("TuneIn:account"_s));
        EXPECT_EQ(node()->nodes(), worker()->nodes());
    });
}

TEST_F(TuneInAccountRequestTest, LogsItsCreation)
{
    stop();
    log().clear();
    start();
    EXPECT_TRUE(log().contains("TRACE Enter TuneInAccountNode::TuneInAccountNode(CMTuneInWorker*, "
                               "const CMPath&)TuneIn:account"_s));
    EXPECT_THAT(log().sources(),
        Contains("modules/tunein/TuneInAccount:TuneInAccountNode::TuneInAccountNode("
                 "CMTuneInWorker*, const CMPath&)"_s));
}

TEST_F(TuneInAccountRequestTest, StopsANodeWithoutWorker)
{
    EXPECT_DEATH(TuneInAccountNode::create(nullptr, path("TuneIn:x"_s)),
        testing::HasSubstr("Assertion failed: tiWorker, file "));
}

TEST_F(TuneInAccountRequestTest, HasNoRows)
{
    EXPECT_EQ(rows("TuneIn:account"_s).error.name(), CMError::UnansweredName());
    expectAccountRequests({});
}

// Reading

TEST_F(TuneInAccountRequestTest, ReadsTheLinkedAccountByAQuery)
{
    answerAccount(outline("jane"));
    const Answer answer = read();
    VeskTuneInAccount expected;
    expected.setOperation(Operation::query);
    expected.setUserName("jane"_s);
    VeskValue value;
    value.setTuneInAccount(expected);
    EXPECT_EQ(answer.value.toList(), QVariantList {QVariant(value)});
    EXPECT_TRUE(answer.error.isEmpty());
    expectAccountRequests({QueryLine});
}

TEST_F(TuneInAccountRequestTest, LogsAReadAndItsValue)
{
    answerAccount(outline("jane"));
    read();
    const QStringList lines = log().lines();
    ASSERT_THAT(lines, Not(IsEmpty()));
    EXPECT_EQ(lines.first(), "TRACE Enter TuneInAccountNode::getDataRequest:"_s);
    EXPECT_THAT(lines, Contains("TRACE Account operation: query"_s));
    EXPECT_THAT(lines,
        Contains("TRACE Enter TuneInAccountNode::processResponse: accountOperation: query"_s));
    EXPECT_EQ(log().lines("DEBUG"_s).mid(2),
        QStringList({"Query 'account': associated account 'jane'."_s,
            "{tuneInAccount: {operation: 5, userName: jane}, type: 115}"_s}));
    EXPECT_THAT(log().lines("ERROR"_s), IsEmpty());
}

TEST_F(TuneInAccountRequestTest, AnswersOneValuePerRoleInTheirOrder)
{
    answerAccount(outline("jane"));
    const Answer answer = read({VeskRoles::Title(), VeskRoles::Value(), VeskRoles::Type(),
        "unheardOf"_s, VeskRoles::Type()});
    const QVariantList values = answer.value.toList();
    ASSERT_EQ(values.size(), 5);
    EXPECT_FALSE(values.at(0).isValid());
    EXPECT_EQ(VeskValue(VeskHash(values.at(1).toHash())).tuneInAccount().userName(), "jane"_s);
    EXPECT_EQ(values.at(2), QVariant(4));
    EXPECT_FALSE(values.at(3).isValid());
    EXPECT_EQ(values.at(4), QVariant(4));
    expectAccountRequests({QueryLine});
}

TEST_F(TuneInAccountRequestTest, SendsNothingForRolesOtherThanTheValue)
{
    EXPECT_EQ(read({VeskRoles::Type()}).value.toList(), QVariantList {4});
    EXPECT_EQ(read({VeskRoles::Title()}).value.toList(), QVariantList {QVariant()});
    EXPECT_TRUE(read({}).value.toList().isEmpty());
    expectAccountRequests({});
}

TEST_F(TuneInAccountRequestTest, RunsAQueryForEachReadOfItsValue)
{
    answerAccount(outline("jane"));
    read();
    answerAccount(outline("john"));
    EXPECT_EQ(firstAccountOf(read()).userName(), "john"_s);
    EXPECT_EQ(read({VeskRoles::Value(), VeskRoles::Value()}).value.toList().size(), 2);
    expectAccountRequests({QueryLine, QueryLine, QueryLine, QueryLine});
}

TEST_F(TuneInAccountRequestTest, FailsAReadWhenItsQueryFailsWhateverOtherRolesItHas)
{
    answerAccount(fault("400", "validation.deviceNotAssociated"));
    expectFault(read({VeskRoles::Type(), VeskRoles::Value(), VeskRoles::Title()}), 7,
        "No associated account");
}

TEST_F(TuneInAccountRequestTest, FailsAReadWithTheFirstOfTwoErrors)
{
    std::atomic<int> count {0};
    accountServer().setHandler([&count](const ScriptedServer::Request &) {
        ScriptedServer::Response response;
        response.body = fault("400", ++count == 1 ? "validation.error" : "validation.deviceExists");
        return response;
    });
    expectFault(read({VeskRoles::Value(), VeskRoles::Value()}), 6, "A validation error occurred.");
    onWorker([] {}); // the second query follows the answer
    EXPECT_EQ(count, 2);
}

TEST_F(TuneInAccountRequestTest, IgnoresThePathsParametersInARead)
{
    answerAccount(outline("jane"));
    EXPECT_EQ(
        firstAccountOf(data("TuneIn:account?a=b"_s, {VeskRoles::Value()})).userName(), "jane"_s);
}

TEST_F(TuneInAccountRequestTest, DeclinesAReadOfAnotherPath)
{
    for (const char *other : {"TuneIn:account/more", "TuneIn:other", "Other:account", "TuneIn:"}) {
        const auto data = std::make_shared<CMReplyData<QVariant>>();
        const CMReply<QVariant> reply(data);
        log().clear();
        onWorker([&] {
            EXPECT_FALSE(node()->getDataRequest(CMGetDataRequest(
                path(QLatin1String(other)), {VeskRoles::Value(), VeskRoles::Type()}, reply)))
                << other;
        });
        EXPECT_FALSE(data->isFinished()) << other;
        EXPECT_THAT(log().lines(), ElementsAre("TRACE Enter TuneInAccountNode::getDataRequest:"_s))
            << other;
    }
    EXPECT_EQ(
        data("TuneIn:account/more"_s, {VeskRoles::Type()}).error.name(), CMError::UnansweredName());
    expectAccountRequests({});
}

TEST_F(TuneInAccountRequestTest, PassesOnEveryFaultOfAQuery)
{
    for (const Fault &expected : Faults) {
        answerAccount(fault("400", expected.code));
        expectFault(read(), expected.number, expected.message);
    }
    answerAccount(fault("403"));
    expectFault(read(), 0, "Access forbidden.");
}

TEST_F(TuneInAccountRequestTest, ReportsAQueryAnsweredWithAnythingButOneOutline)
{
    for (const char *body :
        {R"({"head":{"status":"200"},"body":[]})", R"({"head":{"status":"200"}})",
            R"({"head":{"status":"200"},"body":[{"element":"outline","text":"a"},)"
            R"({"element":"outline","text":"b"}]})",
            R"({"head":{"status":"200"},"body":[{"element":"station","text":"a"}]})"}) {
        answerAccount(QByteArray(body));
        expectStandardError(read(), "Invalid response!");
    }
}

TEST_F(TuneInAccountRequestTest, ReportsAReadThatReachesNoServer)
{
    closeAccountServer();
    expectStandardError(read(), "Invalid data received.");
    EXPECT_THAT(
        log().lines("ERROR"_s), ElementsAre("TuneInRequest::parseData: Received empty data!"_s));
    EXPECT_EQ(server().connections(), 0);
}

TEST_F(TuneInAccountRequestTest, SendsNothingWhileTheNetworkIsDown)
{
    setNetwork(false);
    log().clear();
    const CMError expected = CMErrorHelper::create(
        CURLE_COULDNT_CONNECT, VeskUrl("https://opml.radiotime.com/Account.ashx"_s), "TuneIn"_s);
    EXPECT_EQ(read().error, expected);
    EXPECT_EQ(write(filledAccount(Operation::drop)).error, expected);
    EXPECT_THAT(log().lines("ERROR"_s), ElementsAre("Network is down!"_s, "Network is down!"_s));
    expectAccountRequests({});
}

TEST_F(TuneInAccountRequestTest, HoldsItsMutexDuringAReadOnly)
{
    EXPECT_TRUE(isLockedDuring([] { read(); }));
    accountServer().clearRequests();
    EXPECT_FALSE(isLockedDuring([] { write(filledAccount(Operation::query)); }));
}

TEST_F(TuneInAccountRequestTest, HandlesRequestsWithoutAReply)
{
    answerAccount(outline("jane"));
    onWorker([this] {
        EXPECT_TRUE(node()->getDataRequest(
            CMGetDataRequest(node()->path(), {VeskRoles::Value()}, CMReply<QVariant>())));
        VeskValue value;
        value.setTuneInAccount(filledAccount(Operation::drop));
        EXPECT_TRUE(node()->setDataRequest(
            CMSetDataRequest(node()->path(), VeskRoles::Value(), value, CMReply<QVariant>())));
        EXPECT_TRUE(node()->setDataRequest(
            CMSetDataRequest(node()->path(), VeskRoles::Value(), QVariant(), CMReply<QVariant>())));
    });
    expectAccountRequests({QueryLine, DropLine});
}

// Writing

TEST_F(TuneInAccountRequestTest, AnswersAWriteWithAnAccount)
{
    for (const Operation::Enum operation : {Operation::create, Operation::join, Operation::drop,
             Operation::remind, Operation::reset}) {
        VeskTuneInAccount expected;
        expected.setOperation(operation);
        VeskValue value;
        value.setTuneInAccount(expected);
        const Answer answer = write(filledAccount(operation));
        EXPECT_TRUE(answer.error.isEmpty());
        EXPECT_EQ(answer.value, QVariant(value));
    }
}

TEST_F(TuneInAccountRequestTest, AnswersAWriteWithWhatTuneInSays)
{
    answerAccount(screen(R"({"element":"outline","account_id":"a1","user_name":"jane",)"
                         R"("session_id":"x1","first_name":"Jane","last_name":"Doe",)"
                         R"("email":"jane@example.org"})"));
    const VeskTuneInAccount account = accountOf(write(filledAccount(Operation::auth)));
    EXPECT_EQ(account.operation(), Operation::auth);
    EXPECT_EQ(account.userName(), "jane"_s);
    EXPECT_EQ(account.sessionId(), "x1"_s);
    EXPECT_FALSE(account.contains("password"_s));

    answerAccount(outline("jane"));
    EXPECT_EQ(accountOf(write(filledAccount(Operation::query))).userName(), "jane"_s);

    answerAccount(screen(R"({"element":"outline","text":"Enter it","key":"K1"})"));
    const VeskTuneInAccount claim = accountOf(write(filledAccount(Operation::claim)));
    EXPECT_EQ(claim.claimMessage(), "Enter it"_s);
    EXPECT_EQ(claim.claimKey(), "K1"_s);
}

TEST_F(TuneInAccountRequestTest, PassesOnEveryFaultOfEveryOperation)
{
    for (const Operation::Enum operation : AllOperations) {
        for (const Fault &expected : Faults) {
            answerAccount(fault("400", expected.code));
            expectFault(write(filledAccount(operation)), expected.number, expected.message);
        }
    }
}

TEST_F(TuneInAccountRequestTest, ReportsABare403AsAFailedLoginOnlyForJoin)
{
    answerAccount(fault("403"));
    for (const Operation::Enum operation : AllOperations) {
        expectFault(write(filledAccount(operation)), 0,
            operation == Operation::join
                ? "Login failed. Please enter a valid username and password."
                : "Access forbidden.");
    }
    answerAccount(fault("401"));
    for (const Operation::Enum operation : AllOperations)
        expectFault(write(filledAccount(operation)), 0, "TuneIn request failed.");
}

TEST_F(TuneInAccountRequestTest, LogsAWriteFromItsValueToItsReply)
{
    VeskTuneInAccount account;
    account.setOperation(Operation::drop);
    account.setUserName("me"_s);
    account.setPassword("sesame"_s);
    write(account);
    const QStringList lines = log().lines();
    ASSERT_GE(lines.size(), 3);
    EXPECT_EQ(lines.at(0), "TRACE Enter TuneInAccountNode::setDataRequest:"_s);
    EXPECT_EQ(lines.at(1),
        "TRACE TuneInAccountNode::setDataRequest: value: '{operation: 4, password: ***, "
        "userName: me}'"_s);
    EXPECT_EQ(lines.mid(lines.size() - 2),
        QStringList({"TRACE Enter TuneInAccountNode::processResponse: accountOperation: drop"_s,
            "TRACE TuneInAccountNode::setDataRequest: reply: value: '{tuneInAccount: "
            "{operation: 4}, type: 115}', error: '{}'"_s}));
    EXPECT_THAT(log().lines("ERROR"_s), IsEmpty());
}

TEST_F(TuneInAccountRequestTest, LogsTheErrorOfAWritesReply)
{
    answerAccount(QByteArray(R"({"head":{"status":"200"},"body":[]})"));
    const Answer answer = write(filledAccount(Operation::auth));
    EXPECT_EQ(log().lines().constLast(),
        "TRACE TuneInAccountNode::setDataRequest: reply: value: 'null', error: '"_s
            + printed(answer.error) + "'"_s);
}

TEST_F(TuneInAccountRequestTest, LogsNoReplyWhenItsRequestFailed)
{
    answerAccount(fault("400", "validation.error"));
    write(filledAccount(Operation::drop));
    EXPECT_THAT(log().lines().filter("setDataRequest: reply"_s), IsEmpty());
    EXPECT_THAT(log().lines().filter("processResponse"_s), IsEmpty());
}

TEST_F(TuneInAccountRequestTest, LogsNoReplyBelowTrace)
{
    log4cplus::Logger::getInstance("CB_TuneIn").setLogLevel(log4cplus::DEBUG_LOG_LEVEL);
    EXPECT_EQ(accountOf(write(filledAccount(Operation::drop))).operation(), Operation::drop);
    EXPECT_THAT(log().lines().filter("reply"_s), IsEmpty());
    EXPECT_THAT(log().lines("TRACE"_s), IsEmpty());
}

TEST_F(TuneInAccountRequestTest, DeclinesAWriteOfAnotherRole)
{
    VeskValue value;
    value.setTuneInAccount(filledAccount(Operation::drop));
    for (const QString &role : {VeskRoles::Activate(), VeskRoles::Type(), "Value"_s, QString()}) {
        log().clear();
        const Answer answer = setData("TuneIn:account"_s, role, value);
        EXPECT_EQ(answer.error.name(), CMError::UnansweredName());
        EXPECT_THAT(log().lines("ERROR"_s),
            ElementsAre("TuneInAccountNode::setDataRequest: role is not for TuneInAccount"_s));
        onWorker([&] {
            EXPECT_FALSE(node()->setDataRequest(
                CMSetDataRequest(node()->path(), role, value, CMReply<QVariant>())));
        });
    }
    expectAccountRequests({});
}

TEST_F(TuneInAccountRequestTest, IgnoresThePathOfAWrite)
{
    VeskValue value;
    value.setTuneInAccount(filledAccount(Operation::drop));
    const Answer answer = setData("TuneIn:account/more"_s, VeskRoles::Value(), value);
    EXPECT_EQ(accountOf(answer).operation(), Operation::drop);
    expectAccountRequests({DropLine});
}

TEST_F(TuneInAccountRequestTest, RefusesAValueThatIsNoAccount)
{
    const QVariant values[] = {QVariant(), "drop"_s, 115, QVariantList {115}, QVariantHash(),
        VeskValue::fromString("drop"_s), VeskValue::fromInt(4),
        QVariantHash {{"type"_s, 4}, {"tuneInAccount"_s, filledAccount(Operation::drop)}},
        QVariantHash {{"tuneInAccount"_s, filledAccount(Operation::drop)}},
        QVariantHash {{"operation"_s, 4}}};
    for (const QVariant &value : values) {
        log().clear();
        expectStandardError(
            setData("TuneIn:account"_s, VeskRoles::Value(), value), "Invalid value type.");
        EXPECT_THAT(log().lines(), ElementsAre("TRACE Enter TuneInAccountNode::setDataRequest:"_s));
    }
    expectAccountRequests({});
}

TEST_F(TuneInAccountRequestTest, AcceptsTheTypeAsNumberOrText)
{
    const QVariantHash account {
        {"operation"_s, "drop"_s}, {"userName"_s, "me"_s}, {"password"_s, "sesame"_s}};
    VeskValue own;
    own.setTuneInAccount(VeskTuneInAccount(VeskHash(account)));
    for (const QVariant &value :
        {QVariant(QVariantHash {{"type"_s, "tuneInAccount"_s}, {"tuneInAccount"_s, account}}),
            QVariant(QVariantHash {{"type"_s, 115}, {"tuneInAccount"_s, account}}),
            QVariant::fromValue(own)}) {
        EXPECT_EQ(accountOf(setData("TuneIn:account"_s, VeskRoles::Value(), value)).operation(),
            Operation::drop);
        expectAccountRequests({DropLine});
    }
}

TEST_F(TuneInAccountRequestTest, ReportsAWriteThatReachesNoServer)
{
    closeAccountServer();
    for (const Operation::Enum operation : AllOperations)
        expectStandardError(write(filledAccount(operation)), "Invalid data received.");
    EXPECT_EQ(server().connections(), 0);
}

TEST_F(TuneInAccountRequestTest, ReportsAnAnswerThatIsNoJson)
{
    for (const char *body : {"<html>403 Forbidden</html>", "{\"head\":", "\x00\x01"}) {
        answerAccount(QByteArray(body, int(qMax(qstrlen(body), 1u))));
        expectStandardError(write(filledAccount(Operation::drop)), "Invalid data returned.");
        expectStandardError(read(), "Invalid data returned.");
    }
}

TEST_F(TuneInAccountRequestTest, KeepsNothingOfAWrite)
{
    write(filledAccount(Operation::auth));
    accountServer().clearRequests();
    VeskTuneInAccount drop;
    drop.setOperation(Operation::drop);
    write(drop);
    read();
    expectAccountRequests({"POST /Account.ashx?render=json&partnerId=partner&c=drop&username=&"
                           "password=&serial=ABC",
        QueryLine});
}
