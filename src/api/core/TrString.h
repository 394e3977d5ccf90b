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

/// One argument of a translatable text; fills the lowest-numbered place ("%1", "%2", ...) that is
/// left, as QString::arg does, but without ever looking for places inside the value.
struct VESK_API TrArg {
    TrArg() = default;
    TrArg(const QString &argument, int width = 0, QChar fillCharacter = QLatin1Char(' '))
        : value(argument)
        , fieldWidth(width)
        , fill(fillCharacter)
    {
    }

    QString value;
    /// Least width of the filled-in text; negative aligns to the left.
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

/// A text for the user, kept as its source so that it can be shown in whatever language is current
/// when it is read. A value: copy freely, any thread. Converts to QVariant and back.
class VESK_API TrString {
public:
    /// An empty text.
    TrString();
    /// \a count selects a plural form when it is not negative and fills "%n".
    TrString(const QString &context, const QString &sourceText,
        const QString &disambiguation = QString(), int count = -1,
        const QVector<TrArg> &arguments = {});
    TrString(const char *context, const char *sourceText);
    TrString(const TrString &other);
    TrString &operator=(const TrString &other);
    TrString(TrString &&other) noexcept;
    TrString &operator=(TrString &&other) noexcept;
    ~TrString();

    /// A TrString held by \a value, or its string form as an untranslated text.
    static TrString fromVariant(const QVariant &value);

    bool isEmpty() const;
    /// False for a text of Language::ntr: a name, shown the same in every language.
    bool isTranslatable() const;
    QString context() const;
    QString sourceText() const;
    QString disambiguation() const;
    int count() const;
    QVector<TrArg> arguments() const;

    /// The text in the current UI language, the source text where there is no translation.
    QString toString() const;
    /// The source text with its places filled, whatever the UI language is: for services and logs
    /// that compare texts.
    QString toSourceString() const;
    operator QVariant() const { return QVariant::fromValue(*this); }

    bool operator==(const TrString &other) const;
    bool operator!=(const TrString &other) const { return !(*this == other); }

private:
    friend class Language;
    friend VESK_API QDataStream &operator>>(QDataStream &in, TrString &text);
    QSharedDataPointer<TrStringData> d;
};

Q_DECLARE_TYPEINFO(TrString, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(TrString)

VESK_API QDataStream &operator<<(QDataStream &out, const TrString &text);
VESK_API QDataStream &operator>>(QDataStream &in, TrString &text);
/// Prints the text in the current language.
VESK_API std::ostream &operator<<(std::ostream &out, const TrString &text);

/// The translation context of the texts in a function: its qualified name with parameters, that is
/// \a signature without return type and specifiers.
VESK_API QString trExtractContext(const char *signature);
