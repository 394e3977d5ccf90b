// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/radiobrowser/RadioBrowserData.h"

#include "api/values/MimeTypes.h"
#include "api/web/VeskJson.h"
#include "api/web/VeskUrl.h"

#include <QUuid>

#include <algorithm>

namespace {

constexpr int LongestName = 200;
constexpr int LongestWord = 60;
constexpr int LongestUrl = 2000;
/// Of a text that is split and cut afterwards.
constexpr int LongestTags = 1000;
constexpr int MostTags = 3;
/// Some stations claim millions.
constexpr int MostKilobits = 10000;

QString webAddress(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty() || trimmed.size() > LongestUrl)
        return {};
    const VeskUrl url(trimmed);
    const QString scheme = url.scheme().toLower();
    const bool isWeb = scheme == QLatin1String("http") || scheme == QLatin1String("https");
    return isWeb && !url.host().isEmpty() ? url.toString() : QString();
}

/// Empty where the directory does not know it.
QString knownCodec(const QString &codec)
{
    const QString name = radioBrowserText(codec, LongestWord);
    return name.compare(QLatin1String("UNKNOWN"), Qt::CaseInsensitive) == 0 ? QString() : name;
}

} // namespace

QString RadioBrowserStation::uuid() const
{
    const QUuid uuid(text(QStringLiteral("stationuuid")));
    return uuid.isNull() ? QString() : uuid.toString(QUuid::WithoutBraces);
}

QString RadioBrowserStation::name() const
{
    return radioBrowserText(text(QStringLiteral("name")), LongestName);
}

QString RadioBrowserStation::streamUrl() const
{
    const QString resolved = webAddress(text(QStringLiteral("url_resolved")));
    return resolved.isEmpty() ? webAddress(text(QStringLiteral("url"))) : resolved;
}

QString RadioBrowserStation::mimeType() const
{
    struct Type {
        const char *codec;
        const char *mime;
    };
    static constexpr Type Types[] = {{"MP3", "audio/mpeg"}, {"AAC", "audio/aac"},
        {"AAC+", "audio/aac"}, {"OGG", "audio/ogg"}, {"OPUS", "audio/ogg"}, {"FLAC", "audio/flac"}};
    if (number(QStringLiteral("hls")) == 1)
        return QStringLiteral("application/vnd.apple.mpegurl");
    const QString codec = knownCodec(text(QStringLiteral("codec"))).toUpper();
    const auto *const found = std::find_if(std::begin(Types), std::end(Types),
        [&codec](const Type &type) { return codec == QLatin1String(type.codec); });
    return found == std::end(Types) ? MimeTypes::Audio::unknown()
                                    : QString::fromLatin1(found->mime);
}

int RadioBrowserStation::bitRate() const
{
    const int kilobits = number(QStringLiteral("bitrate"));
    return kilobits > 0 && kilobits <= MostKilobits ? kilobits * 1000 : 0;
}

QString RadioBrowserStation::icon() const
{
    return webAddress(text(QStringLiteral("favicon")));
}

QStringList RadioBrowserStation::tags() const
{
    QStringList tags;
    const QString all = text(QStringLiteral("tags")).left(LongestTags);
    const QStringList each = all.split(QLatin1Char(','));
    for (const QString &tag : each) {
        const QString word = radioBrowserText(tag, LongestWord);
        if (!word.isEmpty() && tags.size() < MostTags)
            tags.append(word);
    }
    return tags;
}

QString RadioBrowserStation::description() const
{
    QStringList parts {knownCodec(text(QStringLiteral("codec")))};
    if (bitRate() > 0)
        parts.append(QStringLiteral("%1 kbit/s").arg(bitRate() / 1000));
    parts.append(radioBrowserText(text(QStringLiteral("country")), LongestWord));
    parts.append(tags());
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QVariantHash RadioBrowserStation::kept() const
{
    return {{QStringLiteral("stationuuid"), uuid()}, {QStringLiteral("name"), name()},
        {QStringLiteral("url_resolved"), streamUrl()},
        {QStringLiteral("codec"), knownCodec(text(QStringLiteral("codec")))},
        {QStringLiteral("bitrate"), bitRate() / 1000},
        {QStringLiteral("hls"), number(QStringLiteral("hls")) == 1 ? 1 : 0},
        {QStringLiteral("country"), radioBrowserText(text(QStringLiteral("country")), LongestWord)},
        {QStringLiteral("tags"), tags().join(QLatin1Char(','))},
        {QStringLiteral("favicon"), icon()}};
}

QString RadioBrowserCategory::name() const
{
    return radioBrowserText(text(QStringLiteral("name")), LongestName);
}

QString RadioBrowserCategory::countryCode() const
{
    const QString code = text(QStringLiteral("iso_3166_1")).toUpper();
    const auto isLetter = [](QChar c) { return c >= QLatin1Char('A') && c <= QLatin1Char('Z'); };
    return code.size() == 2 && std::all_of(code.begin(), code.end(), isLetter) ? code : QString();
}

int RadioBrowserCategory::stationCount() const
{
    return std::max(0, number(QStringLiteral("stationcount")));
}

std::optional<QVariantList> radioBrowserEntries(const QByteArray &json, int most)
{
    VeskError error;
    const QVariant parsed = VeskJson::parse(json, error);
    if (!error.isEmpty() || parsed.userType() != QMetaType::QVariantList)
        return std::nullopt;
    QVariantList entries = parsed.toList().mid(0, most);
    for (QVariant &entry : entries) {
        if (entry.userType() != QMetaType::QVariantHash)
            entry = QVariantHash();
    }
    return entries;
}

QString radioBrowserText(const QString &text, int longest)
{
    QString line;
    // Cut before it is looked at any closer: it may be megabytes.
    for (const QChar c : text.left(4 * longest).simplified()) {
        if (c.category() != QChar::Other_Control && line.size() < longest)
            line.append(c);
    }
    if (line.size() == longest && line.at(longest - 1).isHighSurrogate())
        line.chop(1);
    return line.trimmed();
}
