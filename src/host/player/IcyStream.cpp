#include "host/player/IcyStream.h"

#include "host/player/StreamText.h"

#include <algorithm>

namespace {

constexpr int LengthUnit = 16;

} // namespace

bool IcyStream::feed(
    const char *data, std::size_t size, const TakeAudio &takeAudio, const TakeTitle &takeTitle)
{
    if (m_interval <= 0)
        return takeAudio(data, size);
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
    // An apostrophe inside a title is not escaped: only one before a semicolon ends it.
    int to = metadata.indexOf("';", from);
    if (to < 0)
        to = metadata.lastIndexOf('\'');
    return to < from ? QString() : streamText(metadata.mid(from, to - from));
}
