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
    /// Maximum nesting depth that parse() accepts.
    static constexpr int MaxDepth = 512;

    /// Parses \a data: objects become QVariantHash (the last of equal keys wins), arrays
    /// QVariantList, strings QString, numbers qlonglong if they are whole and in range and double
    /// otherwise, booleans bool, null a null variant. Beyond the RFC, these are accepted: a byte
    /// order mark, a decimal point at either end of a number, and within strings control
    /// characters, unknown escapes (which stand for their character) and lone surrogates (which
    /// become U+FFFD). On failure returns a null variant and sets \a error and, unless null, \a
    /// position to the offset of the first byte that could not be parsed. \a error is cleared on
    /// success.
    static QVariant parse(
        const QByteArray &data, VeskError &error, unsigned int *position = nullptr);

    /// Writes \a value compactly as UTF-8. Translatable texts are written translated, paths in
    /// their text form, hashes as objects with their keys in ascending order. What JSON cannot
    /// represent, or is nested deeper than MaxDepth, is written as null, a lone surrogate as
    /// U+FFFD.
    static QByteArray write(const QVariant &value);
};
