// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/TlsIdentity.h"

#include "api/core/log.h"
#include "base/files/KeptFile.h"
#include "host/http/OpenSslHandles.h"

#include <QFile>

VESK_LOGGER("Host")

namespace {

constexpr std::size_t MaxFileSize = 1024 * 1024;

Result<QByteArray, QString> contentOf(const QString &name)
{
    const files::KeptFile file(QFile::encodeName(name).toStdString(), MaxFileSize);
    const auto content = file.read();
    if (!content)
        return failure(name + QStringLiteral(": ") + QString::fromStdString(content.error().text));
    if (!*content)
        return failure(name + QStringLiteral(": there is no such file"));
    return QByteArray::fromStdString(**content);
}

/// A host with such a certificate works for whoever accepts it.
void tellOfTimes(const X509 *certificate, const QString &name)
{
    if (X509_cmp_current_time(X509_get0_notAfter(certificate)) < 0)
        VESK_WARN("The certificate in " << name << " has expired.");
    else if (X509_cmp_current_time(X509_get0_notBefore(certificate)) > 0)
        VESK_WARN("The certificate in " << name << " is not valid yet.");
}

} // namespace

Result<TlsIdentity, QString> TlsIdentity::read(
    const QString &certificateFile, const QString &keyFile)
{
    const auto certificates = contentOf(certificateFile);
    if (!certificates)
        return failure(certificates.error());
    const std::vector<X509Handle> chain = certificatesIn(*certificates);
    if (chain.empty()) {
        return failure(
            certificateFile + QStringLiteral(": this is no certificate in the form PEM"));
    }
    const auto keys = contentOf(keyFile);
    if (!keys)
        return failure(keys.error());
    const PrivateKey key = privateKeyIn(*keys);
    if (!key.key && key.needsPassword) {
        return failure(keyFile
            + QStringLiteral(": the private key has a password; write it to a file without one"));
    }
    if (!key.key)
        return failure(keyFile + QStringLiteral(": this is no private key in the form PEM"));
    if (!belongTogether(chain.front().get(), key.key.get())) {
        return failure(keyFile
            + QStringLiteral(": this is not the private key of the certificate in %1")
                  .arg(certificateFile));
    }
    tellOfTimes(chain.front().get(), certificateFile);
    TlsIdentity identity;
    for (const X509Handle &certificate : chain)
        identity.certificates += pemOf(certificate.get());
    identity.key = pemOf(key.key.get());
    return identity;
}

QString TlsIdentity::fingerprint() const
{
    const std::vector<X509Handle> chain = certificatesIn(certificates);
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    if (chain.empty() || X509_digest(chain.front().get(), EVP_sha256(), digest, &size) != 1)
        return {};
    const QByteArray bytes(reinterpret_cast<const char *>(digest), static_cast<int>(size));
    return QString::fromLatin1(bytes.toHex(':').toUpper());
}
