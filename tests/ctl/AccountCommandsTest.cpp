// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using testing::Not;

const QString Read = QStringLiteral("getData Good:me");
const QString Write = QStringLiteral("setData Good:me");

/// A service whose account is a value of the type 99 under the key "membership".
VeskRoles withAccount(VeskRoles service)
{
    service.insert(QStringLiteral("account"),
        QVariantHash {{QStringLiteral("path"), QStringLiteral("Good:me")},
            {QStringLiteral("type"), 99}, {QStringLiteral("key"), QStringLiteral("membership")}});
    return service;
}

class AccountCommandsTest : public testing::Test {
protected:
    AccountCommandsTest()
    {
        m_host.setScreen(QStringLiteral("host:services"),
            {serviceRow("other", "Other"), withAccount(serviceRow("good", "Good"))});
        m_host.setResult(Write, R"("result":{"value":{"type":99,"membership":{"operation":3}}})");
    }

    Outcome account(const char *arguments, const QByteArray &input = {})
    {
        Outcome outcome = run(m_host.url(),
            QStringList {QStringLiteral("account")} + words(arguments), {input, 0, {}, {}, {}});
        for (const std::string &text : {outcome.out, outcome.errors})
            EXPECT_THAT(text, Not(HasSubstr("secret")));
        return outcome;
    }

    QVariant sent(const char *entry) const
    {
        const QVariantHash params = m_host.paramsOf(QStringLiteral("setData"));
        EXPECT_EQ(params.value(QStringLiteral("role")), QStringLiteral("value"));
        const QVariantHash value = params.value(QStringLiteral("value")).toHash();
        EXPECT_EQ(value.value(QStringLiteral("type")).toInt(), 99);
        return value.value(QStringLiteral("membership")).toHash().value(QLatin1String(entry));
    }

    FakeHost m_host;
};

TEST_F(AccountCommandsTest, StatusPrintsTheAccount)
{
    m_host.setResult(Read,
        R"("result":{"values":[{"type":99,"membership":{"operation":5,"userName":"jo\u001be"}}]})");
    const Outcome outcome = account("status");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "jo\ufffde\n");
    EXPECT_EQ(account("status --json").out, "{\"linked\":true,\"userName\":\"jo\\u001be\"}\n");
    EXPECT_EQ(m_host.timesAsked(Write), 0);
}

TEST_F(AccountCommandsTest, StatusPrintsThatThereIsNone)
{
    m_host.setResult(
        Read, R"("error":{"code":-32000,"message":"None","data":{"name":"e:7","title":"T"}})");
    EXPECT_EQ(account("status").out, "not linked\n");
    EXPECT_EQ(account("status").status, 0);
    const Outcome json = account("status --json");
    EXPECT_EQ(json.status, 0);
    EXPECT_EQ(json.out, "{\"linked\":false}\n");
    EXPECT_EQ(json.errors, "");
    m_host.setResult(
        Read, R"("result":{"values":[{"type":99,"membership":{"operation":5,"userName":""}}]})");
    EXPECT_EQ(account("status").out, "not linked\n");
    m_host.setResult(Read, R"("error":{"code":-32000,"message":"Down","data":{"name":"e:0"}})");
    const Outcome down = account("status");
    EXPECT_EQ(down.status, 1);
    EXPECT_EQ(down.errors, "veskctl: Down\n");
}

TEST_F(AccountCommandsTest, ClaimPrintsTheCodeWithSpaces)
{
    m_host.setResult(Write, R"("result":{"value":{"type":99,"membership":
        {"operation":8,"claimMessage":"Enter K7X","claimKey":"K7X"}}})");
    const Outcome outcome = account("claim");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "Enter K7X\n\n    K 7 X\n\n");
    EXPECT_EQ(sent("operation").toInt(), 8);
    EXPECT_THAT(account("claim --json").out, HasSubstr("\"claimKey\":\"K7X\""));
    m_host.setResult(Write, R"("result":{"value":{"type":99,"membership":
        {"claimMessage":"a\u001bb","claimKey":"\u001b\u009b"}}})");
    EXPECT_EQ(account("claim").out, "a\ufffdb\n\n    \ufffd \ufffd\n\n");
}

