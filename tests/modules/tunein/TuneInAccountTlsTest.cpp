// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/modules/tunein/TuneInAccountFixture.h"

#include "api/web/HttpClient.h"

namespace {

using Operation = VeskTuneInAccountOperation;

class TuneInAccountTlsTest : public TuneInAccountFixture {
protected:
    TuneInAccountTlsTest() { start(); }

    /// Expects that a read and a write fail and that the account server received neither.
    void expectNothingSent()
    {
        EXPECT_EQ(read().errorText(), "Invalid data received."_s);
        EXPECT_EQ(write(filledAccount(Operation::auth)).errorText(), "Invalid data received."_s);
        EXPECT_GT(accountServer().connections(), 0);
        expectAccountRequests({});
    }
};

} // namespace

TEST_F(TuneInAccountTlsTest, SendsNothingToAServerOfAnUnknownAuthority)
{
    openAccountServer("opml.radiotime.com", TestAuthority::Now, false);
    expectNothingSent();
}

TEST_F(TuneInAccountTlsTest, SendsNothingToAServerOfAnotherHost)
{
    openAccountServer("opml.example.org");
    expectNothingSent();
}

TEST_F(TuneInAccountTlsTest, SendsNothingToAServerWithAnExpiredCertificate)
{
    openAccountServer("opml.radiotime.com", TestAuthority::Past);
    expectNothingSent();
}

TEST_F(TuneInAccountTlsTest, SendsNothingToAServerWithACertificateOfTheFuture)
{
    openAccountServer("opml.radiotime.com", TestAuthority::Future);
    expectNothingSent();
}

TEST_F(TuneInAccountTlsTest, SendsNothingToAServerWithoutTls)
{
    HttpClient::setConnectTo(
        {"opml.radiotime.com:443:127.0.0.1:"_s + QString::number(server().port())});
    EXPECT_EQ(read().errorText(), "Invalid data received."_s);
    EXPECT_EQ(write(filledAccount(Operation::auth)).errorText(), "Invalid data received."_s);
    EXPECT_GT(server().connections(), 0);
    expectRequests({});
}

TEST_F(TuneInAccountTlsTest, FollowsNoRedirectToPlainHttp)
{
    for (const int code : {301, 302, 303, 307, 308}) {
        ScriptedServer::Response response;
        response.code = code;
        response.headers
            = {{"Location", "http://opml.radiotime.com/Account.ashx?username=me&password=sesame"}};
        answerAccount(response);
        EXPECT_EQ(write(filledAccount(Operation::auth)).errorText(), "Invalid data received."_s);
        expectAccountRequests({"POST /Account.ashx?render=json&partnerId=partner&c=auth&"
                               "username=me&password=sesame"});
    }
}

TEST_F(TuneInAccountTlsTest, WorksAgainOnceTheServerIsTrusted)
{
    openAccountServer("opml.radiotime.com", TestAuthority::Past);
    EXPECT_FALSE(write(filledAccount(Operation::drop)).error.isEmpty());
    openAccountServer();
    EXPECT_EQ(accountOf(write(filledAccount(Operation::drop))).operation(), Operation::drop);
}
