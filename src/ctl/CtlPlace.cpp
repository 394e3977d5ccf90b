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

/// Only digits: toInt() would also read signs and blanks.
bool readRow(const QString &text, int &row)
{
    for (const QChar digit : text) {
        if (digit < QLatin1Char('0') || digit > QLatin1Char('9'))
            return false;
    }
    bool ok = false;
    row = text.toInt(&ok);
    return ok;
}

bool readRows(const QStringList &parts, QVector<int> &rows)
{
    for (const QString &part : parts) {
        int row = 0;
        if (!readRow(part, row))
            return false;
        rows.append(row);
    }
    return true;
}

QStringList partsOf(const QString &text)
{
    return text.split(QLatin1Char('/'), Qt::SkipEmptyParts);
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

bool readSearch(const QString &text, CtlPlace &place)
{
    static const QRegularExpression rowsAtEnd(QStringLiteral("\\A(.*?)((?:/[0-9]+)*)/?\\z"),
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = rowsAtEnd.match(text);
    place.start = CtlPlace::Search;
    place.text = unescaped(match.captured(1)).trimmed();
    return !place.text.isEmpty() && readRows(partsOf(match.captured(2)), place.rows);
}

/// A path never has a "#" in it.
bool readPath(const QString &text, CtlPlace &place)
{
    place.start = CtlPlace::Path;
    place.path = CMPath::fromEncoded(text.section(QLatin1Char('#'), 0, 0));
    return !place.path.isEmpty()
        && readRows(partsOf(text.section(QLatin1Char('#'), 1)), place.rows);
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

bool CtlPlace::parse(const QString &place, CtlPlace &result)
{
    result = CtlPlace();
    if (place.startsWith(searchPrefix()))
        return readSearch(place.mid(searchPrefix().size()), result);
    if (place.contains(QLatin1Char(':')))
        return !place.contains(QLatin1Char(' ')) && readPath(place, result);
    if (isId(place)) {
        result.start = Id;
        result.text = place;
        return true;
    }
    QStringList parts = partsOf(place);
    if (place.startsWith(QLatin1Char('/'))) {
        result.start = Root;
    } else if (!parts.isEmpty() && parts.first() == favoritesName()) {
        result.start = Favorites;
        parts.removeFirst();
    } else if (!parts.isEmpty()) {
        result.start = Shown;
    } else {
        return false;
    }
    return readRows(parts, result.rows);
}

bool CtlPlace::parse(const QStringList &words, CtlPlace &result)
{
    int row = 0;
    if (words.size() > 1 && readRow(words.last(), row)
        && parse(words.mid(0, words.size() - 1).join(QLatin1Char(' ')), result)) {
        result.rows.append(row);
        return true;
    }
    return parse(words.join(QLatin1Char(' ')), result);
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
