// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/HostCertificate.h"
#include "ctl/KnownHosts.h"
#include "tests/ctl/FakeHost.h"

#include <QFile>
#include <QTemporaryDir>

#include <gio/gio.h>
#include <gmock/gmock.h>

namespace {

using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const QByteArray Token = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJK-_0123";
const FakeHost::Results Stopped {{QStringLiteral("player.state"), R"("result":{"state":0})"}};

/// As long as it lives, the authorities that the system knows are one of the tests'.
class KnownAuthority {
public:
    explicit KnownAuthority(const TestAuthority &authority)
        : m_backend(g_tls_backend_get_default())
    {
        GTlsDatabase *database
            = g_tls_file_database_new(QFile::encodeName(authority.file()).constData(), nullptr);
        EXPECT_TRUE(database);
        g_tls_backend_set_default_database(m_backend, database);
        g_object_unref(database);
    }
    ~KnownAuthority() { g_tls_backend_set_default_database(m_backend, nullptr); }

    KnownAuthority(const KnownAuthority &) = delete;
    KnownAuthority &operator=(const KnownAuthority &) = delete;

private:
    GTlsBackend *const m_backend;
};

HostCertificate readCertificate(const TestAuthority::Certificate &files)
{
    GTlsCertificate *certificate
        = g_tls_certificate_new_from_file(files.certificateFile.constData(), nullptr);
    GByteArray *der = nullptr;
    g_object_get(certificate, "certificate", &der, nullptr);
    const HostCertificate read = HostCertificate::of(
        QByteArray(reinterpret_cast<const char *>(der->data), static_cast<int>(der->len)));
    g_byte_array_unref(der);
    g_object_unref(certificate);
    return read;
}

class RemoteHostTest : public testing::Test {
protected:
    RemoteHostTest()
    {
        m_around.knownHosts = m_folder.filePath(QStringLiteral("hosts.json"));
        m_host.setToken(Token);
    }

    Outcome status(const QStringList &more = {})
    {
        return run(m_host.url(), QStringList {QStringLiteral("status")} + more, m_around);
    }
    void know(const QString &key)
    {
        KnownHosts hosts(m_around.knownHosts);
        ASSERT_TRUE(hosts.keep(m_host.url(), {Token, key, QStringLiteral("AB:CD")}));
    }

    TestAuthority m_authority {"Fake authority"};
    const TestAuthority::Certificate m_certificate = m_authority.issue("localhost");
    FakeHost m_host {m_certificate, Stopped};
    const QTemporaryDir m_folder;
    Surroundings m_around;
};

TEST_F(RemoteHostTest, ThePinnedKeyAndTheTokenLetIn)
{
    know(readCertificate(m_certificate).key);
    const Outcome outcome = status();
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "stopped\n");
    EXPECT_EQ(m_host.authorizations(), QList<QByteArray> {"Bearer " + Token});
}

TEST_F(RemoteHostTest, ANewCertificateWithTheSameKeyIsTheSameHost)
{
    know(readCertificate(m_certificate).key);
    const TestAuthority::Certificate renewed = m_authority.renew(m_certificate, "localhost");
    ASSERT_NE(readCertificate(renewed).fingerprint, readCertificate(m_certificate).fingerprint);
    m_host.setCertificate(renewed);
    EXPECT_EQ(status().status, 0);
}

TEST_F(RemoteHostTest, APinnedKeyIsEnoughForAnExpiredCertificateOfAnotherName)
{
    const auto other = m_authority.issue("elsewhere", TestAuthority::Past);
    know(readCertificate(other).key);
    m_host.setCertificate(other);
    EXPECT_EQ(status().status, 0);
}

TEST_F(RemoteHostTest, NothingIsSentToAnotherKey)
{
    const TestAuthority::Certificate other = m_authority.issue("localhost");
    know(readCertificate(other).key);
    const Outcome outcome = status();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors,
        AllOf(HasSubstr("has changed"), HasSubstr("was AB:CD and is "),
            HasSubstr(readCertificate(m_certificate).fingerprint.toStdString())));
    EXPECT_THAT(m_host.authorizations(), IsEmpty());
}

TEST_F(RemoteHostTest, AnAuthorityDoesNotReplaceThePinnedKey)
{
    const KnownAuthority known(m_authority);
    know(readCertificate(m_authority.issue("localhost")).key);
    EXPECT_THAT(status().errors, HasSubstr("has changed"));
    EXPECT_THAT(m_host.authorizations(), IsEmpty());
}

