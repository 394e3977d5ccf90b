// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/IcyStream.h"

#include "host/player/StreamText.h"

#include <algorithm>

namespace {

/// The length byte counts blocks of so many bytes.
constexpr int LengthUnit = 16;

bool isNameCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_'
        || c == '-';
}

/// Whether the metadata ends at \a position or the next field begins there ("StreamUrl='").
bool isBetweenValues(const QByteArray &metadata, int position)
{
    while (position < metadata.size() && metadata.at(position) == ' ')
        ++position;
    if (position == metadata.size())
        return true;
    const int name = position;
    while (position < metadata.size() && isNameCharacter(metadata.at(position)))
        ++position;
    return position > name && metadata.mid(position, 2) == "='";
}

/// The end of the value that begins at \a from. Apostrophes in a value are not escaped, so even
/// "';" may be part of it: the end is the first "';" with another field or nothing after it, else
/// the last one.
int endOfValue(const QByteArray &metadata, int from)
{
    int last = -1;
    for (int to = metadata.indexOf("';", from); to >= 0; to = metadata.indexOf("';", to + 1)) {
        if (isBetweenValues(metadata, to + 2))
            return to;
        last = to;
    }
    if (last < 0 && metadata.endsWith('\''))
        last = metadata.size() - 1;
    // Some servers truncate the block in the middle of a long title.
    return last < from ? metadata.size() : last;
}

} // namespace

bool IcyStream::feed(
    const char *data, std::size_t size, const TakeAudio &takeAudio, const TakeTitle &takeTitle)
{
    if (m_interval <= 0)
        return size == 0 || takeAudio(data, size);
    const auto interval = static_cast<std::size_t>(m_interval);
    while (size > 0) {
        if (m_missing < 0 && m_audioBefore < interval) {
            const std::size_t audio = std::min(size, interval - m_audioBefore);
            if (!takeAudio(data, audio))
                return false;
            m_audioBefore += audio;
            data += audio;
            size -= audio;
        } else if (m_missing < 0) {
            m_missing = static_cast<unsigned char>(*data) * LengthUnit;
            m_metadata.clear();
            ++data;
            --size;
        } else {
            const int taken = static_cast<int>(std::min<std::size_t>(size, m_missing));
            m_metadata.append(data, taken);
            m_missing -= taken;
            data += taken;
            size -= static_cast<std::size_t>(taken);
        }
        if (m_missing == 0)
            finishMetadata(takeTitle);
    }
    return true;
}

void IcyStream::finishMetadata(const TakeTitle &takeTitle)
{
    m_missing = -1;
    m_audioBefore = 0;
    const QString title = icyTitle(m_metadata);
    if (title.isNull() || (m_hadTitle && title == m_title))
        return;
    m_hadTitle = true;
    m_title = title;
    takeTitle(title);
}

QString icyTitle(const QByteArray &metadata)
{
    static const QByteArray key = QByteArrayLiteral("StreamTitle='");
    const int begin = metadata.indexOf(key);
    if (begin < 0)
        return {};
    const int from = begin + key.size();
    const int padding = metadata.indexOf('\0', from);
    const QByteArray filled = padding < 0 ? metadata : metadata.left(padding);
    return streamText(filled.mid(from, endOfValue(filled, from) - from));
}
