// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include "api/values/VeskTuneInAccount.h"
#include "api/values/VeskValue.h"

#include <gmock/gmock.h>

namespace {

using Operation = VeskTuneInAccountOperation;
using testing::HasSubstr;
using testing::Not;

const QString Read = QStringLiteral("getData Good:account");
const QString Write = QStringLiteral("setData Good:account");

class AccountCommandsTest : public testing::Test {
protected:
    AccountCommandsTest()
    {
        m_host.setScreen(QStringLiteral("host:services"), {row(1, "Good", "Good:")});
        m_host.setResult(
            Write, R"("result":{"value":{"type":115,"tuneInAccount":{"operation":3}}})");
    }

    Outcome account(const char *arguments, const QByteArray &input = {})
    {
        Outcome outcome = run(m_host.url(),
            QStringList {QStringLiteral("account")} + words(arguments), {input, 0, {}, {}, {}});
        for (const std::string &text : {outcome.out, outcome.errors})
            EXPECT_THAT(text, Not(HasSubstr("secret")));
        return outcome;
    }

    VeskTuneInAccount sent() const
    {
        const QVariantHash params = m_host.paramsOf(QStringLiteral("setData"));
        EXPECT_EQ(params.value(QStringLiteral("role")), QStringLiteral("value"));
        return VeskValue(params.value(QStringLiteral("value")).toHash()).tuneInAccount();
    }

    FakeHost m_host;
};

TEST_F(AccountCommandsTest, StatusPrintsTheAccount)
{
    m_host.setResult(Read,
        R"("result":{"values":[{"type":115,"tuneInAccount":{"operation":5,"userName":"jo\u001be"}}]})");
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
    m_host.setResult(Read,
        R"("result":{"values":[{"type":115,"tuneInAccount":{"operation":5,"userName":""}}]})");
    EXPECT_EQ(account("status").out, "not linked\n");
    m_host.setResult(Read, R"("error":{"code":-32000,"message":"Down","data":{"name":"e:0"}})");
    const Outcome down = account("status");
    EXPECT_EQ(down.status, 1);
    EXPECT_EQ(down.errors, "veskctl: Down\n");
}

TEST_F(AccountCommandsTest, ClaimPrintsTheCodeWithSpaces)
{
    m_host.setResult(Write, R"("result":{"value":{"type":115,"tuneInAccount":
        {"operation":8,"claimMessage":"Enter K7X","claimKey":"K7X"}}})");
    const Outcome outcome = account("claim");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "Enter K7X\n\n    K 7 X\n\n");
    EXPECT_EQ(sent().operation(), Operation::claim);
    EXPECT_THAT(account("claim --json").out, HasSubstr("\"claimKey\":\"K7X\""));
    m_host.setResult(Write, R"("result":{"value":{"type":115,"tuneInAccount":
        {"claimMessage":"a\u001bb","claimKey":"\u001b\u009b"}}})");
    EXPECT_EQ(account("claim").out, "a\ufffdb\n\n    \ufffd \ufffd\n\n");
}

TEST_F(AccountCommandsTest, JoinAndDropReadThePasswordFromStandardInput)
{
    EXPECT_EQ(account("join joe", "top secret \xc3\xa4\nnext line\n").out, "joe: linked\n");
    EXPECT_EQ(sent().operation(), Operation::join);
    EXPECT_EQ(sent().userName(), QStringLiteral("joe"));
    EXPECT_EQ(sent().password(), QStringLiteral("top secret ä"));
    EXPECT_EQ(account("drop joe", "secret").out, "joe: not linked any more\n");
    EXPECT_EQ(sent().operation(), Operation::drop);
    EXPECT_EQ(sent().password(), QStringLiteral("secret"));
}

TEST_F(AccountCommandsTest, CreateSendsAllArguments)
{
    const Outcome outcome = account("create joe --email j@x --city Ulm --country-id 7", "secret\n");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "joe: made\n");
    EXPECT_EQ(sent().operation(), Operation::create);
    EXPECT_EQ(sent().userName(), QStringLiteral("joe"));
    EXPECT_EQ(sent().password(), QStringLiteral("secret"));
    EXPECT_EQ(sent().email(), QStringLiteral("j@x"));
    EXPECT_EQ(sent().city(), QStringLiteral("Ulm"));
    EXPECT_EQ(sent().countryId(), QStringLiteral("7"));
    EXPECT_EQ(sent().postalCode(), QString());
}

TEST_F(AccountCommandsTest, RemindAndResetNeedNoPassword)
{
    EXPECT_EQ(account("remind j@x").status, 0);
    EXPECT_EQ(sent().operation(), Operation::remind);
    EXPECT_EQ(sent().email(), QStringLiteral("j@x"));
    EXPECT_EQ(account("reset j@x").status, 0);
    EXPECT_EQ(sent().operation(), Operation::reset);
    EXPECT_EQ(sent().email(), QStringLiteral("j@x"));
    EXPECT_EQ(sent().password(), QString());
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

TEST_F(AccountCommandsTest, NeedsAServiceWhenThereAreSeveral)
{
    m_host.setScreen(QStringLiteral("host:services"), {row(1, "A", "A:"), row(1, "B", "B:")});
    EXPECT_EQ(account("status").status, 2);
    m_host.setResult(Read, R"("result":{"values":[null]})");
    EXPECT_EQ(account("status --in Good:").out, "not linked\n");
}

} // namespace
