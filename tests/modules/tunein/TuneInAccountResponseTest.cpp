// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/tunein/TuneInAccountFixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Operation = VeskTuneInAccountOperation;

const QList<Operation::Enum> PlainOperations {
    Operation::create, Operation::join, Operation::drop, Operation::remind, Operation::reset};

const QByteArray Jane
    = R"({"account_id":"a1","user_name":"jane","session_id":"x1","first_name":"Jane",)"
      R"("last_name":"Doe","email":"jane@example.org","password":"sesame"})";

QByteArray outline(const QByteArray &more)
{
    return R"({"element":"outline","type":"text")" + more + "}";
}

/// Answers of status 200 whose body is not exactly one element.
const QByteArray NotOne[] = {
    R"({"head":{"status":"200"}})",
    R"({"head":{"status":"200"},"body":null})",
    R"({"head":{"status":"200"},"body":"outline"})",
    R"({"head":{"status":"200"},"body":[]})",
    screen(outline(R"(,"text":"a")") + "," + outline(R"(,"text":"b")")),
    screen("{},{},{}"),
};

/// Answers of status 200 with one element that is not an outline.
const QByteArray NotOutlines[] = {
    screen("{}"),
    screen(R"({"text":"a","key":"k"})"),
    screen(R"({"element":"Outline","text":"a"})"),
    screen(R"({"element":"outline ","text":"a"})"),
    screen(R"({"element":"station","text":"a"})"),
    screen(R"({"element":["outline"],"text":"a"})"),
};

class TuneInAccountResponseTest : public TuneInAccountFixture {
protected:
    TuneInAccountResponseTest()
    {
        start();
        log().clear();
    }

    Answer processLogged(Operation::Enum operation, const QByteArray &answer)
    {
        log().clear();
        return process(operation, answer);
    }

    static void expectError(const Answer &answer, const char *message, const char *nameEnd = "")
    {
        EXPECT_EQ(answer.error.name(), CMError::DefaultName() + QLatin1String(nameEnd));
        EXPECT_EQ(answer.error.message(), TrString("TuneIn", message));
        EXPECT_EQ(answer.error.title().toString(), CMError::DefaultTitle());
        EXPECT_EQ(answer.error.size(), 3);
        EXPECT_TRUE(answer.value.isNull());
    }

    /// Expects an account with these entries and no more.
    static void expectAccount(const Answer &answer, const QVariantHash &entries)
    {
        VeskValue value;
        value.setTuneInAccount(VeskTuneInAccount(VeskHash(entries)));
        EXPECT_TRUE(answer.error.isEmpty()) << answer.error;
        EXPECT_EQ(answer.value, QVariant(value));
    }
};

} // namespace

// Dispatch

TEST_F(TuneInAccountResponseTest, IsLoggedWithItsOperation)
{
    for (const Operation::Enum operation : AllOperations) {
        processLogged(operation, Done);
        EXPECT_EQ(log().lines().constFirst(),
            "TRACE Enter TuneInAccountNode::processResponse: accountOperation: "_s
                + Operation::toString(operation));
    }
}

TEST_F(TuneInAccountResponseTest, IsReadByTheReaderOfItsOperation)
{
    const QByteArray answer = screen(outline(R"(,"text":"t","key":"k","user_name":"u")"));
    EXPECT_EQ(accountOf(process(Operation::auth, answer)).userName(), "u"_s);
    EXPECT_EQ(accountOf(process(Operation::query, answer)).userName(), "t"_s);
    EXPECT_EQ(accountOf(process(Operation::claim, answer)).claimKey(), "k"_s);
    for (const Operation::Enum operation : PlainOperations)
        expectAccount(process(operation, answer), {{"operation"_s, int(operation)}});
}

TEST_F(TuneInAccountResponseTest, StopsAtAnUnknownOperation)
{
    for (const int code : {0, 9, -1}) {
        EXPECT_DEATH(
            process(Operation::Enum(code), Done), testing::HasSubstr("Assertion failed: 0, file "));
    }
}

// Operations that only succeed or fail

TEST_F(TuneInAccountResponseTest, OfAPlainOperationCarriesTheOperationOnly)
{
    for (const Operation::Enum operation : PlainOperations) {
        expectAccount(processLogged(operation, Done), {{"operation"_s, int(operation)}});
        EXPECT_EQ(log().lines().size(), 1) << "more than the entry";
    }
    expectAccount(process(Operation::drop, Done), {{"operation"_s, 4}});
}

TEST_F(TuneInAccountResponseTest, OfAPlainOperationSucceedsOnlyWithStatus200)
{
    for (const char *status : {"", " 200", "200 ", "201", "OK"})
        expectError(process(Operation::drop, fault(status)), "TuneIn request failed.", ":0");
}

TEST_F(TuneInAccountResponseTest, OfAPlainOperationFailsWithTheFaultForThatOperation)
{
    for (const Operation::Enum operation : PlainOperations) {
        expectError(process(operation, fault("403")),
            operation == Operation::join
                ? "Login failed. Please enter a valid username and password."
                : "Access forbidden.",
            ":0");
        expectError(process(operation, fault("400", "validation.emailExists")),
            "The requested email is already registered.", ":5");
    }
}

