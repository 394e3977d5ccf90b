// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QHash>

#include <functional>
#include <list>
#include <optional>

/// The header fields of a response that decide for how long it may be stored. A field that occurs
/// several times is joined with ", "; an absent one is null.
struct HttpCacheHeaders {
    QByteArray cacheControl;
    QByteArray age;
    QByteArray vary;
};

/// A private HTTP cache in memory (RFC 9111) of responses to GET with code 200 whose Cache-Control
/// has a max-age, with which directories and image servers mark a response as reusable. Stale
/// responses are dropped, not revalidated; the least recently used ones are dropped when space runs
/// out. Not thread-safe; owned by an HttpClientEngine.
class HttpCache {
public:
    /// A monotonic clock in milliseconds that does not stop while the device is suspended.
    using Clock = std::function<qint64()>;

    explicit HttpCache(Clock clock = {});

    /// Capacity in bytes; 0 disables the cache.
    void setSize(qint64 bytes);
    bool isEnabled() const { return m_size > 0; }
    qint64 now() const { return m_clock(); }

    /// The body stored for \a url, if it is still fresh.
    std::optional<QByteArray> find(const QByteArray &url);
    /// Stores the response to a request that was sent at \a requestedAt (see now()), if it may be
    /// stored; an earlier response for \a url is dropped in any case.
    void store(const QByteArray &url, const HttpCacheHeaders &headers, const QByteArray &body,
        qint64 requestedAt);
    void remove(const QByteArray &url);

    /// The number of calls of remove(). A response whose request was sent before such a call must
    /// not be stored after it.
    quint64 removals() const { return m_removals; }

private:
    struct Stored {
        QByteArray url;
        QByteArray body;
        qint64 staleAt = 0;
        qint64 bytes = 0;
    };
    using StoredList = std::list<Stored>;

    void drop(StoredList::iterator stored);

    Clock m_clock;
    qint64 m_size = 0;
    qint64 m_used = 0;
    quint64 m_removals = 0;
    /// Most recently used first.
    StoredList m_stored;
    QHash<QByteArray, StoredList::iterator> m_index;
};
