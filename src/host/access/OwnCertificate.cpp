// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/access/OwnCertificate.h"

#include "api/core/log.h"
#include "host/access/Secrets.h"
#include "host/http/OpenSslHandles.h"
#include "host/store/CheckedFile.h"

#include <QFile>
#include <QRegularExpression>

#include <arpa/inet.h>
#include <openssl/bn.h>
#include <openssl/err.h>
#include <openssl/x509v3.h>

#include <utility>

VESK_LOGGER("Host")

namespace {

using NamesHandle = std::unique_ptr<GENERAL_NAMES, OpenSslFree<GENERAL_NAMES_free>>;

constexpr std::size_t MaxFileSize = 16 * 1024;
/// Of the names and addresses, each.
constexpr int MaxNames = 100;
constexpr int MaxCommonName = 64;
constexpr int SerialBytes = 16;
/// For devices whose clock is behind.
constexpr int DaysBefore = 1;

bool isKeyFile(const QByteArray &file)
{
    return privateKeyIn(file).key != nullptr;
}

bool isCertificateFile(const QByteArray &file)
{
    return certificatesIn(file).size() == 1;
}

bool isHostName(const QString &name)
{
    static const QRegularExpression form(QStringLiteral(
        R"(\A(?=.{1,253}\z)[A-Za-z0-9_]([A-Za-z0-9_-]{0,61}[A-Za-z0-9_])?(\.[A-Za-z0-9_]([A-Za-z0-9_-]{0,61}[A-Za-z0-9_])?)*\z)"));
    return form.match(name).hasMatch();
}

/// The names of the machine itself: "radio.lan", "radio", "radio.local", "localhost".
QStringList namesOf(const OwnCertificate::Subject &subject)
{
    QStringList names;
    if (isHostName(subject.hostName)) {
        const QString first = subject.hostName.section(QLatin1Char('.'), 0, 0);
        names << subject.hostName << first << first + QStringLiteral(".local");
    }
    names << QStringLiteral("localhost");
    names.removeDuplicates();
    return names;
}

/// In network order, 4 or 16 bytes; empty for what is no address.
QByteArray bytesOfAddress(const QString &text)
{
    unsigned char bytes[sizeof(in6_addr)];
    const QByteArray plain = text.section(QLatin1Char('%'), 0, 0).toLatin1();
    if (::inet_pton(AF_INET, plain.constData(), bytes) == 1)
        return {reinterpret_cast<const char *>(bytes), sizeof(in_addr)};
    if (::inet_pton(AF_INET6, plain.constData(), bytes) == 1)
        return {reinterpret_cast<const char *>(bytes), sizeof(in6_addr)};
    return {};
}

template <class String, class New>
bool addName(GENERAL_NAMES *names, int type, const QByteArray &bytes, const New &create)
{
    GENERAL_NAME *const name = GENERAL_NAME_new();
    String *const value = create();
    if (!name || !value || ASN1_STRING_set(value, bytes.constData(), bytes.size()) != 1)
        return false;
    GENERAL_NAME_set0_value(name, type, value);
    return sk_GENERAL_NAME_push(names, name) > 0;
}

bool addNames(X509 *certificate, const OwnCertificate::Subject &subject)
{
    const NamesHandle names(GENERAL_NAMES_new());
    bool isGood = names != nullptr;
    const QStringList hostNames = namesOf(subject);
    for (const QString &name : hostNames) {
        isGood = isGood
            && addName<ASN1_IA5STRING>(names.get(), GEN_DNS, name.toLatin1(), ASN1_IA5STRING_new);
    }
    const QStringList addresses = subject.addresses.mid(0, MaxNames);
    for (const QString &address : addresses) {
        const QByteArray bytes = bytesOfAddress(address);
        if (!bytes.isEmpty()) {
            isGood = isGood
                && addName<ASN1_OCTET_STRING>(names.get(), GEN_IPADD, bytes, ASN1_OCTET_STRING_new);
        }
    }
    return isGood
        && X509_add1_ext_i2d(certificate, NID_subject_alt_name, names.get(), 0, X509V3_ADD_DEFAULT)
        == 1;
}

bool addExtension(X509 *certificate, int nid, const char *value)
{
    const std::unique_ptr<X509_EXTENSION, OpenSslFree<X509_EXTENSION_free>> extension(
        X509V3_EXT_conf_nid(nullptr, nullptr, nid, value));
    return extension && X509_add_ext(certificate, extension.get(), -1) == 1;
}

bool setSerial(X509 *certificate)
{
    QByteArray bytes = randomBytes(SerialBytes);
    bytes[0] = static_cast<char>((bytes.at(0) & 0x3f) | 0x40); // positive, and not 0
    const std::unique_ptr<BIGNUM, OpenSslFree<BN_free>> number(BN_bin2bn(
        reinterpret_cast<const unsigned char *>(bytes.constData()), SerialBytes, nullptr));
    return number && BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(certificate));
}

