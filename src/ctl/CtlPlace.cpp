#include "ctl/CtlPlace.h"

namespace {

const QString &searchPrefix()
{
    static const QString prefix = QStringLiteral("search:");
    return prefix;
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

bool readRows(QStringList parts, CtlPlace &place)
{
    if (!parts.isEmpty() && parts.first() == QLatin1String("favorites")) {
        place.start = CtlPlace::Favorites;
        parts.removeFirst();
    }
    for (const QString &part : parts) {
        int row = 0;
        if (!readRow(part, row))
            return false;
        place.rows.append(row);
    }
    return place.start != CtlPlace::Root || !place.rows.isEmpty();
}

} // namespace

bool CtlPlace::parse(const QString &place, CtlPlace &result)
{
    result = CtlPlace();
    if (place.startsWith(searchPrefix())) {
        result.start = Search;
        result.text = place.mid(searchPrefix().size());
        return !result.text.isEmpty();
    }
    if (place.contains(QLatin1Char(':'))) {
        result.start = Path;
        result.path = CMPath::fromEncoded(place);
        return !result.path.isEmpty();
    }
    return place == QLatin1String("/")
        || readRows(place.split(QLatin1Char('/'), Qt::SkipEmptyParts), result);
}
