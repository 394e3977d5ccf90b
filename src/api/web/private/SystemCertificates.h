// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

/// Where the certificate authorities are that the system trusts. Either part may be empty.
struct SystemCertificates {
    /// With a file for each certificate, named by its hash; more than one folder with colons.
    QByteArray folder;
    QByteArray file; ///< with all of them

    /// What SSL_CERT_DIR and SSL_CERT_FILE name, as OpenSSL's own programs read them: if one of
    /// them is set, nothing else counts. Without them what find() finds.
    static SystemCertificates current();
    /// What there is of the places where distributions have them, below \a root ("" for the
    /// system's own). A folder if there is one, as a big file takes long to read for every
    /// connection.
    static SystemCertificates find(const QByteArray &root);
};
