// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/private/HttpCache.h"

#include <curl/curl.h>

#include <algorithm>
#include <ctime>

namespace {

/// What an entry costs beside its bytes: list and hash nodes, array headers.
constexpr qint64 EntryOverhead = 512;
/// No answer counts as fresh for longer; keeps sums of times in range.
constexpr qint64 LongestSeconds = 365LL * 24 * 3600;

qint64 bootClock()
{
    timespec now {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

/// RFC 9111's delta-seconds.
std::optional<qint64> parseSeconds(const QByteArray &text)
{
    if (text.isEmpty())
        return std::nullopt;
    qint64 seconds = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            return std::nullopt;
        seconds = std::min(seconds * 10 + (c - '0'), LongestSeconds);
    }
    return seconds;
}

/// The Cache-Control directives that a private cache obeys.
struct Directives {
    std::optional<qint64> maxAge;
    bool noStore = false;
    bool noCache = false;

    explicit Directives(const QByteArray &text)
    {
        int begin = 0;
        bool quoted = false;
        for (int i = 0; i <= text.size(); ++i) {
            if (i < text.size() && text.at(i) == '"')
                quoted = !quoted;
            if (i == text.size() || (text.at(i) == ',' && !quoted)) {
                add(text.mid(begin, i - begin).trimmed());
                begin = i + 1;
            }
        }
        // Commas behind a quote that never ends may hide anything.
        noStore = noStore || quoted;
    }

private:
    void add(const QByteArray &directive)
    {
        const int equals = directive.indexOf('=');
        const QByteArray name = directive.left(equals < 0 ? directive.size() : equals).toLower();
        if (name == "no-store") {
            noStore = true;
        } else if (name == "no-cache") {
            noCache = true;
        } else if (name == "max-age") {
            QByteArray value = equals < 0 ? QByteArray() : directive.mid(equals + 1);
            if (value.size() >= 2 && value.startsWith('"') && value.endsWith('"'))
                value = value.mid(1, value.size() - 2);
            const qint64 seconds = parseSeconds(value).value_or(0);
            maxAge = maxAge ? std::min(*maxAge, seconds) : seconds;
        }
    }
};

/// For how many seconds an answer is fresh, its age on arrival taken off; nothing when the server
/// did not say, or forbids to keep it.
std::optional<qint64> freshSeconds(const HttpCacheHeaders &headers)
{
    const Directives directives(headers.cacheControl);
    if (directives.noStore)
        return std::nullopt;
    if (directives.noCache)
        return 0;
    std::optional<qint64> lifetime = directives.maxAge;
    if (!lifetime && !headers.expires.isNull()) {
        // The difference of two times of the server's clock: this device's may be wrong.
        const time_t expires = curl_getdate(headers.expires.constData(), nullptr);
        const time_t date = curl_getdate(headers.date.constData(), nullptr);
        lifetime = expires < 0 || date < 0 ? 0 : std::min<qint64>(expires - date, LongestSeconds);
    }
    if (!lifetime)
        return std::nullopt;
    const qint64 age
        = headers.age.isNull() ? 0 : parseSeconds(headers.age).value_or(LongestSeconds);
    return std::max<qint64>(0, *lifetime - age);
}

/// Every request names the same encodings, so an answer may vary by those.
bool variesOnlyByEncoding(const QByteArray &vary)
{
    for (const QByteArray &name : vary.split(',')) {
        const QByteArray trimmed = name.trimmed();
        if (!trimmed.isEmpty() && trimmed.compare("Accept-Encoding", Qt::CaseInsensitive) != 0)
            return false;
    }
    return true;
}

qint64 sizeOf(const HttpCacheHeaders &headers)
{
    return qint64(headers.cacheControl.size()) + headers.expires.size() + headers.date.size()
        + headers.age.size() + headers.vary.size() + headers.etag.size()
        + headers.lastModified.size();
}

/// \a newer where it says something, else \a older (RFC 9111, section 3.2).
void update(QByteArray &older, const QByteArray &newer)
{
    if (!newer.isNull())
        older = newer;
}

} // namespace

HttpCache::HttpCache(Clock clock)
    : m_clock(clock ? std::move(clock) : &bootClock)
{
}

void HttpCache::setSize(qint64 bytes)
{
    m_size = std::max<qint64>(0, bytes);
    while (m_used > m_size)
        drop(std::prev(m_kept.end()));
}

std::optional<HttpCache::Entry> HttpCache::find(const QByteArray &url)
{
    const auto found = m_index.constFind(url);
    if (found == m_index.constEnd())
        return std::nullopt;
    const KeptList::iterator kept = *found;
    const bool fresh = m_clock() < kept->staleAt;
    if (!fresh && kept->headers.etag.isEmpty() && kept->headers.lastModified.isEmpty()) {
        drop(kept);
        return std::nullopt;
    }
    m_kept.splice(m_kept.begin(), m_kept, kept);
    return Entry {kept->body, kept->headers.etag, kept->headers.lastModified, fresh};
}

void HttpCache::store(const QByteArray &url, const HttpCacheHeaders &headers,
    const QByteArray &body, qint64 requestedAt)
{
    if (const auto before = m_index.constFind(url); before != m_index.constEnd())
        drop(*before);
    const std::optional<qint64> seconds = freshSeconds(headers);
    const bool hasValidator = !headers.etag.isEmpty() || !headers.lastModified.isEmpty();
    if (!seconds || (*seconds == 0 && !hasValidator) || !variesOnlyByEncoding(headers.vary))
        return;
    // A body read piece by piece may hold twice its bytes; kept ones do not.
    QByteArray exact = body;
    if (exact.capacity() > exact.size() + exact.size() / 8)
        exact.squeeze();
    const qint64 bytes = EntryOverhead + 2 * qint64(url.size()) + exact.size() + sizeOf(headers);
    if (bytes > m_size)
        return;
    while (m_used + bytes > m_size)
        drop(std::prev(m_kept.end()));
    m_kept.push_front({url, exact, headers, requestedAt + *seconds * 1000, bytes});
    m_index.insert(url, m_kept.begin());
    m_used += bytes;
}

void HttpCache::refresh(const QByteArray &url, const HttpCacheHeaders &headers,
    const Entry &confirmed, qint64 requestedAt)
{
    HttpCacheHeaders merged;
    if (const auto found = m_index.constFind(url); found != m_index.constEnd())
        merged = (*found)->headers;
    merged.etag = confirmed.etag;
    merged.lastModified = confirmed.lastModified;
    update(merged.cacheControl, headers.cacheControl);
    update(merged.expires, headers.expires);
    update(merged.date, headers.date);
    merged.age = headers.age;
    update(merged.vary, headers.vary);
    update(merged.etag, headers.etag);
    update(merged.lastModified, headers.lastModified);
    store(url, merged, confirmed.body, requestedAt);
}

void HttpCache::remove(const QByteArray &url)
{
    ++m_removals;
    if (const auto found = m_index.constFind(url); found != m_index.constEnd())
        drop(*found);
}

void HttpCache::drop(KeptList::iterator kept)
{
    m_used -= kept->bytes;
    m_index.remove(kept->url);
    m_kept.erase(kept);
}
