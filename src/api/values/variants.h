// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVariant>

/// \file
/// Reads values that may be of any type, such as those of other plug-ins, alike with Qt 5 and Qt 6.

/// Whether \a value is invalid or null, or a null text or null bytes, which are not null to Qt 6's
/// QVariant::isNull().
inline bool veskIsNull(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QString:
        return static_cast<const QString *>(value.constData())->isNull();
    case QMetaType::QByteArray:
        return static_cast<const QByteArray *>(value.constData())->isNull();
    default:
        return value.isNull();
    }
}

/// The list that \a value is, or that its own type converts it to; empty if it is none. Qt 6's
/// QVariant::toList() takes a text for a list of its characters.
inline QVariantList veskListIn(const QVariant &value)
{
    const int type = value.userType();
    const bool isList = type == QMetaType::QVariantList || type == QMetaType::QStringList
        || type >= QMetaType::User;
    return isList ? value.toList() : QVariantList();
}
