// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/Playlist.h"

#include "host/player/PlaylistMarkup.h"

#include <algorithm>

namespace {

/// Enough to find any of the signatures below, after leading blank lines and comments.
constexpr int SniffBytes = 1024;
/// Longer than any address in use.
constexpr int MaxAddress = 8 * 1024;

bool isText(const QByteArray &bytes)
{
    // The sync byte of MP3 and ADTS frames; no playlist begins with it.
    return !bytes.startsWith('\xFF') && std::all_of(bytes.begin(), bytes.end(), [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte >= 0x20 || byte == '\t' || byte == '\n' || byte == '\r' || byte == '\f';
    });
}

QByteArray withoutByteOrderMark(const QByteArray &text)
{
    return text.startsWith("\xEF\xBB\xBF") ? text.mid(3) : text;
}

/// The value of a "File1=..." line of a pls file, or of a "Ref1=..." line of the older asx format;
/// case and spaces do not matter. Null for other lines.
QByteArray numberedValue(const QByteArray &line)
{
    const int equals = line.indexOf('=');
    const QByteArray key = line.left(std::max(equals, 0)).trimmed().toLower();
    for (const char *name : {"file", "ref"}) {
        const int length = static_cast<int>(qstrlen(name));
        const QByteArray number = key.mid(length);
        if (key.startsWith(name) && !number.isEmpty()
            && std::all_of(
                number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; }))
            return line.mid(equals + 1).trimmed();
    }
    return {};
}

/// Percent-encodes an address that is not UTF-8, so that the server receives the same bytes.
QByteArray withBytesEncoded(const QByteArray &address)
{
    if (QString::fromUtf8(address).toUtf8() == address)
        return address;
    QByteArray encoded;
    for (const char c : address)
        encoded += static_cast<unsigned char>(c) < 0x80 ? QByteArray(1, c)
                                                        : '%' + QByteArray(1, c).toHex().toUpper();
    return encoded;
}

bool isHttpAddress(const QByteArray &line)
{
    const QByteArray begin = line.left(8).toLower();
    return begin.startsWith("http://") || begin.startsWith("https://");
}

StreamContent kindOfMarkup(const QByteArray &begin)
{
    if (begin.toLower().contains("<!doctype html"))
        return StreamContent::WebPage;
    PlaylistMarkup markup(begin);
    while (markup.toNextTag()) {
        const QByteArray &name = markup.name();
        if (name == "asx")
            return StreamContent::Asx;
        if (name == "playlist")
            return StreamContent::Xspf;
        if (name == "html" || name == "head" || name == "body")
            return StreamContent::WebPage;
    }
    return StreamContent::Text;
}

/// The kind of a text by its first line that is not a comment.
StreamContent kindOfLine(const QByteArray &line)
{
    const QByteArray lowered = line.toLower();
    if (lowered == "[playlist]" || lowered == "[reference]" || lowered.startsWith("numberofentries")
        || !numberedValue(line).isNull())
        return StreamContent::Pls;
    if (isHttpAddress(line))
        return StreamContent::M3u;
    return StreamContent::Text;
}

StreamContent kindOfText(const QByteArray &text)
{
    const QList<QByteArray> lines = playlistLines(text);
    if (lines.isEmpty())
        return StreamContent::Text;
    if (lines.first().startsWith('<'))
        return kindOfMarkup(text);
    // RFC 8216, 4.3: these tags occur in HLS playlists only; #EXTINF occurs in plain m3u as well.
    const auto isLiveStreaming = [](const QByteArray &line) { return line.startsWith("#EXT-X-"); };
    if (std::any_of(lines.begin(), lines.end(), isLiveStreaming))
        return StreamContent::Hls;
    if (lines.first().toUpper().startsWith("#EXTM3U"))
        return StreamContent::M3u;
    const auto first = std::find_if(
        lines.begin(), lines.end(), [](const QByteArray &line) { return !line.startsWith('#'); });
    return first == lines.end() ? StreamContent::Text : kindOfLine(*first);
}

