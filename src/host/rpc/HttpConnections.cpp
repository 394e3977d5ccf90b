#include "host/rpc/HttpConnections.h"

#include "api/core/log.h"

#include <QTimer>

#include <gio/gio.h>

VESK_LOGGER("Host.Rpc")

/// Called by GLib when a socket goes.
struct HttpConnections::Gone {
    static void call(gpointer data, GObject *socket)
    {
        auto *self = static_cast<HttpConnections *>(data);
        // Its address is all that is left of the socket.
        delete self->m_timers.take(reinterpret_cast<GSocket *>(socket));
    }
};

HttpConnections::HttpConnections(QObject *parent)
    : QObject(parent)
{
}

HttpConnections::~HttpConnections()
{
    for (auto it = m_timers.constBegin(); it != m_timers.constEnd(); ++it)
        g_object_weak_unref(G_OBJECT(it.key()), &Gone::call, this);
}

void HttpConnections::limit(GSocket *socket, int milliseconds)
{
    QTimer *&timer = m_timers[socket];
    if (!timer) {
        timer = new QTimer(this);
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, [socket] {
            VESK_DEBUG("connection closed: nothing came or went for too long");
            shutDown(socket);
        });
        g_object_weak_ref(G_OBJECT(socket), &Gone::call, this);
    }
    if (milliseconds > 0)
        timer->start(milliseconds);
    else
        timer->stop();
}

void HttpConnections::shutDown(GSocket *socket)
{
    g_socket_shutdown(socket, TRUE, TRUE, nullptr);
}
