#include "api/web/VeskJson.h"

#include "api/core/TrString.h"
#include "api/values/CMPath.h"
#include "api/web/VeskUrl.h"

#include <QStringList>
#include <QVarLengthArray>

#include <simdjson.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace {

namespace dom = simdjson::dom;

/// Answers up to this size leave their parser to the thread's next one.
constexpr std::size_t KeptParserBytes = 1024 * 1024;
constexpr std::size_t LeastParserBytes = 16 * 1024;

bool isAscii(const char *bytes, std::size_t size)
{
    unsigned char all = 0;
    for (std::size_t i = 0; i < size; ++i)
        all |= static_cast<unsigned char>(bytes[i]);
    return all < 0x80;
}

/// \a view is known to be UTF-8.
QString makeText(std::string_view view)
{
    const int size = static_cast<int>(view.size());
    if (isAscii(view.data(), view.size()))
        return QString::fromLatin1(view.data(), size);
    // Qt takes U+FEFF in front for a mark of the encoding and drops it.
    const QString text = QString::fromUtf8(view.data(), size);
    return view.substr(0, 3) == "\xEF\xBB\xBF" ? QChar(QChar::ByteOrderMark) + text : text;
}

/// The texts of one answer that came last, so that those that come again and again (keys,
/// "outline", guide ids, bit rates) are made once and shared: a direct-mapped cache over the
/// parser's own string buffer, in which up to seven bytes behind a text may be read.
template <unsigned SlotBits, std::size_t MaxSize>
class SharedTexts {
public:
    const QString &operator[](std::string_view view)
    {
        if (view.size() > MaxSize) {
            m_unshared = makeText(view);
            return m_unshared;
        }
        Slot &slot = m_slots[slotOf(view)];
        if (slot.view != view || !slot.view.data()) {
            slot.text = makeText(view);
            slot.view = view;
        }
        return slot.text;
    }

private:
    struct Slot {
        std::string_view view;
        QString text;
    };

    static std::size_t slotOf(std::string_view view)
    {
        constexpr std::uint64_t spread = 0x9E3779B97F4A7C15;
        std::uint64_t head = 0;
        std::memcpy(&head, view.data(), sizeof head);
        std::uint64_t tail = 0;
        if (view.size() >= sizeof head)
            std::memcpy(&tail, view.data() + view.size() - sizeof tail, sizeof tail);
        else
            head &= (std::uint64_t(1) << (8 * view.size())) - 1;
        const std::uint64_t mixed = (head ^ view.size()) * spread + tail;
        return static_cast<std::size_t>((mixed * spread) >> (64 - SlotBits));
    }

    Slot m_slots[std::size_t(1) << SlotBits];
    QString m_unshared;
};

/// Whole numbers that a qlonglong holds become one, however they are written ("1.0", "1e3").
QVariant numberVariant(double value)
{
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (value >= -limit && value < limit && value == std::trunc(value))
        return QVariant(static_cast<qlonglong>(value));
    return QVariant(value);
}

/// Turns one parsed answer into variants. Values are built where they stay.
class VariantBuilder {
public:
    /// False when the answer is nested too deeply.
    bool build(QVariant &out, const dom::element &root)
    {
        add(out, root);
        return !m_tooDeep;
    }

private:
    /// simdjson's own limit does not count an empty list or object at the bottom.
    struct Level {
        explicit Level(VariantBuilder &builder)
            : depth(builder.m_depth)
        {
            if (++depth > VeskJson::MaxDepth)
                builder.m_tooDeep = true;
        }
        ~Level() { --depth; }
        Q_DISABLE_COPY(Level)

        int &depth;
    };

    void add(QVariant &out, const dom::element &element)
    {
        switch (element.type()) {
        case dom::element_type::OBJECT:
            buildObject(out, dom::object(element));
            break;
        case dom::element_type::ARRAY:
            buildArray(out, dom::array(element));
            break;
        case dom::element_type::STRING:
            out = QVariant(m_values[std::string_view(element)]);
            break;
        case dom::element_type::INT64:
            out = QVariant(static_cast<qlonglong>(std::int64_t(element)));
            break;
        case dom::element_type::UINT64:
            out = QVariant(static_cast<double>(std::uint64_t(element)));
            break;
        case dom::element_type::DOUBLE:
            out = numberVariant(double(element));
            break;
        case dom::element_type::BOOL:
            out = QVariant(bool(element));
            break;
        case dom::element_type::NULL_VALUE:
            out = QVariant();
            break;
        }
    }