QList<QByteArray> addressesOfAsx(const QByteArray &text)
{
    QList<QByteArray> addresses;
    PlaylistMarkup markup(text);
    while (markup.toNextTag()) {
        if (markup.name() == "ref" || markup.name() == "entryref")
            addresses.append(markup.href());
    }
    return addresses;
}

QList<QByteArray> addressesOfXspf(const QByteArray &text)
{
    QList<QByteArray> addresses;
    PlaylistMarkup markup(text);
    // A location outside of a track belongs to the playlist itself.
    bool inTrack = false;
    while (markup.toNextTag()) {
        if (markup.name() == "track")
            inTrack = !markup.isClosing();
        else if (inTrack && markup.name() == "location" && !markup.isClosing())
            addresses.append(markup.content());
    }
    return addresses;
}

QList<QByteArray> addressesOfPls(const QByteArray &text)
{
    QList<QByteArray> addresses;
    const QList<QByteArray> lines = playlistLines(text);
    for (const QByteArray &line : lines) {
        const QByteArray value = numberedValue(line);
        if (!value.isEmpty())
            addresses.append(value);
    }
    return addresses;
}

QList<QByteArray> addressesOfM3u(const QByteArray &text)
{
    QList<QByteArray> addresses = playlistLines(text);
    addresses.erase(std::remove_if(addresses.begin(), addresses.end(),
                        [](const QByteArray &line) { return line.startsWith('#'); }),
        addresses.end());
    return addresses;
}

QList<QByteArray> addressesOf(const QByteArray &text, StreamContent content)
{
    switch (content) {
    case StreamContent::M3u:
        return addressesOfM3u(text);
    case StreamContent::Pls:
        return addressesOfPls(text);
    case StreamContent::Asx:
        return addressesOfAsx(text);
    case StreamContent::Xspf:
        return addressesOfXspf(text);
    default:
        return {};
    }
}

} // namespace

QList<QByteArray> playlistLines(const QByteArray &text)
{
    // At the size limit the last line may be incomplete.
    const bool cut = text.size() >= PlaylistLimits::MaxBytes;
    const QByteArray bounded = withoutByteOrderMark(text.left(PlaylistLimits::MaxBytes));
    QList<QByteArray> lines;
    int begin = 0;
    while (begin < bounded.size()) {
        int end = begin;
        while (end < bounded.size() && bounded.at(end) != '\n' && bounded.at(end) != '\r')
            ++end;
        const QByteArray line = bounded.mid(begin, end - begin).trimmed();
        if (!line.isEmpty() && !(cut && end == bounded.size()))
            lines.append(line);
        begin = end + 1;
    }
    return lines;
}

StreamContent sniffStream(const QByteArray &begin, bool complete)
{
    // A control character or a frame sync means audio; text is judged once there is enough of it.
    const QByteArray bytes = withoutByteOrderMark(begin.left(SniffBytes));
    if (!isText(bytes))
        return StreamContent::Audio;
    if (!complete && begin.size() < SniffBytes)
        return StreamContent::Undecided;
    return kindOfText(bytes);
}

bool isPlaylist(StreamContent content)
{
    return content == StreamContent::M3u || content == StreamContent::Pls
        || content == StreamContent::Asx || content == StreamContent::Xspf;
}

QUrl playlistAddress(const QByteArray &address, const QUrl &base)
{
    if (address.isEmpty() || address.size() > MaxAddress)
        return {};
    const QUrl url = base.resolved(QUrl::fromEncoded(withBytesEncoded(address)));
    const QString scheme = url.scheme();
    const bool usable = url.isValid() && !url.host().isEmpty()
        && (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
    return usable ? url : QUrl();
}

QList<QUrl> parsePlaylist(const QByteArray &text, StreamContent content, const QUrl &base)
{
    QList<QUrl> urls;
    const QList<QByteArray> addresses = addressesOf(text.left(PlaylistLimits::MaxBytes), content);
    for (const QByteArray &address : addresses) {
        if (urls.size() >= PlaylistLimits::MaxEntries)
            break;
        const QUrl url = playlistAddress(address, base);
        if (!url.isEmpty())
            urls.append(url);
    }
    return urls;
}