TEST_F(TuneInAccountResponseTest, OfAPlainOperationIsLoggedWhenItFails)
{
    for (const Operation::Enum operation : PlainOperations) {
        processLogged(operation, fault("400", "validation.error", "Bad %1 %2"));
        EXPECT_EQ(log().lines("DEBUG"_s),
            QStringList("Setting TuneIn Account: method: '"_s + Operation::toString(operation)
                + "' failed, fault: 'Bad %1 %2', code: 'validation.error'"_s));
        EXPECT_EQ(log().lines().constLast(), "DEBUG "_s + log().lines("DEBUG"_s).constFirst());
    }
}

// Authenticate

TEST_F(TuneInAccountResponseTest, OfAnAuthenticationCarriesTheAccount)
{
    expectAccount(process(Operation::auth, screen(Jane)),
        {{"operation"_s, 1}, {"accountId"_s, "a1"_s}, {"userName"_s, "jane"_s},
            {"sessionId"_s, "x1"_s}, {"firstName"_s, "Jane"_s}, {"lastName"_s, "Doe"_s},
            {"email"_s, "jane@example.org"_s}});
}

TEST_F(TuneInAccountResponseTest, OfAnAuthenticationReadsNumbersAsText)
{
    const VeskTuneInAccount account = accountOf(
        process(Operation::auth, screen(R"({"account_id":17,"session_id":5,"user_name":null})")));
    EXPECT_EQ(account.accountId(), "17"_s);
    EXPECT_EQ(account.sessionId(), "5"_s);
    EXPECT_EQ(account.userName(), QString());
}

TEST_F(TuneInAccountResponseTest, OfAnAuthenticationIsLogged)
{
    processLogged(Operation::auth, screen(Jane));
    EXPECT_THAT(log().lines(),
        ElementsAre("TRACE Enter TuneInAccountNode::processResponse: accountOperation: auth"_s,
            "TRACE Enter TuneInAccountNode::processResponseAuthenticate: response: {body: "
            "[{account_id: a1, email: jane@example.org, first_name: Jane, last_name: Doe, "
            "password: ***, session_id: ***, user_name: jane}], head: {status: 200, title: "
            "Screen}}"_s,
            "DEBUG Query 'auth': account: id: 'a1', user name: 'jane', first name: 'Jane', last "
            "name: 'Doe', email: 'jane@example.org'"_s));
}

TEST_F(TuneInAccountResponseTest, OfAnAuthenticationMayHoldAnyElement)
{
    for (const QByteArray &answer : NotOutlines)
        EXPECT_EQ(accountOf(process(Operation::auth, answer)).operation(), Operation::auth);
}

TEST_F(TuneInAccountResponseTest, OfAnAuthenticationHoldsExactlyOneElement)
{
    for (const QByteArray &answer : NotOne) {
        expectError(processLogged(Operation::auth, answer), "Invalid response!");
        EXPECT_EQ(log().lines().size(), 2) << "more than the two entries";
    }
}

TEST_F(TuneInAccountResponseTest, OfAnAuthenticationFailsWithTheFaultOfNoOperation)
{
    expectError(process(Operation::auth, fault("403")), "Access forbidden.", ":0");
    expectError(process(Operation::auth, fault("401")), "TuneIn request failed.", ":0");
    expectError(process(Operation::auth, fault("400", "validation.password")),
        "The given password is of invalid form (empty or incorrect).", ":2");
    processLogged(Operation::auth, fault("400", "validation.password", "Bad %1 %3"));
    EXPECT_THAT(log().lines(),
        Contains("TRACE Enter static CMError TuneInRequest::tuneInErrorToCMError(const QString&, "
                 "const QString&, VeskTuneInAccountOperation::Enum): faultCode: "
                 "'validation.password', faultCode: '400', accoutOperation: none"_s));
    EXPECT_THAT(log().lines("DEBUG"_s),
        ElementsAre("Setting TuneIn Account: method: 'auth' failed, fault: 'Bad %1 %3', code: "
                    "'validation.password'"_s));
}

// Query

TEST_F(TuneInAccountResponseTest, OfAQueryNamesTheLinkedAccount)
{
    expectAccount(processLogged(Operation::query, screen(outline(R"(,"text":"jane")"))),
        {{"operation"_s, 5}, {"userName"_s, "jane"_s}});
    EXPECT_THAT(log().lines(),
        ElementsAre("TRACE Enter TuneInAccountNode::processResponse: accountOperation: query"_s,
            "TRACE Enter TuneInAccountNode::processResponseQuery: response: {body: [{element: "
            "outline, text: jane, type: text}], head: {status: 200, title: Screen}}"_s,
            "DEBUG Query 'account': associated account 'jane'."_s));
}

TEST_F(TuneInAccountResponseTest, OfAQueryMayHoldAnObjectInPlaceOfAList)
{
    EXPECT_EQ(
        accountOf(process(Operation::query,
                      R"({"head":{"status":200},"body":{"element":"outline","text":"jane"}})"))
            .userName(),
        "jane"_s);
}