    void buildObject(QVariant &out, const dom::object &object)
    {
        const Level level(*this);
        if (m_tooDeep)
            return;
        QVariantHash hash;
        hash.reserve(static_cast<int>(object.size()));
        for (const dom::key_value_pair member : object)
            add(hash[m_keys[member.key]], member.value);
        out = QVariant(hash);
    }

    void buildArray(QVariant &out, const dom::array &array)
    {
        const Level level(*this);
        if (m_tooDeep)
            return;
        QVariantList list;
        list.reserve(static_cast<int>(array.size()));
        for (const dom::element element : array) {
            list.append(QVariant());
            add(list.last(), element);
        }
        out = QVariant(list);
    }

    SharedTexts<7, 64> m_keys;
    SharedTexts<9, 24> m_values;
    int m_depth = 0;
    bool m_tooDeep = false;
};

/// The offset of the first byte that is no part of UTF-8, or -1.
int invalidUtf8At(const QByteArray &data)
{
    for (int i = 0; i < data.size();) {
        const auto lead = static_cast<uchar>(data.at(i));
        const int more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        if ((lead >= 0x80 && lead < 0xC2) || lead > 0xF4 || i + more >= data.size())
            return i;
        uint codePoint = more == 0 ? lead : lead & (0x3Fu >> more);
        for (int k = 1; k <= more; ++k) {
            const auto next = static_cast<uchar>(data.at(i + k));
            if ((next & 0xC0) != 0x80)
                return i;
            codePoint = codePoint << 6 | (next & 0x3F);
        }
        static constexpr uint least[] = {0, 0x80, 0x800, 0x10000};
        if (codePoint < least[more] || codePoint > QChar::LastValidCodePoint
            || QChar::isSurrogate(codePoint))
            return i;
        i += more + 1;
    }
    return -1;
}

