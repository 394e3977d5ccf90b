// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMRootWorker.h"

#include "api/core/Mutex.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMCallGate.h"
#include "api/nodes/CMContextCall.h"

#include <QHash>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <deque>
#include <map>
#include <mutex>
#include <vector>

VESK_LOGGER("Nodes")

namespace {

std::atomic<CMRootWorker *> theRoot {nullptr};

using GatePtr = std::shared_ptr<CMCallGate>;

/// Whether \a change adds nothing to \a before, the change before it at the same path. Rows that
/// are inserted or removed twice are two changes.
bool isRepeated(const CMChange &before, const CMChange &change)
{
    return change.kind == before.kind && change.first == before.first && change.last == before.last
        && change.start == before.start && change.kind != CMSubscribe::RowsChangeInserted()
        && change.kind != CMSubscribe::RowsChangeRemoved();
}

} // namespace

/// A subscriber. With a call, changes are queued and delivered on the context's thread; without
/// one they are delivered on the thread that notifies.
struct CMSubscription::Entry {
    void deliver(CMChange change)
    {
        change.start = change.path;
        change.path = path;
        if (!call) {
            changed(change);
            return;
        }
        {
            const VeskMutexLock lock(mutex);
            if (!pending.empty() && isRepeated(pending.back(), change))
                return;
            pending.push_back(std::move(change));
        }
        call->trigger();
    }

    void drain()
    {
        std::deque<CMChange> changes;
        {
            const VeskMutexLock lock(mutex);
            changes.swap(pending);
        }
        for (const CMChange &change : changes) {
            if (!call->isOpen())
                return;
            changed(change);
        }
    }

    CMPath path;
    std::function<void(const CMChange &)> changed;
    std::weak_ptr<CMRootWorkerPrivate> root;
    std::shared_ptr<CMContextCall> call;
    const QThread *thread = nullptr; ///< for comparing only
    CMRootWorker::Purpose purpose = CMRootWorker::ForItself;

    VeskMutex mutex;
    std::deque<CMChange> pending VESK_GUARDED_BY(mutex);
};

class CMRootWorkerPrivate {
public:
    using Entry = CMSubscription::Entry;

    /// A path's subscribers, and the worker that was last notified of them.
    struct Subscribed {
        std::vector<std::shared_ptr<Entry>> entries;
        GatePtr connected;
    };

    /// Requests that wait for a worker to be replaced, and the worker's foreign paths.
    struct Held {
        QList<CMPath> foreign;
        std::deque<CMRequest> requests;
    };

    GatePtr route(const CMPath &path) const VESK_EXCLUDES(routesMutex);
    bool keepBack(const CMRequest &request) VESK_EXCLUDES(routesMutex);
    Held *holderOf(const CMPath &path) VESK_REQUIRES(routesMutex);
    bool isElsewhere(const CMPath &path) const VESK_EXCLUDES(routesMutex);
    std::vector<std::shared_ptr<Entry>> entriesOf(const CMPath &path);
    GatePtr gateOf(CMAbstractWorker *worker) VESK_REQUIRES(routesMutex);
    void addEntry(const std::shared_ptr<Entry> &entry);
    void removeEntry(const std::shared_ptr<Entry> &entry);
    void announce(const CMPath &path, bool tellSubscribers);
    void announceMoved();

    /// Whether a prefix is held. Lets every other request do without the look-up in held.
    std::atomic<bool> holds {false};
    /// Whether foreign paths with somebody else's prefix are refused.
    std::atomic<bool> protects {false};

    /// Serialises the notifications of workers, so that they arrive in the order of events. The
    /// first of the three mutexes to be locked. Recursive, because a worker that is notified may
    /// itself subscribe; that is why it has no annotations, which know of no recursion.
    std::recursive_mutex announceMutex;

    VeskMutex subscribedMutex;
    std::map<CMPath, Subscribed> subscribed VESK_GUARDED_BY(subscribedMutex);

    mutable VeskMutex routesMutex VESK_ACQUIRED_AFTER(subscribedMutex);
    QHash<CMAbstractWorker *, GatePtr> gates VESK_GUARDED_BY(routesMutex);
    QHash<QString, GatePtr> byPrefix VESK_GUARDED_BY(routesMutex);
    /// By prefix, then base.
    QHash<QString, QHash<QString, GatePtr>> foreign VESK_GUARDED_BY(routesMutex);
    GatePtr byDefault VESK_GUARDED_BY(routesMutex);
    std::map<QString, Held> held VESK_GUARDED_BY(routesMutex); ///< by prefix
};

