// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/ScriptedServer.h"
#include "tests/support/TestAuthority.h"
#include "tests/support/Text.h"
#include "tests/system/Product.h"

#include <gmock/gmock.h>

namespace {

const char host[] = "opml.radiotime.com";

/// The only authority that the hosts of these tests trust.
TestAuthority &authority()
{
    static TestAuthority authority("Account tests");
    return authority;
}

/// Another server at the directory's address.
struct Impostor {
    const char *what;
    const char *host;
    TestAuthority::Validity validity;
    bool known; ///< issued by an authority that the host trusts
};

void PrintTo(const Impostor &impostor, std::ostream *out)
{
    *out << impostor.what;
}

ScriptedServer::Response success(const ScriptedServer::Request &)
{
    ScriptedServer::Response response;
    response.body = "{\"head\":{\"status\":\"200\"},\"body\":[{\"element\":\"outline\",\"text\":"
                    "\"impostor\",\"key\":\"AAAAAA\"}]}";
    return response;
}

QVariantHash join(const Product &product)
{
    const QVariantHash account {{text("operation"), text("join")},
        {text("userName"), text("quokka")}, {text("password"), text("Zwiebel77xy")}};
    return product.rpc(text("setData"),
        {{text("path"), text("TuneIn:account")}, {text("role"), text("value")},
            {text("value"), QVariantHash {{text("type"), 115}, {text("tuneInAccount"), account}}}});
}

QVariantHash status(const Product &product)
{
    return product.rpc(text("getData"),
        {{text("path"), text("TuneIn:account")}, {text("roles"), QStringList {text("value")}}});
}

class ImpostorAtTheAddress : public testing::TestWithParam<Impostor> { };

TEST_P(ImpostorAtTheAddress, ReceivesNoCredentials)
{
    static TestAuthority stranger("Somebody");
    TestAuthority &issuer = GetParam().known ? authority() : stranger;
    const TestAuthority::Certificate certificate
        = issuer.issue(GetParam().host, GetParam().validity);
    ScriptedServer server(success, certificate.certificateFile, certificate.keyFile);
    const Product product({text("--ca-file"), authority().file(), text("--connect-to"),
        QString::fromLatin1(server.connectTo(host))});
    ASSERT_TRUE(product.isUp());
    const bool trusted = QByteArray(GetParam().what) == "nobody";
    for (const QVariantHash &answer : {join(product), status(product)}) {
        EXPECT_EQ(answer.contains(text("result")), trusted);
        EXPECT_EQ(answer.value(text("error")).toHash().value(text("message")).toString(),
            trusted ? QString() : text("Invalid data received."));
    }
    EXPECT_GE(server.connections(), 1);
    EXPECT_EQ(server.requests().size(), trusted ? 2 : 0);
    EXPECT_EQ(product.requestLog().filter(text("Account.ashx")), QStringList());
    // Everything else still works.
    EXPECT_GT(product.rows(text("TuneIn:"), {text("title")}).size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Account, ImpostorAtTheAddress,
    testing::Values(
        // A valid server, to show that the others fail because of their certificates.
        Impostor {"nobody", host, TestAuthority::Now, true},
        Impostor {"unknown authority", host, TestAuthority::Now, false},
        Impostor {"expired", host, TestAuthority::Past, true},
        Impostor {"not yet valid", host, TestAuthority::Future, true},
        Impostor {"another host", "opml.example.org", TestAuthority::Now, true},
        Impostor {"a host with its name in it", "opml.radiotime.com.example.org",
            TestAuthority::Now, true}));

TEST(AccountWithoutTls, IsNeverRequestedOverPlainHttp)
{
    ScriptedServer plain(success);
    const Product product({text("--connect-to"),
        QStringLiteral("opml.radiotime.com:443:127.0.0.1:%1").arg(plain.port())});
    ASSERT_TRUE(product.isUp());
    const QVariantHash answer = join(product);
    EXPECT_EQ(answer.value(text("error")).toHash().value(text("message")).toString(),
        text("Invalid data received."));
    for (const ScriptedServer::Request &request : plain.requests())
        EXPECT_FALSE(request.target.contains("Account.ashx"));
    EXPECT_EQ(product.requestLog().filter(text("Account.ashx")), QStringList());
}

TEST(AccountWithoutTls, FollowsNoRedirectToPlainHttp)
{
    ScriptedServer plain(success);
    const TestAuthority::Certificate certificate = authority().issue(host);
    ScriptedServer server(
        [&plain](const ScriptedServer::Request &request) {
            ScriptedServer::Response response;
            response.code = 302;
            response.headers = {{"Location",
                "http://127.0.0.1:" + QByteArray::number(plain.port()) + request.target}};
            return response;
        },
        certificate.certificateFile, certificate.keyFile);
    const Product redirected({text("--ca-file"), authority().file(), text("--connect-to"),
        QString::fromLatin1(server.connectTo(host))});
    ASSERT_TRUE(redirected.isUp());
    const QVariantHash answer = status(redirected);
    EXPECT_TRUE(answer.contains(text("error")));
    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_EQ(plain.connections(), 0);
}

} // namespace
