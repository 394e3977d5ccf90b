// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/private/SystemCertificates.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

struct Distribution {
    const char *name;
    QList<QByteArray> files; ///< that it has
    const char *folder; ///< that is found, or ""
    const char *file; ///< that is found, or ""
};

class SystemCertificatesTest : public testing::TestWithParam<Distribution> { };

TEST_P(SystemCertificatesTest, AreFoundWhereDistributionsKeepThem)
{
    const QTemporaryDir root;
    for (const QByteArray &name : GetParam().files) {
        const QString path = root.path() + QString::fromLatin1(name);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    const QByteArray base = QFile::encodeName(root.path());
    const auto below = [&base](QByteArray name) { return name.isEmpty() ? name : base + name; };
    const SystemCertificates found = SystemCertificates::find(base);
    EXPECT_EQ(found.folder, below(GetParam().folder));
    EXPECT_EQ(found.file, below(GetParam().file));
}

INSTANTIATE_TEST_SUITE_P(Distributions, SystemCertificatesTest,
    testing::Values(
        Distribution {"Debian", {"/etc/ssl/certs/ca-certificates.crt", "/etc/ssl/certs/5ad8a5d6.0"},
            "/etc/ssl/certs", ""},
        Distribution {"WithoutHashes", {"/etc/ssl/certs/ca-certificates.crt"}, "",
            "/etc/ssl/certs/ca-certificates.crt"},
        Distribution {"Fedora",
            {"/etc/pki/ca-trust/extracted/pem/tls-ca-bundle.pem",
                "/etc/pki/ca-trust/extracted/pem/directory-hash/5ad8a5d6.0",
                "/etc/pki/tls/certs/ca-bundle.crt", "/etc/ssl/certs/README"},
            "/etc/pki/ca-trust/extracted/pem/directory-hash", ""},
        Distribution {"RedHat",
            {"/etc/pki/ca-trust/extracted/pem/tls-ca-bundle.pem",
                "/etc/pki/tls/certs/ca-bundle.crt"},
            "", "/etc/pki/ca-trust/extracted/pem/tls-ca-bundle.pem"},
        Distribution {"OlderRedHat", {"/etc/pki/tls/certs/ca-bundle.crt"}, "",
            "/etc/pki/tls/certs/ca-bundle.crt"},
        Distribution {"OpenSuse", {"/etc/ssl/ca-bundle.pem"}, "", "/etc/ssl/ca-bundle.pem"},
        Distribution {"Alpine", {"/etc/ssl/cert.pem"}, "", "/etc/ssl/cert.pem"},
        Distribution {"NamesThatAreNoHashes",
            {"/etc/ssl/certs/5ad8a5d6", "/etc/ssl/certs/5AD8A5D6.0", "/etc/ssl/certs/5ad8a5d6.pem",
                "/etc/ssl/certs/5ad8a5d.0", "/etc/ssl/cert.pem"},
            "", "/etc/ssl/cert.pem"},
        Distribution {"Nothing", {}, "/etc/ssl/certs", ""}),
    [](const auto &instance) { return std::string(instance.param.name); });

TEST(SystemCertificatesNamed, AreThoseOfTheEnvironmentAlone)
{
    // The machine's own, for the tests after this one.
    const std::pair<const char *, QByteArray> before[] {
        {"SSL_CERT_DIR", qgetenv("SSL_CERT_DIR")}, {"SSL_CERT_FILE", qgetenv("SSL_CERT_FILE")}};
    qunsetenv("SSL_CERT_DIR");
    qputenv("SSL_CERT_FILE", "/one/file");
    EXPECT_EQ(SystemCertificates::current().folder, "");
    EXPECT_EQ(SystemCertificates::current().file, "/one/file");
    qputenv("SSL_CERT_DIR", "/one:/two");
    EXPECT_EQ(SystemCertificates::current().folder, "/one:/two");
    EXPECT_EQ(SystemCertificates::current().file, "/one/file");
    qunsetenv("SSL_CERT_FILE");
    EXPECT_EQ(SystemCertificates::current().file, "");
    qunsetenv("SSL_CERT_DIR");
    EXPECT_EQ(SystemCertificates::current().folder, SystemCertificates::find({}).folder);
    for (const auto &[name, value] : before) {
        if (!value.isEmpty())
            qputenv(name, value);
    }
}

} // namespace
