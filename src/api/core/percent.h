// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

/// \file
/// Percent-encoding (RFC 3986, section 2.1), driven by a table because every row of a screen holds
/// several encoded paths.

/// Percent-encodes \a text as UTF-8 but for RFC 3986's unreserved characters and those in \a keep
/// (ASCII).
VESK_API QString veskPercentEncode(const QString &text, const char *keep = "");
/// Appends the same to \a out.
VESK_API void veskAppendPercentEncoded(QString &out, const QString &text, const char *keep = "");

/// Puts together a text of percent-encoded parts, on the stack as long as it is not very long.
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
        *room(1) = static_cast<ushort>(c);
        ++m_size;
    }
    /// Appends a text that is encoded already.
    void appendEncoded(const QString &text);
    QString toString() const;

private:
    static constexpr int UsualSize = 2048;

    template <class EncodingTable>
    void appendWith(const EncodingTable &table, QStringView text);
    /// Where to write the next \a size characters; m_size is to be moved behind them.
    ushort *room(int size)
    {
        if (m_text.size() - m_size < size)
            m_text.resize(2 * (m_size + size));
        return m_text.data() + m_size;
    }

    /// As large as there is room, so that appending a part does not resize it.
    QVarLengthArray<ushort, UsualSize> m_text;
    int m_size = 0;
};

/// Undoes it. Sets \a ok (where given) to false, and returns an empty text, when an escape is
/// damaged or the bytes are no UTF-8.
VESK_API QString veskPercentDecode(QStringView text, bool *ok = nullptr);
