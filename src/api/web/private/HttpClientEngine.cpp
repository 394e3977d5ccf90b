// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/private/HttpClientEngine.h"

#include "api/core/Mutex.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/web/private/HttpTransfer.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QSocketNotifier>
#include <QThread>

#include <algorithm>
#include <limits>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

VESK_LOGGER("Vesk.Http")

namespace {

constexpr int MaxUrlSize = 64 * 1024;
constexpr std::size_t MaxIdle = 4;
constexpr long MaxKeptConnections = 16;

const QEvent::Type DeliverEvent = static_cast<QEvent::Type>(QEvent::registerEventType());
const QEvent::Type ShutDownEvent = static_cast<QEvent::Type>(QEvent::registerEventType());
const QEvent::Type AbandonEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

/// All existing engines, for shutDownAll() and abandonReading(). Never destroyed, because engines
/// may outlive static objects.
struct Registry {
    VeskMutex mutex;
    std::vector<HttpClientEngine *> engines VESK_GUARDED_BY(mutex);
};

Registry &registry()
{
    static auto &theRegistry = *new Registry;
    return theRegistry;
}

/// Needs no lock: set before the first engine exists, constant afterwards.
std::function<void()> &activityListener()
{
    static auto &listener = *new std::function<void()>;
    return listener;
}

/// Needs no lock, like activityListener().
HttpClient::ExchangeListener &exchangeListener()
{
    static auto &listener = *new HttpClient::ExchangeListener;
    return listener;
}

void tellActivity()
{
    if (activityListener())
        activityListener()();
}

/// The URL as it is sent, without its fragment.
QByteArray cacheKeyOf(const VeskUrl &url)
{
    const QByteArray encoded = url.toEncoded();
    const int fragment = encoded.indexOf('#');
    return fragment < 0 ? encoded : encoded.left(fragment);
}

} // namespace

HttpClientEngine::HttpClientEngine(
    QObject *parent, HttpClient::HttpVersion version, bool followRedirects)
    : QObject(parent)
    , m_version(version)
    , m_followRedirects(followRedirects)
{
    Registry &all = registry();
    const VeskMutexLock lock(all.mutex);
    all.engines.push_back(this);
}

HttpClientEngine::~HttpClientEngine()
{
    {
        Registry &all = registry();
        const VeskMutexLock lock(all.mutex);
        all.engines.erase(std::find(all.engines.begin(), all.engines.end(), this));
    }
    m_idle.clear();
    if (m_multi)
        curl_multi_cleanup(m_multi);
}

void HttpClientEngine::shutDownAll()
{
    Registry &all = registry();
    const VeskMutexLock lock(all.mutex);
    for (HttpClientEngine *engine : all.engines) {
        // New exchanges are refused from now on; the event cancels the current ones on the engine's
        // thread.
        engine->m_closed = true;
        QCoreApplication::postEvent(engine, new QEvent(ShutDownEvent));
    }
}

void HttpClientEngine::abandonReading(bool abandon)
{
    Registry &all = registry();
    const VeskMutexLock lock(all.mutex);
    for (HttpClientEngine *engine : all.engines) {
        engine->m_abandonReading = abandon;
        if (abandon)
            QCoreApplication::postEvent(engine, new QEvent(AbandonEvent));
    }
}

void HttpClientEngine::setActivityListener(std::function<void()> listener)
{
    activityListener() = std::move(listener);
}

void HttpClientEngine::setExchangeListener(HttpClient::ExchangeListener listener)
{
    exchangeListener() = std::move(listener);
}

void HttpClientEngine::requireOwnThread() const
{
    // A client that outlives its thread may be destroyed on any other.
    VESK_ASSERT(QThread::currentThread() == thread() || !thread() || thread()->isFinished());
}

/// Completes a request that cannot be sent; returns whether it did.
bool HttpClientEngine::refuse(const VeskUrl &url, HttpClient::Function &done)
{
    HttpClientStatus status = HttpClientStatus::Success;
    const QString scheme = url.scheme();
    if (m_closed)
        status = HttpClientStatus::Cancelled;
    else if ((scheme.compare(QLatin1String("http"), Qt::CaseInsensitive) != 0
                 && scheme.compare(QLatin1String("https"), Qt::CaseInsensitive) != 0)
        || url.host().isEmpty() || url.toString().size() > MaxUrlSize)
        status = HttpClientStatus::InvalidRequest;
    else
        return false;
    dontSend(url, status, done);
    return true;
}