TEST_F(RemoteHostTest, NothingIsSentToACertificateOfNoKnownAuthority)
{
    know(QString());
    const Outcome outcome = status();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors,
        AllOf(HasSubstr("of no authority"),
            HasSubstr(readCertificate(m_certificate).fingerprint.toStdString())));
    EXPECT_THAT(m_host.authorizations(), IsEmpty());
}

TEST_F(RemoteHostTest, AKnownAuthoritysCertificateNeedsNoPin)
{
    const KnownAuthority known(m_authority);
    know(QString());
    EXPECT_EQ(status().out, "stopped\n");
    for (const auto &bad :
        {m_authority.issue("elsewhere"), m_authority.issue("localhost", TestAuthority::Past),
            m_authority.issue("localhost", TestAuthority::Future)}) {
        m_host.setCertificate(bad);
        EXPECT_THAT(status().errors, HasSubstr("of no authority"));
    }
    EXPECT_THAT(m_host.authorizations(), testing::SizeIs(1));
}

TEST_F(RemoteHostTest, TellsWhoIsNotPaired)
{
    const KnownAuthority known(m_authority);
    const Outcome outcome = status();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors,
        AllOf(HasSubstr("is not paired with https://localhost:"), HasSubstr(" join CODE"),
            Not(HasSubstr("any more"))));
    EXPECT_THAT(status({QStringLiteral("--json")}).out, HasSubstr(R"("name":"notPaired")"));
}

TEST_F(RemoteHostTest, TellsWhoIsPairedNoMore)
{
    know(readCertificate(m_certificate).key);
    m_host.setToken("another token");
    const Outcome outcome = status();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("any more"));
    EXPECT_THAT(status({QStringLiteral("--json")}).out, HasSubstr(R"("name":"revoked")"));
}

TEST_F(RemoteHostTest, NoOutputHasTheToken)
{
    const auto tokenless = [](const Outcome &outcome) {
        return (outcome.out + outcome.errors).find(Token.toStdString()) == std::string::npos;
    };
    know(readCertificate(m_certificate).key);
    EXPECT_TRUE(tokenless(status()));
    m_host.setToken("another token");
    EXPECT_TRUE(tokenless(status()));
    EXPECT_TRUE(tokenless(status({QStringLiteral("--json")})));
    m_host.setCertificate(m_authority.issue("localhost"));
    EXPECT_TRUE(tokenless(status()));
}

TEST_F(RemoteHostTest, AWatchEndsWhenTheDeviceIsRevoked)
{
    know(readCertificate(m_certificate).key);
    m_host.setRevoking(QStringLiteral("player.state"), true);
    const Outcome outcome = status({QStringLiteral("--watch")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "stopped\n");
    EXPECT_THAT(outcome.errors, HasSubstr("is not paired with"));
    EXPECT_THAT(outcome.errors, HasSubstr("any more"));
}

TEST_F(RemoteHostTest, RedirectionsAreToldAndNotFollowed)
{
    FakeHost plain;
    plain.setStatus(308, m_host.url().toLatin1());
    KnownHosts hosts(m_around.knownHosts);
    ASSERT_TRUE(hosts.keep(plain.url(), {Token, {}, {}}));
    const Outcome outcome = run(plain.url(), {QStringLiteral("status")}, m_around);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors,
        "veskctl: the host wants an encrypted connection: veskctl --host "
            + plain.url().replace(QLatin1String("http:"), QLatin1String("https:")).toStdString()
            + "\n");
    EXPECT_THAT(m_host.authorizations(), IsEmpty());
    plain.setStatus(302, "http://127.0.0.1:1/");
    const Outcome other = run(plain.url(), {QStringLiteral("status")}, m_around);
    EXPECT_EQ(other.status, 3);
    EXPECT_THAT(other.errors, HasSubstr("no vesk-host (HTTP code 302)"));
}

TEST_F(RemoteHostTest, OtherHostsGetNoToken)
{
    know(readCertificate(m_certificate).key);
    FakeHost other(Stopped);
    EXPECT_EQ(run(other.url(), {QStringLiteral("status")}, m_around).status, 0);
    EXPECT_THAT(other.authorizations(), Each(QByteArray()));
}

TEST_F(RemoteHostTest, ADamagedFileIsToldAndAHostOnThisMachineIsUsed)
{
    QFile file(m_around.knownHosts);
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write("{");
    file.close();
    FakeHost local(Stopped);
    const Outcome outcome = run(local.url(), {QStringLiteral("status")}, m_around);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "stopped\n");
    EXPECT_THAT(outcome.errors, HasSubstr("hosts.json is damaged"));
}

} // namespace
