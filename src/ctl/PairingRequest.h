// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/HostTransport.h"

#include <QByteArray>
#include <QString>

/// What a host, to which this device may have no access yet, answered to one HTTP request.
struct PairingResponse {
    /// The HTTP code; 0 when there is no answer.
    int status = 0;
    /// Its first PairingRequest::MaxBody bytes.
    QByteArray body;
    /// No answer: why the host refuses, or else what happened.
    HostRefusal refusal = HostRefusal::None;
    QString problem;
    /// Over TLS: the host's certificate, and whether an authority that the system knows says that
    /// it is the host's.
    HostCertificate certificate;
    bool isOfAuthority = false;
};

/// HTTP requests to one host, each over a connection of its own. One thread, whose GLib context it
/// iterates while it waits.
class PairingRequest {
public:
    static constexpr int MaxBody = 16 * 1024;
    /// After that, it is no answer.
    static constexpr int TimeoutMs = 20000;

    /// \a host is an http or https address that ends with "/".
    explicit PairingRequest(const QString &host)
        : m_host(host)
    {
    }

    /// Asks for the pairing page, to see who is there; takes any certificate.
    PairingResponse look() const;
    /// Posts \a json, which has the code. \a key is the certificate's, as HostAccess has it.
    PairingResponse send(const QString &key, const QByteArray &json) const;

private:
    const QString m_host;
};
