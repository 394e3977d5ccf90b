// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QMetaType>
#include <QString>

/// \file
/// What Qt 5 and Qt 6 name differently.

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)

/// A part of a string, which it refers to.
using VeskStringRef = QStringRef;

/// \a size characters of \a text from \a position on; all that follow for -1.
inline VeskStringRef veskMid(const QString &text, int position, int size = -1)
{
    return text.midRef(position, size);
}

/// Has QVariants that hold a T compare by T's operator==, as Qt 6 does by itself.
template <class T>
bool veskRegisterEquals()
{
    return QMetaType::registerEqualsComparator<T>();
}

/// The same, and in order by its operator<.
template <class T>
bool veskRegisterOrder()
{
    return QMetaType::registerComparators<T>();
}

/// Has QVariants that hold a T written to streams by T's operators, as Qt 6 does by itself.
template <class T>
void veskRegisterStreams(const char *name)
{
    qRegisterMetaTypeStreamOperators<T>(name);
}

/// Whether values of the meta-type \a from convert to \a to by a function that was registered.
inline bool veskHasConverter(int from, int to)
{
    return QMetaType::hasRegisteredConverterFunction(from, to);
}

#else

using VeskStringRef = QStringView;

inline VeskStringRef veskMid(const QString &text, qsizetype position, qsizetype size = -1)
{
    return QStringView(text).mid(position, size);
}

template <class T>
bool veskRegisterEquals()
{
    return true;
}

template <class T>
bool veskRegisterOrder()
{
    return true;
}

template <class T>
void veskRegisterStreams(const char * /*name*/)
{
}

inline bool veskHasConverter(int from, int to)
{
    return QMetaType::hasRegisteredConverterFunction(QMetaType(from), QMetaType(to));
}

#endif
