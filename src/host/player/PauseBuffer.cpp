// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/PauseBuffer.h"

#include <algorithm>

std::size_t PauseBuffer::cost(const Item &item)
{
    return sizeof(Item) + static_cast<std::size_t>(item.bytes.capacity())
        + static_cast<std::size_t>(item.title.size()) * sizeof(QChar);
}

bool PauseBuffer::append(const char *data, std::size_t size, Clock::time_point now)
{
    const std::size_t pieces = size / PieceSize + 1;
    if (m_size + pieces * (sizeof(Item) + PieceSize) > MaxSize)
        return false;
    while (size > 0) {
        const bool isNew = m_items.empty() || m_items.back().kind != Item::Bytes
            || m_items.back().bytes.size() == PieceSize;
        if (isNew) {
            Item item {Item::Bytes, now, {}, {}};
            item.bytes.reserve(PieceSize);
            m_size += cost(item);
            m_items.push_back(std::move(item));
        }
        QByteArray &bytes = m_items.back().bytes;
        const auto count = std::min(size, static_cast<std::size_t>(PieceSize - bytes.size()));
        bytes.append(data, static_cast<int>(count));
        data += count;
        size -= count;
    }
    return true;
}

void PauseBuffer::append(Item::Kind kind, Clock::time_point now, const QString &title)
{
    m_items.push_back({kind, now, {}, title});
    m_size += cost(m_items.back());
    m_begins += kind == Item::Begin ? 1 : 0;
}

void PauseBuffer::removeFirst()
{
    m_size -= cost(m_items.front());
    m_begins -= m_items.front().kind == Item::Begin ? 1 : 0;
    m_items.pop_front();
}

void PauseBuffer::skipStream()
{
    while (!m_items.empty() && m_items.front().kind != Item::Begin)
        removeFirst();
}
