#include "api/web/HttpClientEngine.h"

#include "api/core/log.h"
#include "api/core/vesk.h"

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

#ifndef VESK_VERSION
#define VESK_VERSION "0.1.0"
#endif

VESK_LOGGER("Vesk.Http")

namespace {

constexpr long MaxRedirects = 5;
constexpr long ConnectTimeoutMs = 10000;
/// All heads of one exchange together: redirects, interim answers and trailers included.
constexpr std::size_t MaxHeadBytes = 256 * 1024;
constexpr int MaxUrlSize = 64 * 1024;
/// Reserved at most for a body because a Content-Length says so.
constexpr qint64 MaxReservedBytes = 4 * 1024 * 1024;
constexpr std::size_t MaxIdle = 4;
constexpr long MaxKeptConnections = 16;
constexpr long ReceiveBufferBytes = 64 * 1024;

const QEvent::Type deliverEvent = static_cast<QEvent::Type>(QEvent::registerEventType());
const QEvent::Type shutDownEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

/// The engines that live, for shutDownAll(). Never destroyed: engines may outlive static objects.
struct Registry {
    std::mutex mutex;
    /// Guarded by mutex.
    std::vector<HttpClientEngine *> engines;
};

Registry &registry()
{
    static auto &engines = *new Registry;
    return engines;
}

/// Debian's folder of hashed certificates; the variable that OpenSSL's and curl's programs know
/// names another.
QByteArray certificateFolder()
{
    const QByteArray folder = qgetenv("SSL_CERT_DIR");
    return folder.isEmpty() ? QByteArrayLiteral("/etc/ssl/certs") : folder;
}

bool startsWithIgnoringCase(std::string_view text, std::string_view start)
{
    return text.size() >= start.size()
        && qstrnicmp(text.data(), start.data(), static_cast<uint>(start.size())) == 0;
}

/// The URL as it is sent: without its fragment.
QByteArray cacheKeyOf(const VeskUrl &url)
{
    const QByteArray encoded = url.toEncoded();
    const int fragment = encoded.indexOf('#');
    return fragment < 0 ? encoded : encoded.left(fragment);
}

HttpClientStatus statusOf(CURLcode code, const char *message)
{
    switch (code) {
    case CURLE_OK:
        return HttpClientStatus::Success;
    case CURLE_URL_MALFORMAT:
        return HttpClientStatus::InvalidRequest;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return HttpClientStatus::ResolveFailed;
    case CURLE_COULDNT_CONNECT:
    case CURLE_INTERFACE_FAILED:
    case CURLE_PROXY:
        return HttpClientStatus::ConnectFailed;
    case CURLE_OPERATION_TIMEDOUT:
        return HttpClientStatus::TimedOut;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_INVALIDCERTSTATUS:
    case CURLE_USE_SSL_FAILED:
    case CURLE_SSL_ENGINE_INITFAILED:
        return HttpClientStatus::TlsFailed;
    case CURLE_RECV_ERROR:
        // libcurl's code for a broken chunk as well as for a broken connection.
        return std::string_view(message).find("chunk") == std::string_view::npos
            ? HttpClientStatus::ConnectionLost
            : HttpClientStatus::ProtocolError;
    case CURLE_SEND_ERROR:
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_HTTP2_STREAM:
        return HttpClientStatus::ConnectionLost;
    case CURLE_TOO_MANY_REDIRECTS:
        return HttpClientStatus::TooManyRedirects;
    default:
        return HttpClientStatus::ProtocolError;
    }
}

} // namespace

/// One exchange and its libcurl handle, which it keeps for the next.
class HttpTransfer {
public:
    HttpTransfer(HttpClient::HttpVersion version, bool followRedirects);
    ~HttpTransfer();
    Q_DISABLE_COPY(HttpTransfer)

    void prepare(const HttpClientOptions &options);
    HttpClientStatus status(CURLcode code) const;
    HttpCacheHeaders cacheHeaders() const;
    long info(CURLINFO what) const;
    bool bodyTooLong() const { return m_sizeLimit > 0 && body.size() > m_sizeLimit; }
    /// Forgets the exchange.
    void clear();