TEST_F(AccountCommandsTest, JoinAndDropReadThePasswordFromStandardInput)
{
    EXPECT_EQ(account("join joe", "top secret \xc3\xa4\nnext line\n").out, "joe: linked\n");
    EXPECT_EQ(sent("operation").toInt(), 3);
    EXPECT_EQ(sent("userName").toString(), QStringLiteral("joe"));
    EXPECT_EQ(sent("password").toString(), QStringLiteral("top secret ä"));
    EXPECT_EQ(account("drop joe", "secret").out, "joe: not linked any more\n");
    EXPECT_EQ(sent("operation").toInt(), 4);
    EXPECT_EQ(sent("password").toString(), QStringLiteral("secret"));
}

TEST_F(AccountCommandsTest, CreateSendsAllArguments)
{
    const Outcome outcome = account("create joe --email j@x --city Ulm --country-id 7", "secret\n");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "joe: made\n");
    EXPECT_EQ(sent("operation").toInt(), 2);
    EXPECT_EQ(sent("userName").toString(), QStringLiteral("joe"));
    EXPECT_EQ(sent("password").toString(), QStringLiteral("secret"));
    EXPECT_EQ(sent("email").toString(), QStringLiteral("j@x"));
    EXPECT_EQ(sent("city").toString(), QStringLiteral("Ulm"));
    EXPECT_EQ(sent("countryId").toString(), QStringLiteral("7"));
    EXPECT_EQ(sent("postalCode").toString(), QString());
}

TEST_F(AccountCommandsTest, RemindAndResetNeedNoPassword)
{
    EXPECT_EQ(account("remind j@x").status, 0);
    EXPECT_EQ(sent("operation").toInt(), 6);
    EXPECT_EQ(sent("email").toString(), QStringLiteral("j@x"));
    EXPECT_EQ(account("reset j@x").status, 0);
    EXPECT_EQ(sent("operation").toInt(), 7);
    EXPECT_EQ(sent("email").toString(), QStringLiteral("j@x"));
    EXPECT_EQ(sent("password").toString(), QString());
}

TEST_F(AccountCommandsTest, JoinSendsNothingWithoutAPassword)
{
    for (const QByteArray &input : {QByteArray(), QByteArray("\n"), QByteArray(2000, 'x')}) {
        const Outcome outcome = account("join joe", input);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_THAT(outcome.errors, HasSubstr("password"));
    }
    EXPECT_EQ(m_host.timesAsked(Write), 0);
}

TEST_F(AccountCommandsTest, FailsWithTheHost)
{
    m_host.setResult(Write,
        R"("error":{"code":-32000,"message":"Wrong\u001b","data":{"name":"e:1","title":"T"}})");
    for (const char *command :
        {"claim", "join joe", "drop joe", "create joe --email e", "remind e", "reset e"}) {
        const Outcome outcome = account(command, "secret\n");
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_EQ(outcome.out, "") << command;
        EXPECT_EQ(outcome.errors, "veskctl: T: Wrong\ufffd\n") << command;
    }
}

TEST_F(AccountCommandsTest, DropFailsWithoutALink)
{
    m_host.setResult(
        Write, R"("error":{"code":-32000,"message":"None","data":{"name":"e:7","title":"T"}})");
    const Outcome outcome = account("drop joe", "secret\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.errors, "veskctl: T: None\n");
    const Outcome json = account("drop joe --json", "secret\n");
    EXPECT_EQ(json.status, 1);
    EXPECT_THAT(json.out, HasSubstr("\"message\":\"None\""));
    EXPECT_EQ(json.errors, "");
}

TEST_F(AccountCommandsTest, NeedsAServiceWhenSeveralHaveAccounts)
{
    m_host.setScreen(QStringLiteral("host:services"),
        {withAccount(serviceRow("a", "A")), withAccount(serviceRow("good", "Good"))});
    EXPECT_EQ(account("status").status, 2);
    EXPECT_THAT(account("status").errors, HasSubstr("--in (a, good)"));
    m_host.setResult(Read, R"("result":{"values":[null]})");
    EXPECT_EQ(account("status --in good").out, "not linked\n");
    EXPECT_EQ(account("status --in Good:").out, "not linked\n");
    EXPECT_EQ(account("status --in bad").status, 2);
}

TEST_F(AccountCommandsTest, FailsWhenNoServiceHasAccounts)
{
    m_host.setScreen(QStringLiteral("host:services"), {serviceRow("good", "Good")});
    const Outcome outcome = account("status");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "veskctl: this service has no accounts\n");
}

} // namespace
