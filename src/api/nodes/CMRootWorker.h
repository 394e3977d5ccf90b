// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMAbstractWorker.h"
#include "api/nodes/CMSubscribe.h"

#include <QStringList>

#include <functional>
#include <memory>

class CMRootWorkerPrivate;
class QThread;

/// A subscription; ends when it is destroyed. Destroy it on the thread of its context, if it has
/// one.
class VESK_API CMSubscription {
public:
    CMSubscription(const CMSubscription &) = delete;
    CMSubscription &operator=(const CMSubscription &) = delete;
    ~CMSubscription();

private:
    friend class CMRootWorker;
    friend class CMRootWorkerPrivate;
    struct Entry;
    explicit CMSubscription(std::shared_ptr<Entry> entry);
    std::shared_ptr<Entry> m_entry;
};

/// The router between all workers: routes each request by its path's prefix to the worker of that
/// name, or, for a foreign path that a worker serves, to that worker; delivers changes to their
/// subscribers. Paths that no worker serves are routed to the default worker, when there is one,
/// which leads to the other processes. One per process, created by the host before any worker and
/// destroyed after the last. All calls from any thread.
///
/// The worker that serves a subscribed path is notified of the first subscriber (connectChange) and
/// of the end of the last subscription (disconnectChange). A worker that is added later is notified
/// then, and the subscribers are told to read everything again (CMSubscribe::RowsChangeReset).
class VESK_API CMRootWorker : public CMAbstractWorker {
    Q_OBJECT

public:
    explicit CMRootWorker(QObject *parent = nullptr);
    ~CMRootWorker() override;

    /// Routes requests for \a prefix to \a worker. Returns false, and logs, when the prefix is
    /// taken.
    bool addWorker(const QString &prefix, CMAbstractWorker *worker);
    /// Removes every route to \a worker; when it returns, no other thread is calling the worker.
    void removeWorker(CMAbstractWorker *worker);
    /// Routes \a path and what lies below it to \a worker, whichever worker has its prefix;
    /// parameters do not matter. A path that is taken is logged and stays as it is.
    void addForeignPath(const CMPath &path, CMAbstractWorker *worker);
    void removeForeignPath(const CMPath &path, CMAbstractWorker *worker);
    /// From now on a foreign path is refused, and logged, whose prefix has a worker of another
    /// thread than the calling one: a plug-in answers for itself, not for the host or another one.
    void protectPrefixes();
    /// Removes the route of \a prefix, if it leads to \a worker.
    void removePrefix(const QString &prefix, CMAbstractWorker *worker);
    /// Routes to \a worker what no other worker serves, until it is removed.
    void setDefaultWorker(CMAbstractWorker *worker);
    QStringList prefixes() const;
    /// Whether the worker with \a prefix is the one that serves \a path.
    bool isServedBy(const CMPath &path, const QString &prefix) const;

    /// Which of a worker's requests hold() queues.
    enum Hold { Prefix, PrefixAndForeignPaths };
    /// Queues requests for \a prefix, and if \a what says so for the foreign paths of its worker,
    /// until release(): the worker is about to be replaced. Requests from the worker's own thread
    /// pass. At most MaxHeld requests are queued, further ones are answered with an error. A second
    /// call may extend what is held.
    void hold(const QString &prefix, Hold what);
    /// Delivers the queued requests in their order, each to the worker that serves it now.
    void release(const QString &prefix);
    static constexpr int MaxHeld = 256;

    /// Answers at once with an error when no worker serves the request's path.
    void request(CMRequest request) override;
    void post(CMRequest request) override;

    /// Whether a subscriber acts on the changes itself or only forwards them.
    enum Purpose { ForItself, ForOthers };
    /// Calls \a changed on \a context's thread for every change that concerns \a path, until the
    /// subscription or the context is destroyed. A change that repeats the one before it in the
    /// queue is dropped. \a context must be alive during this call and stay on its thread.
    std::unique_ptr<CMSubscription> subscribe(const CMPath &path, QObject *context,
        std::function<void(const CMChange &)> changed, Purpose purpose = ForItself);
    /// The same, but \a changed is called directly on the thread that notifies. It must return
    /// soon, and may still be called once while the subscription ends. The subscription may end on
    /// any thread.
    std::unique_ptr<CMSubscription> subscribeDirectly(
        const CMPath &path, std::function<void(const CMChange &)> changed);
    /// Whether \a path has a subscriber ForItself on \a thread: the thread of its context, or,
    /// without a context, the one that subscribed.
    bool isSubscribed(const CMPath &path, const QThread *thread) const;
    /// Notifies the subscribers of exactly the change's path.
    void notifyChanged(const CMChange &change);
    /// Notifies the subscribers of every path that starts with the change's, each with its own
    /// path.
    void notifyChangedStartingWith(const CMChange &change);
    /// Notifies the subscribers in this process only: the change came from another process.
    void passOnChanged(const CMChange &change);
    /// Notifies every worker that the UI language changed.
    void notifyLanguageChanged();

Q_SIGNALS:
    /// A route was added or removed: the root path of a prefix, or a foreign path. Not for routes
    /// to the default worker. Emitted on the thread that changed it.
    void routeAdded(const CMPath &route);
    void routeRemoved(const CMPath &route);
    /// A change of a path of the default worker was notified, which has subscribers in other
    /// processes too. Emitted on the thread that notified.
    void changedElsewhere(const CMChange &change, bool startingWith);

private:
    friend class CMSubscription;
    const std::shared_ptr<CMRootWorkerPrivate> d;
};

/// The process's root worker; null before the first and after the last.
VESK_API CMRootWorker *CMRoot();
