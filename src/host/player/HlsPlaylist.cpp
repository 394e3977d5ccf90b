// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/HlsPlaylist.h"

#include "host/player/Playlist.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds ShortestTarget {1000};
constexpr Milliseconds LongestTarget {60000};
/// bit/s. Variants above this carry video.
constexpr int AudioBandwidth = 400000;
/// Above any real media sequence number, and low enough to count on without overflow.
constexpr qint64 LargestNumber = Q_INT64_C(1) << 53;
/// Where to join a live stream: RFC 8216, 6.3.3 advises against starting closer than three target
/// durations to the end.
constexpr int SegmentsFromEnd = 3;

/// A decimal number of seconds, at most LongestTarget; zero when it is invalid.
Milliseconds seconds(const QByteArray &text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    const bool usable = ok && std::isfinite(value) && value > 0;
    // Rounded: with the longer products of i386, 9.6 s are not quite 9600 ms.
    return std::min(
        Milliseconds(std::llround(usable ? std::min(value, 3600.0) * 1000 : 0)), LongestTarget);
}

/// The part before the comma and title (RFC 8216, 4.3.2.1), or before the space and attributes that
/// some playlists append.
QByteArray firstWord(const QByteArray &text)
{
    return text.split(',').first().simplified().split(' ').first();
}

/// bit/s; 0 without a number, the largest int for one that does not fit.
int bandwidth(const QByteArray &text)
{
    const bool isNumber = !text.isEmpty()
        && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok ? std::max(value, 0) : isNumber ? std::numeric_limits<int>::max() : 0;
}

/// The value of \a name in an attribute list (RFC 8216, 4.2), without quotes; empty if it is
/// missing.
QByteArray attribute(const QByteArray &list, const QByteArray &name)
{
    int position = 0;
    while (position < list.size()) {
        const int equals = list.indexOf('=', position);
        if (equals < 0)
            return {};
        const QByteArray before = list.mid(position, equals - position);
        int begin = equals + 1;
        while (begin < list.size() && list.at(begin) == ' ')
            ++begin;
        const bool quoted = begin < list.size() && list.at(begin) == '"';
        begin += quoted ? 1 : 0;
        int end = list.indexOf(quoted ? '"' : ',', begin);
        end = end < 0 ? list.size() : end;
        if (before.mid(before.lastIndexOf(',') + 1).trimmed() == name)
            return list.mid(begin, end - begin).trimmed();
        position = end + 1;
    }
    return {};
}

/// Parses line by line. Most tags apply to the URI line that follows them.
class Reader {
public:
    Reader(const QUrl &base, bool ended)
        : m_base(base)
    {
        m_playlist.ended = ended;
    }

    void takeLine(const QByteArray &line)
    {
        if (line.startsWith('#'))
            takeTag(line);
        else
            takeAddress(line);
    }

    HlsPlaylist takePlaylist()
    {
        bound();
        if (m_playlist.targetDuration == Milliseconds::zero())
            m_playlist.targetDuration = longestDuration();
        return std::move(m_playlist);
    }

private:
    /// Drops excess segments: the oldest of a live stream, the last of one that ended.
    void bound()
    {
        const int excess = m_playlist.segments.size() - HlsPlaylist::MaxSegments;
        if (excess > 0)
            m_playlist.segments.remove(m_playlist.ended ? HlsPlaylist::MaxSegments : 0, excess);
    }

    Milliseconds longestDuration() const
    {
        Milliseconds longest = ShortestTarget;
        for (const HlsSegment &segment : m_playlist.segments)
            longest = std::max(longest, segment.duration);
        return longest;
    }

    void takeTag(const QByteArray &line)
    {
        const int colon = line.indexOf(':');
        const QByteArray tag = line.left(colon < 0 ? line.size() : colon);
        const QByteArray value = colon < 0 ? QByteArray() : line.mid(colon + 1);
        if (tag == "#EXTINF")
            m_duration = seconds(firstWord(value));
        else if (tag == "#EXT-X-TARGETDURATION")
            m_playlist.targetDuration = std::max(seconds(value), ShortestTarget);
        else if (tag == "#EXT-X-MEDIA-SEQUENCE" && m_playlist.segments.isEmpty())
            m_number = qBound<qint64>(0, value.toLongLong(), LargestNumber);
        else if (tag == "#EXT-X-DISCONTINUITY")
            m_discontinuity = true;
        else if (tag == "#EXT-X-KEY")
            // Applies until the next EXT-X-KEY (RFC 8216, 4.3.2.4).
            m_needsKey = attribute(value, "METHOD") != "NONE";
        else if (tag == "#EXT-X-MAP")
            m_map = playlistAddress(attribute(value, "URI"), m_base);
        else if (tag == "#EXT-X-BYTERANGE")
            m_isPiece = true;
        else if (tag == "#EXT-X-STREAM-INF")
            m_bandwidth = bandwidth(attribute(value, "BANDWIDTH"));
    }

    void takeAddress(const QByteArray &line)
    {
        const QUrl url = playlistAddress(line, m_base);
        if (m_bandwidth)
            takeVariant({url, *m_bandwidth});
        else
            takeSegment({url, m_number++, m_duration, m_discontinuity, m_map});
    }

    void takeVariant(const HlsVariant &variant)
    {
        m_bandwidth.reset();
        if (!variant.url.isEmpty() && m_playlist.variants.size() < HlsPlaylist::MaxVariants)
            m_playlist.variants.append(variant);
    }

    void takeSegment(HlsSegment segment)
    {
        const bool isPiece = m_isPiece;
        m_duration = Milliseconds(0);
        m_isPiece = false;
        if (segment.url.isEmpty())
            return;
        m_discontinuity = false;
        m_playlist.encrypted |= m_needsKey;
        QVector<HlsSegment> &segments = m_playlist.segments;
        // Byte ranges of one file are fetched as the whole file, once.
        if (isPiece && !segments.isEmpty() && segments.last().url == segment.url)
            return;
        if (isPiece && segment.map == segment.url)
            // The file that is fetched whole begins with its own initialization section.
            segment.map.clear();
        segments.append(segment);
        if (segments.size() >= 2 * HlsPlaylist::MaxSegments)
            bound();
    }

    const QUrl m_base;
    qint64 m_number = 0;
    Milliseconds m_duration {0};
    bool m_discontinuity = false;
    bool m_isPiece = false;
    bool m_needsKey = false;
    QUrl m_map;
    std::optional<int> m_bandwidth;
    HlsPlaylist m_playlist;
};

} // namespace

QVector<HlsVariant> HlsPlaylist::orderedVariants() const
{
    QVector<HlsVariant> ordered = variants;
    std::stable_sort(ordered.begin(), ordered.end(), [](const HlsVariant &a, const HlsVariant &b) {
        const bool aFits = a.bandwidth <= AudioBandwidth;
        const bool bFits = b.bandwidth <= AudioBandwidth;
        if (aFits != bFits)
            return aFits;
        return aFits ? a.bandwidth > b.bandwidth : a.bandwidth < b.bandwidth;
    });
    return ordered;
}

int HlsPlaylist::firstSegment() const
{
    return ended ? 0 : std::max<int>(0, segments.size() - SegmentsFromEnd);
}

HlsPlaylist parseHlsPlaylist(const QByteArray &text, const QUrl &base)
{
    const QList<QByteArray> lines = playlistLines(text);
    Reader reader(base, lines.contains("#EXT-X-ENDLIST"));
    for (const QByteArray &line : lines)
        reader.takeLine(line);
    return reader.takePlaylist();
}
