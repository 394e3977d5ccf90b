// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/TrString.h"

#include "api/core/Language.h"
#include "api/core/log.h"
#include "api/core/qtversions.h"

#include <QCoreApplication>
#include <QDataStream>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <ostream>
#include <string>

class TrStringData : public QSharedData {
public:
    QString context;
    QString sourceText;
    QString disambiguation;
    int count = -1;
    QVector<TrArg> arguments;
    bool translatable = false;
};

namespace {

[[maybe_unused]] const bool Registered = [] {
    qRegisterMetaType<TrString>("TrString");
    veskRegisterStreams<TrString>("TrString");
    veskRegisterEquals<TrString>();
    QMetaType::registerConverter<TrString, QString>(&TrString::toString);
    return true;
}();

/// A place marker for an argument, as in QString::arg(): "%1" to "%99", or "%L1" to "%L99".
struct Place {
    int position;
    int length;
    int number;
};

int digitAt(const QString &text, int position)
{
    if (position >= text.size())
        return -1;
    const ushort c = text.at(position).unicode();
    return c >= '0' && c <= '9' ? c - '0' : -1;
}

QVector<Place> findPlaces(const QString &text)
{
    QVector<Place> places;
    int at = text.indexOf(QLatin1Char('%'));
    while (at >= 0) {
        int next = at + 1;
        if (next < text.size() && text.at(next) == QLatin1Char('L'))
            ++next;
        if (int number = digitAt(text, next); number > 0) {
            ++next;
            if (const int second = digitAt(text, next); second >= 0) {
                number = number * 10 + second;
                ++next;
            }
            places.append({at, next - at, number});
        }
        at = text.indexOf(QLatin1Char('%'), next);
    }
    return places;
}

QString padded(const TrArg &argument)
{
    return argument.fieldWidth < 0
        ? argument.value.leftJustified(-argument.fieldWidth, argument.fill)
        : argument.value.rightJustified(argument.fieldWidth, argument.fill);
}

/// \a text with its place markers replaced: the first argument goes to the markers with the lowest
/// number, the next one to those with the next number. Markers inside inserted text are not
/// replaced.
QString fill(const QString &text, const QVector<TrArg> &arguments)
{
    const QVector<Place> places = findPlaces(text);
    QVector<int> numbers;
    for (const Place &place : places)
        numbers.append(place.number);
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());

    QString out;
    int copied = 0;
    for (const Place &place : places) {
        const int index
            = int(std::lower_bound(numbers.begin(), numbers.end(), place.number) - numbers.begin());
        if (index >= arguments.size())
            continue;
        out.append(veskMid(text, copied, place.position - copied));
        out.append(padded(arguments.at(index)));
        copied = place.position + place.length;
    }
    out.append(veskMid(text, copied));
    return out;
}

} // namespace

bool operator==(const TrArg &a, const TrArg &b)
{
    return a.value == b.value && a.fieldWidth == b.fieldWidth && a.fill == b.fill;
}

QDataStream &operator<<(QDataStream &out, const TrArg &argument)
{
    return out << argument.value << qint32(argument.fieldWidth) << argument.fill;
}

QDataStream &operator>>(QDataStream &in, TrArg &argument)
{
    qint32 width = 0;
    in >> argument.value >> width >> argument.fill;
    argument.fieldWidth = width;
    return in;
}

TrString::TrString() = default;

TrString::TrString(const QString &context, const QString &sourceText, const QString &disambiguation,
    int count, const QVector<TrArg> &arguments)
    : d(new TrStringData)
{
    d->context = context;
    d->sourceText = sourceText;
    d->disambiguation = disambiguation;
    d->count = count < 0 ? -1 : count;
    d->arguments = arguments;
    d->translatable = true;
}

TrString::TrString(const char *context, const char *sourceText)
    : TrString(QString::fromUtf8(context), QString::fromUtf8(sourceText))
{
}

TrString::TrString(const TrString &other) = default;
TrString &TrString::operator=(const TrString &other) = default;
TrString::TrString(TrString &&other) noexcept = default;
TrString &TrString::operator=(TrString &&other) noexcept = default;
TrString::~TrString() = default;

TrString TrString::fromVariant(const QVariant &value)
{
    if (value.userType() == qMetaTypeId<TrString>())
        return value.value<TrString>();
    return Language::ntr(value.toString());
}

TrString Language::ntr(const QString &text)
{
    TrString string;
    if (!text.isEmpty()) {
        string.d = new TrStringData;
        string.d->sourceText = text;
    }
    return string;
}

bool TrString::isEmpty() const
{
    return !d || d->sourceText.isEmpty();
}

