// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/OpenSslHandles.h"

#include <openssl/err.h>
#include <openssl/pem.h>

#include <limits>

namespace {

using BioHandle = std::unique_ptr<BIO, OpenSslFree<BIO_free>>;

BioHandle readerOf(const QByteArray &bytes)
{
    return BioHandle(BIO_new_mem_buf(bytes.constData(), bytes.size()));
}

QByteArray contentOf(BIO *bio)
{
    char *data = nullptr;
    const long size = BIO_get_mem_data(bio, &data);
    return size > 0 && size <= std::numeric_limits<int>::max()
        ? QByteArray(data, static_cast<int>(size))
        : QByteArray();
}

/// OpenSSL's callback for passwords; without one it would ask on the terminal.
int refusePassword(char * /*buffer*/, int /*size*/, int /*isWriting*/, void *isAsked)
{
    *static_cast<bool *>(isAsked) = true;
    return -1;
}

} // namespace

std::vector<X509Handle> certificatesIn(const QByteArray &pem)
{
    std::vector<X509Handle> certificates;
    const BioHandle reader = readerOf(pem);
    ERR_clear_error();
    while (X509 *const certificate = PEM_read_bio_X509(reader.get(), nullptr, nullptr, nullptr))
        certificates.emplace_back(certificate);
    // What follows the last one is no certificate; anything else is one that is damaged.
    const unsigned long error = ERR_peek_last_error();
    if (ERR_GET_LIB(error) != ERR_LIB_PEM || ERR_GET_REASON(error) != PEM_R_NO_START_LINE)
        certificates.clear();
    ERR_clear_error();
    return certificates;
}

QByteArray pemOf(const X509 *certificate)
{
    const BioHandle out(BIO_new(BIO_s_mem()));
    const bool isWritten = out && PEM_write_bio_X509(out.get(), certificate) == 1;
    ERR_clear_error();
    return isWritten ? contentOf(out.get()) : QByteArray();
}

PrivateKey privateKeyIn(const QByteArray &pem)
{
    PrivateKey found;
    const BioHandle reader = readerOf(pem);
    found.key.reset(
        PEM_read_bio_PrivateKey(reader.get(), nullptr, &refusePassword, &found.needsPassword));
    ERR_clear_error();
    return found;
}

QByteArray pemOf(const EVP_PKEY *key)
{
    const BioHandle out(BIO_new(BIO_s_mem()));
    const bool isWritten = out
        && PEM_write_bio_PKCS8PrivateKey(out.get(), key, nullptr, nullptr, 0, nullptr, nullptr)
            == 1;
    ERR_clear_error();
    return isWritten ? contentOf(out.get()) : QByteArray();
}

bool belongTogether(const X509 *certificate, const EVP_PKEY *key)
{
    const bool isSame = X509_check_private_key(certificate, key) == 1;
    ERR_clear_error();
    return isSame;
}