GatePtr CMRootWorkerPrivate::route(const CMPath &path) const
{
    const VeskMutexLock lock(routesMutex);
    const auto bases = foreign.constFind(path.prefix());
    if (bases != foreign.constEnd()) {
        QString base = path.base();
        while (true) {
            const auto found = bases->constFind(base);
            if (found != bases->constEnd())
                return *found;
            const int slash = base.lastIndexOf(QLatin1Char('/'));
            if (slash <= 0)
                break;
            base.truncate(slash);
        }
    }
    return byPrefix.value(path.prefix(), byDefault);
}

CMRootWorkerPrivate::Held *CMRootWorkerPrivate::holderOf(const CMPath &path)
{
    const auto own = held.find(path.prefix());
    if (own != held.end())
        return &own->second;
    for (auto &[prefix, holder] : held) {
        const auto isBelow = [&path](const CMPath &route) { return path.startsWith(route); };
        if (std::any_of(holder.foreign.begin(), holder.foreign.end(), isBelow))
            return &holder;
    }
    return nullptr;
}

/// Whether the request was queued until release(), or refused because the queue is full.
bool CMRootWorkerPrivate::keepBack(const CMRequest &request)
{
    if (!holds)
        return false;
    {
        const VeskMutexLock lock(routesMutex);
        Held *holder = holderOf(request.path());
        if (!holder)
            return false;
        const GatePtr served = byPrefix.value(request.path().prefix());
        if (served && served->worker()->thread() == QThread::currentThread())
            return false;
        if (holder->requests.size() < CMRootWorker::MaxHeld) {
            holder->requests.push_back(request);
            return true;
        }
    }
    request.reply().setError(CMUnansweredError());
    return true;
}

/// Whether \a path is routed to the default worker.
bool CMRootWorkerPrivate::isElsewhere(const CMPath &path) const
{
    const GatePtr gate = route(path);
    const VeskMutexLock lock(routesMutex);
    return gate && gate == byDefault;
}

std::vector<std::shared_ptr<CMSubscription::Entry>> CMRootWorkerPrivate::entriesOf(
    const CMPath &path)
{
    const VeskMutexLock lock(subscribedMutex);
    const auto found = subscribed.find(path);
    return found == subscribed.end() ? std::vector<std::shared_ptr<Entry>>()
                                     : found->second.entries;
}

GatePtr CMRootWorkerPrivate::gateOf(CMAbstractWorker *worker)
{
    GatePtr &gate = gates[worker];
    if (!gate)
        gate = std::make_shared<CMCallGate>(worker);
    return gate;
}

void CMRootWorkerPrivate::addEntry(const std::shared_ptr<Entry> &entry)
{
    {
        const VeskMutexLock lock(subscribedMutex);
        subscribed[entry->path].entries.push_back(entry);
    }
    announce(entry->path, false);
}

void CMRootWorkerPrivate::removeEntry(const std::shared_ptr<Entry> &entry)
{
    {
        const VeskMutexLock lock(subscribedMutex);
        std::vector<std::shared_ptr<Entry>> &entries = subscribed[entry->path].entries;
        entries.erase(std::remove(entries.begin(), entries.end(), entry), entries.end());
    }
    announce(entry->path, false);
}

/// Notifies the workers concerned when the subscribers of \a path, or its route, have changed.
void CMRootWorkerPrivate::announce(const CMPath &path, bool tellSubscribers)
{
    const std::lock_guard<std::recursive_mutex> announcing(announceMutex);
    GatePtr before;
    GatePtr now;
    std::vector<std::shared_ptr<Entry>> entries;
    {
        const VeskMutexLock lock(subscribedMutex);
        const auto found = subscribed.find(path);
        if (found == subscribed.end())
            return;
        before = found->second.connected;
        now = found->second.entries.empty() ? nullptr : route(path);
        found->second.connected = now;
        if (found->second.entries.empty())
            subscribed.erase(found);
        else
            entries = found->second.entries;
    }
    if (before == now)
        return;
    if (const CMCallGate::Visit visit(before); visit)
        visit->disconnectChange(path);
    if (const CMCallGate::Visit visit(now); visit) {
        visit->connectChange(path);
        if (tellSubscribers) {
            for (const std::shared_ptr<Entry> &entry : entries)
                entry->deliver({path, CMSubscribe::RowsChangeReset(), -1, -1});
        }
    }
}

/// Announces every subscribed path whose route has changed.
void CMRootWorkerPrivate::announceMoved()
{
    std::vector<CMPath> moved;
    {
        const VeskMutexLock lock(subscribedMutex);
        for (const auto &[path, state] : subscribed) {
            if (state.connected != route(path))
                moved.push_back(path);
        }
    }
    for (const CMPath &path : moved)
        announce(path, true);
}

