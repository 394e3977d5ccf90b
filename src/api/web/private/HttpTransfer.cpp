// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/private/HttpTransfer.h"

#include "api/core/vesk.h"

#include <algorithm>
#include <limits>

namespace {

/// Maximum space reserved for a body because of its Content-Length.
constexpr qint64 MaxReservedBytes = qint64(4) * 1024 * 1024;
constexpr long ReceiveBufferBytes = 64L * 1024;

HttpClientStatus statusOf(CURLcode code)
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
    case CURLE_TOO_MANY_REDIRECTS:
        return HttpClientStatus::TooManyRedirects;
    default:
        return HttpClientStatus::Broken;
    }
}

} // namespace

HttpTransfer::HttpTransfer(HttpClient::HttpVersion version, bool followRedirects)
    : m_version(version)
    , m_followRedirects(followRedirects)
{
    VESK_ASSERT(easy);
    setUp();
}

/// Sets the options that all exchanges share.
void HttpTransfer::setUp()
{
    const auto set = [this](CURLoption option, auto value) {
        VESK_ASSERT(curl_easy_setopt(easy, option, value) == CURLE_OK);
    };
    setUpHttpHandle(easy);
    set(CURLOPT_PRIVATE, static_cast<void *>(this));
    set(CURLOPT_HEADERFUNCTION, &HttpTransfer::onHead);
    set(CURLOPT_HEADERDATA, static_cast<void *>(this));
    set(CURLOPT_WRITEFUNCTION, &HttpTransfer::onBody);
    set(CURLOPT_WRITEDATA, static_cast<void *>(this));
    // May fail: a handle that still has its buffer rejects another size.
    curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, ReceiveBufferBytes);
    set(CURLOPT_ACCEPT_ENCODING, "");
    set(CURLOPT_HTTP_VERSION,
        m_version == HttpClient::Http1 ? long(CURL_HTTP_VERSION_1_1)
                                       : long(CURL_HTTP_VERSION_2TLS));
    set(CURLOPT_FOLLOWLOCATION, m_followRedirects ? 1L : 0L);
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
    m_redirects.start(url.scheme().compare(QLatin1String("https"), Qt::CaseInsensitive) == 0);
    const long timeout = std::max(0, options.timeoutMs());
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, timeout);
    curl_easy_setopt(easy, CURLOPT_URL, url.toEncoded().constData());
    if (isPost) {
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(sentBody.size()));
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, sentBody.constData());
    } else {
        curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);
    }
    setHeaders();
    if (options.isGuarded())
        m_guard.guard(easy);

    m_settings = HttpSettings::current();
    m_settings->applyTo(easy);
}

void HttpTransfer::setHeaders()
{
    curl_slist_free_all(m_headers);
    m_headers = nullptr;
    const auto add
        = [this](const char *header) { m_headers = curl_slist_append(m_headers, header); };
    if (isPost) {
        // A name without a value removes the field. With "Expect: 100-continue" (RFC 9110, section
        // 10.1.1) libcurl would wait a second for servers that do not support it.
        add("Expect:");
        if (sentBody.isEmpty())
            add("Content-Type:");
    }
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, m_headers);
}

std::size_t HttpTransfer::onHead(char *data, std::size_t, std::size_t size, void *self)
{
    return static_cast<HttpTransfer *>(self)->takeHeadLine({data, size}) ? size : 0;
}

bool HttpTransfer::takeHeadLine(std::string_view line)
{
    switch (m_redirects.takeLine(line, easy)) {
    case HttpRedirectRule::TooLong:
        return fail(HttpClientStatus::Broken);
    case HttpRedirectRule::ForbiddenRedirect:
        // A redirect that is not followed but returned as the response is harmless.
        return !m_followRedirects || fail(HttpClientStatus::TooManyRedirects);
    case HttpRedirectRule::Fine:
        break;
    }
    return true;
}

std::size_t HttpTransfer::onBody(char *data, std::size_t, std::size_t size, void *self)
{
    // A count below size makes libcurl fail the transfer, but there is none for an empty piece;
    // CURL_WRITEFUNC_ERROR works for both.
    return static_cast<HttpTransfer *>(self)->takeBody(data, size) ? size : CURL_WRITEFUNC_ERROR;
}

bool HttpTransfer::takeBody(const char *data, std::size_t size)
{
    const qint64 limit = m_sizeLimit > 0 ? m_sizeLimit : std::numeric_limits<int>::max() / 2;
    if (body.isEmpty()) {
        curl_off_t announced = -1;
        curl_header *encoding = nullptr;
        curl_easy_getinfo(easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced);
        // Content-Length is the encoded size, which says little about the decoded one.
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
    // The requested URL was valid, so the malformed one came from a redirect.
    if (code == CURLE_URL_MALFORMAT && info(CURLINFO_REDIRECT_COUNT) > 0)
        return HttpClientStatus::Broken;
    return statusOf(code);
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
    return {read("Cache-Control"), read("Age"), read("Vary")};
}

void HttpTransfer::clear()
{
    // libcurl counts per handle how often a reused connection turned out dead, and fails the
    // exchange the fifth time, however many succeeded in between. Only a reset clears that count.
    curl_easy_reset(easy);
    setUp();
    m_settings.reset();
    url = VeskUrl();
    cacheKey = QByteArray();
    isPost = false;
    onlyReads = false;
    function = nullptr;
    sentBody = QByteArray();
    body = QByteArray();
    m_failure = HttpClientStatus::Success;
}
