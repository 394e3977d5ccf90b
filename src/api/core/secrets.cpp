// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/secrets.h"

#include "api/core/percent.h"

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <cstring>

namespace {

const QLatin1String Hidden("***");
/// So deep secrets are looked for in addresses inside addresses; what lies deeper is not shown.
constexpr int MaxNesting = 4;

using Names = QSet<QString>;

/// In any address: what tells of the stream and not of the listener.
const Names &streamNames()
{
    static const Names names {QStringLiteral("bitrate"), QStringLiteral("channel"),
        QStringLiteral("codec"), QStringLiteral("ext"), QStringLiteral("format"),
        QStringLiteral("formats"), QStringLiteral("lang"), QStringLiteral("language"),
        QStringLiteral("locale"), QStringLiteral("mount"), QStringLiteral("quality"),
        QStringLiteral("rate"), QStringLiteral("render"), QStringLiteral("station"),
        QStringLiteral("stream"), QStringLiteral("type")};
    return names;
}

/// At the directory's pages: what is asked for, not who asks and from where.
const Names &pageNames()
{
    static const Names names {QStringLiteral("c"), QStringLiteral("duration"),
        QStringLiteral("error"), QStringLiteral("filter"), QStringLiteral("id"),
        QStringLiteral("message"), QStringLiteral("offset"), QStringLiteral("pivot"),
        QStringLiteral("query"), QStringLiteral("sid"), QStringLiteral("streamurl"),
        QStringLiteral("trigger"), QStringLiteral("url")};
    return names;
}

/// In paths: what plug-ins give their screens, beside all that begins with "vesk".
const Names &pathNames()
{
    static const Names names {
        QStringLiteral("guideid"), QStringLiteral("query"), QStringLiteral("stationid")};
    return names;
}

enum class Kind { Stream, Page, Path };

/// \a path is that of an address, or the base of a CMPath.
Kind kindOf(bool isCMPath, const QStringRef &path)
{
    if (path.endsWith(QLatin1String(".ashx"), Qt::CaseInsensitive))
        return Kind::Page;
    return isCMPath ? Kind::Path : Kind::Stream;
}

bool isHarmless(Kind kind, const QString &name)
{
    const QString lower = name.toLower();
    if (streamNames().contains(lower))
        return true;
    if (kind == Kind::Stream || veskIsSecretKey(lower))
        return false;
    return lower.startsWith(QLatin1String("vesk"))
        || (kind == Kind::Page ? pageNames() : pathNames()).contains(lower);
}

bool isSchemeCharacter(QChar c)
{
    const ushort unit = c.unicode();
    const ushort letter = unit | 0x20;
    return (letter >= 'a' && letter <= 'z') || (unit >= '0' && unit <= '9') || unit == '+'
        || unit == '-' || unit == '.';
}

/// The size of the scheme or prefix that \a address begins with, its colon included; 0 without.
int schemeSize(const QString &address)
{
    const auto *const end = std::find_if_not(address.begin(), address.end(), isSchemeCharacter);
    const bool is = end != address.begin() && end != address.end() && *end == QLatin1Char(':');
    return is ? static_cast<int>(end - address.begin()) + 1 : 0;
}

/// Where the first of the characters is; the size without one.
int firstOf(const char *characters, const QString &text, int from)
{
    const auto isOneOfThem = [characters](QChar c) {
        const ushort unit = c.unicode();
        return unit > 0 && unit < 128 && std::strchr(characters, unit) != nullptr;
    };
    const auto *const end = std::find_if(text.begin() + from, text.end(), isOneOfThem);
    return static_cast<int>(end - text.begin());
}

bool mayHide(const QString &text)
{
    return text.contains(QLatin1Char('?')) || text.contains(QLatin1Char('#'))
        || text.contains(QLatin1String("//"));
}

QString shownAddress(const QString &address, int nesting);

/// A value that may be an address itself.
QString shownValue(const QString &value, int nesting)
{
    if (!mayHide(value))
        return value;
    return nesting == 0 ? QString(Hidden) : shownAddress(value, nesting - 1);
}

/// One item of a query, "key=value".
QString shownItem(Kind kind, const QStringRef &item, int nesting)
{
    const int equals = item.indexOf(QLatin1Char('='));
    if (item.isEmpty())
        return {};
    if (equals < 0)
        return Hidden;
    const QStringRef start = item.left(equals + 1);
    if (!isHarmless(kind, veskPercentDecodeLeniently(item.left(equals), true)))
        return start + Hidden;
    const QStringRef encoded = item.mid(equals + 1);
    const QString value = veskPercentDecodeLeniently(encoded, true);
    const QString shown = shownValue(value, nesting);
    return start + (shown == value ? encoded.toString() : veskPercentEncode(shown, "*"));
}

QString shownItems(Kind kind, const QStringRef &items, int nesting)
{
    QStringList all;
    for (const QStringRef &item : items.split(QLatin1Char('&')))
        all += shownItem(kind, item, nesting);
    return all.join(QLatin1Char('&'));
}

QString shownAddress(const QString &address, int nesting)
{
    const int scheme = schemeSize(address);
    const bool hasAuthority = address.midRef(scheme, 2) == QLatin1String("//");
    const int authority = hasAuthority ? scheme + 2 : scheme;
    const int path = hasAuthority ? firstOf("/?#", address, authority) : authority;
    const int pathEnd = firstOf("?#", address, path);
    const int queryEnd = firstOf("#", address, pathEnd);
    const Kind kind = kindOf(scheme > 0 && !hasAuthority, address.midRef(path, pathEnd - path));

    QString shown = address.left(authority);
    const QStringRef host = address.midRef(authority, path - authority);
    const int at = host.lastIndexOf(QLatin1Char('@'));
    if (at >= 0)
        shown += Hidden;
    shown += host.mid(std::max(at, 0));
    shown += address.midRef(path, pathEnd - path);
    if (pathEnd < queryEnd) {
        shown += QLatin1Char('?');
        shown += shownItems(kind, address.midRef(pathEnd + 1, queryEnd - pathEnd - 1), nesting);
    }
    if (queryEnd < address.size())
        shown += QLatin1Char('#') + shownItems(kind, address.midRef(queryEnd + 1), nesting);
    return shown;
}

} // namespace

bool veskIsSecretKey(const QString &key)
{
    static const QLatin1String names[] = {QLatin1String("password"), QLatin1String("session"),
        QLatin1String("sessionid"), QLatin1String("session_id"), QLatin1String("token")};
    return std::any_of(std::begin(names), std::end(names), [&key](QLatin1String name) {
        return key.size() == name.size() && key.compare(name, Qt::CaseInsensitive) == 0;
    });
}

QString veskWithoutSecrets(const QString &address)
{
    return shownAddress(address, MaxNesting);
}

QString veskTextWithoutSecrets(const QString &text)
{
    const bool mayBeAddress = schemeSize(text) > 0 && mayHide(text)
        && std::none_of(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
    return mayBeAddress ? veskWithoutSecrets(text) : text;
}

QString veskShownParameter(const QString &base, const QString &name, const QString &value)
{
    return isHarmless(kindOf(true, base.midRef(0)), name) ? shownValue(value, MaxNesting)
                                                          : QString(Hidden);
}