TEST_F(TuneInAccountResponseTest, OfAQueryHoldsExactlyOneOutline)
{
    for (const QByteArray &answer : NotOne) {
        expectError(processLogged(Operation::query, answer), "Invalid response!");
        EXPECT_EQ(log().lines().size(), 2) << "more than the two entries";
    }
    for (const QByteArray &answer : NotOutlines) {
        expectError(processLogged(Operation::query, answer), "Invalid response!");
        EXPECT_EQ(log().lines().size(), 2) << "more than the two entries";
    }
}

TEST_F(TuneInAccountResponseTest, OfAQueryHasNoUserNameWhenNoAccountIsLinked)
{
    for (const char *status : {"400", "403", "", "500"}) {
        expectAccount(
            processLogged(Operation::query, fault(status, "validation.deviceNotAssociated")),
            {{"operation"_s, 5}, {"userName"_s, QString()}});
        EXPECT_THAT(log().lines("DEBUG"_s), ElementsAre("Query 'account': no user associated."_s));
        EXPECT_EQ(log().lines().size(), 3);
    }
}

TEST_F(TuneInAccountResponseTest, OfAQueryFailsForEveryOtherFault)
{
    expectError(process(Operation::query, fault("403")), "Access forbidden.", ":0");
    for (const char *almost : {"validation_deviceNotAssociated", "validation.DeviceNotAssociated",
             "deviceNotAssociated", "validation.deviceNotAssociated "})
        EXPECT_FALSE(process(Operation::query, fault("400", almost)).error.isEmpty()) << almost;
    expectError(processLogged(Operation::query, fault("400", "validation.error", "Bad %1")),
        "A validation error occurred.", ":6");
    EXPECT_THAT(log().lines("DEBUG"_s),
        ElementsAre("Setting TuneIn Account: method: 'query' failed, fault: 'Bad %1', code: "
                    "'validation.error'"_s));
}

TEST_F(TuneInAccountResponseTest, OfAQueryPrefersItsStatusToItsFault)
{
    expectAccount(process(Operation::query,
                      R"({"head":{"status":"200","fault_code":"validation.deviceNotAssociated"},)"
                      R"("body":[{"element":"outline","text":"jane"}]})"),
        {{"operation"_s, 5}, {"userName"_s, "jane"_s}});
}

// Claim

TEST_F(TuneInAccountResponseTest, OfAClaimCarriesItsMessageAndKey)
{
    expectAccount(
        processLogged(Operation::claim, screen(outline(R"(,"text":"Enter K1","key":"K1")"))),
        {{"operation"_s, 8}, {"claimMessage"_s, "Enter K1"_s}, {"claimKey"_s, "K1"_s}});
    EXPECT_THAT(log().lines(),
        ElementsAre("TRACE Enter TuneInAccountNode::processResponse: accountOperation: claim"_s,
            "TRACE Enter TuneInAccountNode::processResponseClaim: response: {body: [{element: "
            "outline, key: K1, text: Enter K1, type: text}], head: {status: 200, title: "
            "Screen}}"_s,
            "DEBUG Query 'claim': message 'Enter K1', key: 'K1'"_s));
}

TEST_F(TuneInAccountResponseTest, OfAClaimHoldsExactlyOneOutline)
{
    for (const QByteArray &answer : NotOne) {
        expectError(processLogged(Operation::claim, answer), "Invalid response.");
        EXPECT_EQ(log().lines().size(), 2) << "more than the two entries";
    }
    for (const QByteArray &answer : NotOutlines) {
        expectError(processLogged(Operation::claim, answer), "Invalid response.");
        EXPECT_EQ(log().lines().size(), 2) << "more than the two entries";
    }
}

TEST_F(TuneInAccountResponseTest, OfAClaimFailsWithTheFaultOfNoOperation)
{
    expectError(process(Operation::claim, fault("403")), "Access forbidden.", ":0");
    expectError(process(Operation::claim, fault("400", "validation.deviceNotAssociated")),
        "No associated account", ":7");
    expectError(processLogged(Operation::claim, fault("400", "validation.deviceExists", "Bad %1")),
        "Account already associated.", ":8");
    EXPECT_THAT(log().lines("DEBUG"_s),
        ElementsAre("Setting TuneIn Account: method: 'claim' failed, fault: 'Bad %1', code: "
                    "'validation.deviceExists'"_s));
}

TEST_F(TuneInAccountResponseTest, IsLoggedWithItsPlaceholders)
{
    processLogged(Operation::claim, screen(outline(R"(,"text":"%2 %1","key":"%1")")));
    EXPECT_THAT(log().lines("DEBUG"_s), ElementsAre("Query 'claim': message '%2 %1', key: '%1'"_s));
    processLogged(Operation::auth, screen(R"({"account_id":"%2","user_name":"%3","email":"%1"})"));
    EXPECT_THAT(log().lines("DEBUG"_s),
        ElementsAre("Query 'auth': account: id: '%2', user name: '%3', first name: '', last name: "
                    "'', email: '%1'"_s));
}