bool TrString::isTranslatable() const
{
    return d && d->translatable;
}

QString TrString::context() const
{
    return d ? d->context : QString();
}

QString TrString::sourceText() const
{
    return d ? d->sourceText : QString();
}

QString TrString::disambiguation() const
{
    return d ? d->disambiguation : QString();
}

int TrString::count() const
{
    return d ? d->count : -1;
}

QVector<TrArg> TrString::arguments() const
{
    return d ? d->arguments : QVector<TrArg>();
}

QString TrString::toString() const
{
    if (isEmpty())
        return QString();
    if (!d->translatable)
        return d->sourceText;
    const QString text = QCoreApplication::translate(d->context.toUtf8().constData(),
        d->sourceText.toUtf8().constData(), d->disambiguation.toUtf8().constData(), d->count);
    return d->arguments.isEmpty() ? text : fill(text, d->arguments);
}

QString TrString::toSourceString() const
{
    if (isEmpty() || !d->translatable)
        return sourceText();
    QString text = d->sourceText;
    if (d->count >= 0)
        text.replace(QLatin1String("%n"), QString::number(d->count));
    return d->arguments.isEmpty() ? text : fill(text, d->arguments);
}

bool TrString::operator==(const TrString &other) const
{
    if (d == other.d)
        return true;
    return isTranslatable() == other.isTranslatable() && sourceText() == other.sourceText()
        && context() == other.context() && disambiguation() == other.disambiguation()
        && count() == other.count() && arguments() == other.arguments();
}

QDataStream &operator<<(QDataStream &out, const TrString &text)
{
    return out << text.context() << text.sourceText() << text.disambiguation()
               << qint32(text.count()) << text.arguments() << text.isTranslatable();
}

QDataStream &operator>>(QDataStream &in, TrString &text)
{
    TrString read;
    read.d = new TrStringData;
    qint32 count = -1;
    in >> read.d->context >> read.d->sourceText >> read.d->disambiguation >> count
        >> read.d->arguments >> read.d->translatable;
    read.d->count = count < 0 ? -1 : count;
    text = in.status() == QDataStream::Ok ? read : TrString();
    return in;
}

std::ostream &operator<<(std::ostream &out, const TrString &text)
{
    return out << text.toString();
}

namespace {
bool isOneOf(char c, const char *characters)
{
    return c && strchr(characters, c);
}

bool isWordPart(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

/// The position of the bracket that closes the one at \a open; npos when there is none. The ">" of
/// "->" does not count.
size_t closingBracket(const std::string &text, size_t open)
{
    int depth = 0;
    for (size_t i = open; i < text.size(); ++i) {
        if (isOneOf(text[i], "(<[{"))
            ++depth;
        else if (isOneOf(text[i], ")>]}") && !(text[i] == '>' && i > 0 && text[i - 1] == '-')
            && --depth == 0)
            return i;
    }
    return std::string::npos;
}

/// Whether the whole word \a word is in \a text right before \a end.
bool endsWithWord(const std::string &text, size_t end, const std::string &word)
{
    return end >= word.size() && text.compare(end - word.size(), word.size(), word) == 0
        && (end == word.size() || !isWordPart(text[end - word.size() - 1]));
}

/// The position of the function's qualified name in \a signature: after the last space outside
/// brackets that precedes the parameter list. An operator's name may itself contain brackets and
/// spaces.
size_t nameStart(const std::string &signature)
{
    size_t start = 0;
    for (size_t i = 0; i < signature.size(); ++i) {
        const char c = signature[i];
        if (!isWordPart(c) && endsWithWord(signature, i, "operator"))
            return start;
        if (c == ' ') {
            start = i + 1;
            continue;
        }
        if (!isOneOf(c, "(<[{"))
            continue;
        // A "(" begins the parameter list, except in "(anonymous namespace)" and "decltype(...)".
        const bool partOfName = c != '(' || signature.compare(i, 10, "(anonymous") == 0;
        size_t wordEnd = i;
        while (wordEnd > 0 && signature[wordEnd - 1] == ' ')
            --wordEnd;
        if (!partOfName && !endsWithWord(signature, wordEnd, "decltype"))
            return start;
        i = closingBracket(signature, i);
        if (i == std::string::npos)
            return start;
    }
    return start;
}

} // namespace

QString trExtractContext(const char *signature)
{
    const std::string text = signature ? signature : "";
    size_t start = nameStart(text);
    // clang puts the return type's "*" or "&" directly before the name.
    while (start < text.size() && isOneOf(text[start], "*&"))
        ++start;
    return QString::fromStdString(text.substr(start));
}
