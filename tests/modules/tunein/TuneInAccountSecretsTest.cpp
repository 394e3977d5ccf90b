// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/tunein/TuneInAccountFixture.h"

using testing::IsEmpty;
using testing::Not;

namespace {

using Operation = VeskTuneInAccountOperation;

/// Texts that every encoding leaves as they are.
const QByteArray Password = "OpenSesame4711";
const QByteArray Session = "SessionHopscotch0815";

/// An answer that fits every operation, with a session id and, as a server might, the password.
const QByteArray TellTale = screen(R"({"element":"outline","type":"text","text":"jane","key":"K1",)"
                                   R"("user_name":"jane","account_id":"a1","session_id":")"
    + Session + R"(","password":")" + Password + R"("})");

VeskTuneInAccount secretAccount(Operation::Enum operation)
{
    VeskTuneInAccount account = filledAccount(operation);
    account.setPassword(QString::fromLatin1(Password));
    return account;
}

/// Everything that the process logs, at every level and by every logger.
class TuneInAccountSecretsTest : public TuneInAccountFixture {
protected:
    TuneInAccountSecretsTest()
    {
        start();
        m_all.clear();
    }

    QStringList everyRecord()
    {
        onWorker([] {});
        return m_all.lines() + m_all.sources();
    }

    void expectNoSecretIn(const QStringList &texts)
    {
        for (const QString &text : texts) {
            EXPECT_FALSE(text.contains(QString::fromLatin1(Password), Qt::CaseInsensitive))
                << text.toStdString();
            EXPECT_FALSE(text.contains(QString::fromLatin1(Session), Qt::CaseInsensitive))
                << text.toStdString();
        }
    }

    void expectNoSecretIn(const CMError &error)
    {
        expectNoSecretIn({printed(error), error.name(), error.message().toString(),
            error.message().sourceText(), error.title().toString()});
        for (const TrArg &argument : error.message().arguments())
            expectNoSecretIn(QStringList(argument.value));
    }

    /// Runs the eight operations and a read; expects errors, or none, and no secret in any.
    void runAll(bool expectErrors)
    {
        for (const Operation::Enum operation : AllOperations) {
            const Answer answer = write(secretAccount(operation));
            EXPECT_EQ(!answer.error.isEmpty(), expectErrors) << operation;
            expectNoSecretIn(answer.error);
        }
        const Answer answer = read();
        EXPECT_EQ(!answer.error.isEmpty(), expectErrors);
        expectNoSecretIn(answer.error);
    }

    /// Expects records of both loggers that an exchange runs through, and no secret in any.
    void expectSilence()
    {
        const QStringList records = everyRecord();
        EXPECT_THAT(records.filter("modules/tunein/TuneInAccount"_s), Not(IsEmpty()));
        EXPECT_THAT(records.filter("password=***"_s), Not(IsEmpty()));
        EXPECT_THAT(records.filter("password: ***"_s), Not(IsEmpty()));
        expectNoSecretIn(records);
    }

private:
    LogCapture m_all {""};
};

} // namespace

TEST_F(TuneInAccountSecretsTest, StayOutOfLogAndErrorsWhenAnOperationSucceeds)
{
    answerAccount(TellTale);
    runAll(false);
    expectSilence();
    EXPECT_THAT(everyRecord().filter("session_id: ***"_s), Not(IsEmpty()));
    EXPECT_THAT(everyRecord().filter("sessionId: ***"_s), Not(IsEmpty()));
    EXPECT_THAT(everyRecord().filter("api/web/"_s), Not(IsEmpty()));
    // They did reach the server.
    EXPECT_TRUE(accountServer().requests().first().target.contains(Password));
    EXPECT_EQ(
        accountOf(write(secretAccount(Operation::auth))).sessionId(), QString::fromLatin1(Session));
}

TEST_F(TuneInAccountSecretsTest, StayOutOfLogAndErrorsWhenTuneInRefuses)
{
    for (const char *code : {"validation.password", "validation.error", ""}) {
        for (const char *status : {"400", "403"}) {
            answerAccount(R"({"head":{"status":")" + QByteArray(status) + R"(","fault_code":")"
                + code + R"(","session_id":")" + Session + R"("},"body":[]})");
            runAll(true);
        }
    }
    expectSilence();
}

TEST_F(TuneInAccountSecretsTest, StayOutOfLogAndErrorsWhenAnExchangeFails)
{
    answerAccount(QByteArray("{\"session_id\":\"" + Session + "\""));
    runAll(true);
    for (const auto end : {ScriptedServer::End::ResetBeforeHead, ScriptedServer::End::Close,
             ScriptedServer::End::Truncate}) {
        ScriptedServer::Response broken;
        broken.body = "{\"session_id\":\"" + Session;
        broken.end = end;
        answerAccount(broken);
        runAll(true);
    }
    ScriptedServer::Response elsewhere;
    elsewhere.code = 307;
    elsewhere.headers = {{"Location", "http://opml.radiotime.com/x?password=" + Password}};
    answerAccount(elsewhere);
    runAll(true);
    openAccountServer("opml.example.org");
    runAll(true);
    closeAccountServer();
    runAll(true);
    setNetwork(false);
    runAll(true);
    expectSilence();
}

TEST_F(TuneInAccountSecretsTest, StayOutOfLogAndErrorsWhenAWriteIsRefused)
{
    VeskTuneInAccount half = secretAccount(Operation::auth);
    half.setUserName(QString());
    expectNoSecretIn(write(half).error);
    expectNoSecretIn(write(secretAccount(Operation::none)).error);
    const QVariantHash account = secretAccount(Operation::drop).toHash();
    for (const QVariant &value :
        {QVariant(account), QVariant(QVariantHash {{"type"_s, 4}, {"tuneInAccount"_s, account}})})
        expectNoSecretIn(setData("TuneIn:account"_s, VeskRoles::Value(), value).error);
    expectNoSecretIn(setData("TuneIn:account"_s, VeskRoles::Activate(), account).error);
    EXPECT_THAT(everyRecord().filter("password: ***"_s), Not(IsEmpty()));
    expectNoSecretIn(everyRecord());
    EXPECT_TRUE(accountServer().requests().isEmpty());
}
