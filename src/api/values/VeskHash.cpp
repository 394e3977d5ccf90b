// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskHash.h"

#include <QLocale>

#include <cmath>
#include <limits>

namespace {

[[maybe_unused]] const bool Registered = veskRegisterHashType<VeskHash>("VeskHash");

QString doubleText(double value)
{
    if (!std::isfinite(value))
        return QString();
    // 2^53: up to here a double represents every whole number exactly.
    constexpr double WholeLimit = 9007199254740992.0;
    if (std::abs(value) <= WholeLimit && value == std::trunc(value))
        return QString::number(static_cast<qint64>(value));
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

} // namespace

QString VeskHash::text(const QString &key) const
{
    const QVariant *const value = find(key);
    if (!value)
        return QString();
    switch (value->userType()) {
    case QMetaType::QString:
        return *static_cast<const QString *>(value->constData());
    case QMetaType::Bool:
        return value->toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::Double:
    case QMetaType::Float:
        return doubleText(value->toDouble());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value->toString();
    default:
        return QString();
    }
}

int VeskHash::number(const QString &key, int otherwise) const
{
    const QVariant *const value = find(key);
    if (!value)
        return otherwise;
    if (value->userType() == QMetaType::Int)
        return *static_cast<const int *>(value->constData());
    bool ok = false;
    const int number = text(key).toInt(&ok);
    return ok ? number : otherwise;
}

bool VeskHash::flag(const QString &key) const
{
    const QVariant *const value = find(key);
    return value && value->toBool();
}

QVariantHash VeskHash::hash(const QString &key) const
{
    const QVariant *const value = find(key);
    return value ? value->toHash() : QVariantHash();
}

QVariantList VeskHash::list(const QString &key) const
{
    const QVariant *const value = find(key);
    if (!value)
        return QVariantList();
    if (value->userType() == QMetaType::QVariantHash)
        return QVariantList {*value};
    return value->userType() == QMetaType::QVariantList ? value->toList() : QVariantList();
}

std::ostream &operator<<(std::ostream &out, const VeskHash &hash)
{
    return out << hash.toHash();
}
