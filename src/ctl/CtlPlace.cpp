// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlPlace.h"

#include <QRegularExpression>

namespace {

const QString &searchPrefix()
{
    static const QString prefix = QStringLiteral("search:");
    return prefix;
}

const QString &favoritesName()
{
    static const QString name = QStringLiteral("favorites");
    return name;
}

/// Only digits: toInt() would also accept signs and blanks.
std::optional<int> readRow(const QString &text)
{
    for (const QChar digit : text) {
        if (digit < QLatin1Char('0') || digit > QLatin1Char('9'))
            return std::nullopt;
    }
    bool ok = false;
    const int row = text.toInt(&ok);
    return ok ? std::optional(row) : std::nullopt;
}

QStringList partsOf(const QString &text)
{
    return text.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

/// \a place with the rows that \a parts number; nothing when one of them is no number.
std::optional<CtlPlace> withRows(CtlPlace place, const QStringList &parts)
{
    for (const QString &part : parts) {
        const std::optional<int> row = readRow(part);
        if (!row)
            return std::nullopt;
        place.rows.append(*row);
    }
    return place;
}

/// A "/" of the text itself, which would otherwise lead to a row.
QString escaped(QString text)
{
    return text.replace(QLatin1Char('%'), QLatin1String("%25"))
        .replace(QLatin1Char('/'), QLatin1String("%2F"));
}

QString unescaped(QString text)
{
    return text.replace(QLatin1String("%2F"), QLatin1String("/"), Qt::CaseInsensitive)
        .replace(QLatin1String("%25"), QLatin1String("%"));
}

std::optional<CtlPlace> readSearch(const QString &text)
{
    static const QRegularExpression rowsAtEnd(QStringLiteral("\\A(.*?)((?:/[0-9]+)*)/?\\z"),
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = rowsAtEnd.match(text);
    const QString wanted = unescaped(match.captured(1)).trimmed();
    if (wanted.isEmpty())
        return std::nullopt;
    return withRows(CtlPlace::found(wanted), partsOf(match.captured(2)));
}

/// A path never has a "#" in it.
std::optional<CtlPlace> readPath(const QString &text)
{
    const CMPath path = CMPath::fromEncoded(text.section(QLatin1Char('#'), 0, 0));
    if (path.isEmpty())
        return std::nullopt;
    return withRows(CtlPlace::of(path), partsOf(text.section(QLatin1Char('#'), 1)));
}

/// Letters, digits and little else, with a digit among them: names are searched for.
bool isId(const QString &text)
{
    static const QRegularExpression id(
        QStringLiteral("\\A(?=.*[0-9])(?=.*[A-Za-z])[A-Za-z0-9][A-Za-z0-9._-]*\\z"));
    return id.match(text).hasMatch();
}

QString joined(const QVector<int> &rows)
{
    QStringList numbers;
    for (const int row : rows)
        numbers.append(QString::number(row));
    return numbers.join(QLatin1Char('/'));
}

} // namespace

std::optional<CtlPlace> CtlPlace::parse(const QString &place)
{
    if (place.startsWith(searchPrefix()))
        return readSearch(place.mid(searchPrefix().size()));
    if (place.contains(QLatin1Char(':')))
        return place.contains(QLatin1Char(' ')) ? std::nullopt : readPath(place);
    if (isId(place)) {
        CtlPlace named;
        named.start = Id;
        named.text = place;
        return named;
    }
    QStringList parts = partsOf(place);
    if (place.startsWith(QLatin1Char('/')))
        return withRows(CtlPlace(), parts);
    if (parts.isEmpty())
        return std::nullopt;
    if (parts.first() == favoritesName()) {
        parts.removeFirst();
        return withRows(favorites(), parts);
    }
    CtlPlace shown;
    shown.start = Shown;
    return withRows(shown, parts);
}

std::optional<CtlPlace> CtlPlace::parse(const QStringList &words)
{
    const std::optional<int> row = words.size() > 1 ? readRow(words.last()) : std::nullopt;
    if (row) {
        const auto list = parse(words.mid(0, words.size() - 1).join(QLatin1Char(' ')));
        if (list)
            return list->row(*row);
    }
    return parse(words.join(QLatin1Char(' ')));
}

CtlPlace CtlPlace::of(const CMPath &path)
{
    CtlPlace place;
    place.start = Path;
    place.path = path;
    return place;
}

CtlPlace CtlPlace::found(const QString &text)
{
    CtlPlace place;
    place.start = Search;
    place.text = text;
    return place;
}

CtlPlace CtlPlace::favorites()
{
    CtlPlace place;
    place.start = Favorites;
    return place;
}

CtlPlace CtlPlace::row(int index) const
{
    CtlPlace place = *this;
    place.rows.append(index);
    return place;
}

QString CtlPlace::toText() const
{
    const QString numbers = joined(rows);
    const auto with = [&](const QString &name, QChar mark) {
        return rows.isEmpty() ? name : name + mark + numbers;
    };
    switch (start) {
    case Shown:
        return numbers;
    case Root:
        return QLatin1Char('/') + numbers;
    case Favorites:
        return with(favoritesName(), QLatin1Char('/'));
    case Search:
        return with(searchPrefix() + escaped(text), QLatin1Char('/'));
    case Path:
        return with(path.toEncoded(), QLatin1Char('#'));
    case Id:
        break;
    }
    return with(text, QLatin1Char('#'));
}
