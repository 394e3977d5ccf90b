#include "host/player/HlsPlaylist.h"

#include "host/player/Playlist.h"

#include <algorithm>
#include <cmath>

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds ShortestTarget {1000};
constexpr Milliseconds LongestTarget {60000};
/// What audio alone needs at most; what is above carries pictures.
constexpr int AudioBandwidth = 400000;
/// Segments before the end of a stream that goes on, as RFC 8216, 6.3.3 wants it.
constexpr int SegmentsFromEnd = 3;

Milliseconds seconds(const QByteArray &text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    const bool usable = ok && std::isfinite(value) && value > 0;
    return std::min(Milliseconds(static_cast<qint64>(usable ? std::min(value, 3600.0) * 1000 : 0)),
        LongestTarget);
}

/// The value of \a name in an attribute list (RFC 8216, 4.2), without quotes; empty when it is not
/// there.
QByteArray attribute(const QByteArray &list, const QByteArray &name)
{
    int position = 0;
    while (position < list.size()) {
        const int equals = list.indexOf('=', position);
        if (equals < 0)
            return {};
        const QByteArray key = list.mid(position, equals - position).trimmed();
        const bool quoted = equals + 1 < list.size() && list.at(equals + 1) == '"';
        const int begin = quoted ? equals + 2 : equals + 1;
        int end = list.indexOf(quoted ? '"' : ',', begin);
        end = end < 0 ? list.size() : end;
        if (key == name)
            return list.mid(begin, end - begin);
        const int comma = quoted ? list.indexOf(',', end) : end;
        position = comma < 0 ? list.size() : comma + 1;
    }
    return {};
}

/// Reads line by line; what a tag says counts for the address that follows it.
class Reader {
public:
    explicit Reader(const QUrl &base)
        : m_base(base)
    {
    }

    void takeLine(const QByteArray &line)
    {
        if (line.startsWith('#'))
            takeTag(line);
        else
            takeAddress(line);
    }

    HlsPlaylist playlist;

private:
    void takeTag(const QByteArray &line)
    {
        const int colon = line.indexOf(':');
        const QByteArray tag = line.left(colon < 0 ? line.size() : colon);
        const QByteArray value = colon < 0 ? QByteArray() : line.mid(colon + 1);
        if (tag == "#EXTINF")
            m_duration = seconds(value.left(value.indexOf(',')));
        else if (tag == "#EXT-X-TARGETDURATION")
            playlist.targetDuration = std::max(seconds(value), ShortestTarget);
        else if (tag == "#EXT-X-MEDIA-SEQUENCE")
            m_number = std::max<qint64>(0, value.toLongLong());
        else if (tag == "#EXT-X-DISCONTINUITY")
            m_discontinuity = true;
        else if (tag == "#EXT-X-ENDLIST")
            playlist.ended = true;
        else if (tag == "#EXT-X-KEY")
            playlist.encrypted |= attribute(value, "METHOD") != "NONE";
        else if (tag == "#EXT-X-MAP")
            m_map = resolved(attribute(value, "URI"));
        else if (tag == "#EXT-X-STREAM-INF")
            m_bandwidth = std::max(1, attribute(value, "BANDWIDTH").toInt());
    }

    void takeAddress(const QByteArray &line)
    {
        const QUrl url = resolved(line);
        const bool isVariant = m_bandwidth > 0;
        if (isVariant && !url.isEmpty() && playlist.variants.size() < HlsPlaylist::MaxVariants)
            playlist.variants.append({url, m_bandwidth});
        m_bandwidth = 0;
        if (isVariant)
            return;
        if (!url.isEmpty() && playlist.segments.size() < HlsPlaylist::MaxSegments) {
            playlist.segments.append({url, m_number, m_duration, m_discontinuity, m_map});
            m_discontinuity = false;
        }
        if (m_number < std::numeric_limits<qint64>::max())
            ++m_number;
        m_duration = Milliseconds(0);
    }

    QUrl resolved(const QByteArray &address) const
    {
        if (address.isEmpty())
            return {};
        const QUrl url = m_base.resolved(QUrl::fromEncoded(address, QUrl::TolerantMode));
        const QString scheme = url.scheme();
        const bool usable = url.isValid() && !url.host().isEmpty()
            && (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
        return usable ? url : QUrl();
    }

    const QUrl m_base;
    qint64 m_number = 0;
    Milliseconds m_duration {0};
    bool m_discontinuity = false;
    QUrl m_map;
    int m_bandwidth = 0;
};

} // namespace

HlsVariant HlsPlaylist::bestVariant() const
{
    HlsVariant best;
    for (const HlsVariant &variant : variants) {
        const bool fits = variant.bandwidth <= AudioBandwidth;
        const bool bestFits = best.bandwidth <= AudioBandwidth;
        const bool better = fits == bestFits && fits ? variant.bandwidth > best.bandwidth
            : fits == bestFits                       ? variant.bandwidth < best.bandwidth
                                                     : fits;
        if (best.url.isEmpty() || better)
            best = variant;
    }
    return best;
}

int HlsPlaylist::firstSegment() const
{
    return ended ? 0 : std::max(0, segments.size() - SegmentsFromEnd);
}

HlsPlaylist parseHlsPlaylist(const QByteArray &text, const QUrl &base)
{
    Reader reader(base);
    const QList<QByteArray> lines = text.left(PlaylistLimits::MaxBytes).split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray trimmed = line.trimmed();
        if (!trimmed.isEmpty())
            reader.takeLine(trimmed);
    }
    return std::move(reader.playlist);
}
