// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/export.h"

#include <QMetaType>
#include <QSharedDataPointer>
#include <QString>
#include <QVariant>
#include <QVector>

#include <iosfwd>

class TrStringData;

/// An argument of a translatable text. Replaces the lowest-numbered place marker ("%1", "%2", ...)
/// that is left, as QString::arg() does, but never replaces markers inside inserted values.
struct VESK_API TrArg {
    TrArg() = default;
    TrArg(const QString &argument, int width = 0, QChar fillCharacter = QLatin1Char(' '))
        : value(argument)
        , fieldWidth(width)
        , fill(fillCharacter)
    {
    }

    QString value;
    /// Minimum width of the inserted text; negative for left alignment.
    int fieldWidth = 0;
    QChar fill = QLatin1Char(' ');
};

VESK_API bool operator==(const TrArg &a, const TrArg &b);
inline bool operator!=(const TrArg &a, const TrArg &b)
{
    return !(a == b);
}
VESK_API QDataStream &operator<<(QDataStream &out, const TrArg &argument);
VESK_API QDataStream &operator>>(QDataStream &in, TrArg &argument);

/// A text for the user, stored as source text and arguments and translated when it is read, so that
/// it follows changes of the UI language. A value type: copy freely, any thread. Converts to and
/// from QVariant.
class VESK_API TrString {
public:
    /// An empty text.
    TrString();
    /// \a count, unless negative, selects the plural form and replaces "%n".
    TrString(const QString &context, const QString &sourceText,
        const QString &disambiguation = QString(), int count = -1,
        const QVector<TrArg> &arguments = {});
    TrString(const char *context, const char *sourceText);
    TrString(const TrString &other);
    TrString &operator=(const TrString &other);
    TrString(TrString &&other) noexcept;
    TrString &operator=(TrString &&other) noexcept;
    ~TrString();

    /// The TrString that \a value holds; for other types the string form, which is not translated.
    static TrString fromVariant(const QVariant &value);

    bool isEmpty() const;
    /// False for a text from Language::ntr(), which is the same in every language.
    bool isTranslatable() const;
    QString context() const;
    QString sourceText() const;
    QString disambiguation() const;
    int count() const;
    QVector<TrArg> arguments() const;

    /// The text in the current UI language; the source text when there is no translation.
    QString toString() const;
    /// The source text with its arguments, independent of the UI language: for services and logs
    /// that compare texts.
    QString toSourceString() const;
    operator QVariant() const;

    bool operator==(const TrString &other) const;
    bool operator!=(const TrString &other) const { return !(*this == other); }

private:
    friend class Language;
    friend VESK_API QDataStream &operator>>(QDataStream &in, TrString &text);
    QSharedDataPointer<TrStringData> d;
};

Q_DECLARE_TYPEINFO(TrString, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(TrString)

inline TrString::operator QVariant() const
{
    return QVariant::fromValue(*this);
}

VESK_API QDataStream &operator<<(QDataStream &out, const TrString &text);
VESK_API QDataStream &operator>>(QDataStream &in, TrString &text);
/// Prints the text in the current language.
VESK_API std::ostream &operator<<(std::ostream &out, const TrString &text);

/// The translation context of the texts in a function: its qualified name and parameters, which is
/// \a signature without return type and specifiers.
VESK_API QString trExtractContext(const char *signature);
