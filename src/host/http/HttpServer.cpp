// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/HttpServer.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/http/MessageHandler.h"
#include "host/http/RefusalLog.h"
#include "host/http/ServerThread.h"

#include <QHash>
#include <QPointer>

#include <algorithm>
#include <utility>

VESK_LOGGER("Host.Http")

namespace {

/// A client with a WebSocket.
class SocketPeer : public MessagePeer {
public:
    SocketPeer(ServerThread &thread, ClientId id, Caller caller,
        std::shared_ptr<ServerEvents::SocketState> state, QObject *parent)
        : MessagePeer(parent)
        , m_thread(thread)
        , m_id(id)
        , m_caller(std::move(caller))
        , m_state(std::move(state))
    {
    }

    const Caller &caller() const { return m_caller; }
    void send(const QByteArray &message) override { m_thread.send(m_id, message); }

    /// A message was taken from the server's thread.
    void taken()
    {
        if (m_state->untaken-- == ServerThread::MaxUntaken)
            m_thread.readOn(m_id);
    }
    void begin()
    {
        ++m_unanswered;
        tellWaiting();
    }
    void answered(const QByteArray &reply)
    {
        --m_unanswered;
        tellWaiting();
        if (!reply.isEmpty())
            send(reply);
    }
    void tellWaiting() { m_state->isWaiting = m_unanswered > 0 || isSubscribed(); }

private:
    ServerThread &m_thread;
    const ClientId m_id;
    const Caller m_caller;
    const std::shared_ptr<ServerEvents::SocketState> m_state;
    int m_unanswered = 0;
};

} // namespace

bool ListenAddress::isBeyondLoopback() const
{
    return address != QLatin1String("localhost") && !isLoopbackAddress(address.toUtf8());
}

bool ListenAddress::isAny() const
{
    return address == QLatin1String("0.0.0.0") || address == QLatin1String("::");
}

bool HttpAccess::isForOthers() const
{
    return plainHttp || identity || !names.hosts.isEmpty() || !names.origins.isEmpty()
        || !names.basePath.isEmpty() || !names.proxies.isEmpty();
}

/// The main thread's side. Its members are called there, by events of the server's thread.
class HttpServerPrivate {
public:
    HttpServer *q = nullptr;
    MessageHandler *handler = nullptr;
    HttpServerLimits limits;
    HttpAccess access;
    QVector<HttpResource *> resources;
    QVector<ListenAddress> addresses;
    bool isClosed = false;
    RefusalLog refusals {[](const QByteArray &line) { VESK_WARN(line); }};
    /// Clients of POST requests that wait for their replies.
    QHash<ClientId, QObject *> waiting;
    QHash<ClientId, SocketPeer *> sockets;
    std::unique_ptr<ServerThread> thread;

    ServerEvents events();
    Result<void, QString> start();
    void posted(
        ClientId client, const QByteArray &message, const Caller &caller, const QByteArray &from);
    void requested(ClientId client, HttpResource *resource, HttpRequest request);
    void received(ClientId client, const QByteArray &message);
    void logRefusals();
    /// \a caller as it is by now; nullopt when it may no longer come in.
    std::optional<Caller> present(const Caller &caller) const;
    void seen(const Caller &caller, const QString &from);

private:
    /// \a function, on the main thread as long as the server exists.
    template <class Function>
    void later(Function function)
    {
        QMetaObject::invokeMethod(q, std::move(function), Qt::QueuedConnection);
    }
};

ServerEvents HttpServerPrivate::events()
{
    ServerEvents told;
    told.posted
        = [this](ClientId client, const QByteArray &message, const Caller &caller,
              const QByteArray &from) { later([=] { posted(client, message, caller, from); }); };
    told.requested = [this](ClientId client, HttpResource *resource, const HttpRequest &request) {
        later([=] { requested(client, resource, request); });
    };
    told.left = [this](ClientId client) { later([=] { delete waiting.take(client); }); };
    told.opened
        = [this](ClientId client, const Caller &caller,
              const std::shared_ptr<ServerEvents::SocketState> &state, const QByteArray &from) {
              later([=] {
                  sockets.insert(client, new SocketPeer(*thread, client, caller, state, q));
                  seen(caller, QString::fromLatin1(from));
                  if (!caller.deviceId.isEmpty())
                      Q_EMIT q->devicesChanged();
              });
          };
    told.received = [this](ClientId client, const QByteArray &message) {
        later([=] { received(client, message); });
    };
    told.ended = [this](ClientId client) {
        later([=] {
            const std::unique_ptr<SocketPeer> peer(sockets.take(client));
            if (peer && !peer->caller().deviceId.isEmpty())
                Q_EMIT q->devicesChanged();
        });
    };
    told.refused = [this] { later([=] { logRefusals(); }); };
    return told;
}

Result<void, QString> HttpServerPrivate::start()
{
    if (thread)
        return {};
    thread = std::make_unique<ServerThread>(limits, access, resources, events());
    return access.identity ? thread->setIdentity(*access.identity) : Result<void, QString>();
}

std::optional<Caller> HttpServerPrivate::present(const Caller &caller) const
{
    if (caller.deviceId.isEmpty())
        return caller;
    return access.findDevice ? access.findDevice(caller.deviceId) : caller;
}

