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
    /// Appends \a text, percent-encoded as by veskPercentEncode().
    void append(const QString &text, const char *keep = "");
    /// Appends an ASCII character as it is.
    void append(char c) { m_text.append(static_cast<ushort>(c)); }
    QString toString() const;

private:
    QVarLengthArray<ushort, 2048> m_text;
};

/// Undoes it. Sets \a ok (where given) to false, and returns an empty text, when an escape is
/// damaged or the bytes are no UTF-8.
VESK_API QString veskPercentDecode(QStringView text, bool *ok = nullptr);
