// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/VeskUrl.h"

#include "api/core/log.h"
#include "api/core/percent.h"
#include "api/core/utf8.h"

#include <QSet>

#include <ostream>

namespace {

/// Whether a query parameter of this name authenticates a listener to a station or its network,
/// besides the names of veskIsSecretKey().
bool isCredential(const QString &name)
{
    static const QSet<QString> credentials {QStringLiteral("accesskey"),
        QStringLiteral("access_key"), QStringLiteral("accesstoken"), QStringLiteral("access_token"),
        QStringLiteral("apikey"), QStringLiteral("api_key"), QStringLiteral("authkey"),
        QStringLiteral("auth_key"), QStringLiteral("authtoken"), QStringLiteral("auth_token"),
        QStringLiteral("hdnea"), QStringLiteral("hdnts"), QStringLiteral("hmac"),
        QStringLiteral("jwt"), QStringLiteral("key"), QStringLiteral("pass"),
        QStringLiteral("passwd"), QStringLiteral("pwd"), QStringLiteral("secret"),
        QStringLiteral("sid"), QStringLiteral("sig"), QStringLiteral("signature"),
        QStringLiteral("wmsauthsign"), QStringLiteral("x-amz-credential"),
        QStringLiteral("x-amz-security-token"), QStringLiteral("x-amz-signature")};
    return credentials.contains(name.toLower());
}

/// The characters besides the unreserved ones that setPath() does not encode: the rest of RFC
/// 3986's "pchar", and "/".
constexpr char PathCharacters[] = "!$&'()*+,;=:@/";
/// How deep URLs inside query values are searched for secrets; a URL nested deeper is hidden as a
/// whole.
constexpr int MaxNesting = 4;

bool isPlain(ushort c)
{
    return c > 0x20 && c < 0x7F;
}

/// No early exit: nearly every URL is plain, and without one the compiler vectorises the loop.
bool isPlain(const QString &url)
{
    unsigned odd = 0;
    for (const QChar c : url)
        odd |= !isPlain(c.unicode());
    return odd == 0;
}

QString plainOf(const QString &url)
{
    // Keeps every visible ASCII character, "%" included, so that escapes are not encoded again.
    return veskPercentEncode(url, "!\"#$%&'()*+,/:;<=>?@[\\]^`{|}");
}

bool isLetter(ushort c)
{
    return (c | 0x20) >= 'a' && (c | 0x20) <= 'z';
}

bool isSchemeCharacter(ushort c)
{
    return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

/// The length of the scheme at the start of \a url; 0 when there is none.
int schemeSizeOf(const QString &url)
{
    if (url.isEmpty() || !isLetter(url.at(0).unicode()))
        return 0;
    int i = 1;
    while (i < url.size() && isSchemeCharacter(url.at(i).unicode()))
        ++i;
    return i < url.size() && url.at(i) == QLatin1Char(':') ? i : 0;
}

QString decodedSlowly(const VeskStringRef &text, bool plusIsBlank)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const ushort c = text.at(i).unicode();
        if (c == '%' && i + 2 < text.size()) {
            const int high = veskHexValue(text.at(i + 1).unicode());
            const int low = veskHexValue(text.at(i + 2).unicode());
            if (high >= 0 && low >= 0) {
                bytes.append(static_cast<char>(high * 16 + low));
                i += 2;
                continue;
            }
        }
        bytes.append(c == '+' && plusIsBlank ? ' ' : static_cast<char>(c));
    }
    // QString::fromUtf8() takes a leading U+FEFF for a byte order mark and drops it.
    const QString decoded = QString::fromUtf8(bytes);
    return bytes.startsWith("\xEF\xBB\xBF") ? QChar(QChar::ByteOrderMark) + decoded : decoded;
}

bool needsDecoding(const VeskStringRef &text, bool plusIsBlank)
{
    for (const QChar c : text) {
        if (c == QLatin1Char('%') || (c == QLatin1Char('+') && plusIsBlank))
            return true;
    }
    return false;
}

QString decoded(const VeskStringRef &text, bool plusIsBlank)
{
    return needsDecoding(text, plusIsBlank) ? decodedSlowly(text, plusIsBlank) : text.toString();
}

void appendItem(QString &out, const QString &key, const QString &value)
{
    out += veskPercentEncode(key);
    out += QLatin1Char('=');
    out += veskPercentEncode(value);
}

} // namespace

VeskUrl::VeskUrl(const QString &url)
    : m_url(isPlain(url) ? url : plainOf(url))
{
    findParts();
}

VeskUrl VeskUrl::fromEncoded(const QByteArray &url)
{
    static constexpr char Digits[] = "0123456789ABCDEF";
    QString text;
    text.reserve(url.size());
    for (const char c : url) {
        const auto byte = static_cast<uchar>(c);
        if (isPlain(byte)) {
            text += QLatin1Char(c);
        } else {
            text += QLatin1Char('%');
            text += QLatin1Char(Digits[byte >> 4]);
            text += QLatin1Char(Digits[byte & 15]);
        }
    }
    return VeskUrl(text);
}

