// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMWorker.h"

#include "api/core/Mutex.h"
#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/percent.h"
#include "api/core/vesk.h"
#include "api/nodes/CMRootWorker.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QThread>

#include <algorithm>
#include <deque>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

VESK_LOGGER("Nodes")

namespace {

/// How much of the inbox one wake-up may handle before the thread's timers and sockets get their
/// turn: a single request may block the thread for long.
constexpr int BatchSize = 16;
constexpr qint64 BatchMilliseconds = 5;

using Listeners = std::vector<CMWorker::HandlingListener *>;

/// Copied on write, so that the listeners of a request stay the same from begin() to end().
class HandlingListeners {
public:
    std::shared_ptr<const Listeners> current()
    {
        const VeskMutexLock lock(m_mutex);
        return m_listeners;
    }
    void change(const std::function<void(Listeners &)> &change)
    {
        const VeskMutexLock lock(m_mutex);
        auto changed = std::make_shared<Listeners>(*m_listeners);
        change(*changed);
        m_listeners = std::move(changed);
    }

private:
    VeskMutex m_mutex;
    std::shared_ptr<const Listeners> m_listeners VESK_GUARDED_BY(m_mutex)
        = std::make_shared<const Listeners>();
};

HandlingListeners &handlingListeners()
{
    static auto &listeners = *new HandlingListeners;
    return listeners;
}

/// Exists while a request is handled: notifies the listeners, and has a poll's errors logged at
/// DEBUG.
class Handling {
public:
    explicit Handling(const CMRequest &request)
        : m_listeners(handlingListeners().current())
    {
        if (request.isPoll())
            m_expectedErrors.emplace();
        for (CMWorker::HandlingListener *listener : *m_listeners)
            listener->begin(request.reply().sharedData());
    }
    ~Handling()
    {
        for (CMWorker::HandlingListener *listener : *m_listeners)
            listener->end();
    }
    Q_DISABLE_COPY(Handling)

private:
    const std::shared_ptr<const Listeners> m_listeners;
    std::optional<VeskExpectedErrors> m_expectedErrors;
};

} // namespace

/// What the root routes to in the worker's place. Other threads only ever reach this object, which
/// is complete from before the worker's registration until after its removal; the worker itself may
/// still be under construction then, or have lost its derived class in its destructor.
class CMWorkerInbox : public CMAbstractWorker {
public:
    explicit CMWorkerInbox(CMWorker *worker)
        : m_worker(worker)
        , m_thread(QThread::currentThread())
    {
    }

    void request(CMRequest request) override
    {
        if (isOwnThread() && isOpen())
            call([&] { m_worker->deliver(request); });
        else
            post(std::move(request));
    }
    void post(CMRequest request) override { push({Item::Request, std::move(request), CMPath()}); }
    void connectChange(const CMPath &path) override { push({Item::Connect, CMRequest(), path}); }
    void disconnectChange(const CMPath &path) override
    {
        push({Item::Disconnect, CMRequest(), path});
    }
    void languageChanged() override { push({Item::Language, CMRequest(), CMPath()}); }

    /// Refuses everything from now on and drops what is queued, which answers it with errors.
    void close()
    {
        std::deque<Item> waiting; // destroyed after the lock: an answer may call back
        const VeskMutexLock lock(m_mutex);
        m_open = false;
        waiting.swap(m_items);
    }

    int size() const
    {
        const VeskMutexLock lock(m_mutex);
        return static_cast<int>(m_items.size());
    }
    bool isOwnThread() const { return QThread::currentThread() == m_thread; }
    bool isHandling() const { return m_depth > 0; }

    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User)
            return CMAbstractWorker::event(event);
        takeBatch();
        return true;
    }

