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

/// One subscription; ends when it is destroyed. Destroy it on the thread of its context, if it has
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

/// Where all workers meet: routes each request by its path's prefix to the worker of that name, or,
/// for a foreign path that a worker serves, to that worker; brings changes to their subscribers.
/// What nobody serves goes to the default worker, when there is one: in a process that is one of
/// several, the way to the others.
/// One per process, made by the host before any worker and destroyed after the last. All calls from
/// any thread.
///
/// The worker that serves a subscribed path is told of the first subscriber (connectChange) and of
/// the last one's leaving. When it comes later than the subscribers, it is told then, and they are
/// told to read everything again (CMSubscribe::RowsChangeReset).
class VESK_API CMRootWorker : public CMAbstractWorker {
    Q_OBJECT

public:
    explicit CMRootWorker(QObject *parent = nullptr);
    ~CMRootWorker() override;

    /// Routes requests for \a prefix to \a worker. Returns false, and logs, when the prefix is
    /// taken.
    bool addWorker(const QString &prefix, CMAbstractWorker *worker);
    /// Forgets every route to \a worker; when it returns, no other thread is calling the worker.
    void removeWorker(CMAbstractWorker *worker);
    /// Routes \a path and what lies below it to \a worker, whoever has its prefix; parameters do
    /// not matter. A path that is taken is logged and stays as it is.
    void addForeignPath(const CMPath &path, CMAbstractWorker *worker);
    void removeForeignPath(const CMPath &path, CMAbstractWorker *worker);
    /// Takes \a prefix from \a worker, if it has it.
    void removePrefix(const QString &prefix, CMAbstractWorker *worker);
    /// Routes to \a worker whatever no other worker serves, until it is removed.
    void setDefaultWorker(CMAbstractWorker *worker);
    QStringList prefixes() const;
    /// Whether the worker with \a prefix is the one that serves \a path.
    bool isServedBy(const CMPath &path, const QString &prefix) const;

    /// What hold() keeps back of a worker's requests.
    enum Hold { Prefix, PrefixAndForeignPaths };
    /// Keeps requests for \a prefix back, and for the foreign paths of the worker that has it if \a
    /// what says so, until release(): its worker is about to be replaced. The worker's own thread
    /// is served all the same. At most MaxHeld requests wait, more are answered with an error.
    /// Another call may extend it.
    void hold(const QString &prefix, Hold what);
    /// Brings what was kept back, in its order, to whichever worker serves it by now.
    void release(const QString &prefix);
    static constexpr int MaxHeld = 256;

    /// Answers at once with an error when no worker is there for the request's path.
    void request(CMRequest request) override;
    void post(CMRequest request) override;

    /// Whether a subscriber acts on the changes, or only passes them on to those who asked for
    /// them.
    enum Purpose { ForItself, ForOthers };
    /// Calls \a changed on \a context's thread for every change that concerns \a path, until the
    /// subscription or the context is destroyed. A change that only repeats the one before, while
    /// that one still waits, is left out. \a context must be alive during this call and stay on its
    /// thread.
    std::unique_ptr<CMSubscription> subscribe(const CMPath &path, QObject *context,
        std::function<void(const CMChange &)> changed, Purpose purpose = ForItself);
    /// The same, but \a changed is called by whoever tells of the change, on his thread, before he
    /// goes on. It must return soon, and may still be called once while the subscription ends. The
    /// subscription may end on any thread.
    std::unique_ptr<CMSubscription> subscribeDirectly(
        const CMPath &path, std::function<void(const CMChange &)> changed);
    /// Whether there is a subscriber on \a thread to \a path ForItself: the thread of the context,
    /// or, where there is none, the one that subscribed.
    bool isSubscribed(const CMPath &path, const QThread *thread) const;
    /// Tells the subscribers of exactly the change's path.
    void notifyChanged(const CMChange &change);
    /// Tells the subscribers of every path that starts with the change's, each with its own path.
    void notifyChangedStartingWith(const CMChange &change);
    /// Tells the subscribers in this process alone: the change is known to all others.
    void passOnChanged(const CMChange &change);
    /// Tells every worker that the UI language changed.
    void notifyLanguageChanged();

Q_SIGNALS:
    /// A route was made or taken away: the root path of a prefix, or a foreign path. Not for routes
    /// to the default worker. From the thread that did it.
    void routeAdded(const CMPath &route);
    void routeRemoved(const CMPath &route);
    /// Somebody told of a change that concerns a path of the default worker, whose subscribers are
    /// elsewhere too. From the thread that told.
    void changedElsewhere(const CMChange &change, bool startingWith);

private:
    friend class CMSubscription;
    const std::shared_ptr<CMRootWorkerPrivate> d;
};

/// The process's root worker; null before the first and after the last.
VESK_API CMRootWorker *CMRoot();
