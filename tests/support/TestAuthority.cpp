// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/TestAuthority.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <stdexcept>
#include <string>

namespace {

template <auto Free>
struct Freer {
    template <class T>
    void operator()(T *object) const
    {
        Free(object);
    }
};
using Key = std::unique_ptr<EVP_PKEY, Freer<EVP_PKEY_free>>;
using X509Certificate = std::unique_ptr<X509, Freer<X509_free>>;

void require(bool good, const char *what)
{
    if (!good)
        throw std::runtime_error(std::string("TestAuthority: ") + what);
}

void addExtension(X509 *certificate, X509 *issuer, int nid, const char *value)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, Freer<X509_EXTENSION_free>> extension(
        X509V3_EXT_conf_nid(nullptr, &context, nid, value));
    require(extension && X509_add_ext(certificate, extension.get(), -1) == 1, "extension");
}

/// A certificate for \a name with \a key, signed by \a issuer; self-signed when that is null.
X509Certificate makeCertificate(const char *name, EVP_PKEY *key, X509 *issuer, EVP_PKEY *issuerKey,
    TestAuthority::Validity validity)
{
    static int serial = 1;
    constexpr long Hour = 3600;
    X509Certificate certificate(X509_new());
    X509 *const x = certificate.get();
    require(x && X509_set_version(x, 2) == 1, "certificate");
    ASN1_INTEGER_set(X509_get_serialNumber(x), ++serial);
    X509_gmtime_adj(X509_getm_notBefore(x), validity == TestAuthority::Future ? Hour : -48 * Hour);
    X509_gmtime_adj(X509_getm_notAfter(x), validity == TestAuthority::Past ? -Hour : 48 * Hour);
    X509_set_pubkey(x, key);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(x), "CN", MBSTRING_ASC,
        reinterpret_cast<const unsigned char *>(name), -1, -1, 0);
    X509_set_issuer_name(x, X509_get_subject_name(issuer ? issuer : x));
    if (issuer) {
        addExtension(x, issuer, NID_subject_alt_name, ("DNS:" + std::string(name)).c_str());
    } else {
        addExtension(x, x, NID_basic_constraints, "critical,CA:TRUE");
        addExtension(x, x, NID_key_usage, "critical,keyCertSign");
    }
    require(X509_sign(x, issuerKey, EVP_sha256()) > 0, "signature");
    return certificate;
}

template <class Write>
void writeFile(const QString &path, const Write &write)
{
    FILE *const file = fopen(path.toLocal8Bit().constData(), "w");
    require(file && write(file) == 1 && fclose(file) == 0, "file");
}

} // namespace

struct TestAuthority::Private {
    QTemporaryDir folder;
    Key key {EVP_EC_gen("P-256")};
    X509Certificate certificate;
    int issued = 0;
};

TestAuthority::TestAuthority(const char *name)
    : d(std::make_unique<Private>())
{
    d->certificate = makeCertificate(name, d->key.get(), nullptr, d->key.get(), Now);
    writeFile(file(), [this](FILE *out) { return PEM_write_X509(out, d->certificate.get()); });
    const unsigned long hash = X509_subject_name_hash(d->certificate.get());
    const QString hashed = QStringLiteral("%1.0").arg(hash, 8, 16, QLatin1Char('0'));
    require(QDir(d->folder.path()).mkdir(QStringLiteral("hashed"))
            && QFile::copy(file(), d->folder.filePath(QStringLiteral("hashed/") + hashed)),
        "hashed folder");
}

TestAuthority::~TestAuthority() = default;

QString TestAuthority::file() const
{
    return d->folder.filePath(QStringLiteral("ca.pem"));
}

QByteArray TestAuthority::hashedFolder() const
{
    return d->folder.filePath(QStringLiteral("hashed")).toLocal8Bit();
}

TestAuthority::Certificate TestAuthority::issue(const char *host, Validity validity)
{
    const Key key(EVP_EC_gen("P-256"));
    const QByteArray certificateFile = write(host, key.get(), validity);
    const QString keyFile = d->folder.filePath(QStringLiteral("%1.key").arg(d->issued));
    writeFile(keyFile, [&](FILE *out) {
        return PEM_write_PrivateKey(out, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    });
    return {certificateFile, keyFile.toLocal8Bit()};
}

TestAuthority::Certificate TestAuthority::renew(const Certificate &former, const char *host)
{
    FILE *const file = fopen(former.keyFile.constData(), "r");
    require(file, "key");
    const Key key(PEM_read_PrivateKey(file, nullptr, nullptr, nullptr));
    fclose(file);
    return {write(host, key.get(), Now), former.keyFile};
}

QByteArray TestAuthority::write(const char *host, EVP_PKEY *key, Validity validity)
{
    const X509Certificate certificate
        = makeCertificate(host, key, d->certificate.get(), d->key.get(), validity);
    const QString name = d->folder.filePath(QStringLiteral("%1.pem").arg(++d->issued));
    writeFile(name, [&](FILE *out) { return PEM_write_X509(out, certificate.get()); });
    return name.toLocal8Bit();
}
