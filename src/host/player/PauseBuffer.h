// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstddef>
#include <deque>

/// What a station sends while it is paused, or behind live: encoded bytes, and what happened
/// between them. Bounded whatever the bit rate is. Not thread-safe.
class PauseBuffer {
public:
    using Clock = std::chrono::steady_clock;
    /// Bytes, with what an item costs by itself.
    static constexpr std::size_t MaxSize = 32 * 1024 * 1024;

    struct Item {
        enum Kind {
            Begin, ///< a new stream begins
            Bytes, ///< at most PieceSize
            End, ///< the stream has ended
            Title,
        };
        Kind kind = Bytes;
        Clock::time_point arrived; ///< of the first byte
        QByteArray bytes;
        QString title;
    };
    static constexpr int PieceSize = 16 * 1024;

    /// False, without effect, if there is no room.
    bool append(const char *data, std::size_t size, Clock::time_point now);
    void append(Item::Kind kind, Clock::time_point now, const QString &title = {});

    bool isEmpty() const { return m_items.empty(); }
    std::size_t size() const { return m_size; }
    const Item &first() const { return m_items.front(); }
    void removeFirst();
    /// Removes what belongs to the stream of the first item.
    void skipStream();
    /// Whether a stream begins among the items.
    bool hasBegin() const { return m_begins > 0; }

private:
    static std::size_t cost(const Item &item);

    std::deque<Item> m_items;
    std::size_t m_size = 0;
    int m_begins = 0;
};
