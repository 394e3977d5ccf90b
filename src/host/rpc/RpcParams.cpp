// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/RpcParams.h"

#include "api/values/VeskRoles.h"

#include <cmath>
#include <limits>

RpcParams::RpcParams(const QVariantHash &params)
    : m_params(params)
{
}

JsonRpcError RpcParams::error() const
{
    return {JsonRpcError::InvalidParams, m_error, {}};
}

CMPath RpcParams::path()
{
    return path(QStringLiteral("path"));
}

CMPath RpcParams::screen()
{
    return path(QStringLiteral("screen"));
}

CMPath RpcParams::path(const QString &name)
{
    const QVariant value = m_params.value(name);
    const CMPath path
        = value.userType() == QMetaType::QString ? CMPath::fromEncoded(value.toString()) : CMPath();
    if (path.isEmpty())
        fail(QStringLiteral("\"%1\" is the text form of a path.").arg(name));
    return path;
}

int RpcParams::row()
{
    int row = -1;
    if (!index(QStringLiteral("row"), row))
        fail(QStringLiteral("\"row\" is a whole number from 0 on."));
    return row;
}

CMPath RpcParams::rowPath()
{
    return m_params.value(QStringLiteral("path")).isNull() ? CMPath() : path();
}

QStringList RpcParams::roles()
{
    const QVariant value = m_params.value(QStringLiteral("roles"));
    if (value.isNull())
        return VeskRoles::all();
    const QString complaint = QStringLiteral("\"roles\" is a list of at most %1 role names.");
    const QVariantList list = value.toList();
    if (value.userType() != QMetaType::QVariantList || list.size() > MaxRoles) {
        fail(complaint.arg(MaxRoles));
        return {};
    }
    QStringList roles;
    for (const QVariant &role : list) {
        if (role.userType() != QMetaType::QString || role.toString().size() > MaxRoleLength)
            fail(complaint.arg(MaxRoles));
        roles.append(role.toString());
    }
    return roles;
}

QString RpcParams::role()
{
    const QVariant value = m_params.value(QStringLiteral("role"));
    const QString role = value.userType() == QMetaType::QString ? value.toString() : QString();
    if (role.isEmpty() || role.size() > MaxRoleLength)
        fail(QStringLiteral("\"role\" is the name of a role."));
    return role;
}

void RpcParams::range(int &first, int &last)
{
    first = 0;
    index(QStringLiteral("first"), first);
    last = first > std::numeric_limits<int>::max() - DefaultRows ? first : first + DefaultRows - 1;
    if (!index(QStringLiteral("last"), last))
        return;
    if (last < first)
        fail(QStringLiteral("\"last\" is not before \"first\"."));
    else if (last - first >= MaxRows)
        fail(QStringLiteral("At most %1 rows are answered at once.").arg(MaxRows));
}

bool RpcParams::refresh()
{
    return flag(QStringLiteral("refresh"));
}

bool RpcParams::poll()
{
    return flag(QStringLiteral("poll"));
}

bool RpcParams::live()
{
    return flag(QStringLiteral("live"));
}

std::optional<std::chrono::milliseconds> RpcParams::seconds(const char *name)
{
    const QVariant value = m_params.value(QString::fromLatin1(name));
    if (value.isNull())
        return {};
    const bool isNumber = value.userType() == QMetaType::Double
        || value.userType() == QMetaType::Int || value.userType() == QMetaType::LongLong;
    const double number = isNumber ? value.toDouble() : 0;
    if (!isNumber || !(std::abs(number) <= MaxSeconds)) {
        fail(QStringLiteral("\"%1\" is a number of seconds.").arg(QString::fromLatin1(name)));
        return {};
    }
    return std::chrono::milliseconds(std::llround(number * 1000));
}

bool RpcParams::flag(const QString &name)
{
    const QVariant value = m_params.value(name);
    if (!value.isNull() && value.userType() != QMetaType::Bool)
        fail(QStringLiteral("\"%1\" is true or false.").arg(name));
    return value.toBool();
}

std::optional<int> RpcParams::number(const QString &name, int least, int most)
{
    const QVariant given = m_params.value(name);
    if (given.isNull())
        return {};
    const qlonglong number = given.toLongLong();
    if (given.userType() != QMetaType::LongLong || number < least || number > most) {
        fail(QStringLiteral("\"%1\" is a whole number from %2 to %3.")
                 .arg(name)
                 .arg(least)
                 .arg(most));
        return {};
    }
    return static_cast<int>(number);
}

std::optional<bool> RpcParams::truth(const QString &name)
{
    if (m_params.value(name).isNull())
        return {};
    return flag(name);
}

QVariant RpcParams::value()
{
    if (!m_params.contains(QStringLiteral("value")))
        fail(QStringLiteral("\"value\" is missing."));
    return m_params.value(QStringLiteral("value"));
}

bool RpcParams::index(const QString &name, int &value)
{
    const QVariant given = m_params.value(name);
    if (given.isNull())
        return false;
    const qlonglong number = given.userType() == QMetaType::LongLong ? given.toLongLong() : -1;
    if (number < 0 || number > std::numeric_limits<int>::max()) {
        fail(QStringLiteral("\"%1\" is a whole number from 0 on.").arg(name));
        return false;
    }
    value = static_cast<int>(number);
    return true;
}

void RpcParams::fail(const QString &error)
{
    if (m_error.isEmpty())
        m_error = error;
}