void HttpClientEngine::dontSend(
    const VeskUrl &url, HttpClientStatus status, HttpClient::Function &done)
{
    VESK_DEBUG(url << ": " << status << ", not sent");
    finish(std::move(done), HttpClientResult(url, status, 0, {}));
    postDelivery();
}

void HttpClientEngine::get(
    const VeskUrl &url, const HttpClientOptions &options, HttpClient::Function done)
{
    requireOwnThread();
    if (refuse(url, done))
        return;
    QByteArray key;
    std::optional<QByteArray> cached;
    if (options.useCache()) {
        if (m_abandonReading)
            return dontSend(url, HttpClientStatus::Cancelled, done);
        key = cacheKeyOf(url);
        if (m_breaker.isOpen(key))
            return dontSend(url, HttpClientStatus::TimedOut, done);
        cached = m_cache.find(key);
    }
    if (cached) {
        const bool fits = options.readSizeLimit() <= 0 || cached->size() <= options.readSizeLimit();
        VESK_DEBUG("GET " << url << ": from the cache, " << cached->size() << " bytes");
        finish(std::move(done),
            fits ? HttpClientResult(url, HttpClientStatus::Success, 200, *cached)
                 : HttpClientResult(url, HttpClientStatus::TooLarge, 200, {}));
        postDelivery();
        return;
    }
    auto transfer = takeTransfer();
    transfer->url = url;
    transfer->function = std::move(done);
    transfer->onlyReads = options.useCache();
    transfer->cacheKey = key;
    start(std::move(transfer), options);
}

void HttpClientEngine::post(const VeskUrl &url, const QByteArray &body,
    const HttpClientOptions &options, HttpClient::Function done)
{
    requireOwnThread();
    if (refuse(url, done))
        return;
    auto transfer = takeTransfer();
    transfer->url = url;
    transfer->function = std::move(done);
    transfer->isPost = true;
    transfer->sentBody = body;
    if (m_cache.isEnabled())
        transfer->cacheKey = cacheKeyOf(url);
    start(std::move(transfer), options);
}

std::unique_ptr<HttpTransfer> HttpClientEngine::takeTransfer()
{
    loadCurl();
    if (m_idle.empty())
        return std::make_unique<HttpTransfer>(m_version, m_followRedirects);
    auto transfer = std::move(m_idle.back());
    m_idle.pop_back();
    return transfer;
}

void HttpClientEngine::start(
    std::unique_ptr<HttpTransfer> transfer, const HttpClientOptions &options)
{
    if (m_cache.isEnabled()) {
        transfer->requestedAt = m_cache.now();
        transfer->cacheRemovals = m_cache.removals();
    }
    transfer->prepare(options);
    CURL *const easy = transfer->easy;
    m_active.push_back(std::move(transfer));
    tellActivity();
    VESK_ASSERT(curl_multi_add_handle(m_multi, easy) == CURLM_OK);
    // Send the request now instead of in the event loop's next iteration.
    drive(CURL_SOCKET_TIMEOUT, 0);
    // Never call a function from within get() or post().
    if (!m_finished.empty())
        postDelivery();
}

void HttpClientEngine::loadCurl()
{
    if (m_multi)
        return;
    static std::once_flag once;
    std::call_once(once, [] { VESK_ASSERT(curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK); });
    m_clock.start();
    m_multi = curl_multi_init();
    VESK_ASSERT(m_multi);
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETFUNCTION, &HttpClientEngine::onSocketWanted);
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERFUNCTION, &HttpClientEngine::onTimeoutWanted);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERDATA, this);
    curl_multi_setopt(m_multi, CURLMOPT_MAXCONNECTS, MaxKeptConnections);
}

