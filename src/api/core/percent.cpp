// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/percent.h"

#include "api/core/utf8.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr char Digits[] = "0123456789ABCDEF";

/// The encoded form of each ASCII character. A table lookup instead of a branch per character,
/// which would often be mispredicted.
class Table {
public:
    constexpr explicit Table(const char *more)
    {
        for (int c = 0; c < 128; ++c)
            m_entries[c] = {
                {'%', static_cast<ushort>(Digits[c >> 4]), static_cast<ushort>(Digits[c & 15])}, 3};
        keep("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~");
        keep(more);
    }

    /// Leaves these characters unencoded as well.
    constexpr void keep(const char *characters)
    {
        for (const char *c = characters; *c; ++c) {
            if (const auto byte = static_cast<unsigned char>(*c); byte < 128)
                m_entries[byte] = {{byte}, 1};
        }
    }

    /// Writes the encoded form of \a c to \a out and returns its end. Needs space for four
    /// characters, as entries are copied whole.
    ushort *write(ushort *out, ushort c) const
    {
        memcpy(out, &m_entries[c], sizeof(Entry));
        return out + m_entries[c].length;
    }

    /// Whether \a c is left unencoded.
    bool stands(ushort c) const { return c < 128 && m_entries[c].length == 1; }

private:
    struct Entry {
        ushort text[3] = {};
        ushort length = 0;
    };
    static_assert(sizeof(Entry) == 4 * sizeof(ushort), "is written whole");

    Entry m_entries[128] = {};
};

constexpr Table UnreservedTable("");
constexpr Table SlashTable("/");

/// Calls \a function with the table for \a keep, one of the constant ones if possible.
template <class Function>
auto withTable(const char *keep, Function function)
{
    if (!*keep)
        return function(UnreservedTable);
    if (keep[0] == '/' && !keep[1])
        return function(SlashTable);
    Table table(UnreservedTable);
    table.keep(keep);
    return function(table);
}

/// Maximum output per UTF-16 unit: three bytes of UTF-8, three characters each.
constexpr int MaxGrowth = 9;
/// Long texts are encoded in pieces, to avoid a buffer of nine times their size.
constexpr int PieceSize = 128;

ushort *writeEscape(ushort *out, unsigned byte)
{
    *out++ = '%';
    *out++ = static_cast<uchar>(Digits[byte >> 4]);
    *out++ = static_cast<uchar>(Digits[byte & 15]);
    return out;
}

/// For non-ASCII characters.
ushort *writeCodePoint(ushort *out, uint c)
{
    veskWriteUtf8(c, [&out](unsigned byte) { out = writeEscape(out, byte); });
    return out;
}

/// Encodes the character at \a in and advances \a in past it, past both halves of a surrogate pair.
/// A lone surrogate is encoded as U+FFFD.
ushort *encodeOne(ushort *out, const ushort *&in, const ushort *end, const Table &table)
{
    const ushort c = *in++;
    if (c < 128)
        return table.write(out, c);
    if (!QChar::isSurrogate(c))
        return writeCodePoint(out, c);
    if (QChar::isHighSurrogate(c) && in != end && QChar::isLowSurrogate(*in))
        return writeCodePoint(out, QChar::surrogateToUcs4(c, *in++));
    return writeCodePoint(out, QChar::ReplacementCharacter);
}

/// Encodes [in, end) to \a out, which has space for MaxGrowth times its size, and returns the end
/// of the output.
ushort *encode(ushort *out, const ushort *in, const ushort *end, const Table &table)
{
    // Nearly all texts are ASCII: test four characters with one branch.
    while (end - in >= 4) {
        if ((in[0] | in[1] | in[2] | in[3]) < 128) {
            for (int i = 0; i < 4; ++i)
                out = table.write(out, in[i]);
            in += 4;
        } else {
            out = encodeOne(out, in, end, table);
        }
    }
    while (in != end)
        out = encodeOne(out, in, end, table);
    return out;
}