private:
    struct Item {
        enum What { Request, Connect, Disconnect, Language } what;
        CMRequest request;
        CMPath path;
    };

    bool isOpen() const
    {
        const VeskMutexLock lock(m_mutex);
        return m_open;
    }

    void push(Item item)
    {
        const VeskMutexLock lock(m_mutex);
        if (!m_open)
            return;
        m_items.push_back(std::move(item));
        wakeUp();
    }

    void wakeUp() VESK_REQUIRES(m_mutex)
    {
        if (m_wokenUp)
            return;
        m_wokenUp = true;
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    void takeBatch()
    {
        QElapsedTimer elapsed;
        elapsed.start();
        VeskMutexLock lock(m_mutex);
        m_wokenUp = false;
        for (int taken = 0; !m_items.empty(); ++taken) {
            if (taken == BatchSize || elapsed.hasExpired(BatchMilliseconds)) {
                wakeUp();
                return;
            }
            {
                const Item item = std::move(m_items.front());
                m_items.pop_front();
                lock.unlock();
                call([&] { handle(item); });
            }
            lock.lock();
        }
    }

    void handle(const Item &item)
    {
        switch (item.what) {
        case Item::Request:
            m_worker->deliver(item.request);
            break;
        case Item::Connect:
            m_worker->handleConnectChange(item.path);
            break;
        case Item::Disconnect:
            m_worker->handleDisconnectChange(item.path);
            break;
        case Item::Language:
            m_worker->handleLanguageChanged();
            break;
        }
    }

    template <class Function>
    void call(Function function)
    {
        ++m_depth;
        function();
        --m_depth;
    }

    CMWorker *const m_worker;
    QThread *const m_thread;
    /// How many handlers are running, one inside another. Own thread only.
    int m_depth = 0;

    mutable VeskMutex m_mutex;
    bool m_open VESK_GUARDED_BY(m_mutex) = true;
    /// Whether an event is posted that takeBatch() has not seen yet.
    bool m_wokenUp VESK_GUARDED_BY(m_mutex) = false;
    std::deque<Item> m_items VESK_GUARDED_BY(m_mutex);
};

CMWorker::CMWorker(const QVariantHash &config, const QString &name)
    : m_config(config)
    , m_name(name)
    , m_inbox(std::make_unique<CMWorkerInbox>(this))
{
    if (CMRootWorker *root = CMRoot())
        root->addWorker(m_name, m_inbox.get());
}

CMWorker::~CMWorker()
{
    stop();
}

void CMWorker::stop()
{
    VESK_ASSERT(m_inbox->isOwnThread());
    VESK_ASSERT(!m_inbox->isHandling());
    if (CMRootWorker *root = CMRoot())
        root->removeWorker(m_inbox.get());
    m_inbox->close();
}

CMPath CMWorker::addPrefix(const QString &relativePath) const
{
    return CMPath::fromEncoded(veskPercentEncode(m_name) + QLatin1Char(':') + relativePath);
}

void CMWorker::request(CMRequest request)
{
    m_inbox->request(std::move(request));
}

void CMWorker::post(CMRequest request)
{
    m_inbox->post(std::move(request));
}

void CMWorker::connectChange(const CMPath &path)
{
    m_inbox->connectChange(path);
}

void CMWorker::disconnectChange(const CMPath &path)
{
    m_inbox->disconnectChange(path);
}

void CMWorker::languageChanged()
{
    m_inbox->languageChanged();
}

void CMWorker::addForeignPath(const CMPath &path)
{
    VESK_ASSERT_OWN_THREAD();
    if (CMRootWorker *root = CMRoot())
        root->addForeignPath(path, m_inbox.get());
}

void CMWorker::removeForeignPath(const CMPath &path)
{
    VESK_ASSERT_OWN_THREAD();
    if (CMRootWorker *root = CMRoot())
        root->removeForeignPath(path, m_inbox.get());
}

void CMWorker::ping(const CMSetDataRequest &request)
{
    VESK_ASSERT_OWN_THREAD();
    request.reply().setValue(request.value());
}

void CMWorker::trace()
{
    VESK_ASSERT_OWN_THREAD();
    VESK_DEBUG("Worker '" << m_name << "': " << m_inbox->size() << " waiting");
}

void CMWorker::handleLanguageChanged() { }

CMWorker::HandlingListener::~HandlingListener() = default;

void CMWorker::addHandlingListener(HandlingListener *listener)
{
    handlingListeners().change([listener](Listeners &listeners) { listeners.push_back(listener); });
}

void CMWorker::removeHandlingListener(HandlingListener *listener)
{
    handlingListeners().change([listener](Listeners &listeners) {
        listeners.erase(std::remove(listeners.begin(), listeners.end(), listener), listeners.end());
    });
}

void CMWorker::deliver(const CMRequest &request)
{
    // Cancelled by the caller while it was queued. A request that writes is carried out all the
    // same: the caller cannot know that it was not.
    if (request.onlyReads() && request.reply().isFinished())
        return;
    const Handling handling(request);
    if (request.kind() == CMRequest::SetData && request.path().prefix() == m_name
        && request.path().base().isEmpty()) {
        const CMSetDataRequest setData(request);
        if (setData.role() == CMPingRole()) {
            ping(setData);
            return;
        }
    }
    if (!handleRequest(request))
        request.reply().setError(CMNoNodeError());
}

const QString &CMPingRole()
{
    static const QString role = QStringLiteral("ping");
    return role;
}
