#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

struct _GIOStream;
struct _GSocketAddress;
struct _GSocketConnection;
struct _GSocketService;

/// One accepted connection and its time limit. Lasts as long as somebody references its stream, and
/// deletes itself with it.
class HttpConnection : public QObject {
    Q_OBJECT

public:
    /// \a stream is a metered stream over \a connection. Takes over the addresses.
    HttpConnection(_GIOStream *stream, _GSocketConnection *connection, _GSocketAddress *local,
        _GSocketAddress *remote, QObject *parent);
    ~HttpConnection() override;

    _GIOStream *stream() const { return m_stream; }
    _GSocketAddress *localAddress() const { return m_local; }
    _GSocketAddress *remoteAddress() const { return m_remote; }
    /// The connection that has this very object for its remote address.
    static HttpConnection *ofRemoteAddress(_GSocketAddress *address);

    /// (Re)starts the time limit; 0 lifts it. A connection that does not move on in time is shut
    /// down.
    void limit(int milliseconds);
    void shutDown();

private:
    struct Gone;

    _GIOStream *m_stream; ///< not referenced
    _GSocketConnection *m_connection; ///< not referenced
    _GSocketAddress *const m_local;
    _GSocketAddress *const m_remote;
    QTimer m_limit;
};

/// Accepts connections on one address. Main thread, in the GLib main loop that Qt runs there.
class HttpConnections : public QObject {
    Q_OBJECT

public:
    explicit HttpConnections(QObject *parent = nullptr);
    ~HttpConnections() override;

    /// Calls \a accepted for each connection. Port 0 picks a free one. Returns false, with the
    /// reason in \a error, when that fails.
    bool listen(const QString &address, quint16 port, QString &error,
        std::function<void(HttpConnection *)> accepted);
    quint16 port() const { return m_port; }
    /// Accepts no more; what is open stays.
    void close();

    /// How many are open.
    int count() const;

private:
    struct Incoming;

    _GSocketService *m_service;
    std::function<void(HttpConnection *)> m_accepted;
    quint16 m_port = 0;
};
