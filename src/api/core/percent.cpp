#include "api/core/percent.h"

#include <QVarLengthArray>

#include <cstring>

namespace {

/// Which ASCII characters stand as they are.
struct KeptTable {
    bool kept[128] = {};

    constexpr KeptTable()
    {
        for (char16_t c = 'a'; c <= 'z'; ++c)
            kept[c] = true;
        for (char16_t c = 'A'; c <= 'Z'; ++c)
            kept[c] = true;
        for (char16_t c = '0'; c <= '9'; ++c)
            kept[c] = true;
        kept[int('-')] = kept[int('.')] = kept[int('_')] = kept[int('~')] = true;
    }
};

constexpr KeptTable unreserved;

class Kept {
public:
    explicit Kept(const char *more)
        : m_kept(unreserved.kept)
    {
        if (!*more)
            return;
        memcpy(m_own, unreserved.kept, sizeof m_own);
        for (; *more; ++more) {
            if (const auto c = static_cast<unsigned char>(*more); c < 128)
                m_own[c] = true;
        }
        m_kept = m_own;
    }
    Kept(const Kept &) = delete;
    Kept &operator=(const Kept &) = delete;

    bool operator()(ushort c) const { return c < 128 && m_kept[c]; }

private:
    const bool *m_kept;
    bool m_own[128];
};

/// The most that one UTF-16 unit grows to: three bytes of UTF-8, three characters each.
constexpr int MaxGrowth = 9;

ushort *writeEscape(ushort *out, unsigned byte)
{
    static constexpr char digits[] = "0123456789ABCDEF";
    *out++ = '%';
    *out++ = static_cast<ushort>(digits[byte >> 4]);
    *out++ = static_cast<ushort>(digits[byte & 15]);
    return out;
}

ushort *writeCodePoint(ushort *out, uint c)
{
    if (c < 0x80)
        return writeEscape(out, c);
    if (c < 0x800) {
        out = writeEscape(out, 0xC0 | c >> 6);
        return writeEscape(out, 0x80 | (c & 0x3F));
    }
    if (c < 0x10000) {
        out = writeEscape(out, 0xE0 | c >> 12);
    } else {
        out = writeEscape(out, 0xF0 | c >> 18);
        out = writeEscape(out, 0x80 | (c >> 12 & 0x3F));
    }
    out = writeEscape(out, 0x80 | (c >> 6 & 0x3F));
    return writeEscape(out, 0x80 | (c & 0x3F));
}

/// Encodes [in, end) to \a out, which has room for MaxGrowth times as much.
ushort *encode(ushort *out, const ushort *in, const ushort *end, const Kept &kept)
{
    while (in != end) {
        const ushort c = *in++;
        if (kept(c)) {
            *out++ = c;
        } else if (!QChar::isSurrogate(c)) {
            out = writeCodePoint(out, c);
        } else if (QChar::isHighSurrogate(c) && in != end && QChar::isLowSurrogate(*in)) {
            out = writeCodePoint(out, QChar::surrogateToUcs4(c, *in++));
        } else {
            out = writeCodePoint(out, QChar::ReplacementCharacter);
        }
    }
    return out;
}

/// The first character of \a text that does not stand as it is; its size when there is none.
int firstToEncode(const QString &text, const Kept &kept)
{
    const ushort *const units = text.utf16();
    const int size = text.size();
    int i = 0;
    while (i < size && kept(units[i]))
        ++i;
    return i;
}

/// Appends what is left of \a text from \a first on.
void appendEncoded(QString &out, const QString &text, int first, const Kept &kept)
{
    // Piece by piece, so that a long text needs no buffer of nine times its size.
    constexpr int PieceSize = 256;
    const ushort *in = text.utf16();
    const ushort *const end = in + text.size();
    out.append(reinterpret_cast<const QChar *>(in), first);
    in += first;
    ushort buffer[PieceSize * MaxGrowth];
    while (in != end) {
        const ushort *pieceEnd = end - in > PieceSize ? in + PieceSize : end;
        if (pieceEnd != end && QChar::isHighSurrogate(pieceEnd[-1]))
            --pieceEnd;
        const ushort *const written = encode(buffer, in, pieceEnd, kept);
        out.append(reinterpret_cast<const QChar *>(buffer), int(written - buffer));
        in = pieceEnd;
    }
}

int hexValue(ushort c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

/// Reads percent-encoded UTF-8 from [in, end).
class Decoder {
public:
    Decoder(const ushort *in, const ushort *end)
        : m_in(in)
        , m_end(end)
    {
    }

    /// Decodes everything to \a out, which has room for as much as there is to read. Returns the
    /// end of what it wrote, null for a damaged text.
    ushort *run(ushort *out)
    {
        while (m_in != m_end) {
            const ushort c = *m_in;
            if (c == '%') {
                uint codePoint = 0;
                if (!readCodePoint(codePoint))
                    return nullptr;
                out = write(out, codePoint);
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

    /// The next byte, -1 when no sound escape follows.
    int readByte()
    {
        if (m_end - m_in < 3 || m_in[0] != '%')
            return -1;
        const int high = hexValue(m_in[1]);
        const int low = hexValue(m_in[2]);
        m_in += 3;
        return high < 0 || low < 0 ? -1 : high << 4 | low;
    }

    bool readCodePoint(uint &codePoint)
    {
        const int first = readByte();
        if (first < 0)
            return false;
        if (first < 0x80) {
            codePoint = static_cast<uint>(first);
            return true;
        }
        const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
        if (first < 0xC2 || first > 0xF4)
            return false;
        codePoint = static_cast<uint>(first & (0x3F >> more));
        for (int i = 0; i < more; ++i) {
            const int next = readByte();
            if (next < 0 || (next & 0xC0) != 0x80)
                return false;
            codePoint = codePoint << 6 | static_cast<uint>(next & 0x3F);
        }
        static constexpr uint least[] = {0, 0x80, 0x800, 0x10000};
        return codePoint >= least[more] && codePoint <= QChar::LastValidCodePoint
            && !QChar::isSurrogate(codePoint);
    }

    const ushort *m_in;
    const ushort *const m_end;
};

} // namespace

QString veskPercentEncode(const QString &text, const char *keep)
{
    const Kept kept(keep);
    const int first = firstToEncode(text, kept);
    if (first == text.size())
        return text;
    QString out;
    appendEncoded(out, text, first, kept);
    return out;
}

void veskAppendPercentEncoded(QString &out, const QString &text, const char *keep)
{
    if (&out == &text) {
        out += veskPercentEncode(text, keep);
        return;
    }
    const Kept kept(keep);
    const int first = firstToEncode(text, kept);
    if (first == text.size())
        out += text;
    else
        appendEncoded(out, text, first, kept);
}

QString veskPercentDecode(const QString &text, bool *ok)
{
    if (ok)
        *ok = true;
    if (!text.contains(QLatin1Char('%')) && text.isValidUtf16())
        return text;
    QString out(text.size(), Qt::Uninitialized);
    auto *const begin = reinterpret_cast<ushort *>(out.data());
    const ushort *const in = text.utf16();
    const ushort *const end = Decoder(in, in + text.size()).run(begin);
    if (!end) {
        if (ok)
            *ok = false;
        return QString();
    }
    out.truncate(int(end - begin));
    return out;
}
