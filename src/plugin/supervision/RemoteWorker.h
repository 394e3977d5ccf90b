// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/nodes/CMAbstractWorker.h"
#include "base/Result.h"
#include "plugin/link/NodeLink.h"

#include <deque>
#include <functional>
#include <memory>
#include <set>
#include <shared_mutex>
#include <vector>

/// Stands in the host's root for the worker in a plug-in process: forwards requests and
/// subscriptions to it as long as there is a connection. The routes stay when the process ends.
/// While the next one starts, requests wait for it; while there is none, they end with an error.
///
/// Main thread, but for the functions of CMAbstractWorker and those marked.
class RemoteWorker : public CMAbstractWorker {
    Q_OBJECT

public:
    /// Requests that may wait for a process.
    static constexpr int MaxHeld = 256;
    /// Paths that a plug-in may serve.
    static constexpr int MaxRoutes = 1024;

    explicit RemoteWorker(QObject *parent = nullptr);
    /// Ends the requests that are left with an error and removes the routes.
    ~RemoteWorker() override;

    /// A process is about to be started: requests wait for it. False if that was the case already.
    bool expectLink();
    /// \a link leads to a process that is starting. It is used and destroyed on this thread.
    void setLink(std::unique_ptr<NodeLink> link);
    /// Sends the process what \a message returns. What send() is given meanwhile follows.
    void sendStart(const std::function<StartMessage()> &message);
    /// The process has loaded its plug-in: the requests that wait are sent.
    void open();
    /// Has requests for \a prefix wait although there is a process, until release().
    void hold(const QString &prefix);
    void release();
    /// The process is to be replaced: requests wait for the next one. So do those in progress that
    /// only read and for which \a movable returns true. Returns the others.
    std::vector<CMRequest> beginReplacing(const std::function<bool(const CMRequest &)> &movable);
    /// The process that is replaced is gone: requests without a response end with an error.
    void endReplacing();
    /// There is no process any more, or is not to be: all requests end with an error.
    void close();
    /// Removes all routes.
    void leave();
    /// Null while there is no process.
    NodeLink *link() const { return m_link.get(); }
    /// Sends \a message, unless the process has not been sent its StartMessage yet. Any thread.
    template <class Message>
    void send(const Message &message)
    {
        const std::shared_lock<std::shared_mutex> lock(m_mutex);
        if (m_started)
            m_link->send(message);
    }
    /// Notifies all subscribers of the plug-in's paths that everything has to be read again.
    void notifyReset();

    /// Adds or removes a route; a failure says what is wrong with it. Any thread.
    Result<void, QString> handleRoute(const RouteMessage &message);
    /// Whether \a path is one of those that the plug-in serves. Any thread.
    bool serves(const CMPath &path) const;
    /// "The %1 service was interrupted. Please try again." Any thread.
    CMError interruptedError() const;

    void request(CMRequest request) override;
    void connectChange(const CMPath &path) override;
    void disconnectChange(const CMPath &path) override;

private:
    enum State { Down, Starting, Up };

    mutable std::shared_mutex m_mutex;
    // Guarded by m_mutex, which is held shared for using the link and exclusively for changing it.
    State m_state = Starting;
    QString m_heldPrefix; ///< null when none is
    bool m_started = false; ///< m_link's process has its StartMessage
    std::unique_ptr<NodeLink> m_link;

    mutable VeskMutex m_heldMutex; ///< locked after m_mutex
    std::deque<CMRequest> m_held VESK_GUARDED_BY(m_heldMutex);
    std::set<CMPath> m_subscribed VESK_GUARDED_BY(m_heldMutex);
    std::set<CMPath> m_routes VESK_GUARDED_BY(m_heldMutex);
    /// Routes that m_link's process still adds or removes are ignored.
    bool m_isReplaced VESK_GUARDED_BY(m_heldMutex) = false;
    /// A path was refused, which is logged once.
    bool m_hasRefused VESK_GUARDED_BY(m_heldMutex) = false;
};
