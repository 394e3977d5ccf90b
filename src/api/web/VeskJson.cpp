#include "api/web/VeskJson.h"

#include "api/core/TrString.h"
#include "api/values/CMPath.h"
#include "api/web/VeskUrl.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QVarLengthArray>

#include <simdjson.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
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
    return isAscii(view.data(), view.size()) ? QString::fromLatin1(view.data(), size)
                                             : QString::fromUtf8(view.data(), size);
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

/// Where \a data is nested deeper than MaxDepth, or -1. Holds for all that QJsonDocument accepts.
int tooDeepAt(const QByteArray &data)
{
    int depth = 0;
    bool inString = false;
    for (int i = 0; i < data.size(); ++i) {
        const char c = data.at(i);
        if (c == '"')
            inString = !inString;
        else if (inString)
            i += c == '\\';
        else if ((c == '[' || c == '{') && ++depth > VeskJson::MaxDepth)
            return i;
        else if (c == ']' || c == '}')
            --depth;
    }
    return -1;
}

QString tooDeep()
{
    return QStringLiteral("nested too deeply");
}

QVariant fromQt(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Object: {
        const QJsonObject object = value.toObject();
        QVariantHash hash;
        hash.reserve(object.size());
        for (auto it = object.begin(); it != object.end(); ++it)
            hash.insert(it.key(), fromQt(it.value()));
        return hash;
    }
    case QJsonValue::Array: {
        const QJsonArray array = value.toArray();
        QVariantList list;
        list.reserve(array.size());
        for (const QJsonValue &element : array)
            list.append(fromQt(element));
        return list;
    }
    case QJsonValue::Double: {
        const QVariant number = value.toVariant();
        return number.type() == QVariant::Double ? numberVariant(number.toDouble()) : number;
    }
    case QJsonValue::String:
    case QJsonValue::Bool:
        return value.toVariant();
    default:
        return QVariant();
    }
}

QVariant failure(const QString &message, int offset, VeskError &error, unsigned int *position)
{
    error = VeskError(message, offset);
    if (position)
        *position = static_cast<unsigned int>(offset);
    return QVariant();
}

/// What simdjson rejects may still be what devices and servers in the field send: control
/// characters within strings, unknown escapes, half surrogate pairs, a byte order mark.
/// QJsonDocument reads those, and tells where it cannot.
QVariant parseLeniently(const QByteArray &data, VeskError &error, unsigned int *position)
{
    if (const int offset = tooDeepAt(data); offset >= 0)
        return failure(tooDeep(), offset, error, position);
    QJsonParseError qtError;
    const QJsonDocument document = QJsonDocument::fromJson(data, &qtError);
    if (qtError.error != QJsonParseError::NoError)
        return failure(
            qtError.errorString(), qBound(0, qtError.offset, data.size()), error, position);
    error = VeskError();
    return document.isArray() ? fromQt(document.array()) : fromQt(document.object());
}

/// Parses with memory that each thread keeps, as long as it is not much.
class ThreadParser {
public:
    simdjson::simdjson_result<dom::element> parse(const QByteArray &data)
    {
        const auto size = static_cast<std::size_t>(data.size());
        if (size > m_parser.capacity() || m_parser.capacity() == 0) {
            const std::size_t capacity = std::max(LeastParserBytes, size + size / 4);
            if (const auto error = m_parser.allocate(capacity, VeskJson::MaxDepth + 1))
                return error;
        }
        return m_parser.parse(data.constData(), size);
    }

    void shrink()
    {
        if (m_parser.capacity() > KeptParserBytes * 5 / 4)
            m_parser = dom::parser();
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
    dom::element root;
    if (parser.parse(data).get(root) != simdjson::SUCCESS) {
        parser.shrink();
        return parseLeniently(data, error, position);
    }
    QVariant result;
    const bool built = VariantBuilder().build(result, root);
    parser.shrink();
    if (!built)
        return failure(tooDeep(), tooDeepAt(data), error, position);
    error = VeskError();
    return result;
}

QByteArray VeskJson::write(const QVariant &value)
{
    Writer writer;
    writer.write(value);
    return writer.take();
}
