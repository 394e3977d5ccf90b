#include "host/player/Playlist.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

/// As much as any of the marks below needs, blank lines and comments before them included.
constexpr int SniffBytes = 1024;
constexpr int MaxAddress = 8 * 1024;

bool isText(const QByteArray &bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte >= 0x20 || byte == '\t' || byte == '\n' || byte == '\r' || byte == '\f';
    });
}

QByteArray withoutByteOrderMark(const QByteArray &text)
{
    return text.startsWith("\xEF\xBB\xBF") ? text.mid(3) : text;
}

/// The lines that are neither empty nor comments, without blanks around them.
QList<QByteArray> linesOf(const QByteArray &text)
{
    QList<QByteArray> lines;
    int begin = 0;
    while (begin < text.size()) {
        int end = begin;
        while (end < text.size() && text.at(end) != '\n' && text.at(end) != '\r')
            ++end;
        const QByteArray line = text.mid(begin, end - begin).trimmed();
        if (!line.isEmpty() && line.size() <= MaxAddress)
            lines.append(line);
        begin = end + 1;
    }
    return lines;
}

/// The value of a line "File1=...", in whatever case and with whatever blanks; of pls files and of
/// the older form of asx files ("Ref1=..."). Null for other lines.
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

bool isHttpAddress(const QByteArray &line)
{
    const QByteArray begin = line.left(8).toLower();
    return begin.startsWith("http://") || begin.startsWith("https://");
}

StreamContent kindOfMarkup(const QByteArray &lowered)
{
    if (lowered.contains("<asx"))
        return StreamContent::Asx;
    if (lowered.contains("<playlist"))
        return StreamContent::Xspf;
    if (lowered.contains("<html") || lowered.contains("<!doctype html") || lowered.contains("<head")
        || lowered.contains("<body"))
        return StreamContent::WebPage;
    return StreamContent::Text;
}

StreamContent kindOfLine(const QByteArray &line)
{
    const QByteArray lowered = line.toLower();
    if (lowered == "[playlist]" || lowered == "[reference]" || !numberedValue(line).isNull())
        return StreamContent::Pls;
    if (isHttpAddress(line))
        return StreamContent::M3u;
    return StreamContent::Text;
}

StreamContent kindOfText(const QByteArray &text)
{
    const QList<QByteArray> lines = linesOf(text);
    if (lines.isEmpty())
        return StreamContent::Text;
    if (lines.first().startsWith('<'))
        return kindOfMarkup(text.toLower());
    const bool extended = lines.first().startsWith("#EXTM3U");
    for (const QByteArray &line : lines) {
        if (line.startsWith("#EXT-X-"))
            return StreamContent::Hls;
        if (line.startsWith('#'))
            continue;
        return extended ? StreamContent::M3u : kindOfLine(line);
    }
    return extended ? StreamContent::M3u : StreamContent::Text;
}

/// Entities of XML and numeric ones; what is none stands for itself.
QByteArray withoutEntities(const QByteArray &text)
{
    static const QList<QPair<QByteArray, QByteArray>> entities {{"&lt;", "<"}, {"&gt;", ">"},
        {"&quot;", "\""}, {"&apos;", "'"}, {"&#38;", "&"}, {"&#x26;", "&"}, {"&amp;", "&"}};
    QByteArray plain = text;
    for (const auto &entity : entities)
        plain.replace(entity.first, entity.second);
    return plain;
}

/// The addresses in attributes or elements, as \a pattern's first group finds them. Files of these
/// kinds are often no well-formed XML.
QList<QByteArray> found(const QByteArray &text, const QRegularExpression &pattern)
{
    QList<QByteArray> addresses;
    auto matches = pattern.globalMatch(QString::fromLatin1(text));
    while (matches.hasNext() && addresses.size() < PlaylistLimits::MaxEntries) {
        const QByteArray address = matches.next().captured(1).trimmed().toLatin1();
        if (address.size() <= MaxAddress)
            addresses.append(withoutEntities(address));
    }
    return addresses;
}

QList<QByteArray> addressesOfAsx(const QByteArray &text)
{
    static const QRegularExpression reference(
        QStringLiteral("<\\s*(?:entry)?ref\\b[^>]{0,1000}?\\bhref\\s*=\\s*[\"']([^\"'>]*)[\"']"),
        QRegularExpression::CaseInsensitiveOption);
    return found(text, reference);
}

QList<QByteArray> addressesOfXspf(const QByteArray &text)
{
    static const QRegularExpression location(QStringLiteral("<location>([^<]*)</location>"));
    return found(text, location);
}

QList<QByteArray> addressesOfPls(const QByteArray &text)
{
    QList<QByteArray> addresses;
    const QList<QByteArray> lines = linesOf(text);
    for (const QByteArray &line : lines) {
        const QByteArray value = numberedValue(line);
        if (!value.isEmpty())
            addresses.append(value);
    }
    return addresses;
}

QList<QByteArray> addressesOfM3u(const QByteArray &text)
{
    QList<QByteArray> addresses = linesOf(text);
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

StreamContent sniffStream(const QByteArray &begin, bool complete)
{
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

QList<QUrl> parsePlaylist(const QByteArray &text, StreamContent content, const QUrl &base)
{
    const QByteArray bounded = withoutByteOrderMark(text.left(PlaylistLimits::MaxBytes));
    QList<QUrl> urls;
    const QList<QByteArray> addresses = addressesOf(bounded, content);
    for (const QByteArray &address : addresses) {
        if (urls.size() >= PlaylistLimits::MaxEntries)
            break;
        const QUrl url = base.resolved(QUrl::fromEncoded(address, QUrl::TolerantMode));
        const QString scheme = url.scheme();
        if (url.isValid() && !url.host().isEmpty()
            && (scheme == QLatin1String("http") || scheme == QLatin1String("https")))
            urls.append(url);
    }
    return urls;
}
