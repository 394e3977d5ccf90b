// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/private/JsonRepair.h"

#include "api/core/utf8.h"
#include "api/web/VeskJson.h"

#include <QChar>
#include <QString>

#include <cmath>
#include <string_view>

namespace {

/// Reads a text in one pass, with a state machine over the token expected next; copies what
/// simdjson accepts and rewrites what only VeskJson accepts.
class Repair {
public:
    explicit Repair(const QByteArray &data)
        : m_data(data)
    {
        m_out.reserve(static_cast<std::size_t>(data.size()) + 64);
    }

    bool run()
    {
        if (m_data.startsWith("\xEF\xBB\xBF"))
            m_at = 3;
        for (;;) {
            while (isBlank(peek()) && m_at < m_data.size())
                ++m_at;
            if (m_expected == Expected::End && m_at == m_data.size())
                return true;
            if (!step(peek()))
                return false;
        }
    }

    std::string take() { return std::move(m_out); }
    const char *message() const
    {
        return m_message            ? m_message
            : m_at >= m_data.size() ? "unexpected end"
                                    : "unexpected character";
    }
    int offset() const { return m_at; }

private:
    enum class Expected { Value, ValueOrEnd, Key, KeyOrEnd, Colon, CommaOrEnd, End };

    static bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }
    /// NUL past the end, which is not part of any JSON token.
    char peek(int ahead = 0) const
    {
        return m_at + ahead < m_data.size() ? m_data.at(m_at + ahead) : '\0';
    }
    void copy(int count)
    {
        m_out.append(m_data.constData() + m_at, static_cast<std::size_t>(count));
        m_at += count;
    }
    bool fail(const char *message)
    {
        m_message = message;
        return false;
    }

    bool step(char c)
    {
        switch (m_expected) {
        case Expected::ValueOrEnd:
            return c == ']' ? close() : readValue(c);
        case Expected::Value:
            return readValue(c);
        case Expected::KeyOrEnd:
            return c == '}' ? close() : readKey(c);
        case Expected::Key:
            return readKey(c);
        case Expected::Colon:
            m_expected = Expected::Value;
            return c == ':' && (copy(1), true);
        case Expected::CommaOrEnd:
            if (c == m_open[m_depth - 1] + 2) // "]" and "}" come two after "[" and "{" in ASCII.
                return close();
            m_expected = m_open[m_depth - 1] == '[' ? Expected::Value : Expected::Key;
            return c == ',' && (copy(1), true);
        default:
            return false;
        }
    }

    bool open(char c)
    {
        if (m_depth == VeskJson::MaxDepth)
            return fail("nested too deeply");
        m_open[m_depth++] = c;
        m_expected = c == '[' ? Expected::ValueOrEnd : Expected::KeyOrEnd;
        copy(1);
        return true;
    }

    bool close()
    {
        --m_depth;
        copy(1);
        return valueRead();
    }

    bool valueRead()
    {
        m_expected = m_depth > 0 ? Expected::CommaOrEnd : Expected::End;
        return true;
    }

    bool readKey(char c)
    {
        m_expected = Expected::Colon;
        return c == '"' && readString();
    }

    bool readValue(char c)
    {
        if (c == '[' || c == '{')
            return open(c);
        if (c == '"')
            return readString() && valueRead();
        if (c == '-' || c == '.' || isDigit(c))
            return readNumber() && valueRead();
        for (const std::string_view literal : {"true", "false", "null"}) {
            if (m_data.mid(m_at, int(literal.size())) == literal.data()) {
                copy(int(literal.size()));
                return valueRead();
            }
        }
        return false;
    }

    bool readString()
    {
        copy(1);
        while (m_at < m_data.size()) {
            const char c = peek();
            if (c == '"') {
                copy(1);
                return true;
            }
            if (c != '\\')
                copyCharacter();
            else if (!readEscape())
                return false;
        }
        return false;
    }

    /// Copies a byte of a string, or escapes it if it is a control character.
    void copyCharacter()
    {
        static constexpr char Digits[] = "0123456789abcdef";
        const auto c = static_cast<uchar>(peek());
        if (c >= 0x20)
            return copy(1);
        ++m_at;
        m_out += "\\u00";
        m_out += Digits[c >> 4];
        m_out += Digits[c & 15];
    }