    CURL *const easy = curl_easy_init();
    VeskUrl url;
    QByteArray cacheKey;
    HttpClient::Function function;
    bool isPost = false;
    QByteArray sentBody;
    QByteArray body;
    /// What the cache holds and asks the server to confirm.
    std::optional<HttpCache::Entry> conditional;
    qint64 requestedAt = 0;
    quint64 cacheRemovals = 0;
    QElapsedTimer clock;

private:
    void setUp();
    static std::size_t onHead(char *data, std::size_t, std::size_t size, void *self);
    static std::size_t onBody(char *data, std::size_t, std::size_t size, void *self);
    bool takeHeadLine(std::string_view line);
    bool mayFollow(std::string_view location);
    bool takeBody(const char *data, std::size_t size);
    bool fail(HttpClientStatus why);
    void setHeaders();

    const HttpClient::HttpVersion m_version;
    const bool m_followRedirects;
    std::shared_ptr<const HttpSettings> m_settings;
    curl_slist *m_headers = nullptr;
    int m_sizeLimit = 0;
    std::size_t m_headBytes = 0;
    bool m_isRedirect = false;
    bool m_isHttps = false;
    /// Why a callback ended the exchange; Success while none did.
    HttpClientStatus m_failure = HttpClientStatus::Success;
    char m_message[CURL_ERROR_SIZE] = {};
};

HttpTransfer::HttpTransfer(HttpClient::HttpVersion version, bool followRedirects)
    : m_version(version)
    , m_followRedirects(followRedirects)
{
    VESK_ASSERT(easy);
    setUp();
}

/// The options that are the same for every exchange.
void HttpTransfer::setUp()
{
    const auto set = [this](CURLoption option, auto value) {
        VESK_ASSERT(curl_easy_setopt(easy, option, value) == CURLE_OK);
    };
    set(CURLOPT_PRIVATE, static_cast<void *>(this));
    set(CURLOPT_ERRORBUFFER, m_message);
    set(CURLOPT_HEADERFUNCTION, &HttpTransfer::onHead);
    set(CURLOPT_HEADERDATA, static_cast<void *>(this));
    set(CURLOPT_WRITEFUNCTION, &HttpTransfer::onBody);
    set(CURLOPT_WRITEDATA, static_cast<void *>(this));
    // A wish: a handle that still has its buffer refuses another size.
    curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, ReceiveBufferBytes);
    set(CURLOPT_NOSIGNAL, 1L);
    // A name server that does not answer must not hold up this thread when a time-out ends the
    // wait.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_USERAGENT, "Vesk/" VESK_VERSION);
    set(CURLOPT_ACCEPT_ENCODING, "");
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_HTTP_VERSION,
        m_version == HttpClient::Http1 ? long(CURL_HTTP_VERSION_1_1)
                                       : long(CURL_HTTP_VERSION_2TLS));
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    set(CURLOPT_FOLLOWLOCATION, m_followRedirects ? 1L : 0L);
    set(CURLOPT_MAXREDIRS, MaxRedirects);
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    set(CURLOPT_SSLVERSION, long(CURL_SSLVERSION_TLSv1_2));
    // The hashed folder alone: reading the one big file takes 16 ms for every connection.
    set(CURLOPT_CAINFO, static_cast<const char *>(nullptr));
    set(CURLOPT_CAPATH, certificateFolder().constData());
}

HttpTransfer::~HttpTransfer()
{
    curl_easy_cleanup(easy);
    curl_slist_free_all(m_headers);
}

void HttpTransfer::prepare(const HttpClientOptions &options)
{
    clock.start();
    m_sizeLimit = std::max(0, options.readSizeLimit());
    m_isHttps = url.scheme().compare(QLatin1String("https"), Qt::CaseInsensitive) == 0;
    const long timeout = std::max(0, options.timeoutMs());
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, timeout);
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, ConnectTimeoutMs);
    curl_easy_setopt(easy, CURLOPT_URL, url.toEncoded().constData());
    if (isPost) {
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(sentBody.size()));
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, sentBody.constData());
    } else {
        curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);
    }
    setHeaders();

    m_settings = HttpSettings::current();
    curl_easy_setopt(easy, CURLOPT_CONNECT_TO, m_settings->connectTo);
    if (!m_settings->certificates.isEmpty()) {
        curl_blob certificates {const_cast<char *>(m_settings->certificates.constData()),
            std::size_t(m_settings->certificates.size()), CURL_BLOB_NOCOPY};
        curl_easy_setopt(easy, CURLOPT_CAINFO_BLOB, &certificates);
    }
}

void HttpTransfer::setHeaders()
{
    curl_slist_free_all(m_headers);
    m_headers = nullptr;
    const auto add
        = [this](const char *header) { m_headers = curl_slist_append(m_headers, header); };
    if (isPost) {
        // Without a value the header is left out: no server is asked whether it wants the body.
        add("Expect:");
        if (sentBody.isEmpty())
            add("Content-Type:");
    }
    if (conditional && !conditional->etag.isEmpty())
        add(("If-None-Match: " + conditional->etag).constData());
    if (conditional && !conditional->lastModified.isEmpty())
        add(("If-Modified-Since: " + conditional->lastModified).constData());
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, m_headers);
}