CMSubscription::CMSubscription(std::shared_ptr<Entry> entry)
    : m_entry(std::move(entry))
{
}

CMSubscription::~CMSubscription()
{
    if (m_entry->call) {
        VESK_ASSERT(!m_entry->call->isElsewhere());
        m_entry->call->close();
    }
    if (const std::shared_ptr<CMRootWorkerPrivate> root = m_entry->root.lock())
        root->removeEntry(m_entry);
}

CMRootWorker::CMRootWorker(QObject *parent)
    : CMAbstractWorker(parent)
    , d(std::make_shared<CMRootWorkerPrivate>())
{
    CMRootWorker *none = nullptr;
    VESK_ASSERT(theRoot.compare_exchange_strong(none, this));
}

CMRootWorker::~CMRootWorker()
{
    theRoot = nullptr;
}

CMRootWorker *CMRoot()
{
    return theRoot;
}

bool CMRootWorker::addWorker(const QString &prefix, CMAbstractWorker *worker)
{
    {
        const VeskMutexLock lock(d->routesMutex);
        if (d->byPrefix.contains(prefix)) {
            VESK_ERROR("There is already a worker for the prefix '" << prefix << "'");
            return false;
        }
        d->byPrefix.insert(prefix, d->gateOf(worker));
    }
    Q_EMIT routeAdded(CMPath(prefix, QString()));
    d->announceMoved();
    return true;
}

void CMRootWorker::setDefaultWorker(CMAbstractWorker *worker)
{
    {
        const VeskMutexLock lock(d->routesMutex);
        d->byDefault = d->gateOf(worker);
    }
    d->announceMoved();
}

void CMRootWorker::removePrefix(const QString &prefix, CMAbstractWorker *worker)
{
    {
        const VeskMutexLock lock(d->routesMutex);
        const auto route = d->byPrefix.find(prefix);
        if (route == d->byPrefix.end() || (*route)->worker() != worker)
            return;
        d->byPrefix.erase(route);
    }
    Q_EMIT routeRemoved(CMPath(prefix, QString()));
    d->announceMoved();
}

void CMRootWorker::removeWorker(CMAbstractWorker *worker)
{
    GatePtr gate;
    QList<CMPath> removed;
    {
        const VeskMutexLock lock(d->routesMutex);
        gate = d->gates.take(worker);
        if (!gate)
            return;
        const auto removeFrom = [&](QHash<QString, GatePtr> &routes, auto pathOf) {
            for (auto it = routes.begin(); it != routes.end();) {
                if (*it != gate) {
                    ++it;
                    continue;
                }
                removed.append(pathOf(it.key()));
                it = routes.erase(it);
            }
        };
        removeFrom(d->byPrefix, [](const QString &prefix) { return CMPath(prefix, QString()); });
        for (auto it = d->foreign.begin(); it != d->foreign.end(); ++it)
            removeFrom(*it, [&it](const QString &base) { return CMPath(it.key(), base); });
        if (d->byDefault == gate)
            d->byDefault.reset();
    }
    for (const CMPath &route : std::as_const(removed))
        Q_EMIT routeRemoved(route);
    gate->close();
    d->announceMoved();
}

void CMRootWorker::addForeignPath(const CMPath &path, CMAbstractWorker *worker)
{
    {
        const VeskMutexLock lock(d->routesMutex);
        const GatePtr owner = d->byPrefix.value(path.prefix());
        if (d->protects && owner && owner->worker()->thread() != QThread::currentThread()) {
            VESK_ERROR("The path '" << path << "' belongs to another worker");
            return;
        }
        GatePtr &route = d->foreign[path.prefix()][path.base()];
        if (route) {
            VESK_ERROR("There is already a worker for the path '" << path << "'");
            return;
        }
        route = d->gateOf(worker);
    }
    Q_EMIT routeAdded(CMPath(path.prefix(), path.base()));
    d->announceMoved();
}

void CMRootWorker::protectPrefixes()
{
    d->protects = true;
}

void CMRootWorker::removeForeignPath(const CMPath &path, CMAbstractWorker *worker)
{
    {
        const VeskMutexLock lock(d->routesMutex);
        const auto bases = d->foreign.find(path.prefix());
        if (bases == d->foreign.end())
            return;
        const auto route = bases->find(path.base());
        if (route == bases->end() || (*route)->worker() != worker)
            return;
        bases->erase(route);
    }
    Q_EMIT routeRemoved(CMPath(path.prefix(), path.base()));
    d->announceMoved();
}

QStringList CMRootWorker::prefixes() const
{
    const VeskMutexLock lock(d->routesMutex);
    QStringList prefixes = d->byPrefix.keys();
    prefixes.sort();
    return prefixes;
}

