// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/tunein/TuneInAccountFixture.h"

#include "api/web/HttpClient.h"
#include "api/web/VeskJson.h"

using Operation = VeskTuneInAccountOperation;

const QList<Operation::Enum> AllOperations {Operation::auth, Operation::create, Operation::join,
    Operation::drop, Operation::query, Operation::remind, Operation::reset, Operation::claim};

const QByteArray Done = R"({"head":{"status":"200"},"body":[]})";

TuneInAccountFixture::TuneInAccountFixture()
{
    HttpClient::setCaFile(m_authority.file());
    m_response.body = Done;
    openAccountServer();
}

TuneInAccountFixture::~TuneInAccountFixture()
{
    HttpClient::setCaFile(QString());
}

void TuneInAccountFixture::openAccountServer(
    const char *host, TestAuthority::Validity validity, bool trusted)
{
    const TestAuthority::Certificate files
        = (trusted ? m_authority : m_otherAuthority).issue(host, validity);
    m_accountServer = std::make_unique<ScriptedServer>(
        [response = m_response](const ScriptedServer::Request &) { return response; },
        files.certificateFile, files.keyFile);
    HttpClient::setConnectTo({QString::fromLatin1(server().connectTo("opml.radiotime.com")),
        QString::fromLatin1(m_accountServer->connectTo("opml.radiotime.com"))});
}

void TuneInAccountFixture::closeAccountServer()
{
    m_accountServer.reset();
}

void TuneInAccountFixture::answerAccount(const QByteArray &body)
{
    ScriptedServer::Response response;
    response.body = body;
    answerAccount(response);
}

void TuneInAccountFixture::answerAccount(const ScriptedServer::Response &response)
{
    m_response = response;
    m_accountServer->setHandler([response](const ScriptedServer::Request &) { return response; });
}

void TuneInAccountFixture::expectAccountRequests(const QList<QByteArray> &lines)
{
    EXPECT_EQ(accountServer().requestLines(), lines);
    for (const ScriptedServer::Request &request : accountServer().requests())
        EXPECT_EQ(request.body, QByteArray());
    accountServer().clearRequests();
    EXPECT_EQ(server().connections(), 0) << "an account call over plain HTTP";
}

Answer TuneInAccountFixture::read(const QStringList &roles)
{
    return data("TuneIn:account"_s, roles);
}

Answer TuneInAccountFixture::write(const VeskTuneInAccount &account)
{
    VeskValue value;
    value.setTuneInAccount(account);
    return setData("TuneIn:account"_s, VeskRoles::Value(), value);
}

TuneInAccountNode *TuneInAccountFixture::node() const
{
    return dynamic_cast<TuneInAccountNode *>(worker()->nodes()->find(path("TuneIn:account"_s)));
}

Answer TuneInAccountFixture::process(Operation::Enum operation, const QByteArray &answer)
{
    VeskError parseError;
    const VeskTuneInResponse response(VeskJson::parse(answer, parseError).toHash());
    EXPECT_TRUE(parseError.isEmpty()) << parseError;
    const auto data = std::make_shared<CMReplyData<QVariant>>();
    Answer result;
    onWorker([&] {
        const CMReply<QVariant> reply(data);
        node()->processResponse(response, operation, reply);
        result.finished = data->isFinished();
    });
    EXPECT_TRUE(result.finished) << "the reply was left open";
    result.error = data->error();
    result.value = data->value();
    return result;
}

VeskTuneInAccount filledAccount(Operation::Enum operation)
{
    VeskTuneInAccount account;
    account.setOperation(operation);
    account.setUserName("me"_s);
    account.setPassword("sesame"_s);
    account.setEmail("me@example.org"_s);
    account.setPostalCode("10115"_s);
    account.setCity("Berlin"_s);
    account.setCountryId("n88"_s);
    return account;
}

VeskTuneInAccount accountOf(const Answer &answer)
{
    EXPECT_TRUE(answer.error.isEmpty()) << answer.error;
    const VeskValue value(VeskHash(answer.value.toHash()));
    EXPECT_EQ(int(value.type()), 115);
    return value.tuneInAccount();
}

VeskTuneInAccount firstAccountOf(const Answer &answer)
{
    Answer first = answer;
    first.value = answer.value.toList().value(0);
    return accountOf(first);
}

QByteArray fault(const char *status, const char *faultCode, const char *text)
{
    return QByteArray(R"({"head":{"status":")") + status + R"(","fault":")" + text
        + R"(","fault_code":")" + faultCode + R"("},"body":[]})";
}