bool setSubject(X509 *certificate, const OwnCertificate::Subject &subject)
{
    const QByteArray name = namesOf(subject).constFirst().left(MaxCommonName).toLatin1();
    X509_NAME *const own = X509_get_subject_name(certificate);
    return X509_NAME_add_entry_by_txt(
               own, "O", MBSTRING_ASC, reinterpret_cast<const unsigned char *>("Vesk"), -1, -1, 0)
        == 1
        && X509_NAME_add_entry_by_txt(own, "CN", MBSTRING_ASC,
               reinterpret_cast<const unsigned char *>(name.constData()), name.size(), -1, 0)
        == 1
        && X509_set_issuer_name(certificate, own) == 1;
}

bool setTimes(X509 *certificate, const QDateTime &now)
{
    const time_t time = now.toSecsSinceEpoch();
    return ASN1_TIME_adj(X509_getm_notBefore(certificate), time, -DaysBefore, 0)
        && ASN1_TIME_adj(
            X509_getm_notAfter(certificate), time, OwnCertificate::ValidDays - DaysBefore, 0);
}

/// Empty when OpenSSL fails.
QByteArray makeCertificate(
    EVP_PKEY *key, const OwnCertificate::Subject &subject, const QDateTime &now)
{
    const X509Handle certificate(X509_new());
    X509 *const x = certificate.get();
    // Of no authority: whoever gets the key cannot make certificates for other names with it.
    const bool isMade = x && X509_set_version(x, X509_VERSION_3) == 1 && setSerial(x)
        && setSubject(x, subject) && setTimes(x, now) && X509_set_pubkey(x, key) == 1
        && addExtension(x, NID_basic_constraints, "critical,CA:FALSE")
        && addExtension(x, NID_key_usage, "critical,digitalSignature")
        && addExtension(x, NID_ext_key_usage, "serverAuth") && addNames(x, subject)
        && X509_sign(x, key, EVP_sha256()) > 0;
    ERR_clear_error();
    return isMade ? pemOf(x) : QByteArray();
}

/// Whether it is valid, stays so for a while, and is for this key.
bool isUsable(const QByteArray &pem, const EVP_PKEY *key, const QDateTime &now)
{
    const std::vector<X509Handle> certificates = certificatesIn(pem);
    if (certificates.size() != 1)
        return false;
    const X509 *const certificate = certificates.front().get();
    time_t begin = now.toSecsSinceEpoch();
    time_t end = now.addDays(OwnCertificate::RenewDays).toSecsSinceEpoch();
    return X509_cmp_time(X509_get0_notBefore(certificate), &begin) < 0
        && X509_cmp_time(X509_get0_notAfter(certificate), &end) > 0
        && belongTogether(certificate, key);
}

/// Writes what is not there yet, and its copy.
Result<void, files::Problem> keep(
    CheckedFile &file, const CheckedFile::Content &content, const QByteArray &bytes)
{
    if (!content.isCurrent || content.bytes != bytes) {
        if (auto written = file.write(bytes); !written)
            return written;
    }
    file.writeLastGood();
    return {};
}

} // namespace

OwnCertificate::OwnCertificate(const QString &stateFolder, Result<void, files::Problem> held)
    : m_folder(stateFolder.isEmpty() ? QString() : stateFolder + QStringLiteral("/tls"))
    , m_held(std::move(held))
{
}

bool OwnCertificate::isDue(const TlsIdentity &identity, const QDateTime &now)
{
    const KeyHandle key = privateKeyIn(identity.key).key;
    return !key || !isUsable(identity.certificates, key.get(), now);
}

Result<TlsIdentity, QString> OwnCertificate::identity(const Subject &subject, const QDateTime &now)
{
    const auto nameOf = [this](const char *name) {
        return m_folder.isEmpty() ? QString() : m_folder + QString::fromLatin1(name);
    };
    CheckedFile keyFile(
        nameOf("/key.pem"), MaxFileSize, QStringLiteral("private keys"), &isKeyFile);
    CheckedFile certificateFile(
        nameOf("/cert.pem"), MaxFileSize, QStringLiteral("certificates"), &isCertificateFile);
    const CheckedFile::Content keptKey = keyFile.read();
    const CheckedFile::Content keptCertificate = certificateFile.read();

    KeyHandle key = privateKeyIn(keptKey.bytes).key;
    const bool isNewKey = !key;
    if (isNewKey)
        key.reset(EVP_EC_gen("P-256"));
    TlsIdentity identity;
    if (key)
        identity.key = isNewKey ? pemOf(key.get()) : keptKey.bytes;
    if (key && isUsable(keptCertificate.bytes, key.get(), now))
        identity.certificates = keptCertificate.bytes;
    else if (key)
        identity.certificates = makeCertificate(key.get(), subject, now);
    if (identity.certificates.isEmpty())
        return failure(QStringLiteral("no certificate can be made"));
    if (identity.certificates != keptCertificate.bytes)
        VESK_INFO("A new certificate was made, " << identity.fingerprint() << '.');

    auto kept = m_held;
    if (kept && !m_folder.isEmpty())
        kept = files::KeptFile::makeFolder(QFile::encodeName(m_folder).toStdString());
    if (kept && !m_folder.isEmpty())
        kept = keep(keyFile, keptKey, identity.key);
    if (kept && !m_folder.isEmpty())
        kept = keep(certificateFile, keptCertificate, identity.certificates);
    if (!kept) {
        VESK_ERROR("The host's certificate cannot be kept in "
            << m_folder << ": " << kept.error().text
            << ". After the next start devices will be asked to trust another one.");
    }
    return identity;
}
