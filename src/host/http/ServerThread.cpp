// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/ServerThread.h"

#include "host/http/HttpConnection.h"
#include "host/http/WebSocketSession.h"

#include <QSysInfo>

#include <algorithm>
#include <csignal>
#include <pthread.h>

namespace {

/// Connections beyond the limit that are still sent the reason, or are being closed; more are
/// dropped at once.
constexpr int RefusedConnections = 16;
/// Connections that wait to be accepted. With few, a client that opens many makes the others wait
/// for the second after which TCP sends a lost SYN again.
constexpr int Backlog = 256;
/// Before the next connection is accepted after the process ran out of descriptors.
constexpr std::chrono::milliseconds AcceptPause {200};
/// Kinds of refusals that are told apart between two looks at them.
constexpr int MaxRefusals = 64;
constexpr char OtherRefusals[] = "other refusals";

} // namespace

struct ServerThread::Listener {
    explicit Listener(boost::asio::io_context &context)
        : acceptor(context)
        , pause(context)
    {
    }

    Acceptor acceptor;
    Timer pause;
};

ServerThread::ServerThread(const HttpServerLimits &serverLimits, HttpAccess serverAccess,
    const QVector<HttpResource *> &offered, ServerEvents told)
    : limits(serverLimits)
    , access(std::move(serverAccess))
    , resources(offered)
    , events(std::move(told))
    , machine(QSysInfo::machineHostName().toUtf8().toLower())
    , m_work(m_context.get_executor())
{
    // Signals are the main thread's; a TLS connection that breaks while OpenSSL writes raises one.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    m_thread = std::thread([this] { run(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

ServerThread::~ServerThread()
{
    m_context.stop();
    m_thread.join();
    m_held.clear();
}

void ServerThread::run()
{
    pthread_setname_np(pthread_self(), "http");
    m_context.run();
}

Result<void, QString> ServerThread::setIdentity(const TlsIdentity &identity)
{
    auto made = makeTlsContext(identity);
    if (!made)
        return failure(made.error());
    // Connections that have begun keep the context that they were made with.
    boost::asio::post(
        m_context, [this, tls = std::move(*made)]() mutable { m_tls = std::move(tls); });
    return {};
}

Result<quint16, QString> ServerThread::listen(const ListenAddress &address)
{
    boost::system::error_code error;
    const auto parsed = boost::asio::ip::make_address(address.address.toStdString(), error);
    if (error)
        return failure(QStringLiteral("%1 is no address").arg(address.address));
    auto listener = std::make_unique<Listener>(m_context);
    const boost::asio::ip::tcp::endpoint endpoint(parsed, address.port);
    Acceptor &acceptor = listener->acceptor;
    acceptor.open(endpoint.protocol(), error);
    if (!error)
        acceptor.set_option(boost::asio::socket_base::reuse_address(true), error);
    // 0.0.0.0 and :: may both be asked for.
    if (!error && parsed.is_v6())
        acceptor.set_option(boost::asio::ip::v6_only(true), error);
    if (!error)
        acceptor.bind(endpoint, error);
    if (!error)
        acceptor.listen(Backlog, error);
    const auto taken = error ? endpoint : acceptor.local_endpoint(error);
    if (error)
        return failure(QString::fromStdString(error.message()));
    boost::asio::post(m_context, [this, made = std::move(listener)]() mutable {
        m_listeners.push_back(std::move(made));
        accept(*m_listeners.back());
    });
    return taken.port();
}

void ServerThread::accept(Listener &listener)
{
    listener.acceptor.async_accept(m_context.get_executor(),
        [this, &listener](const boost::system::error_code &error, ClientStream::Socket socket) {
            if (m_isClosed)
                return;
            if (!error) {
                add(std::move(socket));
                return accept(listener);
            }
            refuse("connection not accepted: " + QByteArray::fromStdString(error.message()));
            listener.pause.expires_after(AcceptPause);
            listener.pause.async_wait([this, &listener](const boost::system::error_code &ended) {
                if (!ended && !m_isClosed)
                    accept(listener);
            });
        });
}

void ServerThread::add(ClientStream::Socket socket)
{
    const ClientId id = ++m_lastClient;
    const auto client = std::make_shared<HttpConnection>(*this, id, std::move(socket));
    ++m_count;
    m_clients.emplace(id, client);
    makeSpace(client.get());
    if (static_cast<int>(m_clients.size()) > limits.connections + RefusedConnections)
        return refuse("connection shut down: too many connections");
    if (!client->isShutDown())
        client->start();
}

void ServerThread::hold(ClientId client, const std::shared_ptr<HttpConnection> &connection)
{
    m_held[client] = connection;
}

void ServerThread::release(ClientId client)
{
    m_held.erase(client);
}

void ServerThread::forget(ClientId client)
{
    m_clients.erase(client);
    --m_count;
}

std::shared_ptr<HttpConnection> ServerThread::find(ClientId client) const
{
    const auto found = m_clients.find(client);
    return found == m_clients.end() ? nullptr : found->second.lock();
}

std::vector<std::shared_ptr<HttpConnection>> ServerThread::all() const
{
    std::vector<std::shared_ptr<HttpConnection>> clients;
    clients.reserve(m_clients.size());
    for (const auto &entry : m_clients) {
        if (auto client = entry.second.lock())
            clients.push_back(std::move(client));
    }
    return clients;
}

int ServerThread::active() const
{
    const auto clients = all();
    return static_cast<int>(std::count_if(
        clients.begin(), clients.end(), [](const auto &client) { return !client->isShutDown(); }));
}

void ServerThread::makeSpace(const HttpConnection *latest)
{
    const auto clients = all();
    int active = 0;
    int strangers = 0;
    int sameStrangers = 0;
    const auto isSameStranger = [latest](const HttpConnection &client) {
        return client.isStranger() && networkOf(client.peer()) == networkOf(latest->peer());
    };
    QHash<QByteArray, int> ofPeer;
    for (const auto &client : clients) {
        if (client->isShutDown())
            continue;
        ++active;
        strangers += client->isStranger() ? 1 : 0;
        sameStrangers += isSameStranger(*client) ? 1 : 0;
        ++ofPeer[client->peer()];
    }
    // Of the clients that \a mayGo, the one of the address with the most that has been idle for
    // longest, or else the WebSocket that has been quiet for longest. Strangers go first.
    const auto shutDownOne = [&](const auto &mayGo) {
        const auto isNeededLess = [&](const HttpConnection &a, const HttpConnection &b) {
            if (a.isStranger() != b.isStranger())
                return a.isStranger();
            if (const int more = ofPeer.value(a.peer()) - ofPeer.value(b.peer()))
                return more > 0;
            return a.isIdle() != b.isIdle() ? a.isIdle() : a.activeAt() < b.activeAt();
        };
        HttpConnection *least = nullptr;
        for (const auto &client : clients) {
            if (client.get() != latest && !client->isShutDown()
                && (client->isIdle() || client->session()) && mayGo(*client)
                && (!least || isNeededLess(*client, *least)))
                least = client.get();
        }
        if (least)
            least->shutDown();
    };
    if (static_cast<int>(clients.size()) > limits.connections + RefusedConnections) {
        // Those that have had their response need no place any more.
        for (const auto &client : clients) {
            if (client->isLingering())
                client->shutDown();
        }
    }
    const auto isStranger = [](const HttpConnection &client) { return client.isStranger(); };
    if (latest->isStranger() && sameStrangers > limits.strangersOfAddress)
        shutDownOne(isSameStranger);
    else if (latest->isStranger() && strangers > limits.strangers)
        shutDownOne(isStranger);
    else if (active > limits.connections)
        shutDownOne([](const HttpConnection &) { return true; });
}

bool ServerThread::isProxy(const QByteArray &address) const
{
    return std::any_of(access.names.proxies.begin(), access.names.proxies.end(),
        [&](const AddressRange &range) { return range.contains(address); });
}

void ServerThread::refuse(const QByteArray &line)
{
    {
        const VeskMutexLock lock(m_mutex);
        const bool isKnown = m_refusals.contains(line) || m_refusals.size() < MaxRefusals;
        ++m_refusals[isKnown ? line : QByteArray(OtherRefusals)];
    }
    // One call at a time waits for the main thread, however many are refused meanwhile.
    if (m_hasRefusals.exchange(true))
        return;
    events.refused();
}

QHash<QByteArray, int> ServerThread::takeRefusals()
{
    m_hasRefusals = false;
    const VeskMutexLock lock(m_mutex);
    return std::exchange(m_refusals, {});
}

void ServerThread::respond(ClientId client, const HttpResponse &response)
{
    boost::asio::post(m_context, [this, client, response] {
        if (const auto found = find(client))
            found->respond(response);
    });
}

void ServerThread::send(ClientId client, const QByteArray &message)
{
    boost::asio::post(m_context, [this, client, message] {
        const auto found = find(client);
        if (found && found->session())
            found->session()->send(message);
    });
}

void ServerThread::sendToAll(const QByteArray &message, AccessRole role)
{
    boost::asio::post(m_context, [this, message, role] {
        for (const auto &client : all()) {
            if (client->session() && client->caller().role >= role)
                client->session()->send(message);
        }
    });
}

void ServerThread::closeDevice(const QString &id)
{
    boost::asio::post(m_context, [this, id] {
        for (const auto &client : all()) {
            if (client->caller().deviceId != id)
                continue;
            if (client->session())
                client->session()->close(boost::beast::websocket::close_code::policy_error);
            else
                client->shutDown();
        }
    });
}

void ServerThread::readOn(ClientId client)
{
    boost::asio::post(m_context, [this, client] {
        const auto found = find(client);
        if (found && found->session())
            found->session()->readOn();
    });
}

void ServerThread::close()
{
    boost::asio::post(m_context, [this] {
        m_isClosed = true;
        for (const auto &listener : m_listeners) {
            boost::system::error_code ignored;
            listener->acceptor.close(ignored);
            listener->pause.cancel();
        }
        for (const auto &client : all()) {
            if (client->session())
                client->session()->close(boost::beast::websocket::close_code::going_away);
            else if (!client->isLingering())
                client->shutDown();
        }
    });
}