    bool readEscape()
    {
        const char c = peek(1);
        if (c == 'u')
            return readUnicodeEscape();
        if (m_at + 1 < m_data.size()
            && std::string_view("\"\\/bfnrt").find(c) != std::string_view::npos) {
            copy(2);
            return true;
        }
        ++m_at;
        // An unknown escape stands for its character; only ASCII is accepted.
        if (m_at == m_data.size() || static_cast<uchar>(c) >= 0x80)
            return false;
        copyCharacter();
        return true;
    }

    /// The UTF-16 unit of the "\u" escape \a ahead bytes from here; -1 when there is none.
    int unitAt(int ahead) const
    {
        if (peek(ahead) != '\\' || peek(ahead + 1) != 'u')
            return -1;
        int unit = 0;
        for (int i = 2; i < 6; ++i) {
            const int digit = veskHexValue(static_cast<uchar>(peek(ahead + i)));
            if (digit < 0)
                return -1;
            unit = unit << 4 | digit;
        }
        return unit;
    }

    bool readUnicodeEscape()
    {
        constexpr int Size = 6;
        const int unit = unitAt(0);
        if (unit < 0)
            return false;
        const int next = QChar::isHighSurrogate(uint(unit)) ? unitAt(Size) : -1;
        if (next >= 0 && QChar::isLowSurrogate(uint(next))) {
            copy(2 * Size);
        } else if (QChar::isSurrogate(uint(unit))) {
            m_out += "\\ufffd";
            m_at += Size;
        } else {
            copy(Size);
        }
        return true;
    }

    int digitsAt(int ahead) const
    {
        int count = 0;
        while (isDigit(peek(ahead + count)))
            ++count;
        return count;
    }

    /// Adds a zero to "1." and ".5". An integer out of the range of qlonglong gets an exponent, so
    /// that simdjson reads it as a double.
    bool readNumber()
    {
        const int sign = peek() == '-' ? 1 : 0;
        const int whole = digitsAt(sign);
        const int point = sign + whole;
        // The number of digits after the decimal point; -1 without one.
        const int fraction = peek(point) == '.' ? digitsAt(point + 1) : -1;
        const int power = point + 1 + fraction;
        int size = power;
        bool good = whole + qMax(fraction, 0) > 0 && (whole < 2 || peek(sign) != '0');
        if ((peek(power) | 0x20) == 'e') {
            size += peek(power + 1) == '+' || peek(power + 1) == '-' ? 2 : 1;
            const int digits = digitsAt(size);
            good = good && digits > 0;
            size += digits;
        }
        if (!good)
            return false;
        const QByteArray number = m_data.mid(m_at, size);
        // QByteArray::toDouble() is 0 for these with Qt 6.
        if (std::isinf(QString::fromLatin1(number).toDouble()))
            return fail("number out of range");
        m_out += whole > 0 ? number.left(point).constData() : sign ? "-0" : "0";
        if (fraction >= 0)
            m_out += fraction > 0 ? number.mid(point, 1 + fraction).constData() : ".0";
        m_out += number.mid(power).constData();
        bool fits = true;
        if (fraction < 0 && size == power)
            number.toLongLong(&fits);
        m_out += fits ? "" : "e0";
        m_at += size;
        return true;
    }

    const QByteArray &m_data;
    std::string m_out;
    const char *m_message = nullptr;
    int m_at = 0;
    Expected m_expected = Expected::Value;
    int m_depth = 0;
    char m_open[VeskJson::MaxDepth];
};

/// The offset of the first sequence that is not valid UTF-8; -1 when there is none.
int invalidUtf8At(const QByteArray &data)
{
    int next = 0;
    const auto readByte
        = [&] { return next < data.size() ? static_cast<uchar>(data.at(next++)) : -1; };
    while (next < data.size()) {
        const int start = next;
        if (!veskReadUtf8(readByte))
            return start;
    }
    return -1;
}

} // namespace

Result<std::string, VeskError> repairJson(const QByteArray &data)
{
    if (const int offset = invalidUtf8At(data); offset >= 0)
        return failure(VeskError(QStringLiteral("invalid UTF-8"), offset));
    Repair repair(data);
    if (!repair.run())
        return failure(VeskError(QString::fromLatin1(repair.message()), repair.offset()));
    return repair.take();
}
