// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMReply.h"
#include "api/nodes/CMRootWorker.h"
#include "api/values/VeskRowsRoles.h"
#include "host/rpc/JsonRpcDispatcher.h"

#include <QElapsedTimer>
#include <QTimer>

#include <functional>
#include <list>
#include <memory>
#include <vector>

/// Makes the ranges in which a client reads a screen parts of one list: all rows are fetched at
/// once, and those that the client has not asked for yet are kept for it. A range that begins with
/// row 0 fetches again, and so does one after a change: a notification of the service, another
/// value of the host, or what a client wrote to the service. Each WebSocket has screens of its own;
/// clients without one share theirs. A single row is fetched alone, unless its screen is there.
/// Main thread.
class ScreenSnapshots : public QObject {
    Q_OBJECT

public:
    /// Rows that are kept of a screen; later ones are fetched when they are requested.
    static constexpr int MaxRows = 10000;
    /// Screens that are kept for one connection, and for all clients without one.
    static constexpr int MaxScreens = 4;
    /// Memory for all of them, estimated.
    static constexpr qint64 MaxBytes = 64 * 1024 * 1024;

    struct Lifetimes {
        int connected = 60000; ///< milliseconds after the last range
        int unconnected = 5000; ///< the same for a client without a connection
    };

    /// What a client asks for.
    struct Range {
        CMPath path;
        QStringList roles;
        int first = 0;
        int last = 0;
        bool refresh = false; ///< fetches again in any case
    };

    struct Answer {
        CMError error;
        VeskRowsRoles rows;
        /// Why there is an error, or no row at all.
        VeskServiceFault fault {};
    };
    /// Called once, unless this is destroyed before.
    using Answered = std::function<void(const Answer &answer)>;

    explicit ScreenSnapshots(QObject *parent = nullptr);
    ~ScreenSnapshots() override;

    void setLifetimes(const Lifetimes &lifetimes) { m_lifetimes = lifetimes; }

    /// Cancels a request: \a answered is not called any more, and a fetch without other requests is
    /// cancelled, too. Does nothing once \a answered was called.
    using Abandon = std::function<void()>;

    /// \a peer is null for a client without a connection.
    Abandon rows(MessagePeer *peer, const Range &range, Answered answered);

    /// From now on everything is fetched again.
    void forgetAll();
    /// The same for the screens of the service that answers for \a prefix.
    void forgetService(const QString &prefix);

    /// Screens that are kept, and what they take.
    int count() const;
    qint64 bytes() const;

private:
    struct Screen;
    using ScreenPtr = std::shared_ptr<Screen>;

    ScreenPtr find(MessagePeer *peer, const Range &range) const;
    ScreenPtr begin(MessagePeer *peer, const Range &range);
    void fetch(const ScreenPtr &screen);
    void take(const ScreenPtr &screen, const Answer &answer);
    void keep(const ScreenPtr &screen, const VeskRowsRoles &rows);
    Abandon wait(const ScreenPtr &screen, const Range &range, Answered answered);
    void abandon(const ScreenPtr &screen, int waiter);
    Abandon askDirectly(const Range &range, const Answered &answered);
    void forget(const std::function<bool(const Screen &)> &which);
    void makeSpaceBeside(const ScreenPtr &latest);
    void follow(MessagePeer *peer);
    void sweep();

    Lifetimes m_lifetimes;
    /// The one that was used last is the last. Those that are being fetched stay until they are
    /// there, for the requests that wait for them.
    std::list<ScreenPtr> m_screens;
    std::vector<MessagePeer *> m_peers; ///< whose destruction is watched
    int m_lastWaiter = 0;
    QTimer m_sweep;
};
