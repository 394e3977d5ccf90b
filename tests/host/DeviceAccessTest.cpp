// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/DeviceAccess.h"

#include "host/access/Secrets.h"
#include "host/http/OpenSslHandles.h"
#include "host/rpc/JsonRpcDispatcher.h"
#include "tests/support/TestAuthority.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class DeviceAccessTest : public testing::Test {
protected:
    DeviceAccessTest()
    {
        ListenAddress everywhere;
        everywhere.address = QStringLiteral("0.0.0.0");
        m_options.listen = {everywhere};
    }

    Result<HttpAccess, QString> access() const
    {
        DeviceAccess host(m_options, m_folder.path(), {});
        return host.forServer();
    }
    bool hasFile(const char *name) const
    {
        return QFile::exists(m_folder.filePath(QString::fromLatin1(name)));
    }

    static void copy(const QByteArray &from, const QString &to)
    {
        QFile::remove(to);
        EXPECT_TRUE(QFile::copy(QString::fromLocal8Bit(from), to));
    }

    QTemporaryDir m_folder;
    HostOptions m_options;
};

TEST_F(DeviceAccessTest, KeepsItsOwnCertificateInTheStateFolder)
{
    const auto first = access();
    ASSERT_TRUE(first);
    ASSERT_TRUE(first->identity);
    EXPECT_TRUE(hasFile("tls/cert.pem"));
    EXPECT_TRUE(hasFile("tls/key.pem"));
    const auto second = access();
    ASSERT_TRUE(second && second->identity);
    EXPECT_EQ(second->identity->fingerprint(), first->identity->fingerprint());
}

TEST_F(DeviceAccessTest, MakesNoCertificateWhereNoneIsNeeded)
{
    m_options.plainHttp = true;
    ASSERT_TRUE(access());
    EXPECT_FALSE(access()->identity);
    m_options.plainHttp = false;
    m_options.listen = {ListenAddress()};
    ASSERT_TRUE(access());
    EXPECT_FALSE(access()->identity);
    EXPECT_FALSE(hasFile("tls"));
}

TEST_F(DeviceAccessTest, TakesTheCertificateThatItIsGivenOrSaysWhatIsWrong)
{
    TestAuthority authority("Test");
    const auto files = authority.issue("radio.example");
    m_options.certificateFile = QString::fromLocal8Bit(files.certificateFile);
    m_options.keyFile = QString::fromLocal8Bit(files.keyFile);
    const auto given = access();
    ASSERT_TRUE(given && given->identity);
    EXPECT_EQ(certificatesIn(given->identity->certificates).size(), 1U);
    m_options.keyFile = m_options.certificateFile;
    const auto wrong = access();
    ASSERT_FALSE(wrong);
    EXPECT_THAT(wrong.error().toStdString(), HasSubstr("this is no private key"));
    EXPECT_FALSE(hasFile("tls"));
}

TEST_F(DeviceAccessTest, TakesACertificateThatWasRenewed)
{
    TestAuthority authority("Test");
    const auto first = authority.issue("radio.example");
    const auto other = authority.issue("other.example");
    const auto renewed = authority.renew(first, "radio.example");
    m_options.certificateFile = m_folder.filePath(QStringLiteral("cert.pem"));
    m_options.keyFile = m_folder.filePath(QStringLiteral("key.pem"));
    copy(first.certificateFile, m_options.certificateFile);
    copy(first.keyFile, m_options.keyFile);

    DeviceAccess host(m_options, m_folder.path(), {});
    const auto access = host.forServer();
    ASSERT_TRUE(access);
    JsonRpcDispatcher dispatcher;
    HttpServer server(&dispatcher);
    server.setAccess(*access);
    host.addTo(&server, &dispatcher);
    ASSERT_TRUE(server.listen({QStringLiteral("127.0.0.1"), 0}));
    const auto fingerprint = [&dispatcher] {
        QByteArray answer;
        dispatcher.handle(R"({"jsonrpc":"2.0","id":1,"method":"access.info"})",
            {nullptr, nullptr, {AccessRole::Owner, {}}},
            [&answer](const QByteArray &reply) { answer = reply; });
        return QJsonDocument::fromJson(answer)
            .object()[QStringLiteral("result")]
            .toObject()[QStringLiteral("fingerprint")]
            .toString();
    };
    const auto fingerprintOf = [](const TestAuthority::Certificate &files) {
        return TlsIdentity::read(
            QString::fromLocal8Bit(files.certificateFile), QString::fromLocal8Bit(files.keyFile))
            ->fingerprint();
    };
    EXPECT_EQ(fingerprint(), fingerprintOf(first));

    // Caught between the two files, which do not belong together: the earlier one stays.
    copy(other.certificateFile, m_options.certificateFile);
    host.renewIdentity();
    EXPECT_EQ(fingerprint(), fingerprintOf(first));

    copy(renewed.certificateFile, m_options.certificateFile);
    host.renewIdentity();
    EXPECT_EQ(fingerprint(), fingerprintOf(renewed));
    EXPECT_NE(fingerprintOf(renewed), fingerprintOf(first));
    host.leave();
}

TEST_F(DeviceAccessTest, NobodyIsKnownWhileNobodyIsPaired)
{
    DeviceAccess host(m_options, m_folder.path(), {});
    const auto access = host.forServer();
    ASSERT_TRUE(access);
    EXPECT_FALSE(access->findToken(makeAccessToken()));
    EXPECT_FALSE(access->findDevice(QString()));
    EXPECT_FALSE(access->findDevice(QStringLiteral("0000000000000000")));
}

} // namespace
