// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Listener.h"

#include "directory/Query.h"

#include <netinet/in.h>
#include <netinet/tcp.h>

#include <stdexcept>

namespace directory {

namespace {

struct Address {
    std::string host;
    int port = -1;
};

Address parseAddress(const std::string &text)
{
    Address address;
    const std::size_t colon = text.rfind(':');
    if (colon == std::string::npos)
        return address;
    address.host = text.substr(0, colon);
    if (address.host.size() > 2 && address.host.front() == '[' && address.host.back() == ']')
        address.host = address.host.substr(1, address.host.size() - 2);
    if (address.host == "localhost")
        address.host = "127.0.0.1";
    address.port = parseNumber(std::string_view(text).substr(colon + 1));
    return address;
}

[[noreturn]] void fail(const std::string &what, GError *error)
{
    const std::string reason = error ? error->message : "unknown error";
    g_clear_error(&error);
    throw std::runtime_error(what + ": " + reason);
}

} // namespace

GTlsCertificate *loadCertificate(const std::string &certificate, const std::string &key)
{
    GError *error = nullptr;
    GTlsCertificate *loaded
        = g_tls_certificate_new_from_files(certificate.c_str(), key.c_str(), &error);
    if (!loaded)
        fail("the certificate " + certificate + " or its key cannot be read", error);
    return loaded;
}

Listener::Listener(
    const std::string &address, GTlsCertificate *certificate, unsigned idleSeconds, Accept accept)
    : m_service(g_socket_service_new())
    , m_certificate(certificate)
    , m_idleSeconds(idleSeconds)
    , m_accept(std::move(accept))
{
    const Address wanted = parseAddress(address);
    GSocketAddress *local = wanted.port < 0 || wanted.port > 65535
        ? nullptr
        : g_inet_socket_address_new_from_string(
            wanted.host.c_str(), static_cast<guint>(wanted.port));
    GError *error = nullptr;
    GSocketAddress *effective = nullptr;
    const bool listening = local
        && g_socket_listener_add_address(G_SOCKET_LISTENER(m_service), local, G_SOCKET_TYPE_STREAM,
            G_SOCKET_PROTOCOL_TCP, nullptr, &effective, &error);
    const bool known = local != nullptr;
    g_clear_object(&local);
    if (!listening) {
        g_object_unref(m_service);
        if (!known)
            throw std::runtime_error(address + " is no address and port");
        fail("cannot listen at " + address, error);
    }
    m_port = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(effective));
    const bool any = g_inet_address_get_is_any(
        g_inet_socket_address_get_address(G_INET_SOCKET_ADDRESS(effective)));
    g_object_unref(effective);
    m_host = any ? "127.0.0.1" : wanted.host;
    if (m_certificate)
        g_object_ref(m_certificate);
    g_signal_connect(m_service, "incoming",
        G_CALLBACK(+[](GSocketService *, GSocketConnection *connection, GObject *,
                        gpointer self) -> gboolean {
            static_cast<Listener *>(self)->accepted(connection);
            return TRUE;
        }),
        this);
}

Listener::~Listener()
{
    g_signal_handlers_disconnect_by_data(m_service, this);
    g_socket_service_stop(m_service);
    g_socket_listener_close(G_SOCKET_LISTENER(m_service));
    g_object_unref(m_service);
    g_clear_object(&m_certificate);
}

std::string Listener::hostAndPort() const
{
    const bool six = m_host.find(':') != std::string::npos;
    return (six ? '[' + m_host + ']' : m_host) + ':' + std::to_string(m_port);
}

void Listener::accepted(GSocketConnection *connection)
{
    if (*m_open >= MaxConnections) {
        g_io_stream_close(G_IO_STREAM(connection), nullptr, nullptr);
        return;
    }
    ++*m_open;
    g_object_weak_ref(
        G_OBJECT(connection),
        [](gpointer data, GObject *) {
            auto *open = static_cast<std::shared_ptr<int> *>(data);
            --**open;
            delete open;
        },
        new std::shared_ptr<int>(m_open));
    GSocket *socket = g_socket_connection_get_socket(connection);
    g_socket_set_timeout(socket, m_idleSeconds);
    // Head and body are separate writes: with Nagle's algorithm the body would wait for the
    // acknowledgement of the head.
    g_socket_set_option(socket, IPPROTO_TCP, TCP_NODELAY, 1, nullptr);
    if (!m_certificate) {
        m_accept(G_IO_STREAM(connection), connection);
        return;
    }
    GIOStream *tls = g_tls_server_connection_new(G_IO_STREAM(connection), m_certificate, nullptr);
    if (!tls)
        return;
    // Many clients close without a close_notify alert (RFC 8446, 6.1). No harm: requests say where
    // they end.
    g_tls_connection_set_require_close_notify(G_TLS_CONNECTION(tls), FALSE);
    m_accept(tls, connection);
    g_object_unref(tls);
}

} // namespace directory
