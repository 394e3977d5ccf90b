// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/HostTransport.h"

#include <QRegularExpression>

#include <libsoup/soup.h>

namespace {

constexpr guint IdleTimeoutSeconds = 5;

QByteArray derOf(GTlsCertificate *certificate)
{
    GByteArray *der = nullptr;
    g_object_get(certificate, "certificate", &der, nullptr);
    if (!der)
        return {};
    const QByteArray bytes(reinterpret_cast<const char *>(der->data), static_cast<int>(der->len));
    g_byte_array_unref(der);
    return bytes;
}

bool leadsToHttps(SoupMessage *request)
{
    const char *location
        = soup_message_headers_get_one(soup_message_get_response_headers(request), "Location");
    return SOUP_STATUS_IS_REDIRECTION(soup_message_get_status(request)) && location
        && g_ascii_strncasecmp(location, "https:", 6) == 0;
}

} // namespace

HostTransport::HostTransport(const QString &host, const HostAccess &access)
    : m_host(host.toUtf8())
    , m_access(access)
    , m_session(soup_session_new())
{
    soup_session_set_proxy_resolver(m_session, nullptr);
    soup_session_set_timeout(m_session, IdleTimeoutSeconds);
    // Without authorities each certificate is asked about, also those that one of them has signed.
    if (!m_access.key.isEmpty())
        soup_session_set_tls_database(m_session, nullptr);
}

HostTransport::~HostTransport()
{
    soup_session_abort(m_session);
    g_object_unref(m_session);
}

SoupMessage *HostTransport::request(const char *method, const char *path)
{
    SoupMessage *request = soup_message_new(method, (m_host + path).constData());
    if (!request)
        return nullptr;
    m_isOfAuthority = true;
    m_refusal = HostRefusal::None;
    soup_message_add_flags(request, SOUP_MESSAGE_NO_REDIRECT);
    if (!m_access.token.isEmpty() && !m_takesAny) {
        soup_message_headers_replace(soup_message_get_request_headers(request), "Authorization",
            ("Bearer " + m_access.token).constData());
    }
    // The session may keep the request longer than this object lives; ~HostTransport() ends it.
    g_signal_connect(
        request, "accept-certificate", G_CALLBACK(&HostTransport::checkCertificate), this);
    g_signal_connect(
        request, "notify::tls-peer-certificate", G_CALLBACK(&HostTransport::gotCertificate), this);
    return request;
}

HostRefusal HostTransport::refusalOf(SoupMessage *request) const
{
    if (m_refusal != HostRefusal::None)
        return m_refusal;
    if (leadsToHttps(request))
        return HostRefusal::WantsTls;
    if (soup_message_get_status(request) == SOUP_STATUS_UNAUTHORIZED)
        return m_access.token.isEmpty() ? HostRefusal::NotPaired : HostRefusal::Revoked;
    return HostRefusal::None;
}

int HostTransport::checkCertificate(
    SoupMessage *, GTlsCertificate *certificate, int, void *transport)
{
    auto *self = static_cast<HostTransport *>(transport);
    self->note(certificate);
    self->m_isOfAuthority = false;
    if (self->m_takesAny)
        return TRUE;
    if (self->m_access.key.isEmpty())
        self->m_refusal = HostRefusal::UnknownCertificate;
    else if (self->m_access.key != self->m_certificate.key)
        self->m_refusal = HostRefusal::ChangedCertificate;
    return self->m_refusal == HostRefusal::None ? TRUE : FALSE;
}

void HostTransport::gotCertificate(SoupMessage *request, void *, void *transport)
{
    if (GTlsCertificate *certificate = soup_message_get_tls_peer_certificate(request))
        static_cast<HostTransport *>(transport)->note(certificate);
}

void HostTransport::note(GTlsCertificate *certificate)
{
    m_certificate = HostCertificate::of(derOf(certificate));
}

bool isThisMachine(const QString &name)
{
    static const QRegularExpression loopback(
        QStringLiteral("^(localhost|::1|127(\\.[0-9]{1,3}){3})\\z"),
        QRegularExpression::CaseInsensitiveOption);
    return loopback.match(name).hasMatch();
}

ContextTimer::ContextTimer(
    GMainContext *context, unsigned milliseconds, std::function<void()> action)
    : m_action(std::move(action))
    , m_source(g_timeout_source_new(milliseconds))
{
    g_source_set_callback(m_source, &ContextTimer::fire, this, nullptr);
    g_source_attach(m_source, context);
}

ContextTimer::~ContextTimer()
{
    g_source_destroy(m_source);
    g_source_unref(m_source);
}

int ContextTimer::fire(void *timer)
{
    static_cast<ContextTimer *>(timer)->m_action();
    return G_SOURCE_REMOVE;
}
