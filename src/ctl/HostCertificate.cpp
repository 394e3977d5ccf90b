// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/HostCertificate.h"

#include <QCryptographicHash>
#include <QRegularExpression>

#include <memory>
#include <openssl/crypto.h>
#include <openssl/x509.h>

namespace {

struct CertificateFreer {
    void operator()(X509 *certificate) const { X509_free(certificate); }
};

QByteArray sha256(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

QString withColons(const QByteArray &hash)
{
    return QString::fromLatin1(hash.toHex(':')).toUpper();
}

} // namespace

HostCertificate HostCertificate::of(const QByteArray &der)
{
    const auto *bytes = reinterpret_cast<const unsigned char *>(der.constData());
    const std::unique_ptr<X509, CertificateFreer> certificate(
        d2i_X509(nullptr, &bytes, der.size()));
    if (!certificate)
        return {};
    unsigned char *encoded = nullptr;
    const int size = i2d_X509_PUBKEY(X509_get_X509_PUBKEY(certificate.get()), &encoded);
    if (size <= 0)
        return {};
    const QByteArray key(reinterpret_cast<const char *>(encoded), size);
    OPENSSL_free(encoded);
    return {withColons(sha256(der)), QString::fromLatin1(sha256(key).toHex())};
}

QStringList fingerprintLines(const QString &fingerprint)
{
    // With the colon behind the sixteenth byte.
    constexpr int FirstLine = 16 * 3;
    return {fingerprint.left(FirstLine), fingerprint.mid(FirstLine)};
}

QString typedFingerprint(const QString &text)
{
    static const QRegularExpression between(QStringLiteral("[\\s:.-]"));
    static const QRegularExpression digits(QStringLiteral("^[0-9A-Fa-f]{64}\\z"));
    const QString plain = QString(text).remove(between);
    if (!digits.match(plain).hasMatch())
        return {};
    return withColons(QByteArray::fromHex(plain.toLatin1()));
}
