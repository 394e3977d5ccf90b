// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// By what a host's certificate is told from others. A value.
struct HostCertificate {
    /// SHA-256 of the certificate, as browsers show it: "AB:CD:...", 32 bytes. Empty for none.
    QString fingerprint;
    /// SHA-256 of its public key (SubjectPublicKeyInfo), in hexadecimal digits. It stays the same
    /// when a host makes its certificate anew because its time is over.
    QString key;

    /// Empty for what is no certificate in DER.
    static HostCertificate of(const QByteArray &der);
};

/// A fingerprint in two lines, which fit a terminal and are easier to compare.
QStringList fingerprintLines(const QString &fingerprint);

/// A fingerprint that somebody typed, in the form above: without regard to case, blanks and the
/// signs between bytes. Empty for what is no SHA-256.
QString typedFingerprint(const QString &text);
