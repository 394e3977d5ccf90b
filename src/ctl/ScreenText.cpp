#include "ctl/ScreenText.h"

#include "api/values/CMPath.h"
#include "api/values/VeskValue.h"
#include "api/web/VeskJson.h"

namespace {

constexpr int IndexWidth = 4;

/// The mark of a row's kind.
QString markOf(int type)
{
    switch (type) {
    case VeskRolesType::container:
        return QStringLiteral(">");
    case VeskRolesType::header:
        return QStringLiteral("#");
    case VeskRolesType::audio:
        return QStringLiteral("\u266a");
    case VeskRolesType::value:
        return QStringLiteral("=");
    case VeskRolesType::query:
        return QStringLiteral("?");
    case VeskRolesType::activate:
        return QStringLiteral("!");
    default:
        return QStringLiteral(" ");
    }
}

/// A path for a command line; in its text form only these characters mean something to a shell.
QString quoted(const QString &path)
{
    const bool isSpecial = path.contains(QLatin1Char('&')) || path.contains(QLatin1Char('?'))
        || path.contains(QLatin1Char('~'));
    return isSpecial ? QStringLiteral("'%1'").arg(path) : path;
}

/// The path that opens the row: for a query the screen that searches, with a place for the text.
QString openingPath(const VeskRoles &row)
{
    if (row.type() == VeskRolesType::query && !row.queryPath().isEmpty()) {
        CMPath path = row.queryPath();
        path.addParam(row.query(), QStringLiteral("TEXT"));
        return path.toEncoded();
    }
    return row.type() == VeskRolesType::header ? QString() : row.path().toEncoded();
}

QString titleOf(const VeskRoles &row)
{
    QString title = plainText(row[VeskRoles::Title()]);
    if (row.type() != VeskRolesType::value)
        return title;
    return QStringLiteral("%1: %2").arg(title, plainText(row[VeskRoles::Value()]));
}

} // namespace

VeskRoles namedRoles(const QStringList &roles, const QVariantList &values)
{
    VeskRoles row;
    for (int role = 0; role < roles.size() && role < values.size(); ++role)
        row.insert(roles.at(role), values.at(role));
    return row;
}

const QStringList &rowLineRoles()
{
    static const QStringList roles {VeskRoles::Type(), VeskRoles::Title(), VeskRoles::Description(),
        VeskRoles::Path(), VeskRoles::Query(), VeskRoles::QueryPath(), VeskRoles::Value()};
    return roles;
}

std::string rowLine(int index, const QVariantList &values, const TerminalStyle &style)
{
    const VeskRoles row = namedRoles(rowLineRoles(), values);
    const QString number = QString::number(index).rightJustified(IndexWidth);
    std::string line = style.dim(number) + " " + markOf(row.type()).toStdString() + " "
        + printableText(titleOf(row)).toStdString();
    const QString description = printableText(plainText(row[VeskRoles::Description()]));
    if (!description.isEmpty())
        line += "  " + style.dim(description);
    const QString path = printableText(quoted(openingPath(row)));
    if (!path.isEmpty())
        line += "  " + style.dim(path);
    return line;
}

QString plainText(const QVariant &value)
{
    if (value.isNull())
        return {};
    if (value.userType() == QMetaType::QVariantHash) {
        const VeskValue typed(value.toHash());
        const QString key = VeskValueType::toString(typed.type());
        if (!key.isEmpty() && typed.contains(key))
            return plainText(typed[key]);
        return QString::fromUtf8(VeskJson::write(value));
    }
    if (value.userType() == QMetaType::QVariantList)
        return QString::fromUtf8(VeskJson::write(value));
    return value.toString();
}
