// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/private/HttpCache.h"

#include <algorithm>
#include <ctime>

namespace {

/// Memory of an entry besides its URL and body: list and hash nodes, array headers.
constexpr qint64 EntryOverhead = 512;
/// Maximum freshness lifetime; keeps sums of times in range.
constexpr qint64 LongestSeconds = 365LL * 24 * 3600;

/// Milliseconds since boot, including time suspended.
qint64 bootClock()
{
    timespec now {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

/// Parses delta-seconds (RFC 9111, section 1.2.2), limited to LongestSeconds.
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
        // An unclosed quote may hide any directive: assume no-store.
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

/// For how many seconds a response is fresh on arrival; no value when it must not be reused.
std::optional<qint64> freshSeconds(const HttpCacheHeaders &headers)
{
    const Directives directives(headers.cacheControl);
    if (directives.noStore || directives.noCache || !directives.maxAge)
        return std::nullopt;
    // All requests of a client carry the same header fields, so of Vary only "*" matters, which
    // matches no request (RFC 9111, section 4.1).
    if (headers.vary.contains('*'))
        return std::nullopt;
    // An invalid Age may mean any age: assume the maximum.
    const qint64 age
        = headers.age.isNull() ? 0 : parseSeconds(headers.age).value_or(LongestSeconds);
    const qint64 left = *directives.maxAge - age;
    return left > 0 ? std::optional(left) : std::nullopt;
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
        drop(std::prev(m_stored.end()));
}

std::optional<QByteArray> HttpCache::find(const QByteArray &url)
{
    const auto found = m_index.constFind(url);
    if (found == m_index.constEnd())
        return std::nullopt;
    const StoredList::iterator stored = *found;
    if (m_clock() >= stored->staleAt) {
        drop(stored);
        return std::nullopt;
    }
    m_stored.splice(m_stored.begin(), m_stored, stored);
    return stored->body;
}

void HttpCache::store(const QByteArray &url, const HttpCacheHeaders &headers,
    const QByteArray &body, qint64 requestedAt)
{
    if (const auto before = m_index.constFind(url); before != m_index.constEnd())
        drop(*before);
    const std::optional<qint64> seconds = freshSeconds(headers);
    if (!seconds)
        return;
    // A body that was received in pieces may have a buffer of twice its size.
    QByteArray exact = body;
    if (exact.capacity() > exact.size() + exact.size() / 8)
        exact.squeeze();
    const qint64 bytes = EntryOverhead + 2 * qint64(url.size()) + exact.size();
    if (bytes > m_size)
        return;
    while (m_used + bytes > m_size)
        drop(std::prev(m_stored.end()));
    m_stored.push_front({url, exact, requestedAt + *seconds * 1000, bytes});
    m_index.insert(url, m_stored.begin());
    m_used += bytes;
}

void HttpCache::remove(const QByteArray &url)
{
    ++m_removals;
    if (const auto found = m_index.constFind(url); found != m_index.constEnd())
        drop(*found);
}

void HttpCache::drop(StoredList::iterator stored)
{
    m_used -= stored->bytes;
    m_index.remove(stored->url);
    m_stored.erase(stored);
}