void VeskUrl::findParts()
{
    const QChar *const text = m_url.constData();
    const int size = m_url.size();
    m_schemeSize = schemeSizeOf(m_url);
    m_authority = m_query = m_fragment = -1;
    int i = m_schemeSize > 0 ? m_schemeSize + 1 : 0;
    if (i + 1 < size && text[i] == QLatin1Char('/') && text[i + 1] == QLatin1Char('/')) {
        i += 2;
        m_authority = i;
        while (i < size && text[i] != QLatin1Char('/') && text[i] != QLatin1Char('?')
            && text[i] != QLatin1Char('#'))
            ++i;
    }
    m_path = i;
    const int hash = m_url.indexOf(QLatin1Char('#'), i);
    const int question = m_url.indexOf(QLatin1Char('?'), i);
    if (question >= 0 && (hash < 0 || question < hash))
        m_query = question + 1;
    if (hash >= 0)
        m_fragment = hash + 1;
}

int VeskUrl::pathEnd() const
{
    return m_query >= 0 ? m_query - 1 : queryEnd();
}

int VeskUrl::queryEnd() const
{
    return m_fragment >= 0 ? m_fragment - 1 : m_url.size();
}

void VeskUrl::setScheme(const QString &scheme)
{
    const int rest = m_schemeSize > 0 ? m_schemeSize + 1 : 0;
    if (scheme.isEmpty()) {
        m_url.remove(0, rest);
        // The start of the path must not be parsed as a scheme now.
        if (const int colon = schemeSizeOf(m_url))
            m_url.replace(colon, 1, QLatin1String("%3A"));
        findParts();
    } else if (schemeSizeOf(scheme + QLatin1Char(':')) == scheme.size()) {
        m_url.replace(0, rest, scheme + QLatin1Char(':'));
        findParts();
    }
}

QString VeskUrl::authority() const
{
    return m_authority < 0 ? QString() : m_url.mid(m_authority, authorityEnd() - m_authority);
}

QString VeskUrl::host() const
{
    QString host = authority();
    host.remove(0, host.lastIndexOf(QLatin1Char('@')) + 1);
    if (host.startsWith(QLatin1Char('['))) {
        const int bracket = host.indexOf(QLatin1Char(']'));
        return bracket < 0 ? host.mid(1) : host.mid(1, bracket - 1);
    }
    const int colon = host.indexOf(QLatin1Char(':'));
    return colon < 0 ? host : host.left(colon);
}

QString VeskUrl::path() const
{
    return decoded(veskMid(m_url, m_path, pathEnd() - m_path), false);
}

void VeskUrl::setPath(const QString &path)
{
    replacePath(veskPercentEncode(path, PathCharacters));
}

/// Applies RFC 3986, section 3.3: after an authority a path begins with "/". Without one, the start
/// of "//x" is encoded, which would be parsed as an authority, and that of "x:y", which would be
/// parsed as a scheme.
void VeskUrl::replacePath(const QString &encodedPath)
{
    QString path = encodedPath;
    if (m_authority >= 0) {
        if (!path.isEmpty() && !path.startsWith(QLatin1Char('/')))
            path.prepend(QLatin1Char('/'));
    } else if (path.startsWith(QLatin1String("//"))) {
        path.replace(1, 1, QLatin1String("%2F"));
    } else if (m_schemeSize == 0 && schemeSizeOf(path) > 0) {
        path.replace(schemeSizeOf(path), 1, QLatin1String("%3A"));
    }
    m_url.replace(m_path, pathEnd() - m_path, path);
    findParts();
}

/// Reads the next item from \a position, initially m_query, and advances \a position past it; false
/// when there are no more.
bool VeskUrl::nextItem(int &position, Item &item) const
{
    const QChar *const text = m_url.constData();
    const int end = queryEnd();
    while (position < end && text[position] == QLatin1Char('&'))
        ++position;
    if (m_query < 0 || position >= end)
        return false;
    item.begin = position;
    item.equals = -1;
    for (; position < end && text[position] != QLatin1Char('&'); ++position) {
        if (item.equals < 0 && text[position] == QLatin1Char('='))
            item.equals = position;
    }
    item.end = position;
    if (item.equals < 0)
        item.equals = item.end;
    return true;
}

bool VeskUrl::findItem(const QString &key, Item &item) const
{
    for (int position = m_query; nextItem(position, item);) {
        const VeskStringRef itemKey = veskMid(m_url, item.begin, item.equals - item.begin);
        if (needsDecoding(itemKey, true) ? decodedSlowly(itemKey, true) == key : itemKey == key)
            return true;
    }
    return false;
}

