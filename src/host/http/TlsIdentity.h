// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

/// By what a server proves who it is: a certificate and its private key, both PEM.
struct TlsIdentity {
    /// The server's own certificate first, then those that lead to an authority.
    QByteArray certificates;
    QByteArray key;

    /// From two files, which may be the same. Says which file is wrong, and how: missing, no PEM,
    /// a key with a password, a key of another certificate.
    static Result<TlsIdentity, QString> read(
        const QString &certificateFile, const QString &keyFile);
    /// SHA-256 of the first certificate, as browsers show it: "AB:CD:...", 32 bytes. Empty when
    /// there is none.
    QString fingerprint() const;
};
