// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

#include <optional>

/// \file
/// Percent-encoding (RFC 3986, section 2.1), table-driven because every row of a screen contains
/// several encoded paths.

/// Percent-encodes \a text as UTF-8, except RFC 3986's unreserved characters and those in \a keep
/// (ASCII).
VESK_API QString veskPercentEncode(const QString &text, const char *keep = "");

/// Builds a text from percent-encoded parts, on the stack unless it is longer than UsualSize.
class VESK_API VeskPercentBuffer {
public:
    VeskPercentBuffer()
        : m_text(UsualSize)
    {
    }

    /// Appends \a text, percent-encoded as by veskPercentEncode().
    void append(QStringView text, const char *keep = "");
    /// Appends an ASCII character as it is.
    void append(char c)
    {
        *room(1) = static_cast<uchar>(c);
        ++m_size;
    }
    /// Appends a text that is already encoded.
    void appendEncoded(const QString &text);
    QString toString() const;

private:
    static constexpr int UsualSize = 2048;

    template <class EncodingTable>
    void appendWith(const EncodingTable &table, QStringView text);
    /// Ensures space for \a size characters and returns where to write them; the caller then
    /// increases m_size.
    ushort *room(int size)
    {
        if (m_text.size() - m_size < size)
            m_text.resize(2 * (m_size + size));
        return m_text.data() + m_size;
    }

    /// Always resized to its whole capacity, of which m_size is in use: resizing it with every
    /// append would write each character twice.
    QVarLengthArray<ushort, UsualSize> m_text;
    int m_size = 0;
};

/// Undoes veskPercentEncode(). No value when an escape is malformed or the bytes are not UTF-8.
VESK_API std::optional<QString> veskPercentDecode(QStringView text);
