// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/private/SystemCertificates.h"

#include <QtGlobal>

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <string_view>
#include <unistd.h>

namespace {

constexpr const char *Folders[] = {
    "/etc/ssl/certs", // Debian, Arch, Gentoo, openSUSE, Alpine
    "/etc/pki/ca-trust/extracted/pem/directory-hash", // Fedora
    "/etc/pki/tls/certs", // links to the former, or with one file only
};

constexpr const char *Files[] = {
    "/etc/ssl/certs/ca-certificates.crt", // Debian without hashes
    "/etc/pki/ca-trust/extracted/pem/tls-ca-bundle.pem", // Fedora, RHEL
    "/etc/pki/tls/certs/ca-bundle.crt", // older ones
    "/etc/ssl/ca-bundle.pem", // openSUSE
    "/etc/ssl/cert.pem", // Alpine, OpenSSL's own default
};

/// As in 5ad8a5d6.0: that is how OpenSSL looks for the issuer of a certificate.
bool isHashedName(std::string_view name)
{
    constexpr std::size_t Digits = 8;
    const auto isDigit = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); };
    return name.size() > Digits + 1 && name[Digits] == '.' && name[Digits + 1] >= '0'
        && name[Digits + 1] <= '9' && std::all_of(name.begin(), name.begin() + Digits, isDigit);
}

bool isHashedFolder(const QByteArray &name)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(::opendir(name.constData()), &::closedir);
    if (!folder)
        return false;
    while (const dirent *entry = ::readdir(folder.get())) {
        if (isHashedName(entry->d_name))
            return true;
    }
    return false;
}

} // namespace

SystemCertificates SystemCertificates::current()
{
    const SystemCertificates named {qgetenv("SSL_CERT_DIR"), qgetenv("SSL_CERT_FILE")};
    if (!named.folder.isEmpty() || !named.file.isEmpty())
        return named;
    // They stay where they are as long as the process lives.
    static const SystemCertificates found = find({});
    return found;
}

SystemCertificates SystemCertificates::find(const QByteArray &root)
{
    for (const char *folder : Folders) {
        if (isHashedFolder(root + folder))
            return {root + folder, {}};
    }
    for (const char *file : Files) {
        if (::access((root + file).constData(), R_OK) == 0)
            return {{}, root + file};
    }
    // None yet.
    return {root + Folders[0], {}};
}
