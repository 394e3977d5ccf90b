#pragma once

#include <QHash>
#include <QObject>

struct _GSocket;
class QTimer;

/// The open connections of a server, with a time limit for each: one that does not move on in time
/// is shut down. Follows a socket from when it is first seen until it is gone, whoever owns it.
class HttpConnections : public QObject {
    Q_OBJECT

public:
    explicit HttpConnections(QObject *parent = nullptr);
    ~HttpConnections() override;

    int count() const { return m_timers.size(); }
    /// (Re)starts the time limit of \a socket; 0 lifts it.
    void limit(_GSocket *socket, int milliseconds);
    static void shutDown(_GSocket *socket);

private:
    struct Gone;

    QHash<_GSocket *, QTimer *> m_timers;
};
