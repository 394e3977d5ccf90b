// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/HttpStream.h"

#include "api/core/vesk.h"
#include "api/web/ConnectionGuard.h"
#include "api/web/HttpSettings.h"
#include "host/player/PlayerText.h"

#include <algorithm>
#include <curl/curl.h>
#include <optional>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

/// The longest poll, and thus the interval of HttpStreamReceiver::goOn().
constexpr Milliseconds LongestWait {500};
/// How long the socket is left unread while the receiver has plenty: a few large reads cost less
/// than many small ones.
constexpr Milliseconds Rest {500};
constexpr long ReceiveBufferBytes = 16 * 1024;
/// A day; a larger Retry-After is a mistake.
constexpr curl_off_t MaxRetryAfterSeconds = 24 * 3600;
/// Above any real icy-metaint.
constexpr int MaxIcyInterval = 16 * 1024 * 1024;

/// Which part of the response is awaited.
enum class Stage { Waiting, InHead, AfterHead, InBody };

TrString timeoutProblem(Stage stage)
{
    switch (stage) {
    case Stage::InHead:
        return playerText(
            QT_TRANSLATE_NOOP("Player", "The head of the stream's server's answer never ends."));
    case Stage::AfterHead:
        return playerText(QT_TRANSLATE_NOOP("Player", "The stream's server sends nothing."));
    case Stage::InBody:
        return playerText(QT_TRANSLATE_NOOP("Player", "The stream's server has stopped sending."));
    case Stage::Waiting:
        break;
    }
    return playerText(QT_TRANSLATE_NOOP("Player", "The stream's server does not answer."));
}

HttpStreamResult failed(const TrString &problem)
{
    return {HttpStreamResult::Failed, problem};
}

HttpStreamResult failedForGood(const TrString &problem)
{
    return {HttpStreamResult::Failed, problem, true};
}

HttpStreamResult tooLongHead()
{
    return failedForGood(playerText(
        QT_TRANSLATE_NOOP("Player", "The head of the stream's server's answer is too long.")));
}

/// The fallback shows libcurl's text for the code; CURLOPT_ERRORBUFFER is not used because its text
/// may quote received bytes.
HttpStreamResult failure(CURLcode code)
{
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
        return failed(
            playerText(QT_TRANSLATE_NOOP("Player", "The stream's server has no address.")));
    case CURLE_COULDNT_CONNECT:
        return failed(
            playerText(QT_TRANSLATE_NOOP("Player", "The stream's server cannot be reached.")));
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CONNECT_ERROR:
        return failed(
            playerText(QT_TRANSLATE_NOOP("Player", "There is no safe connection to the stream.")));
    case CURLE_TOO_MANY_REDIRECTS:
        return failedForGood(
            playerText(QT_TRANSLATE_NOOP("Player", "The stream leads from address to address.")));
    case CURLE_UNSUPPORTED_PROTOCOL:
        // A response without a status line (HTTP/0.9), which libcurl does not accept.
        return failedForGood(
            playerText(QT_TRANSLATE_NOOP("Player", "The stream's server does not speak HTTP.")));
    // A header line longer than libcurl's limit is reported so.
    case CURLE_OUT_OF_MEMORY:
        return tooLongHead();
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
        return failed(
            playerText(QT_TRANSLATE_NOOP("Player", "The connection to the stream was lost.")));
    default:
        return failed(playerText(QT_TRANSLATE_NOOP("Player", "The stream cannot be received (%1)."),
            {QString::fromLatin1(curl_easy_strerror(code))}));
    }
}

/// The failure for a redirect that must not be followed.
HttpStreamResult forbiddenRedirect(std::string_view locationLine)
{
    const auto value = QByteArray(locationLine.data(), static_cast<int>(locationLine.size()))
                           .mid(int(qstrlen("Location:")))
                           .trimmed()
                           .toLower();
    return failedForGood(value.startsWith("http:")
            ? playerText(QT_TRANSLATE_NOOP(
                "Player", "The stream leads from a safe address to one that is not."))
            : playerText(
                QT_TRANSLATE_NOOP("Player", "The stream leads to what is no web address.")));
}

