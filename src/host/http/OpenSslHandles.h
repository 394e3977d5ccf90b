// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

#include <memory>
#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <vector>

/// \file
/// Certificates and private keys of OpenSSL, freed with their handles, and their PEM form. Pure
/// functions, any thread; none leaves an error in OpenSSL's queue.

template <auto Free>
struct OpenSslFree {
    template <class T>
    void operator()(T *object) const
    {
        Free(object);
    }
};

using X509Handle = std::unique_ptr<X509, OpenSslFree<X509_free>>;
using KeyHandle = std::unique_ptr<EVP_PKEY, OpenSslFree<EVP_PKEY_free>>;

/// All certificates of \a pem, in their order; none when one of them cannot be read.
std::vector<X509Handle> certificatesIn(const QByteArray &pem);
QByteArray pemOf(const X509 *certificate);

struct PrivateKey {
    KeyHandle key; ///< null when there is none without a password
    bool needsPassword = false;
};
/// The first private key of \a pem. Asks nobody for a password.
PrivateKey privateKeyIn(const QByteArray &pem);
/// Without a password.
QByteArray pemOf(const EVP_PKEY *key);

/// Whether the certificate is for this key.
bool belongTogether(const X509 *certificate, const EVP_PKEY *key);
