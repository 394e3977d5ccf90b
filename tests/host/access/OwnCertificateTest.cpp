// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/access/OwnCertificate.h"

#include "host/http/OpenSslHandles.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SmallDisk.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <openssl/x509v3.h>
#include <sys/stat.h>

namespace {

using testing::HasSubstr;
using testing::Not;

/// "DNS:radio, IP Address:10.0.0.1": an extension as OpenSSL prints it.
std::string extensionOf(const X509 *certificate, int nid)
{
    const int index = X509_get_ext_by_NID(certificate, nid, -1);
    if (index < 0)
        return "none";
    BIO *const out = BIO_new(BIO_s_mem());
    X509V3_EXT_print(out, X509_get_ext(certificate, index), 0, 0);
    char *data = nullptr;
    const long size = BIO_get_mem_data(out, &data);
    const std::string text(data, static_cast<std::size_t>(size));
    BIO_free(out);
    return text;
}

int daysBetween(const ASN1_TIME *from, const ASN1_TIME *to)
{
    int days = 0;
    int seconds = 0;
    ASN1_TIME_diff(&days, &seconds, from, to);
    return days;
}

class OwnCertificateTest : public testing::Test {
protected:
    TlsIdentity identity(const QDateTime &now = QDateTime::currentDateTimeUtc(),
        const Result<void, files::Problem> &held = {})
    {
        OwnCertificate own(m_folder, held);
        const auto identity = own.identity(m_subject, now);
        EXPECT_TRUE(identity);
        return identity ? *identity : TlsIdentity();
    }
    static X509Handle certificateOf(const TlsIdentity &identity)
    {
        auto certificates = certificatesIn(identity.certificates);
        EXPECT_EQ(certificates.size(), 1U);
        return certificates.empty() ? X509Handle() : std::move(certificates.front());
    }
    static bool isWhole(const TlsIdentity &identity)
    {
        const X509Handle certificate = certificateOf(identity);
        const PrivateKey key = privateKeyIn(identity.key);
        return certificate && key.key && belongTogether(certificate.get(), key.key.get());
    }
    QString fileName(const char *name) const
    {
        return m_folder + QStringLiteral("/tls/") + QString::fromLatin1(name);
    }
    QByteArray content(const char *name) const
    {
        QFile file(fileName(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void write(const char *name, const QByteArray &content) const
    {
        QFile file(fileName(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir m_temporary;
    QString m_folder = m_temporary.filePath(QStringLiteral("state"));
    OwnCertificate::Subject m_subject {QStringLiteral("radio"),
        {QStringLiteral("192.168.1.5"), QStringLiteral("fe80::1%eth0"), QStringLiteral("::1")}};
};

TEST_F(OwnCertificateTest, IsForTheMachineAndForServersOnly)
{
    const TlsIdentity own = identity();
    ASSERT_TRUE(isWhole(own));
    const X509Handle x = certificateOf(own);
    EXPECT_EQ(extensionOf(x.get(), NID_subject_alt_name),
        "DNS:radio, DNS:radio.local, DNS:localhost, IP Address:192.168.1.5, "
        "IP Address:FE80:0:0:0:0:0:0:1, IP Address:0:0:0:0:0:0:0:1");
    EXPECT_EQ(extensionOf(x.get(), NID_basic_constraints), "CA:FALSE");
    EXPECT_EQ(extensionOf(x.get(), NID_key_usage), "Digital Signature");
    EXPECT_EQ(extensionOf(x.get(), NID_ext_key_usage), "TLS Web Server Authentication");
    EXPECT_EQ(X509_check_host(x.get(), "radio.local", 0, 0, nullptr), 1);
    EXPECT_EQ(X509_check_ip_asc(x.get(), "192.168.1.5", 0), 1);
    EXPECT_EQ(X509_check_ip_asc(x.get(), "192.168.1.6", 0), 0);
    EVP_PKEY *const key = X509_get0_pubkey(x.get());
    EXPECT_EQ(X509_verify(x.get(), key), 1);
    char curve[20] = "";
    EVP_PKEY_get_group_name(key, curve, sizeof curve, nullptr);
    EXPECT_STREQ(curve, "prime256v1");
    EXPECT_EQ(X509_get_signature_nid(x.get()), NID_ecdsa_with_SHA256);
    EXPECT_EQ(daysBetween(X509_get0_notBefore(x.get()), X509_get0_notAfter(x.get())), 825);
    EXPECT_EQ(daysBetween(X509_get0_notBefore(x.get()), nullptr), 1) << "clocks may be behind";
}

TEST_F(OwnCertificateTest, NamesThatAreNoneAreLeftOut)
{
    const struct {
        QString hostName;
        QStringList addresses;
        const char *names;
    } cases[] = {
        {QString(), {}, "DNS:localhost"},
        {QStringLiteral("localhost"), {}, "DNS:localhost, DNS:localhost.local"},
        {QStringLiteral("radio.lan"), {},
            "DNS:radio.lan, DNS:radio, DNS:radio.local, DNS:localhost"},
        {QStringLiteral("evil,DNS:bank.example"), {}, "DNS:localhost"},
        {QStringLiteral("*.example"), {}, "DNS:localhost"},
        {QStringLiteral("radio\n"), {}, "DNS:localhost"},
        {QStringLiteral("rädio"), {}, "DNS:localhost"},
        {QStringLiteral("-radio"), {}, "DNS:localhost"},
        {QStringLiteral("a..b"), {}, "DNS:localhost"},
        {QString(64, QLatin1Char('a')), {}, "DNS:localhost"},
        {QStringLiteral("my_radio"), {}, "DNS:my_radio, DNS:my_radio.local, DNS:localhost"},
        {QString(),
            {QStringLiteral("radio"), QStringLiteral("1.2.3"), QString(), QStringLiteral("[::1]"),
                QStringLiteral("10.0.0.1")},
            "DNS:localhost, IP Address:10.0.0.1"},
    };
    for (const auto &c : cases) {
        m_folder.clear();
        m_subject = {c.hostName, c.addresses};
        const X509Handle x = certificateOf(identity());
        EXPECT_EQ(extensionOf(x.get(), NID_subject_alt_name), c.names);
    }
    m_subject = {(QString(60, QLatin1Char('a')) + QLatin1Char('.')).repeated(4).chopped(1), {}};
    ASSERT_TRUE(isWhole(identity())) << "the name of the subject has room for 64 characters only";
}

TEST_F(OwnCertificateTest, StaysTheSameWhereverTheMachineGoes)
{
    const TlsIdentity first = identity();
    m_subject = {QStringLiteral("other"), {}};
    const TlsIdentity second = identity();
    EXPECT_EQ(first.fingerprint(), second.fingerprint());
    EXPECT_EQ(first.key, second.key);
    EXPECT_EQ(first.fingerprint().size(), 95);
}

TEST_F(OwnCertificateTest, ItsFilesAreTheirOwnersAlone)
{
    identity();
    for (const char *const name :
        {"key.pem", "cert.pem", "key.pem.last-good", "cert.pem.last-good", ""}) {
        struct stat status { };
        ASSERT_EQ(::stat(QFile::encodeName(fileName(name)).constData(), &status), 0) << name;
        EXPECT_EQ(status.st_mode & 0777, *name ? 0600U : 0700U) << name;
    }
}

TEST_F(OwnCertificateTest, IsMadeAnewWithTheSameKeyThirtyDaysBeforeItsEnd)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const TlsIdentity first = identity(now);
    EXPECT_EQ(identity(now.addDays(793)).certificates, first.certificates);
    EXPECT_FALSE(OwnCertificate::isDue(first, now.addDays(793)));
    EXPECT_TRUE(OwnCertificate::isDue(first, now.addDays(795)));
    EXPECT_TRUE(OwnCertificate::isDue({}, now));
    const TlsIdentity second = identity(now.addDays(795));
    EXPECT_NE(second.certificates, first.certificates);
    EXPECT_EQ(second.key, first.key);
    EXPECT_TRUE(isWhole(second));
    EXPECT_EQ(identity(now.addDays(795)).certificates, second.certificates) << "kept";
    // As if it had been made by a clock that was wrong.
    const TlsIdentity third = identity(now);
    EXPECT_NE(third.certificates, second.certificates);
    EXPECT_EQ(third.key, first.key);
}

TEST_F(OwnCertificateTest, DamagedFilesAreReplacedByTheirCopies)
{
    const TlsIdentity first = identity();
    write("key.pem", "nonsense");
    write("cert.pem", QByteArray());
    const TlsIdentity second = identity();
    EXPECT_EQ(second.certificates, first.certificates);
    EXPECT_EQ(second.key, first.key);
    EXPECT_EQ(content("key.pem"), first.key);
    EXPECT_EQ(content("cert.pem"), first.certificates);
    EXPECT_EQ(content("key.pem.damaged"), "nonsense");
}

TEST_F(OwnCertificateTest, WhatCannotBeReadIsMadeAnew)
{
    const TlsIdentity first = identity();
    const QByteArray cut = first.certificates.left(200) + first.certificates.mid(260);
    for (const char *const name : {"cert.pem", "cert.pem.last-good"})
        write(name, cut);
    const TlsIdentity second = identity();
    EXPECT_NE(second.certificates, first.certificates);
    EXPECT_EQ(second.key, first.key);
    for (const char *const name : {"key.pem", "key.pem.last-good"})
        write(name, first.key.left(100));
    const TlsIdentity third = identity();
    EXPECT_NE(third.key, first.key);
    EXPECT_NE(third.certificates, second.certificates) << "that was for the other key";
    EXPECT_TRUE(isWhole(third));
    EXPECT_TRUE(isWhole(identity()));
}

TEST_F(OwnCertificateTest, ACertificateOfAnotherKeyIsNotUsed)
{
    const TlsIdentity first = identity();
    const auto other = OwnCertificate(QString(), {}).identity(m_subject);
    ASSERT_TRUE(other);
    write("cert.pem", other->certificates);
    const TlsIdentity second = identity();
    EXPECT_NE(second.certificates, other->certificates);
    EXPECT_EQ(second.key, first.key);
    EXPECT_TRUE(isWhole(second));
}

TEST_F(OwnCertificateTest, WithoutAPlaceForItItLastsUntilTheEnd)
{
    LogCapture log("Host");
    const TlsIdentity first
        = identity(QDateTime::currentDateTimeUtc(), failure(files::Problem {EROFS, "read-only"}));
    EXPECT_TRUE(isWhole(first));
    EXPECT_FALSE(QFile::exists(m_folder));
    EXPECT_THAT(log.lines(QStringLiteral("ERROR")).value(0).toStdString(), HasSubstr("read-only"));
    m_folder.clear();
    log.clear();
    EXPECT_TRUE(isWhole(identity()));
    EXPECT_TRUE(log.lines(QStringLiteral("ERROR")).isEmpty());
}

TEST_F(OwnCertificateTest, AFullDiskIsTold)
{
    const SmallDisk disk;
    if (!disk.isMounted())
        GTEST_SKIP();
    disk.fill();
    m_folder = QString::fromStdString(disk.folder());
    LogCapture log("Host");
    EXPECT_TRUE(isWhole(identity()));
    EXPECT_EQ(log.lines(QStringLiteral("ERROR")).size(), 1);
    disk.makeRoom();
    const TlsIdentity second = identity();
    EXPECT_EQ(identity().certificates, second.certificates);
}

TEST_F(OwnCertificateTest, NoKeyIsInTheLog)
{
    LogCapture log("");
    const TlsIdentity own = identity();
    write("key.pem", own.key.left(own.key.size() / 2));
    write("key.pem.last-good", own.key.mid(own.key.size() / 2));
    identity();
    const std::string all = log.lines().join(QLatin1Char('\n')).toStdString();
    EXPECT_THAT(all, HasSubstr("A new certificate was made"));
    EXPECT_THAT(all, HasSubstr(own.fingerprint().toStdString()));
    const QList<QByteArray> lines = own.key.split('\n');
    for (const QByteArray &line : lines) {
        if (line.size() > 8) {
            EXPECT_THAT(all, Not(HasSubstr(line.toStdString())));
        }
    }
}

} // namespace
