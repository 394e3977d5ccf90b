// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMAbstractWorker.h"
#include "plugin/link/NodeLink.h"

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <shared_mutex>
#include <vector>

/// What the host's root knows of a worker in another process: passes on what it is asked, for as
/// long as there is a connection. Its routes stay when the process ends. While the next one starts,
/// requests wait for it; while there is none, they are answered with an error.
///
/// Main thread, but for what CMAbstractWorker has.
class RemoteWorker : public CMAbstractWorker {
    Q_OBJECT

public:
    /// So many requests wait for a start.
    static constexpr int MaxHeld = 256;
    /// So many paths a worker may serve.
    static constexpr int MaxRoutes = 1024;

    explicit RemoteWorker(QObject *parent = nullptr);
    /// Answers what is left and takes back its routes.
    ~RemoteWorker() override;

    /// A process is on its way: requests wait for it. Returns whether that is news.
    bool expectLink();
    /// \a link leads to a process that is starting.
    void setLink(std::unique_ptr<NodeLink> link);
    /// Tells the process what it has to know; later news may follow. \a message is called with news
    /// held back.
    void sendStart(const std::function<StartMessage()> &message);
    /// The process has loaded its plug-in: it gets what waits.
    void open();
    /// Has requests for \a prefix wait although there is a process; lets it have them after all.
    void hold(const QString &prefix);
    void release();
    /// The process is to be replaced: requests wait for the next one, also those that it still owes
    /// an answer to, which only read and which \a movable is true for. Returns the others.
    std::vector<CMRequest> beginReplacing(const std::function<bool(const CMRequest &)> &movable);
    /// The process that is replaced is gone: what it owes is answered with an error.
    void endReplacing();
    /// The process is gone, or is to be: what it owes and what waits is answered with an error.
    void close();
    /// Takes back every route of the worker.
    void leave();
    /// Null while there is none.
    NodeLink *link() const { return m_link.get(); }
    /// Sends \a message to a process that was told to start. Any thread.
    template <class Message>
    void send(const Message &message)
    {
        const std::shared_lock<std::shared_mutex> lock(m_mutex);
        if (m_started)
            m_link->send(message);
    }
    /// Tells all who subscribed to the worker's paths to read everything again.
    void tellReset();

    /// What the worker says that it serves, from any thread; what is wrong with it.
    QString takeRoute(const RouteMessage &message);
    /// Whether \a path is one of those that the worker serves. Any thread.
    bool serves(const CMPath &path) const;
    /// "The TuneIn service was interrupted. Please try again." Any thread.
    CMError interruptedError() const;

    void request(CMRequest request) override;
    void connectChange(const CMPath &path) override;
    void disconnectChange(const CMPath &path) override;

private:
    enum State { Down, Starting, Up };

    mutable std::shared_mutex m_mutex;
    /// Guarded by m_mutex: shared for using the link, alone for changing it.
    State m_state = Starting;
    QString m_heldPrefix; ///< null when none is
    bool m_started = false; ///< m_link's process has its StartMessage
    std::unique_ptr<NodeLink> m_link;

    std::unique_ptr<LoopReceiver> m_receiver; ///< main thread; goes before m_link

    mutable std::mutex m_heldMutex; ///< taken after m_mutex
    /// Guarded by m_heldMutex.
    std::deque<CMRequest> m_held;
    std::set<CMPath> m_watched;
    std::set<CMPath> m_routes;
    bool m_isReplaced = false; ///< what m_link's process still says of its routes is of no account
};
