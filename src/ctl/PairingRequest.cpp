// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/PairingRequest.h"

#include <libsoup/soup.h>

#include <array>
#include <memory>

namespace {

struct Unref {
    void operator()(void *object) const { g_object_unref(object); }
};
template <class T>
using Owned = std::unique_ptr<T, Unref>;

/// One request on its way, from its start until its callback.
class Exchange {
public:
    Exchange(HostTransport &transport, SoupMessage *request)
        : m_transport(transport)
        , m_request(request)
        , m_context(g_main_context_ref_thread_default())
        , m_cancellable(g_cancellable_new())
    {
    }
    ~Exchange() { g_main_context_unref(m_context); }

    Exchange(const Exchange &) = delete;
    Exchange &operator=(const Exchange &) = delete;

    PairingResponse run()
    {
        bool isTooLate = false;
        const ContextTimer timer(m_context, PairingRequest::TimeoutMs, [&] {
            isTooLate = true;
            g_cancellable_cancel(m_cancellable.get());
        });
        soup_session_send_async(m_transport.session(), m_request, G_PRIORITY_DEFAULT,
            m_cancellable.get(), &Exchange::answered, this);
        while (!m_isOver)
            g_main_context_iteration(m_context, TRUE);
        m_response.refusal = m_transport.refusalOf(m_request);
        m_response.certificate = m_transport.certificate();
        m_response.isOfAuthority = m_transport.isOfAuthority();
        if (m_response.problem.isEmpty())
            m_response.status = static_cast<int>(soup_message_get_status(m_request));
        else if (isTooLate)
            m_response.problem = QStringLiteral("it does not answer");
        return m_response;
    }

private:
    static void answered(GObject *, GAsyncResult *result, gpointer data)
    {
        auto *self = static_cast<Exchange *>(data);
        GError *error = nullptr;
        self->m_stream.reset(soup_session_send_finish(self->m_transport.session(), result, &error));
        if (!self->m_stream)
            return self->end(error);
        g_input_stream_read_all_async(self->m_stream.get(), self->m_body.data(),
            self->m_body.size(), G_PRIORITY_DEFAULT, self->m_cancellable.get(), &Exchange::read,
            data);
    }

    static void read(GObject *, GAsyncResult *result, gpointer data)
    {
        auto *self = static_cast<Exchange *>(data);
        GError *error = nullptr;
        gsize size = 0;
        g_input_stream_read_all_finish(self->m_stream.get(), result, &size, &error);
        self->m_response.body = QByteArray(self->m_body.data(), static_cast<int>(size));
        self->end(error);
    }

    void end(GError *error)
    {
        if (error)
            m_response.problem = QString::fromUtf8(error->message);
        g_clear_error(&error);
        m_isOver = true;
    }

    HostTransport &m_transport;
    SoupMessage *const m_request;
    GMainContext *const m_context;
    const Owned<GCancellable> m_cancellable;
    Owned<GInputStream> m_stream;
    std::array<char, PairingRequest::MaxBody> m_body {};
    PairingResponse m_response;
    bool m_isOver = false;
};

PairingResponse exchange(HostTransport &transport, SoupMessage *made)
{
    const Owned<SoupMessage> request(made);
    if (request)
        return Exchange(transport, request.get()).run();
    PairingResponse response;
    response.problem = QStringLiteral("that is no address");
    return response;
}

} // namespace

PairingResponse PairingRequest::look() const
{
    HostTransport transport(m_host, {});
    transport.takeAnyCertificate();
    return exchange(transport, transport.request(SOUP_METHOD_GET, "pair"));
}

PairingResponse PairingRequest::send(const QString &key, const QByteArray &json) const
{
    HostTransport transport(m_host, {{}, key, {}});
    SoupMessage *request = transport.request(SOUP_METHOD_POST, "pair");
    if (request) {
        GBytes *body = g_bytes_new(json.constData(), static_cast<gsize>(json.size()));
        soup_message_set_request_body_from_bytes(request, "application/json", body);
        g_bytes_unref(body);
    }
    return exchange(transport, request);
}