bool isWebAddress(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty()
        && (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

} // namespace

HttpStreamReceiver::~HttpStreamReceiver() = default;

/// One request and its libcurl easy handle. The settings stay the same for its whole duration.
class HttpStreamExchange {
public:
    HttpStreamExchange(const HttpStream::Request &request, HttpStreamReceiver &receiver);
    ~HttpStreamExchange();
    Q_DISABLE_COPY(HttpStreamExchange)

    CURL *easy() const { return m_easy; }
    bool refused() const { return m_refused; }
    bool hasBegun() const { return m_begun; }
    Clock::time_point lastByte() const { return m_lastByte; }
    bool goOn();
    bool hasPlenty() const { return m_receiver.hasPlenty(); }
    HttpStreamResult result(CURLcode code);

private:
    static std::size_t onHead(char *data, std::size_t, std::size_t size, void *self);
    static std::size_t onBody(char *data, std::size_t, std::size_t size, void *self);
    bool takeHeadLine(std::string_view line);
    bool begin();
    Stage stage() const;
    bool isRedirect() const;
    HttpStreamHead head() const;
    QByteArray header(const char *name) const;

    CURL *const m_easy = curl_easy_init();
    const std::shared_ptr<const HttpSettings> m_settings = HttpSettings::current();
    curl_slist *m_headers = nullptr;
    curl_slist *m_aliases = nullptr;
    HttpStreamReceiver &m_receiver;
    HttpRedirectRule m_redirects;
    ConnectionGuard m_guard;
    bool m_begun = false;
    bool m_refused = false;
    bool m_inHead = false;
    bool m_afterHead = false;
    std::optional<HttpStreamResult> m_headFailure;
    Clock::time_point m_lastByte = Clock::now();
};

HttpStreamExchange::HttpStreamExchange(
    const HttpStream::Request &request, HttpStreamReceiver &receiver)
    : m_receiver(receiver)
{
    VESK_ASSERT(m_easy);
    setUpHttpHandle(m_easy);
    m_guard.guard(m_easy);
    m_settings->applyTo(m_easy);
    m_redirects.start(request.url.scheme() == QLatin1String("https"));
    m_headers = curl_slist_append(m_headers, "Icy-MetaData: 1");
    m_aliases = curl_slist_append(m_aliases, "ICY 200 OK");
    const auto set = [this](CURLoption option, auto value) {
        VESK_ASSERT(curl_easy_setopt(m_easy, option, value) == CURLE_OK);
    };
    set(CURLOPT_HEADERFUNCTION, &HttpStreamExchange::onHead);
    set(CURLOPT_HEADERDATA, static_cast<void *>(this));
    set(CURLOPT_WRITEFUNCTION, &HttpStreamExchange::onBody);
    set(CURLOPT_WRITEDATA, static_cast<void *>(this));
    set(CURLOPT_BUFFERSIZE, ReceiveBufferBytes);
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_HTTP_VERSION, long(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_HTTPHEADER, m_headers);
    set(CURLOPT_HTTP200ALIASES, m_aliases);
    set(CURLOPT_TCP_KEEPALIVE, 1L);
    // Resolve for each connection, in case the server moved; libcurl would cache addresses for a
    // minute.
    set(CURLOPT_DNS_CACHE_TIMEOUT, 0L);
    // CURLOPT_RESUME_FROM would fail with servers that do not support ranges and answer with 200.
    if (request.offset > 0 || request.length > 0) {
        QByteArray range = QByteArray::number(request.offset) + '-';
        if (request.length > 0)
            range += QByteArray::number(request.offset + request.length - 1);
        set(CURLOPT_RANGE, range.constData());
    }
    curl_easy_setopt(m_easy, CURLOPT_URL, request.url.toEncoded().constData());
}

HttpStreamExchange::~HttpStreamExchange()
{
    curl_easy_cleanup(m_easy);
    curl_slist_free_all(m_headers);
    curl_slist_free_all(m_aliases);
}

std::size_t HttpStreamExchange::onHead(char *data, std::size_t, std::size_t size, void *self)
{
    return static_cast<HttpStreamExchange *>(self)->takeHeadLine({data, size}) ? size : 0;
}

bool HttpStreamExchange::takeHeadLine(std::string_view line)
{
    m_lastByte = Clock::now();
    const bool isEnd = line == "\r\n" || line == "\n";
    // After the head of a redirect, the next response is awaited.
    m_afterHead = isEnd && !isRedirect();
    m_inHead = !isEnd;
    switch (m_redirects.takeLine(line, m_easy)) {
    case HttpRedirectRule::Fine:
        return true;
    case HttpRedirectRule::ForbiddenRedirect:
        m_headFailure = forbiddenRedirect(line);
        break;
    case HttpRedirectRule::TooLong:
        m_headFailure = tooLongHead();
        break;
    }
    return false;
}

std::size_t HttpStreamExchange::onBody(char *data, std::size_t, std::size_t size, void *self)
{
    auto *exchange = static_cast<HttpStreamExchange *>(self);
    if (!exchange->begin() || !exchange->m_receiver.take(data, size)) {
        exchange->m_refused = true;
        return CURL_WRITEFUNC_ERROR;
    }
    exchange->m_lastByte = Clock::now();
    return size;
}

/// Passes the head to the receiver before the first byte of the body. libcurl does not deliver the
/// bodies of redirects that it follows.
bool HttpStreamExchange::begin()
{
    if (m_begun)
        return true;
    m_begun = true;
    return m_receiver.begin(head());
}

Stage HttpStreamExchange::stage() const
{
    return m_begun    ? Stage::InBody
        : m_inHead    ? Stage::InHead
        : m_afterHead ? Stage::AfterHead
                      : Stage::Waiting;
}

bool HttpStreamExchange::isRedirect() const
{
    long code = 0;
    curl_easy_getinfo(m_easy, CURLINFO_RESPONSE_CODE, &code);
    return code / 100 == 3;
}

QByteArray HttpStreamExchange::header(const char *name) const
{
    curl_header *found = nullptr;
    const bool has = curl_easy_header(m_easy, name, 0, CURLH_HEADER, -1, &found) == CURLHE_OK;
    return has ? QByteArray(found->value) : QByteArray();
}

HttpStreamHead HttpStreamExchange::head() const
{
    HttpStreamHead head;
    long code = 0;
    curl_easy_getinfo(m_easy, CURLINFO_RESPONSE_CODE, &code);
    head.code = static_cast<int>(code);
    const char *url = nullptr;
    curl_easy_getinfo(m_easy, CURLINFO_EFFECTIVE_URL, &url);
    head.url = QUrl::fromEncoded(url);
    curl_off_t length = -1;
    curl_easy_getinfo(m_easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
    head.length = length;
    if (head.code == 206) {
        // "bytes 1000-1999/2000"
        const QByteArray range = header("Content-Range").simplified();
        head.offset = range.mid(range.indexOf(' ') + 1).split('-').first().toLongLong();
        bool isNumber = false;
        const qint64 whole = range.mid(range.indexOf('/') + 1).toLongLong(&isNumber);
        head.fileSize = isNumber && range.contains('/') ? whole : -1;
    }
    // SHOUTcast and Icecast headers; icy-br may list several bit rates, in kbit/s.
    const int interval = header("icy-metaint").toInt();
    head.icyInterval = interval > 0 && interval <= MaxIcyInterval ? interval : 0;
    const int kilobits = header("icy-br").split(',').first().toInt();
    head.icyBitRate = kilobits > 0 && kilobits < 100000 ? kilobits * 1000 : 0;
    curl_off_t seconds = 0;
    curl_easy_getinfo(m_easy, CURLINFO_RETRY_AFTER, &seconds);
    head.retryAfter
        = std::chrono::seconds(std::clamp<curl_off_t>(seconds, 0, MaxRetryAfterSeconds));
    return head;
}

bool HttpStreamExchange::goOn()
{
    m_refused = m_refused || !m_receiver.goOn();
    return !m_refused;
}

HttpStreamResult HttpStreamExchange::result(CURLcode code)
{
    if (m_refused)
        return {HttpStreamResult::Refused, m_begun ? TrString() : timeoutProblem(stage())};
    if (m_headFailure)
        return *m_headFailure;
    if (code == CURLE_OPERATION_TIMEDOUT)
        return failed(timeoutProblem(stage()));
    if (code == CURLE_COULDNT_CONNECT && m_guard.hasRefused()) {
        return failedForGood(playerText(QT_TRANSLATE_NOOP(
            "Player", "The stream leads inside the local network, where no station may lead.")));
    }
    if (code != CURLE_OK)
        return failure(code);
    // A response without a body: onBody() was never called.
    if (!begin())
        return {HttpStreamResult::Refused, {}};
    const bool measured
        = head().length >= 0 || header("Transfer-Encoding").toLower().contains("chunked");
    return {measured ? HttpStreamResult::Complete : HttpStreamResult::Closed, {}};
}

HttpStream::HttpStream(const Times &times)
    : m_times(times)
    , m_multi(static_cast<Curl_multi *>(curl_multi_init()))
{
    VESK_ASSERT(m_multi);
}

HttpStream::~HttpStream()
{
    curl_multi_cleanup(m_multi);
}

HttpStreamResult HttpStream::get(const Request &request, HttpStreamReceiver &receiver)
{
    if (!isWebAddress(request.url)) {
        return failedForGood(
            playerText(QT_TRANSLATE_NOOP("Player", "The stream's address is no web address.")));
    }
    HttpStreamExchange exchange(request, receiver);
    const bool isImpatient = request.patience > Milliseconds::zero();
    const Milliseconds connect
        = isImpatient ? std::min(request.patience, m_times.connect) : m_times.connect;
    // libcurl divides this among a server's addresses, so that an unreachable one leaves time for
    // the next.
    curl_easy_setopt(
        exchange.easy(), CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(connect.count()));
    curl_multi_add_handle(m_multi, exchange.easy());
    const HttpStreamResult result = drive(exchange, connect);
    curl_multi_remove_handle(m_multi, exchange.easy());
    return result;
}

HttpStreamResult HttpStream::drive(HttpStreamExchange &exchange, Milliseconds connect)
{
    const auto start = Clock::now();
    bool hasRead = false; // since the last poll or rest
    for (;;) {
        const auto lastByte = exchange.lastByte();
        int running = 0;
        curl_multi_perform(m_multi, &running);
        if (m_interrupted)
            return {HttpStreamResult::Interrupted, {}};
        int left = 0;
        if (const CURLMsg *message = curl_multi_info_read(m_multi, &left))
            return exchange.result(message->data.result);
        if (!exchange.goOn())
            return exchange.result(CURLE_ABORTED_BY_CALLBACK);
        const auto deadline
            = exchange.hasBegun() ? exchange.lastByte() + m_times.silence : start + connect;
        const auto now = Clock::now();
        if (now >= deadline)
            return exchange.result(CURLE_OPERATION_TIMEDOUT);
        // curl_multi_perform() reads at most one buffer per call, so poll only after a call that
        // read nothing.
        if (exchange.lastByte() != lastByte)
            hasRead = true;
        else if (std::exchange(hasRead, false) && exchange.hasPlenty())
            rest(exchange);
        else
            poll(std::min(LongestWait, std::chrono::ceil<Milliseconds>(deadline - now)));
    }
}

void HttpStream::poll(Milliseconds time)
{
    curl_multi_poll(m_multi, nullptr, 0, static_cast<int>(time.count()), nullptr);
}

/// Leaves the socket unread for a while: libcurl does not poll the socket of a transfer that is
/// paused in both directions. With only one direction paused it would still poll for the other.
/// curl_multi_wakeup() by interrupt() ends the wait all the same.
void HttpStream::rest(const HttpStreamExchange &exchange)
{
    curl_easy_pause(exchange.easy(), CURLPAUSE_ALL);
    poll(Rest);
    curl_easy_pause(exchange.easy(), CURLPAUSE_CONT);
}

void HttpStream::interrupt()
{
    m_interrupted = true;
    curl_multi_wakeup(m_multi);
}
