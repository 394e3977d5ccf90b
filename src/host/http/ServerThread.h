// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "base/Result.h"
#include "host/http/AddressPace.h"
#include "host/http/ClientStream.h"
#include "host/http/HttpResource.h"
#include "host/http/HttpServer.h"
#include "host/http/TlsContext.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

#include <boost/asio/basic_socket_acceptor.hpp>
#include <boost/asio/basic_waitable_timer.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/ip/v6_only.hpp>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <thread>
#include <vector>

class HttpConnection;

/// A client as the main thread knows it.
using ClientId = quint64;

/// What happens at the network, told on the server's thread.
struct ServerEvents {
    /// A message that has come by POST; answered with ServerThread::respond().
    std::function<void(ClientId, const QByteArray &message, const Caller &, const QByteArray &from)>
        posted;
    /// A request for a resource; answered with ServerThread::respond().
    std::function<void(ClientId, HttpResource *, const HttpRequest &)> requested;
    /// The client of such a request has closed its connection.
    std::function<void(ClientId)> left;
    /// A WebSocket is open; what it sends, and that it has ended. What \a state tells is the main
    /// thread's to say.
    struct SocketState {
        /// Whether a reply is still to come, or changes are.
        std::atomic<bool> isWaiting {false};
        /// Messages that were told and not yet taken.
        std::atomic<int> untaken {0};
    };
    std::function<void(
        ClientId, const Caller &, const std::shared_ptr<SocketState> &, const QByteArray &from)>
        opened;
    std::function<void(ClientId, const QByteArray &message)> received;
    std::function<void(ClientId)> ended;
    /// There are refusals to take, after none were left.
    std::function<void()> refused;
};

/// What the connections of a server share, and the thread that they live on. The functions above
/// the line may be called by the thread that owns the object, the others by the server's thread.
class ServerThread {
public:
    /// Messages of a WebSocket that wait to be taken; then no more is read of it.
    static constexpr int MaxUntaken = 32;
    using Executor = boost::asio::io_context::executor_type;
    using Timer = boost::asio::basic_waitable_timer<std::chrono::steady_clock,
        boost::asio::wait_traits<std::chrono::steady_clock>, Executor>;

    /// \a resources are asked for what they own.
    ServerThread(const HttpServerLimits &limits, HttpAccess access,
        const QVector<HttpResource *> &resources, ServerEvents events);
    /// Closes what is open, and ends the thread.
    ~ServerThread();
    ServerThread(const ServerThread &) = delete;
    ServerThread &operator=(const ServerThread &) = delete;

    /// By which later connections know the server. Says why it cannot be used; then the earlier one
    /// stays.
    Result<void, QString> setIdentity(const TlsIdentity &identity);
    /// The port that was taken.
    Result<quint16, QString> listen(const ListenAddress &address);

    void respond(ClientId client, const HttpResponse &response);
    void send(ClientId client, const QByteArray &message);
    void sendToAll(const QByteArray &message, AccessRole role);
    void closeDevice(const QString &id);
    /// The main thread has taken messages of a WebSocket that is not read until then.
    void readOn(ClientId client);
    void close();
    /// What was refused since the last call, for the log, and how often.
    QHash<QByteArray, int> takeRefusals() VESK_EXCLUDES(m_mutex);
    /// Any thread.
    int connections() const { return m_count.load(); }

    // ----------------------------------------------------------------------------------------------

    const HttpServerLimits limits;
    const HttpAccess access;
    const QVector<HttpResource *> resources;
    const ServerEvents events;
    AddressPace pace;
    /// The name of this machine.
    const QByteArray machine;

    boost::asio::io_context &context() { return m_context; }
    ssl_ctx_st *tls() const { return m_tls.get(); }
    /// How many are open to stay.
    int active() const;
    /// Logs that something was refused.
    void refuse(const QByteArray &line) VESK_EXCLUDES(m_mutex);
    bool isProxy(const QByteArray &address) const;
    bool isClosed() const { return m_isClosed; }
    /// Keeps a connection on which nothing else is under way.
    void hold(ClientId client, const std::shared_ptr<HttpConnection> &connection);
    void release(ClientId client);
    void forget(ClientId client);

private:
    using Acceptor = boost::asio::basic_socket_acceptor<boost::asio::ip::tcp, Executor>;
    struct Listener;

    void run();
    void accept(Listener &listener);
    void add(ClientStream::Socket socket);
    /// Shuts down connections until \a latest has its place, or there is none left that may go.
    void makeSpace(const HttpConnection *latest);
    std::shared_ptr<HttpConnection> find(ClientId client) const;
    /// All of them; those that end meanwhile included.
    std::vector<std::shared_ptr<HttpConnection>> all() const;

    TlsContext m_tls;
    std::map<ClientId, std::weak_ptr<HttpConnection>> m_clients;
    std::map<ClientId, std::shared_ptr<HttpConnection>> m_held;
    ClientId m_lastClient = 0;
    std::atomic<int> m_count {0};
    bool m_isClosed = false;
    std::atomic<bool> m_hasRefusals {false};
    VeskMutex m_mutex;
    QHash<QByteArray, int> m_refusals VESK_GUARDED_BY(m_mutex);

    boost::asio::io_context m_context {1};
    boost::asio::executor_work_guard<Executor> m_work;
    std::vector<std::unique_ptr<Listener>> m_listeners;
    std::thread m_thread;
};
