// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"
#include "api/values/VeskError.h"

#include <QByteArray>
#include <QVariant>

/// JSON (RFC 8259) to variants and back. Pure functions, any thread.
class VESK_API VeskJson {
public:
    /// Deepest nesting that parse() accepts.
    static constexpr int MaxDepth = 512;

    /// Reads \a data: objects become QVariantHash (of two equal keys the last wins), arrays
    /// QVariantList, strings QString, numbers qlonglong where they are whole and fit, else double,
    /// booleans bool, null a null variant. Beyond the RFC a byte order mark is accepted, a decimal
    /// point at either end of a number, and within strings control characters, unknown escapes
    /// (which stand for their character) and half surrogate pairs (which become U+FFFD). On failure
    /// returns a null variant and fills \a error; \a position, where given, receives the offset of
    /// the first byte that could not be read. \a error is cleared on success.
    static QVariant parse(
        const QByteArray &data, VeskError &error, unsigned int *position = nullptr);

    /// Writes \a value compactly as UTF-8. Translatable texts are written translated, paths in
    /// their text form, hashes as objects in ascending order of their keys; what JSON has no form
    /// for, or is nested deeper than MaxDepth, is written as null, half a surrogate pair as U+FFFD.
    static QByteArray write(const QVariant &value);
};
