// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "base/files/Problem.h"
#include "host/http/TlsIdentity.h"

#include <QDateTime>
#include <QStringList>

/// A certificate of the host's own making, for a host that was given none: self-signed, P-256, for
/// server authentication only. It and its key are kept in the files tls/cert.pem and tls/key.pem of
/// the state folder, so that the fingerprint that devices know stays the same. Any one thread;
/// reads and writes files.
class OwnCertificate {
public:
    /// Days for which a certificate is valid; browsers refuse longer ones.
    static constexpr int ValidDays = 825;
    /// A certificate with fewer days left is replaced.
    static constexpr int RenewDays = 30;

    /// What a new certificate is made for. Names that are no host names and texts that are no IP
    /// addresses are left out.
    struct Subject {
        QString hostName; ///< with "NAME.local" and "localhost"; may be empty
        QStringList addresses;
    };

    /// \a stateFolder has, or gets, the folder "tls". Without one, or when it cannot be written,
    /// the certificate lasts until the host ends. \a held: why the folder must not be written, if
    /// that is so.
    OwnCertificate(const QString &stateFolder, Result<void, files::Problem> held);

    /// The kept certificate if it is good at the time \a now, or else a new one, with the kept key
    /// if that is good. What goes wrong with files is logged. Fails when OpenSSL does, in words.
    Result<TlsIdentity, QString> identity(
        const Subject &subject, const QDateTime &now = QDateTime::currentDateTimeUtc());

    /// Whether identity() would make another certificate at the time \a now in place of this one.
    static bool isDue(
        const TlsIdentity &identity, const QDateTime &now = QDateTime::currentDateTimeUtc());

private:
    const QString m_folder; ///< "tls" in the state folder
    const Result<void, files::Problem> m_held;
};
