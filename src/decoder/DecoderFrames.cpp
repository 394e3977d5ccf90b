// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "decoder/DecoderFrames.h"

#include <algorithm>
#include <cstring>

void appendFrame(std::vector<char> &out, DecoderFrame kind, const void *payload, std::size_t size)
{
    size = std::min(size, DecoderLimits::MaxPayload);
    DecoderFrameHead head;
    head.kind = kind;
    head.length = static_cast<std::uint32_t>(size);
    const auto *begin = reinterpret_cast<const char *>(&head);
    out.insert(out.end(), begin, begin + sizeof head);
    const auto *bytes = static_cast<const char *>(payload);
    out.insert(out.end(), bytes, bytes + size);
}

bool FrameReader::feed(const char *data, std::size_t size, const Take &take)
{
    m_pending.insert(m_pending.end(), data, data + size);
    std::size_t at = 0;
    while (m_pending.size() - at >= sizeof(DecoderFrameHead)) {
        DecoderFrameHead head;
        std::memcpy(&head, m_pending.data() + at, sizeof head);
        if (head.length > DecoderLimits::MaxPayload)
            return false;
        if (m_pending.size() - at - sizeof head < head.length)
            break;
        const char *payload = m_pending.data() + at + sizeof head;
        if (!take(head.kind, {payload, head.length}))
            return false;
        at += sizeof head + head.length;
    }
    m_pending.erase(m_pending.begin(), m_pending.begin() + static_cast<std::ptrdiff_t>(at));
    return true;
}