void HttpServerPrivate::seen(const Caller &caller, const QString &from)
{
    if (!caller.deviceId.isEmpty())
        Q_EMIT q->deviceSeen(caller.deviceId, from);
}

void HttpServerPrivate::posted(
    ClientId client, const QByteArray &message, const Caller &caller, const QByteArray &from)
{
    const auto now = present(caller);
    if (isClosed || !now)
        return thread->respond(
            client, {401, "text/plain; charset=utf-8", "pair this device first\n", {}});
    seen(caller, QString::fromLatin1(from));
    auto *asker = new QObject(q);
    waiting.insert(client, asker);
    const QPointer<HttpServer> guard(q);
    handler->handle(
        message, {nullptr, asker, *now}, [this, guard, client](const QByteArray &reply) {
            if (!guard)
                return;
            // The reply may come from within a signal of the object.
            if (QObject *done = waiting.take(client))
                done->deleteLater();
            if (isClosed)
                return;
            if (reply.isEmpty())
                thread->respond(client, {204, {}, {}, {}});
            else
                thread->respond(client, {200, "application/json", reply, {}});
        });
}

void HttpServerPrivate::requested(ClientId client, HttpResource *resource, HttpRequest request)
{
    const auto now = present(request.caller);
    if (isClosed || !now)
        return thread->respond(
            client, {401, "text/plain; charset=utf-8", "pair this device first\n", {}});
    request.caller = *now;
    seen(request.caller, request.peer);
    const QPointer<HttpServer> guard(q);
    resource->get(request, [this, guard, client](const HttpResponse &response) {
        if (guard && !isClosed)
            thread->respond(client, response);
    });
}

void HttpServerPrivate::received(ClientId client, const QByteArray &message)
{
    const QPointer<SocketPeer> peer = sockets.value(client);
    if (!peer)
        return;
    peer->taken();
    const auto now = present(peer->caller());
    if (!now)
        return;
    peer->begin();
    handler->handle(message, {peer, peer, *now}, [peer](const QByteArray &reply) {
        if (peer)
            peer->answered(reply);
    });
    if (peer)
        peer->tellWaiting();
}

void HttpServerPrivate::logRefusals()
{
    const QHash<QByteArray, int> lines = thread->takeRefusals();
    for (auto it = lines.begin(); it != lines.end(); ++it)
        refusals.log(it.key(), it.value());
}

HttpServer::HttpServer(MessageHandler *handler, const HttpServerLimits &limits, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<HttpServerPrivate>())
{
    d->q = this;
    d->handler = handler;
    d->limits = limits;
}

HttpServer::~HttpServer()
{
    qDeleteAll(d->sockets);
    d->sockets.clear();
    d->thread.reset();
}

void HttpServer::setAccess(const HttpAccess &access)
{
    VESK_ASSERT_OWN_THREAD();
    d->access = access;
}

Result<void, QString> HttpServer::setIdentity(const TlsIdentity &identity)
{
    VESK_ASSERT_OWN_THREAD();
    return d->thread->setIdentity(identity);
}

void HttpServer::addResource(HttpResource *resource)
{
    VESK_ASSERT_OWN_THREAD();
    d->resources.append(resource);
}

Result<void, QString> HttpServer::listen(const ListenAddress &address)
{
    VESK_ASSERT_OWN_THREAD();
    if (const auto started = d->start(); !started)
        return started;
    ListenAddress literal = address;
    if (literal.address == QLatin1String("localhost"))
        literal.address = QStringLiteral("127.0.0.1");
    const auto port = d->thread->listen(literal);
    if (!port)
        return failure(port.error());
    literal.port = *port;
    d->addresses.append(literal);
    return {};
}

quint16 HttpServer::port() const
{
    return d->addresses.isEmpty() ? 0 : d->addresses.first().port;
}

QVector<ListenAddress> HttpServer::addresses() const
{
    return d->addresses;
}

QString HttpServer::url() const
{
    for (const ListenAddress &address : d->addresses) {
        if (!address.isBeyondLoopback() || address.isAny()) {
            const bool isIpv6 = address.address.contains(QLatin1Char(':'));
            QString own = address.address;
            if (address.isAny())
                own = isIpv6 ? QStringLiteral("::1") : QStringLiteral("127.0.0.1");
            if (isIpv6)
                own = QStringLiteral("[%1]").arg(own);
            return QStringLiteral("http://%1:%2/").arg(own, QString::number(address.port));
        }
    }
    return {};
}

int HttpServer::connections() const
{
    return d->thread ? d->thread->connections() : 0;
}

bool HttpServer::isConnected(const QString &deviceId) const
{
    VESK_ASSERT_OWN_THREAD();
    return std::any_of(d->sockets.begin(), d->sockets.end(),
        [&](const SocketPeer *peer) { return peer->caller().deviceId == deviceId; });
}

void HttpServer::sendToAll(const QByteArray &message, AccessRole role)
{
    VESK_ASSERT_OWN_THREAD();
    if (d->thread)
        d->thread->sendToAll(message, role);
}

void HttpServer::closeDevice(const QString &id)
{
    VESK_ASSERT_OWN_THREAD();
    if (d->thread)
        d->thread->closeDevice(id);
}

void HttpServer::close()
{
    VESK_ASSERT_OWN_THREAD();
    d->isClosed = true;
    if (d->thread)
        d->thread->close();
}