std::size_t HttpTransfer::onHead(char *data, std::size_t, std::size_t size, void *self)
{
    return static_cast<HttpTransfer *>(self)->takeHeadLine({data, size}) ? size : 0;
}

bool HttpTransfer::takeHeadLine(std::string_view line)
{
    m_headBytes += line.size();
    if (m_headBytes > MaxHeadBytes)
        return fail(HttpClientStatus::ProtocolError);
    if (!m_followRedirects)
        return true;
    if (startsWithIgnoringCase(line, "HTTP/")) {
        const auto blank = line.find(' ');
        m_isRedirect = blank != std::string_view::npos && line.substr(blank + 1, 1) == "3";
    } else if (m_isRedirect && startsWithIgnoringCase(line, "Location:")) {
        // Of several, libcurl follows the first.
        m_isRedirect = false;
        return mayFollow(line.substr(sizeof "Location:" - 1));
    }
    return true;
}

/// A redirect must not leave http and https, nor take to plain http what was asked for over TLS.
bool HttpTransfer::mayFollow(std::string_view location)
{
    const auto begin = location.find_first_not_of(" \t");
    if (begin == std::string_view::npos)
        return true;
    location.remove_prefix(begin);
    const auto colon = location.find(':');
    if (colon == std::string_view::npos || location.find_first_of("/?#") < colon)
        return true;
    const std::string_view scheme = location.substr(0, colon);
    const bool isHttps = scheme.size() == 5 && startsWithIgnoringCase(scheme, "https");
    const bool isHttp = scheme.size() == 4 && startsWithIgnoringCase(scheme, "http");
    if (!isHttps && (!isHttp || m_isHttps))
        return fail(HttpClientStatus::TooManyRedirects);
    m_isHttps = isHttps;
    return true;
}

std::size_t HttpTransfer::onBody(char *data, std::size_t, std::size_t size, void *self)
{
    // Fewer bytes than given are an error to libcurl, but none given are none taken.
    return static_cast<HttpTransfer *>(self)->takeBody(data, size) ? size : CURL_WRITEFUNC_ERROR;
}

bool HttpTransfer::takeBody(const char *data, std::size_t size)
{
    const qint64 limit = m_sizeLimit > 0 ? m_sizeLimit : std::numeric_limits<int>::max() / 2;
    if (body.isEmpty()) {
        curl_off_t announced = -1;
        curl_header *encoding = nullptr;
        curl_easy_getinfo(easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced);
        // The length of an encoded body says little about the decoded one.
        if (announced > 0
            && curl_easy_header(easy, "Content-Encoding", 0, CURLH_HEADER, -1, &encoding)
                != CURLHE_OK) {
            if (announced > limit)
                return fail(HttpClientStatus::TooLarge);
            body.reserve(static_cast<int>(std::min<qint64>(announced, MaxReservedBytes)));
        }
    }
    if (static_cast<qint64>(size) > limit - body.size())
        return fail(HttpClientStatus::TooLarge);
    body.append(data, static_cast<int>(size));
    return true;
}

bool HttpTransfer::fail(HttpClientStatus why)
{
    m_failure = why;
    return false;
}

HttpClientStatus HttpTransfer::status(CURLcode code) const
{
    if (m_failure != HttpClientStatus::Success)
        return m_failure;
    // The URL that was asked for can be read, so this one came with a redirect.
    if (code == CURLE_URL_MALFORMAT && info(CURLINFO_REDIRECT_COUNT) > 0)
        return HttpClientStatus::ProtocolError;
    return statusOf(code, m_message);
}

long HttpTransfer::info(CURLINFO what) const
{
    long value = 0;
    curl_easy_getinfo(easy, what, &value);
    return value;
}

HttpCacheHeaders HttpTransfer::cacheHeaders() const
{
    const auto read = [this](const char *name) {
        QByteArray joined;
        curl_header *header = nullptr;
        for (std::size_t i = 0;
             curl_easy_header(easy, name, i, CURLH_HEADER, -1, &header) == CURLHE_OK; ++i)
            joined += (i > 0 ? ", " : "") + QByteArray(header->value);
        return joined;
    };
    return {read("Cache-Control"), read("Expires"), read("Date"), read("Age"), read("Vary"),
        read("ETag"), read("Last-Modified")};
}

