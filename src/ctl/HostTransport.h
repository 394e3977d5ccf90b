// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "ctl/HostCertificate.h"
#include "ctl/KnownHosts.h"

#include <QByteArray>
#include <QString>

#include <functional>

using GMainContext = struct _GMainContext;
using GSource = struct _GSource;
using GTlsCertificate = struct _GTlsCertificate;
using SoupMessage = struct _SoupMessage;
using SoupSession = struct _SoupSession;

/// Why a host was not asked, or does not answer, although it is there.
enum class HostRefusal {
    None,
    NotPaired, ///< It wants a token, and there is none for it.
    Revoked, ///< It does not take the token.
    UnknownCertificate, ///< Its certificate is of no authority that the system knows.
    ChangedCertificate, ///< Its certificate has another key than the one that was accepted.
    WantsTls, ///< It leads to an https address.
};

/// How HTTP requests reach one host: over connections of its own, without proxy, redirects and
/// cookies, with the token for that host, and only where the certificate is the host's. One thread,
/// whose GLib context the requests use.
class HostTransport {
public:
    /// \a host is an http or https address that ends with "/".
    HostTransport(const QString &host, const HostAccess &access);
    ~HostTransport();

    HostTransport(const HostTransport &) = delete;
    HostTransport &operator=(const HostTransport &) = delete;

    SoupSession *session() { return m_session; }
    /// A request for \a path below the host's address, for the caller to unref; null when that is
    /// no address. The connection's certificate is checked as long as this object lives.
    SoupMessage *request(const char *method, const char *path);
    /// To be asked about a request that has failed or was answered.
    HostRefusal refusalOf(SoupMessage *request) const;

    /// Takes any certificate from now on, for requests without secrets; never sends the token then.
    void takeAnyCertificate() { m_takesAny = true; }
    /// The one that the last connection over TLS had, accepted or not; empty before.
    const HostCertificate &certificate() const { return m_certificate; }
    /// Whether that one is of an authority that the system knows, and for this host.
    bool isOfAuthority() const { return m_isOfAuthority; }

private:
    static int checkCertificate(
        SoupMessage *, GTlsCertificate *certificate, int errors, void *transport);
    static void gotCertificate(SoupMessage *request, void *, void *transport);
    void note(GTlsCertificate *certificate);

    const QByteArray m_host;
    const HostAccess m_access;
    SoupSession *const m_session;
    bool m_takesAny = false;
    HostCertificate m_certificate;
    bool m_isOfAuthority = false;
    /// Of the certificate that ended the last connection.
    HostRefusal m_refusal = HostRefusal::None;
};

/// Whether the host of an address, without brackets, is this machine by a loopback name or address.
bool isThisMachine(const QString &name);

/// Runs an action once, unless it is destroyed before. Main context \a context.
class ContextTimer {
public:
    ContextTimer(GMainContext *context, unsigned milliseconds, std::function<void()> action);
    ~ContextTimer();

    ContextTimer(const ContextTimer &) = delete;
    ContextTimer &operator=(const ContextTimer &) = delete;

private:
    static int fire(void *timer);

    const std::function<void()> m_action;
    GSource *const m_source;
};
