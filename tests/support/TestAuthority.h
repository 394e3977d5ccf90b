// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

struct evp_pkey_st;

/// A certificate authority; its files are deleted with it.
class TestAuthority {
public:
    /// Now: from two days ago. Past: until an hour ago. Future: from an hour from now.
    enum Validity { Now, Past, Future };
    struct Certificate {
        QByteArray certificateFile;
        QByteArray keyFile;
    };

    explicit TestAuthority(const char *name);
    ~TestAuthority();

    /// The authority's own certificate, PEM.
    QString file() const;
    /// A folder with the certificate under its hashed name, as OpenSSL looks it up.
    QByteArray hashedFolder() const;
    /// A certificate for \a host that is valid in the time of \a validity.
    Certificate issue(const char *host, Validity validity = Now);
    /// A new certificate for \a host with the key of \a former.
    Certificate renew(const Certificate &former, const char *host);

private:
    struct Private;

    QByteArray write(const char *host, evp_pkey_st *key, Validity validity);

    std::unique_ptr<Private> d;
};