int HttpClientEngine::onSocketWanted(CURL *, curl_socket_t socket, int what, void *self, void *)
{
    auto *const engine = static_cast<HttpClientEngine *>(self);
    // CURL_POLL_IN, _OUT and _INOUT are masks; _REMOVE is a value of its own.
    const bool removed = what == CURL_POLL_REMOVE;
    Watch &watch = engine->m_watches[socket];
    engine->watch(watch.read, socket, false, !removed && (what & CURL_POLL_IN));
    engine->watch(watch.write, socket, true, !removed && (what & CURL_POLL_OUT));
    return 0;
}

/// Enables or disables a notifier. It is disabled as soon as libcurl no longer needs it, since the
/// descriptor's number may soon belong to another socket. The object is kept for that socket:
/// creating one costs more than the rest of a short exchange.
void HttpClientEngine::watch(QSocketNotifier *&notifier, int socket, bool forWriting, bool wanted)
{
    if (notifier) {
        notifier->setEnabled(wanted);
    } else if (wanted) {
        notifier = new QSocketNotifier(
            socket, forWriting ? QSocketNotifier::Write : QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this,
            [this, socket, mask = forWriting ? CURL_CSELECT_OUT : CURL_CSELECT_IN] {
                drive(socket, mask);
                deliver();
            });
    }
}

int HttpClientEngine::onTimeoutWanted(CURLM *, long milliseconds, void *self)
{
    static_cast<HttpClientEngine *>(self)->setDeadline(milliseconds);
    return 0;
}

void HttpClientEngine::setDeadline(long milliseconds)
{
    // libcurl must not be called from its own callback, so a timeout of 0 only tells drive() to
    // call it again. A negative one cancels.
    m_runNow = milliseconds == 0;
    m_deadline = -1;
    if (milliseconds <= 0)
        return;
    m_deadline = m_clock.elapsed() + milliseconds;
    if (!m_timer.isActive() || m_timerEnd > m_deadline) {
        m_timer.start(static_cast<int>(std::min<long>(milliseconds, 3600L * 1000)), this);
        m_timerEnd = m_deadline;
    }
}

void HttpClientEngine::timerEvent(QTimerEvent *)
{
    m_timer.stop();
    if (m_deadline < 0)
        return;
    if (const qint64 left = m_deadline - m_clock.elapsed(); left > 0) {
        setDeadline(static_cast<long>(left));
        return;
    }
    m_deadline = -1;
    drive(CURL_SOCKET_TIMEOUT, 0);
    deliver();
}

/// Lets libcurl handle events on \a socket, or its timeouts, and collects the finished exchanges.
void HttpClientEngine::drive(curl_socket_t socket, int mask)
{
    constexpr int MostRounds = 16;
    int running = 0;
    m_runNow = false;
    curl_multi_socket_action(m_multi, socket, mask, &running);
    collect();
    for (int round = 0; m_runNow; ++round) {
        // Let the event loop run, whatever libcurl wants.
        if (round == MostRounds) {
            setDeadline(1);
            break;
        }
        m_runNow = false;
        curl_multi_socket_action(m_multi, CURL_SOCKET_TIMEOUT, 0, &running);
        collect();
    }
}

