// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QByteArray>
#include <QHash>

#include <functional>
#include <list>
#include <optional>

/// What of an answer's head decides how long it may be kept. A field that comes several times is
/// joined with ", ", an absent one is null.
struct HttpCacheHeaders {
    QByteArray cacheControl;
    QByteArray expires;
    QByteArray date;
    QByteArray age;
    QByteArray vary;
    QByteArray etag;
    QByteArray lastModified;
};

/// A private HTTP cache in memory (RFC 9111), of answers to GET with code 200 that say themselves
/// how long they are fresh. It hands out nothing past that time: what has aged can only be asked
/// for again under the condition of its validators. The entries used last stay, up to a number of
/// bytes. Not thread-safe; its owner is an HttpClientEngine.
class VESK_API HttpCache {
public:
    /// Milliseconds on a clock that never goes back and does not stop while the device sleeps.
    using Clock = std::function<qint64()>;

    struct Entry {
        QByteArray body;
        /// Validators; null where there are none.
        QByteArray etag;
        QByteArray lastModified;
        bool fresh = false;
    };

    explicit HttpCache(Clock clock = {});

    /// 0 keeps nothing.
    void setSize(qint64 bytes);
    bool isEnabled() const { return m_size > 0; }
    qint64 usedBytes() const { return m_used; }
    qint64 now() const { return m_clock(); }

    /// The answer kept for \a url. One that is not fresh has a validator at least.
    std::optional<Entry> find(const QByteArray &url);
    /// Keeps the answer to a request that was sent at \a requestedAt, if it may be kept; what was
    /// kept for \a url before goes either way.
    void store(const QByteArray &url, const HttpCacheHeaders &headers, const QByteArray &body,
        qint64 requestedAt);
    /// The server confirmed (304) the \a confirmed entry of \a url, with newer \a headers.
    void refresh(const QByteArray &url, const HttpCacheHeaders &headers, const Entry &confirmed,
        qint64 requestedAt);
    void remove(const QByteArray &url);

    /// Counts removals, so that an answer asked for before one is not kept after it.
    quint64 removals() const { return m_removals; }

private:
    struct Kept {
        QByteArray url;
        QByteArray body;
        HttpCacheHeaders headers;
        qint64 staleAt = 0;
        qint64 bytes = 0;
    };
    using KeptList = std::list<Kept>;

    void drop(KeptList::iterator kept);

    Clock m_clock;
    qint64 m_size = 0;
    qint64 m_used = 0;
    quint64 m_removals = 0;
    /// Used last first.
    KeptList m_kept;
    QHash<QByteArray, KeptList::iterator> m_index;
};