void HttpTransfer::clear()
{
    // libcurl counts the kept connections that turned out dead per handle, and gives up an exchange
    // at the fifth, however many went well in between: only a reset starts the count anew.
    curl_easy_reset(easy);
    setUp();
    m_settings.reset();
    url = VeskUrl();
    cacheKey = QByteArray();
    isPost = false;
    function = nullptr;
    sentBody = QByteArray();
    body = QByteArray();
    conditional.reset();
    m_headBytes = 0;
    m_isRedirect = false;
    m_failure = HttpClientStatus::Success;
    m_message[0] = 0;
}

HttpClientEngine::HttpClientEngine(QObject *parent, HttpClient::HttpVersion version,
    bool followRedirects, HttpCache::Clock cacheClock)
    : QObject(parent)
    , m_version(version)
    , m_followRedirects(followRedirects)
    , m_cache(std::move(cacheClock))
{
    const std::lock_guard<std::mutex> lock(registry().mutex);
    registry().engines.push_back(this);
}

HttpClientEngine::~HttpClientEngine()
{
    {
        const std::lock_guard<std::mutex> lock(registry().mutex);
        auto &engines = registry().engines;
        engines.erase(std::find(engines.begin(), engines.end(), this));
    }
    m_idle.clear();
    if (m_multi)
        curl_multi_cleanup(m_multi);
}

void HttpClientEngine::shutDownAll()
{
    const std::lock_guard<std::mutex> lock(registry().mutex);
    for (HttpClientEngine *engine : registry().engines) {
        engine->m_closed = true;
        QCoreApplication::postEvent(engine, new QEvent(shutDownEvent));
    }
}

void HttpClientEngine::requireOwnThread() const
{
    // A client that outlived its thread may be destroyed by whoever has it.
    VESK_ASSERT(QThread::currentThread() == thread() || !thread() || thread()->isFinished());
}

/// Ends at once what cannot be sent. Returns whether it did.
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
    VESK_DEBUG(url << ": " << status << ", not sent");
    finish(std::move(done), HttpClientResult(url, status, 0, {}));
    postDelivery();
    return true;
}

void HttpClientEngine::get(
    const VeskUrl &url, const HttpClientOptions &options, HttpClient::Function done)
{
    requireOwnThread();
    if (refuse(url, done))
        return;
    QByteArray key;
    std::optional<HttpCache::Entry> kept;
    if (m_cache.isEnabled()) {
        key = cacheKeyOf(url);
        kept = m_cache.find(key);
    }
    if (kept && kept->fresh) {
        const bool fits
            = options.readSizeLimit() <= 0 || kept->body.size() <= options.readSizeLimit();
        VESK_DEBUG("GET " << url << ": from the cache, " << kept->body.size() << " bytes");
        finish(std::move(done),
            fits ? HttpClientResult(url, HttpClientStatus::Success, 200, kept->body)
                 : HttpClientResult(url, HttpClientStatus::TooLarge, 200, {}));
        postDelivery();
        return;
    }
    auto transfer = takeTransfer();
    transfer->url = url;
    transfer->function = std::move(done);
    transfer->cacheKey = key;
    transfer->conditional = std::move(kept);
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
    VESK_ASSERT(curl_multi_add_handle(m_multi, easy) == CURLM_OK);
    // The request leaves now, not when the event loop comes round again.
    drive(CURL_SOCKET_TIMEOUT, 0);
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
    // CURL_POLL_IN, _OUT and _INOUT are bits; _REMOVE has others.
    const bool removed = what == CURL_POLL_REMOVE;
    Watch &watch = engine->m_watches[socket];
    engine->watch(watch.read, socket, false, !removed && (what & CURL_POLL_IN));
    engine->watch(watch.write, socket, true, !removed && (what & CURL_POLL_OUT));
    return 0;
}

