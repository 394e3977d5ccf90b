#include "api/nodes/CMReply.h"

#include "api/core/vesk.h"
#include "api/nodes/CMContextCall.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <limits>

#if defined(__SANITIZE_THREAD__) || QT_HAS_FEATURE(thread_sanitizer)
#define VESK_THREAD_SANITIZER
#include <sanitizer/tsan_interface.h>
#endif

namespace {

/// Holds a mutex. Qt's libraries are not built for ThreadSanitizer, which therefore must be told
/// what their mutex orders.
class Lock {
public:
    explicit Lock(QMutex *mutex)
        : m_mutex(mutex)
    {
        m_mutex->lock();
        acquired();
    }
    Lock(const Lock &) = delete;
    Lock &operator=(const Lock &) = delete;
    ~Lock()
    {
        releases();
        m_mutex->unlock();
    }

    bool wait(QWaitCondition *condition, const QDeadlineTimer &deadline)
    {
        releases();
        const bool woken = condition->wait(m_mutex, deadline);
        acquired();
        return woken;
    }

private:
#if defined(VESK_THREAD_SANITIZER)
    void acquired()
    {
        __tsan_acquire(m_mutex);
    }
    void releases()
    {
        __tsan_release(m_mutex);
    }
#else
    void acquired() { }
    void releases() { }
#endif

    QMutex *const m_mutex;
};

} // namespace

CMError CMUnansweredError()
{
    CMError error(TrString("CMReply", "The request was not answered."));
    error.insert(CMError::Name(), CMError::UnansweredName());
    return error;
}

CMReplyAbstractData::~CMReplyAbstractData()
{
    for (const std::shared_ptr<CMContextCall> &watcher : m_watchers)
        watcher->close();
}

bool CMReplyAbstractData::isFinished() const
{
    const Lock lock(&m_mutex);
    return m_finished;
}

bool CMReplyAbstractData::waitForFinished(unsigned long milliseconds) const
{
    constexpr auto longest = static_cast<unsigned long>(std::numeric_limits<qint64>::max());
    QDeadlineTimer deadline(QDeadlineTimer::Forever);
    if (milliseconds != ULONG_MAX)
        deadline.setRemainingTime(static_cast<qint64>(std::min(milliseconds, longest)));

    Lock lock(&m_mutex);
    while (!m_finished) {
        if (!lock.wait(&m_condition, deadline))
            break;
    }
    return m_finished;
}

CMError CMReplyAbstractData::error() const
{
    const Lock lock(&m_mutex);
    return m_error;
}

void CMReplyAbstractData::setError(const CMError &error)
{
    finish([this, &error] { m_error = error; });
}

void CMReplyAbstractData::setFinished()
{
    finish([] {});
}

void CMReplyAbstractData::whenFinished(QObject *context, std::function<void()> function)
{
    if (context->thread() == QThread::currentThread() && isFinished()) {
        function();
        return;
    }
    const auto watcher = CMContextCall::create(context, CMContextCall::Once, std::move(function));
    {
        const Lock lock(&m_mutex);
        if (!m_finished) {
            m_watchers.push_back(watcher);
            return;
        }
    }
    watcher->trigger();
}

void CMReplyAbstractData::whenFinished(std::function<void()> function)
{
    {
        const Lock lock(&m_mutex);
        if (!m_finished) {
            VESK_ASSERT(!m_follower);
            m_follower = std::move(function);
            return;
        }
    }
    function();
}

void CMReplyAbstractData::finish(const std::function<void()> &store)
{
    std::vector<std::shared_ptr<CMContextCall>> watchers;
    std::function<void()> follower;
    {
        const Lock lock(&m_mutex);
        if (m_finished)
            return;
        store();
        m_finished = true;
        watchers.swap(m_watchers);
        follower.swap(m_follower);
        m_condition.wakeAll();
    }
    // Whoever waited may have let go of this by now: nothing of it is touched any more.
    for (const std::shared_ptr<CMContextCall> &watcher : watchers)
        watcher->trigger();
    if (follower)
        follower();
}

void CMReplyAbstractData::read(const std::function<void()> &load) const
{
    const Lock lock(&m_mutex);
    load();
}

CMReplyPromise::CMReplyPromise(std::shared_ptr<CMReplyAbstractData> data)
    : m_data(std::move(data))
{
}

CMReplyPromise::~CMReplyPromise()
{
    if (!m_data->isFinished())
        m_data->setError(CMUnansweredError());
}