bool CMRootWorker::isServedBy(const CMPath &path, const QString &prefix) const
{
    const GatePtr serving = d->route(path);
    const VeskMutexLock lock(d->routesMutex);
    return serving && serving == d->byPrefix.value(prefix);
}

void CMRootWorker::hold(const QString &prefix, Hold what)
{
    const VeskMutexLock lock(d->routesMutex);
    CMRootWorkerPrivate::Held &held = d->held[prefix];
    d->holds = true;
    const GatePtr gate = d->byPrefix.value(prefix);
    if (what == Prefix || !gate)
        return;
    held.foreign.clear();
    for (auto bases = d->foreign.constBegin(); bases != d->foreign.constEnd(); ++bases) {
        for (auto route = bases->constBegin(); route != bases->constEnd(); ++route) {
            if (*route == gate)
                held.foreign.append(CMPath(bases.key(), route.key()));
        }
    }
}

void CMRootWorker::release(const QString &prefix)
{
    std::deque<CMRequest> waiting;
    {
        const VeskMutexLock lock(d->routesMutex);
        const auto held = d->held.find(prefix);
        if (held == d->held.end())
            return;
        waiting.swap(held->second.requests);
        d->held.erase(held);
        d->holds = !d->held.empty();
    }
    for (const CMRequest &request : waiting)
        post(request);
}

void CMRootWorker::request(CMRequest request)
{
    if (d->keepBack(request))
        return;
    if (const CMCallGate::Visit visit(d->route(request.path())); visit)
        visit->request(std::move(request));
    else
        request.reply().setError(CMNoNodeError());
}

void CMRootWorker::post(CMRequest request)
{
    if (d->keepBack(request))
        return;
    if (const CMCallGate::Visit visit(d->route(request.path())); visit)
        visit->post(std::move(request));
    else
        request.reply().setError(CMNoNodeError());
}

std::unique_ptr<CMSubscription> CMRootWorker::subscribe(const CMPath &path, QObject *context,
    std::function<void(const CMChange &)> changed, Purpose purpose)
{
    const auto entry = std::make_shared<CMSubscription::Entry>();
    entry->path = path;
    entry->changed = std::move(changed);
    entry->root = d;
    entry->thread = context->thread();
    entry->purpose = purpose;
    entry->call
        = CMContextCall::create(context, CMContextCall::EachTime, [entry] { entry->drain(); });
    d->addEntry(entry);
    return std::unique_ptr<CMSubscription>(new CMSubscription(entry));
}

std::unique_ptr<CMSubscription> CMRootWorker::subscribeDirectly(
    const CMPath &path, std::function<void(const CMChange &)> changed)
{
    const auto entry = std::make_shared<CMSubscription::Entry>();
    entry->path = path;
    entry->changed = std::move(changed);
    entry->root = d;
    entry->thread = QThread::currentThread();
    d->addEntry(entry);
    return std::unique_ptr<CMSubscription>(new CMSubscription(entry));
}

bool CMRootWorker::isSubscribed(const CMPath &path, const QThread *thread) const
{
    const auto entries = d->entriesOf(path);
    return std::any_of(entries.begin(), entries.end(), [thread](const auto &entry) {
        return entry->purpose == ForItself && entry->thread == thread;
    });
}

void CMRootWorker::notifyChanged(const CMChange &change)
{
    passOnChanged(change);
    if (d->isElsewhere(change.path))
        Q_EMIT changedElsewhere(change, false);
}

void CMRootWorker::passOnChanged(const CMChange &change)
{
    for (const std::shared_ptr<CMSubscription::Entry> &entry : d->entriesOf(change.path))
        entry->deliver(change);
}

void CMRootWorker::notifyChangedStartingWith(const CMChange &change)
{
    std::vector<std::shared_ptr<CMSubscription::Entry>> concerned;
    {
        const VeskMutexLock lock(d->subscribedMutex);
        for (const auto &[path, state] : d->subscribed) {
            if (path.startsWith(change.path))
                concerned.insert(concerned.end(), state.entries.begin(), state.entries.end());
        }
    }
    for (const std::shared_ptr<CMSubscription::Entry> &entry : concerned)
        entry->deliver(change);
    if (d->isElsewhere(change.path))
        Q_EMIT changedElsewhere(change, true);
}

void CMRootWorker::notifyLanguageChanged()
{
    QList<GatePtr> gates;
    {
        const VeskMutexLock lock(d->routesMutex);
        gates = d->gates.values();
    }
    for (const GatePtr &gate : gates) {
        if (const CMCallGate::Visit visit(gate); visit)
            visit->languageChanged();
    }
}
