// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/MediaHead.h"

#include "host/player/AudioFrames.h"
#include "host/player/MediaLayout.h"

#include <algorithm>

bool MediaHead::isComplete() const
{
    return m_bytes.size() >= MediaLayout::HeadSize;
}

void MediaHead::take(const char *data, std::size_t size)
{
    while (size > 0 && !isComplete()) {
        const auto skipped = static_cast<std::size_t>(std::min<qint64>(m_skip, qint64(size)));
        m_skip -= static_cast<qint64>(skipped);
        const auto room = static_cast<std::size_t>(MediaLayout::HeadSize - m_bytes.size());
        const std::size_t taken = std::min(size - skipped, room);
        m_bytes.append(data + skipped, static_cast<int>(taken));
        data += skipped + taken;
        size -= skipped + taken;
        skipTags();
    }
}

/// Tags follow one another in some files.
void MediaHead::skipTags()
{
    while (const std::size_t tag
        = id3Size({m_bytes.constData(), static_cast<std::size_t>(m_bytes.size())})) {
        m_begin += static_cast<qint64>(tag);
        const int here = static_cast<int>(std::min<std::size_t>(tag, std::size_t(m_bytes.size())));
        m_bytes.remove(0, here);
        m_skip = static_cast<qint64>(tag) - here;
    }
}
