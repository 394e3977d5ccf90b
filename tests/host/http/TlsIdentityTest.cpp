// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/TlsIdentity.h"

#include "host/http/OpenSslHandles.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TestAuthority.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <openssl/pem.h>

namespace {

using testing::HasSubstr;
using testing::Not;

class TlsIdentityTest : public testing::Test {
protected:
    QString file(const char *name, const QByteArray &content) const
    {
        const QString path = m_folder.filePath(QString::fromLatin1(name));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path;
    }
    static QByteArray contentOf(const QByteArray &name)
    {
        QFile file(QString::fromLocal8Bit(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    /// What read() says; empty for success.
    static std::string problem(const QString &certificateFile, const QString &keyFile)
    {
        const auto identity = TlsIdentity::read(certificateFile, keyFile);
        return identity ? std::string() : identity.error().toStdString();
    }

    QTemporaryDir m_folder;
    TestAuthority m_authority {"Test"};
    const TestAuthority::Certificate m_files = m_authority.issue("radio.example");
    const QByteArray m_certificate = contentOf(m_files.certificateFile);
    const QByteArray m_key = contentOf(m_files.keyFile);
};

TEST_F(TlsIdentityTest, ReadsACertificateWithItsChainAndItsKey)
{
    const QByteArray authority = contentOf(m_authority.file().toLocal8Bit());
    const QString chain = file("chain.pem", "# from the authority\n" + m_certificate + authority);
    const auto identity = TlsIdentity::read(chain, file("key.pem", m_key));
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->certificates, m_certificate + authority);
    EXPECT_EQ(identity->key, m_key);
    const std::vector<X509Handle> certificates = certificatesIn(m_certificate);
    unsigned char digest[32];
    X509_digest(certificates.front().get(), EVP_sha256(), digest, nullptr);
    EXPECT_EQ(identity->fingerprint().toStdString(),
        QByteArray(reinterpret_cast<char *>(digest), 32).toHex(':').toUpper().toStdString());
    EXPECT_EQ(TlsIdentity().fingerprint(), QString());
}

TEST_F(TlsIdentityTest, BothMayBeInOneFileAndBehindALink)
{
    const QString both = file("both.pem", m_key + m_certificate);
    const QString link = m_folder.filePath(QStringLiteral("link.pem"));
    ASSERT_TRUE(QFile::link(both, link));
    const auto identity = TlsIdentity::read(link, link);
    ASSERT_TRUE(identity) << identity.error().toStdString();
    EXPECT_EQ(identity->certificates, m_certificate) << "without the key";
}

TEST_F(TlsIdentityTest, SaysWhichFileIsWrongAndHow)
{
    const QString certificate = file("cert.pem", m_certificate);
    const QString key = file("key.pem", m_key);
    const QString missing = m_folder.filePath(QStringLiteral("missing.pem"));
    const auto other = m_authority.issue("other.example");
    const QString otherKey = QString::fromLocal8Bit(other.keyFile);
    const PrivateKey parsed = privateKeyIn(m_key);
    BIO *const out = BIO_new(BIO_s_mem());
    PEM_write_bio_PKCS8PrivateKey(
        out, parsed.key.get(), EVP_aes_128_cbc(), "secret", 6, nullptr, nullptr);
    char *data = nullptr;
    const long size = BIO_get_mem_data(out, &data);
    const QString locked = file("locked.pem", QByteArray(data, static_cast<int>(size)));
    BIO_free(out);
    const QString broken
        = file("broken.pem", m_certificate + m_certificate.left(100) + m_certificate.mid(160));
    const struct {
        QString certificate;
        QString key;
        QString problem;
    } cases[] = {
        {missing, key, missing + QStringLiteral(": there is no such file")},
        {certificate, missing, missing + QStringLiteral(": there is no such file")},
        {m_folder.path(), key, m_folder.path() + QStringLiteral(": this is no regular file")},
        {QStringLiteral("/dev/zero"), key, QStringLiteral("/dev/zero: this is no regular file")},
        {file("empty.pem", {}), key,
            m_folder.filePath(QStringLiteral("empty.pem: the file is empty"))},
        {file("large.pem", QByteArray(1024 * 1024 + 1, 'x')), key,
            m_folder.filePath(QStringLiteral("large.pem: the file is too large"))},
        {key, key, key + QStringLiteral(": this is no certificate in the form PEM")},
        {broken, key, broken + QStringLiteral(": this is no certificate in the form PEM")},
        {certificate, certificate,
            certificate + QStringLiteral(": this is no private key in the form PEM")},
        {certificate, locked,
            locked
                + QStringLiteral(
                    ": the private key has a password; write it to a file without one")},
        {certificate, otherKey,
            otherKey + QStringLiteral(": this is not the private key of the certificate in ")
                + certificate},
    };
    for (const auto &c : cases)
        EXPECT_EQ(problem(c.certificate, c.key), c.problem.toStdString());
}

TEST_F(TlsIdentityTest, WarnsOfACertificateThatIsNotValidNow)
{
    LogCapture log("Host");
    const auto past = m_authority.issue("radio.example", TestAuthority::Past);
    const auto future = m_authority.issue("radio.example", TestAuthority::Future);
    for (const auto &files : {past, future, m_files}) {
        EXPECT_EQ(problem(QString::fromLocal8Bit(files.certificateFile),
                      QString::fromLocal8Bit(files.keyFile)),
            "");
    }
    const QStringList lines = log.lines(QStringLiteral("WARN"));
    ASSERT_EQ(lines.size(), 2);
    EXPECT_THAT(lines.at(0).toStdString(), HasSubstr("has expired"));
    EXPECT_THAT(lines.at(1).toStdString(), HasSubstr("is not valid yet"));
}

TEST_F(TlsIdentityTest, ErrorsHaveNothingOfTheKey)
{
    const QString cut = file("cut.pem", m_key.left(m_key.size() - 40));
    LogCapture log("");
    const std::string error = problem(file("cert.pem", m_certificate), cut);
    EXPECT_THAT(error, HasSubstr("this is no private key"));
    EXPECT_THAT(error, Not(HasSubstr(m_key.mid(30, 20).toStdString())));
    EXPECT_TRUE(log.lines().isEmpty());
}

} // namespace