/// Decodes percent-encoded UTF-8 from [in, end).
class Decoder {
public:
    Decoder(const ushort *in, const ushort *end)
        : m_in(in)
        , m_end(end)
    {
    }

    /// Decodes the whole input to \a out, which has space for the size of the input. Returns the
    /// end of the output; null for malformed input.
    ushort *run(ushort *out)
    {
        while (m_in != m_end) {
            const ushort c = *m_in;
            if (c == '%') {
                const auto codePoint = veskReadUtf8([this] { return readByte(); });
                if (!codePoint)
                    return nullptr;
                out = write(out, *codePoint);
            } else if (!QChar::isSurrogate(c)) {
                *out++ = c;
                ++m_in;
            } else {
                if (!QChar::isHighSurrogate(c) || m_end - m_in < 2
                    || !QChar::isLowSurrogate(m_in[1]))
                    return nullptr;
                *out++ = *m_in++;
                *out++ = *m_in++;
            }
        }
        return out;
    }

private:
    static ushort *write(ushort *out, uint codePoint)
    {
        if (QChar::requiresSurrogates(codePoint)) {
            *out++ = QChar::highSurrogate(codePoint);
            *out++ = QChar::lowSurrogate(codePoint);
        } else {
            *out++ = static_cast<ushort>(codePoint);
        }
        return out;
    }

    /// The byte of the next escape, -1 when no valid escape follows.
    int readByte()
    {
        if (m_end - m_in < 3 || m_in[0] != '%')
            return -1;
        const int high = veskHexValue(m_in[1]);
        const int low = veskHexValue(m_in[2]);
        m_in += 3;
        return high < 0 || low < 0 ? -1 : high << 4 | low;
    }

    const ushort *m_in;
    const ushort *const m_end;
};

} // namespace

QString veskPercentEncode(const QString &text, const char *keep)
{
    const bool stands = withTable(keep, [&text](const Table &table) {
        const ushort *const in = text.utf16();
        return std::all_of(in, in + text.size(), [&table](ushort c) { return table.stands(c); });
    });
    if (stands)
        return text;
    VeskPercentBuffer buffer;
    buffer.append(text, keep);
    return buffer.toString();
}

void VeskPercentBuffer::append(QStringView text, const char *keep)
{
    withTable(keep, [this, text](const Table &table) { appendWith(table, text); });
}

template <class EncodingTable>
void VeskPercentBuffer::appendWith(const EncodingTable &table, QStringView text)
{
    const auto *in = reinterpret_cast<const ushort *>(text.data());
    const ushort *const end = in + text.size();
    while (in != end) {
        const ushort *pieceEnd = end - in > PieceSize ? in + PieceSize : end;
        // Keep the halves of a surrogate pair together.
        if (pieceEnd != end && QChar::isHighSurrogate(pieceEnd[-1]))
            --pieceEnd;
        ushort *const out = room(int(pieceEnd - in) * MaxGrowth);
        m_size += int(encode(out, in, pieceEnd, table) - out);
        in = pieceEnd;
    }
}

void VeskPercentBuffer::appendEncoded(const QString &text)
{
    memcpy(room(text.size()), text.constData(), size_t(text.size()) * sizeof(ushort));
    m_size += text.size();
}

QString VeskPercentBuffer::toString() const
{
    return QString(reinterpret_cast<const QChar *>(m_text.data()), m_size);
}

std::optional<QString> veskPercentDecode(QStringView text)
{
    const auto *const in = reinterpret_cast<const ushort *>(text.utf16());
    const ushort *const inEnd = in + text.size();
    QString out(int(text.size()), Qt::Uninitialized);
    auto *const begin = reinterpret_cast<ushort *>(out.data());
    const ushort *const end = Decoder(in, inEnd).run(begin);
    if (!end)
        return std::nullopt;
    out.truncate(int(end - begin));
    return out;
}