/// A notifier that is no longer wanted is off at once, since its descriptor's number may soon mean
/// another socket, and stays for that: making one costs more than the rest of a short exchange.
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
    m_runNow = milliseconds == 0;
    m_deadline = -1;
    if (milliseconds <= 0)
        return;
    m_deadline = m_clock.elapsed() + milliseconds;
    if (!m_timer.isActive() || m_timerEnd > m_deadline) {
        m_timer.start(static_cast<int>(std::min<long>(milliseconds, 3600 * 1000)), this);
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

/// Lets libcurl work on \a socket, or on what its time-outs are for, and takes what has ended.
void HttpClientEngine::drive(curl_socket_t socket, int mask)
{
    constexpr int MostRounds = 16;
    int running = 0;
    m_runNow = false;
    curl_multi_socket_action(m_multi, socket, mask, &running);
    collect();
    for (int round = 0; m_runNow; ++round) {
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
        // The message does not outlive the handle's removal.
        const CURLcode code = message->data.result;
        CURL *const easy = message->easy_handle;
        char *pointer = nullptr;
        curl_easy_getinfo(easy, CURLINFO_PRIVATE, &pointer);
        finish(*reinterpret_cast<HttpTransfer *>(pointer), code);
    }
}

void HttpClientEngine::finish(HttpTransfer &transfer, CURLcode curlCode)
{
    HttpClientStatus status = transfer.status(curlCode);
    int code = static_cast<int>(transfer.info(CURLINFO_RESPONSE_CODE));
    const char *source = "";
    if (!transfer.cacheKey.isNull() && m_cache.isEnabled())
        useCache(transfer, status, code);
    if (status == HttpClientStatus::Success && code == 304 && transfer.conditional) {
        source = ", from the cache, confirmed";
        code = 200;
        transfer.body = transfer.conditional->body;
    }
    if (transfer.bodyTooLong())
        status = HttpClientStatus::TooLarge;
    if (status != HttpClientStatus::Success)
        transfer.body = QByteArray();
    VESK_DEBUG((transfer.isPost ? "POST " : "GET ")
        << transfer.url << ": " << status << ", code " << code << ", " << transfer.body.size()
        << " bytes in " << transfer.clock.elapsed() << " ms" << source);
    finish(
        std::move(transfer.function), HttpClientResult(transfer.url, status, code, transfer.body));

    curl_multi_remove_handle(m_multi, transfer.easy);
    const auto it = std::find_if(m_active.begin(), m_active.end(),
        [&transfer](const auto &active) { return active.get() == &transfer; });
    // A handle of a failed exchange may be left in any state.
    if (curlCode == CURLE_OK && m_idle.size() < MaxIdle) {
        transfer.clear();
        m_idle.splice(m_idle.end(), m_active, it);
    } else {
        m_active.erase(it);
    }
}

void HttpClientEngine::useCache(HttpTransfer &transfer, HttpClientStatus status, int code)
{
    // Whatever came of it: the server may have done it.
    if (transfer.isPost)
        m_cache.remove(transfer.cacheKey);
    else if (status != HttpClientStatus::Success || transfer.cacheRemovals != m_cache.removals())
        return;
    else if (code == 304 && transfer.conditional)
        m_cache.refresh(transfer.cacheKey, transfer.cacheHeaders(), *transfer.conditional,
            transfer.requestedAt);
    else if (code == 200 && transfer.info(CURLINFO_REDIRECT_COUNT) == 0)
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
    QCoreApplication::postEvent(this, new QEvent(deliverEvent));
}

/// Calls the functions of what has ended. Any of them may destroy the client and with it this.
void HttpClientEngine::deliver()
{
    const QPointer<HttpClientEngine> self(this);
    // What these functions cause to end is for the next turn of the event loop.
    for (std::size_t count = m_finished.size(); count > 0 && self && !m_finished.empty(); --count) {
        const Finished finished = std::move(m_finished.front());
        m_finished.pop_front();
        if (finished.function)
            finished.function(finished.result);
    }
    if (self && !m_finished.empty())
        postDelivery();
}

bool HttpClientEngine::event(QEvent *event)
{
    if (event->type() == deliverEvent) {
        m_deliveryPosted = false;
        deliver();
        return true;
    }
    if (event->type() == shutDownEvent) {
        cancelAll();
        deliver();
        return true;
    }
    return QObject::event(event);
}

/// Turns all that is under way, or ended and not yet told, into Cancelled.
void HttpClientEngine::cancelAll()
{
    for (Finished &finished : m_finished)
        finished.result
            = HttpClientResult(finished.result.url(), HttpClientStatus::Cancelled, 0, QByteArray());
    for (const auto &transfer : m_active) {
        curl_multi_remove_handle(m_multi, transfer->easy);
        VESK_DEBUG((transfer->isPost ? "POST " : "GET ") << transfer->url << ": cancelled");
        finish(std::move(transfer->function),
            HttpClientResult(transfer->url, HttpClientStatus::Cancelled, 0, QByteArray()));
    }
    m_active.clear();
}

void HttpClientEngine::close()
{
    requireOwnThread();
    m_closed = true;
    cancelAll();
    while (!m_finished.empty())
        deliver();
}