void HttpClientEngine::collect()
{
    int left = 0;
    while (const CURLMsg *message = curl_multi_info_read(m_multi, &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        // The message becomes invalid when the handle is removed.
        const CURLcode code = message->data.result;
        CURL *const easy = message->easy_handle;
        char *pointer = nullptr;
        curl_easy_getinfo(easy, CURLINFO_PRIVATE, &pointer);
        finish(*reinterpret_cast<HttpTransfer *>(pointer), code);
    }
}

void HttpClientEngine::finish(HttpTransfer &transfer, CURLcode curlCode)
{
    const HttpClientStatus status = transfer.status(curlCode);
    const int code = static_cast<int>(transfer.info(CURLINFO_RESPONSE_CODE));
    if (transfer.onlyReads && status == HttpClientStatus::TimedOut)
        m_breaker.timedOut(transfer.cacheKey);
    else if (transfer.onlyReads && status == HttpClientStatus::Success)
        m_breaker.answered(transfer.cacheKey);
    if (!transfer.cacheKey.isNull() && m_cache.isEnabled())
        updateCache(transfer, status, code);
    if (status != HttpClientStatus::Success)
        transfer.body = QByteArray();
    VESK_DEBUG((transfer.isPost ? "POST " : "GET ")
        << transfer.url << ": " << status << ", code " << code << ", " << transfer.body.size()
        << " bytes in " << transfer.clock.elapsed() << " ms");
    finish(
        std::move(transfer.function), HttpClientResult(transfer.url, status, code, transfer.body));

    curl_multi_remove_handle(m_multi, transfer.easy);
    const auto it = std::find_if(m_active.begin(), m_active.end(),
        [&transfer](const auto &active) { return active.get() == &transfer; });
    tellActivity();
    // Do not reuse the handle of a failed exchange, which may be in any state.
    if (curlCode == CURLE_OK && m_idle.size() < MaxIdle) {
        transfer.clear();
        m_idle.splice(m_idle.end(), m_active, it);
    } else {
        m_active.erase(it);
    }
}

void HttpClientEngine::updateCache(const HttpTransfer &transfer, HttpClientStatus status, int code)
{
    // A POST invalidates its URL (RFC 9111, section 4.4), even when it failed: the server may have
    // processed it. A redirected response belongs to another URL and is not stored.
    if (transfer.isPost)
        m_cache.remove(transfer.cacheKey);
    else if (status == HttpClientStatus::Success && code == 200
        && transfer.cacheRemovals == m_cache.removals()
        && transfer.info(CURLINFO_REDIRECT_COUNT) == 0)
        m_cache.store(
            transfer.cacheKey, transfer.cacheHeaders(), transfer.body, transfer.requestedAt);
}

void HttpClientEngine::finish(HttpClient::Function &&function, HttpClientResult &&result)
{
    m_finished.push_back({std::move(function), std::move(result)});
}

void HttpClientEngine::postDelivery()
{
    if (m_deliveryPosted)
        return;
    m_deliveryPosted = true;
    QCoreApplication::postEvent(this, new QEvent(DeliverEvent));
}

/// Calls the functions of finished exchanges. Each of them may destroy the client and with it this
/// engine.
void HttpClientEngine::deliver()
{
    const QPointer<HttpClientEngine> self(this);
    // Exchanges that finish because of these functions are delivered in the event loop's next
    // iteration.
    for (std::size_t count = m_finished.size(); count > 0 && self && !m_finished.empty(); --count) {
        const Finished finished = std::move(m_finished.front());
        m_finished.pop_front();
        if (exchangeListener())
            exchangeListener()(finished.result);
        if (finished.function)
            finished.function(finished.result);
    }
    if (self && !m_finished.empty())
        postDelivery();
}

bool HttpClientEngine::event(QEvent *event)
{
    if (event->type() == DeliverEvent) {
        m_deliveryPosted = false;
        deliver();
        return true;
    }
    if (event->type() == ShutDownEvent) {
        cancelAll();
        deliver();
        return true;
    }
    if (event->type() == AbandonEvent) {
        if (m_abandonReading)
            cancelActive(true);
        deliver();
        return true;
    }
    return QObject::event(event);
}

/// Ends every exchange that is in progress or not yet delivered with Cancelled.
void HttpClientEngine::cancelAll()
{
    for (Finished &finished : m_finished)
        finished.result
            = HttpClientResult(finished.result.url(), HttpClientStatus::Cancelled, 0, QByteArray());
    cancelActive(false);
}

void HttpClientEngine::cancelActive(bool onlyReading)
{
    for (auto it = m_active.begin(); it != m_active.end();) {
        HttpTransfer &transfer = **it;
        if (onlyReading && !transfer.onlyReads) {
            ++it;
            continue;
        }
        curl_multi_remove_handle(m_multi, transfer.easy);
        VESK_DEBUG((transfer.isPost ? "POST " : "GET ") << transfer.url << ": cancelled");
        finish(std::move(transfer.function),
            HttpClientResult(transfer.url, HttpClientStatus::Cancelled, 0, QByteArray()));
        it = m_active.erase(it);
    }
}

void HttpClientEngine::close()
{
    requireOwnThread();
    m_closed = true;
    cancelAll();
    while (!m_finished.empty())
        deliver();
}