QString VeskUrl::valueOf(const Item &item) const
{
    if (item.equals == item.end)
        return {};
    return decoded(veskMid(m_url, item.equals + 1, item.end - item.equals - 1), true);
}

VeskUrl::QueryItems VeskUrl::queryItems() const
{
    QueryItems items;
    Item item;
    for (int position = m_query; nextItem(position, item);) {
        items.append(
            {decoded(veskMid(m_url, item.begin, item.equals - item.begin), true), valueOf(item)});
    }
    return items;
}

void VeskUrl::setQueryItems(const QueryItems &items)
{
    QString query;
    for (const auto &item : items) {
        query += query.isEmpty() ? QLatin1Char('?') : QLatin1Char('&');
        appendItem(query, item.first, item.second);
    }
    m_url.replace(pathEnd(), queryEnd() - pathEnd(), query);
    findParts();
}

void VeskUrl::addQueryItem(const QString &key, const QString &value)
{
    const int end = queryEnd();
    QString fragment;
    if (m_fragment >= 0) {
        fragment = m_url.mid(end);
        m_url.truncate(end);
    }
    if (m_query < 0) {
        m_url += QLatin1Char('?');
        m_query = m_url.size();
    } else if (end > m_query && m_url.at(end - 1) != QLatin1Char('&')) {
        m_url += QLatin1Char('&');
    }
    appendItem(m_url, key, value);
    if (m_fragment >= 0) {
        m_fragment = m_url.size() + 1;
        m_url += fragment;
    }
}

bool VeskUrl::hasQueryItem(const QString &key) const
{
    Item item;
    return findItem(key, item);
}

QString VeskUrl::queryItemValue(const QString &key) const
{
    Item item;
    return findItem(key, item) ? valueOf(item) : QString();
}

void VeskUrl::removeQueryItem(const QString &key)
{
    Item item;
    if (!findItem(key, item))
        return;
    // Removes the delimiter before the item as well: the "?" for the only item. For the first of
    // several, removes the one after it instead.
    const bool first = item.begin == m_query;
    const bool last = item.end == queryEnd();
    const int begin = first && !last ? item.begin : item.begin - 1;
    const int end = first && !last ? item.end + 1 : item.end;
    m_url.remove(begin, end - begin);
    findParts();
}

QString VeskUrl::toDisplayString() const
{
    return displayed(MaxNesting);
}

QString VeskUrl::displayText(const QString &address)
{
    const VeskUrl url(address);
    const QString shown = url.toDisplayString();
    return shown == url.m_url ? address : shown;
}

/// \a items, "key=value&...", with the values of secrets hidden, including secrets in nested URLs.
QString VeskUrl::withoutSecrets(const VeskStringRef &items, int nesting)
{
    QString shown;
    shown.reserve(items.size());
    const char *separator = "";
    for (const VeskStringRef &item : items.split(QLatin1Char('&'))) {
        shown += QLatin1String(separator);
        separator = "&";
        const int equals = item.indexOf(QLatin1Char('='));
        if (equals < 0) {
            shown += item;
            continue;
        }
        shown += item.left(equals + 1);
        const QString name = decoded(item.left(equals), true);
        if (veskIsSecretKey(name) || isCredential(name))
            shown += QLatin1String("***");
        else
            shown += withoutNestedSecrets(item.mid(equals + 1), nesting);
    }
    return shown;
}

/// The value of an item, which may itself be a URL, with the secrets in that URL hidden.
QString VeskUrl::withoutNestedSecrets(const VeskStringRef &value, int nesting)
{
    const QString address = decoded(value, true);
    if (!address.contains(QLatin1String("://")))
        return value.toString();
    if (nesting == 0)
        return QStringLiteral("***");
    const VeskUrl url(address);
    const QString shown = url.displayed(nesting - 1);
    return shown == url.m_url ? value.toString() : veskPercentEncode(shown, "*");
}

QString VeskUrl::displayed(int nesting) const
{
    QString shown;
    if (m_authority < 0) {
        shown = m_url.left(m_path);
    } else {
        const int at = m_url.lastIndexOf(QLatin1Char('@'), authorityEnd() - 1);
        shown = m_url.left(m_authority);
        if (at >= m_authority)
            shown += QLatin1String("***");
        shown += veskMid(m_url, qMax(at, m_authority), authorityEnd() - qMax(at, m_authority));
    }
    shown += veskMid(m_url, m_path, pathEnd() - m_path);
    if (m_query >= 0)
        shown += QLatin1Char('?')
            + withoutSecrets(veskMid(m_url, m_query, queryEnd() - m_query), nesting);
    if (m_fragment >= 0)
        shown += QLatin1Char('#') + withoutSecrets(veskMid(m_url, m_fragment), nesting);
    return shown;
}

std::ostream &operator<<(std::ostream &out, const VeskUrl &url)
{
    return out << url.toDisplayString();
}