/// Makes JSON as simdjson reads it of what servers in the field send and QJsonDocument reads:
/// control characters and unknown escapes within strings, half surrogate pairs, whole numbers of
/// any length, a byte order mark. Finds where that fails, as simdjson does not tell. QJsonDocument
/// itself is no help here: it leaks what an object holds under the first of two equal keys.
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

    const std::string &text() const { return m_out; }
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
    /// NUL behind the end, where it is no part of JSON.
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
            if (c == m_open[m_depth - 1] + 2) // "]" and "}" come two after "[" and "{".
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

    void copyCharacter()
    {
        static constexpr char digits[] = "0123456789abcdef";
        const auto c = static_cast<uchar>(peek());
        if (c >= 0x20)
            return copy(1);
        ++m_at;
        m_out += "\\u00";
        m_out += digits[c >> 4];
        m_out += digits[c & 15];
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
        if (m_at == m_data.size() || static_cast<uchar>(c) >= 0x80)
            return false;
        copyCharacter();
        return true;
    }

    /// The unit that the escape \a ahead stands for, -1 when there is none.
    int unitAt(int ahead) const
    {
        if (peek(ahead) != '\\' || peek(ahead + 1) != 'u')
            return -1;
        bool ok = false;
        const QByteArray digits = m_data.mid(m_at + ahead + 2, 4);
        for (const char c : digits) {
            if (!std::isxdigit(static_cast<uchar>(c)))
                return -1;
        }
        const int unit = digits.toInt(&ok, 16);
        return ok && digits.size() == 4 ? unit : -1;
    }

    bool readUnicodeEscape()
    {
        constexpr int size = 6;
        const int unit = unitAt(0);
        if (unit < 0)
            return false;
        const int next = QChar::isHighSurrogate(uint(unit)) ? unitAt(size) : -1;
        if (next >= 0 && QChar::isLowSurrogate(uint(next))) {
            copy(2 * size);
        } else if (QChar::isSurrogate(uint(unit))) {
            m_out += "\\ufffd";
            m_at += size;
        } else {
            copy(size);
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

    /// "1." and ".5" pass, with a zero added.
    bool readNumber()
    {
        const int sign = peek() == '-' ? 1 : 0;
        const int whole = digitsAt(sign);
        const int point = sign + whole;
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
        if (std::isinf(number.toDouble()))
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

QVariant failure(const char *message, int offset, VeskError &error, unsigned int *position)
{
    error = VeskError(QString::fromLatin1(message), offset);
    if (position)
        *position = static_cast<unsigned int>(offset);
    return QVariant();
}

/// Parses with memory that each thread keeps, as long as it is not much.
class ThreadParser {
public:
    /// Gives much memory back when a parse is over.
    struct Shrinker {
        explicit Shrinker(ThreadParser &toShrink)
            : parser(toShrink)
        {
        }
        ~Shrinker()
        {
            if (parser.m_parser.capacity() > KeptParserBytes * 5 / 4)
                parser.m_parser = dom::parser();
        }
        Q_DISABLE_COPY(Shrinker)

        ThreadParser &parser;
    };

    simdjson::simdjson_result<dom::element> parse(const char *data, std::size_t size)
    {
        if (size > m_parser.capacity() || m_parser.capacity() == 0) {
            const std::size_t capacity = std::max(LeastParserBytes, size + size / 4);
            if (const auto error = m_parser.allocate(capacity, VeskJson::MaxDepth + 1))
                return error;
        }
        return m_parser.parse(data, size);
    }

private:
    dom::parser m_parser;
};

/// Writes compact JSON into one growing buffer.
class Writer {
public:
    void write(const QVariant &value)
    {
        const int type = value.userType();
        const void *const data = value.constData();
        switch (type) {
        case QMetaType::QString:
            return writeText(*static_cast<const QString *>(data));
        case QMetaType::QVariantHash:
            return writeHash(*static_cast<const QVariantHash *>(data));
        case QMetaType::QVariantMap:
            return writeMap(*static_cast<const QVariantMap *>(data));
        case QMetaType::QVariantList:
            return writeList(*static_cast<const QVariantList *>(data));
        case QMetaType::QStringList:
            return writeList(*static_cast<const QStringList *>(data));
        case QMetaType::QByteArray:
            return writeText(QString::fromUtf8(*static_cast<const QByteArray *>(data)));
        case QMetaType::QChar:
            return writeText(*static_cast<const QChar *>(data));
        case QMetaType::Bool:
            return append(value.toBool() ? "true" : "false");
        case QMetaType::Double:
            return writeReal(*static_cast<const double *>(data));
        case QMetaType::Float:
            return writeReal(*static_cast<const float *>(data));
        default:
            if (!writeInteger(type, value) && !writeOwnType(type, value))
                append("null");
        }
    }

    QByteArray take()
    {
        m_out.truncate(m_size);
        return m_out;
    }

private:
    char *room(int size)
    {
        if (m_out.size() - m_size < size)
            m_out.resize(qMax(m_size + size, 2 * m_out.size()));
        return m_out.data() + m_size;
    }

    void append(std::string_view text)
    {
        std::memcpy(room(int(text.size())), text.data(), text.size());
        m_size += int(text.size());
    }

    void append(char c)
    {
        *room(1) = c;
        ++m_size;
    }

    /// JSON knows neither infinity nor "not a number".
    template <class Real>
    void writeReal(Real value)
    {
        if (std::isfinite(value))
            writeNumber(value);
        else
            append("null");
    }

    template <class Number>
    void writeNumber(Number value)
    {
        constexpr int longest = 32;
        char *const begin = room(longest);
        m_size += int(std::to_chars(begin, begin + longest, value).ptr - begin);
    }

    bool writeInteger(int type, const QVariant &value)
    {
        switch (type) {
        case QMetaType::Char:
        case QMetaType::SChar:
        case QMetaType::UChar:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::LongLong:
            writeNumber(value.toLongLong());
            return true;
        case QMetaType::ULong:
        case QMetaType::ULongLong:
            writeNumber(value.toULongLong());
            return true;
        default:
            return false;
        }
    }

    bool writeOwnType(int type, const QVariant &value)
    {
        const void *const data = value.constData();
        if (type == qMetaTypeId<TrString>())
            writeText(static_cast<const TrString *>(data)->toString());
        else if (type == qMetaTypeId<CMPath>())
            writeText(static_cast<const CMPath *>(data)->toEncoded());
        else if (type == qMetaTypeId<VeskUrl>())
            writeText(static_cast<const VeskUrl *>(data)->toString());
        else if (QMetaType::hasRegisteredConverterFunction(type, QMetaType::QVariantHash))
            writeHash(value.value<QVariantHash>());
        else
            return false;
        return true;
    }

    template <class List>
    void writeList(const List &list)
    {
        if (++m_depth > VeskJson::MaxDepth) {
            append("null");
        } else {
            const char *separator = "[";
            for (const auto &value : list) {
                append(std::string_view(separator));
                separator = ",";
                write(value);
            }
            append(list.isEmpty() ? std::string_view("[]") : std::string_view("]"));
        }
        --m_depth;
    }

    void write(const QString &text) { writeText(text); }

    void writeHash(const QVariantHash &hash)
    {
        QVarLengthArray<QVariantHash::const_iterator, 32> entries;
        entries.reserve(hash.size());
        for (auto it = hash.begin(); it != hash.end(); ++it)
            entries.append(it);
        std::sort(entries.begin(), entries.end(),
            [](const auto &a, const auto &b) { return a.key() < b.key(); });
        writeObject(entries);
    }

    void writeMap(const QVariantMap &map)
    {
        QVarLengthArray<QVariantMap::const_iterator, 32> entries;
        entries.reserve(map.size());
        for (auto it = map.begin(); it != map.end(); ++it)
            entries.append(it);
        writeObject(entries);
    }

    template <class Entries>
    void writeObject(const Entries &entries)
    {
        if (++m_depth > VeskJson::MaxDepth) {
            append("null");
        } else {
            const char *separator = "{";
            for (const auto &entry : entries) {
                append(std::string_view(separator));
                separator = ",";
                writeText(entry.key());
                append(':');
                write(entry.value());
            }
            append(entries.isEmpty() ? std::string_view("{}") : std::string_view("}"));
        }
        --m_depth;
    }

    void writeText(const QString &text)
    {
        // Piece by piece, for the most that one UTF-16 unit grows to is "\u0001".
        constexpr int pieceSize = 4096;
        append('"');
        for (int begin = 0; begin < text.size();) {
            int end = qMin(text.size(), begin + pieceSize);
            if (end < text.size() && text.at(end - 1).isHighSurrogate())
                --end;
            char *const out = room(6 * (end - begin));
            m_size += int(encode(out, text.utf16() + begin, text.utf16() + end) - out);
            begin = end;
        }
        append('"');
    }

    static char *encode(char *out, const ushort *in, const ushort *end)
    {
        while (in != end) {
            const ushort c = *in++;
            if (c >= 0x80) {
                uint codePoint = c;
                if (QChar::isHighSurrogate(c) && in != end && QChar::isLowSurrogate(*in))
                    codePoint = QChar::surrogateToUcs4(c, *in++);
                else if (QChar::isSurrogate(c))
                    codePoint = QChar::ReplacementCharacter;
                out = encodeUtf8(out, codePoint);
            } else if (c >= 0x20 && c != '"' && c != '\\') {
                *out++ = static_cast<char>(c);
            } else {
                out = encodeEscape(out, static_cast<char>(c));
            }
        }
        return out;
    }

    static char *encodeUtf8(char *out, uint c)
    {
        if (c < 0x800) {
            *out++ = static_cast<char>(0xC0 | c >> 6);
        } else {
            if (c < 0x10000) {
                *out++ = static_cast<char>(0xE0 | c >> 12);
            } else {
                *out++ = static_cast<char>(0xF0 | c >> 18);
                *out++ = static_cast<char>(0x80 | (c >> 12 & 0x3F));
            }
            *out++ = static_cast<char>(0x80 | (c >> 6 & 0x3F));
        }
        *out++ = static_cast<char>(0x80 | (c & 0x3F));
        return out;
    }

    static char *encodeEscape(char *out, char c)
    {
        static constexpr std::string_view named = "\"\\\b\f\n\r\t";
        static constexpr char letters[] = "\"\\bfnrt";
        *out++ = '\\';
        if (const auto index = named.find(c); index != std::string_view::npos) {
            *out++ = letters[index];
            return out;
        }
        static constexpr char digits[] = "0123456789abcdef";
        for (const char digit : {'u', '0', '0', digits[c >> 4], digits[c & 15]})
            *out++ = digit;
        return out;
    }

    QByteArray m_out;
    int m_size = 0;
    int m_depth = 0;
};

} // namespace

QVariant VeskJson::parse(const QByteArray &data, VeskError &error, unsigned int *position)
{
    static thread_local ThreadParser parser;
    const ThreadParser::Shrinker shrinker(parser);
    error = VeskError();
    QVariant result;
    dom::element root;
    if (parser.parse(data.constData(), std::size_t(data.size())).get(root) == simdjson::SUCCESS
        && VariantBuilder().build(result, root))
        return result;

    if (const int offset = invalidUtf8At(data); offset >= 0)
        return failure("invalid UTF-8", offset, error, position);
    Repair repair(data);
    if (!repair.run())
        return failure(repair.message(), repair.offset(), error, position);
    const std::string &text = repair.text();
    if (parser.parse(text.data(), text.size()).get(root) == simdjson::SUCCESS
        && VariantBuilder().build(result, root))
        return result;
    return failure("not readable", 0, error, position);
}

QByteArray VeskJson::write(const QVariant &value)
{
    Writer writer;
    writer.write(value);
    return writer.take();
}
