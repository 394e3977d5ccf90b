// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/VeskJson.h"

#include "api/web/private/JsonRepair.h"
#include "api/web/private/JsonWriter.h"

#include <simdjson.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace {

namespace dom = simdjson::dom;

/// Up to this size of text, a parser's buffers are kept for the thread's next text.
constexpr std::size_t KeptParserBytes = std::size_t(1024) * 1024;
constexpr std::size_t LeastParserBytes = std::size_t(16) * 1024;

bool isAscii(const char *bytes, std::size_t size)
{
    unsigned char all = 0;
    for (std::size_t i = 0; i < size; ++i)
        all |= static_cast<unsigned char>(bytes[i]);
    return all < 0x80;
}

/// \a view must be valid UTF-8.
QString makeText(std::string_view view)
{
    const int size = static_cast<int>(view.size());
    if (isAscii(view.data(), view.size()))
        return QString::fromLatin1(view.data(), size);
    // QString::fromUtf8() takes a leading U+FEFF for a byte order mark and drops it.
    const QString text = QString::fromUtf8(view.data(), size);
    return view.substr(0, 3) == "\xEF\xBB\xBF" ? QChar(QChar::ByteOrderMark) + text : text;
}

/// Shares one QString among the repetitions of a text in a response (keys, "outline", guide ids,
/// bit rates): a direct-mapped cache of views of the parser's string buffer. The buffer is padded,
/// so that slotOf() may read up to seven bytes past a text.
template <unsigned SlotBits, std::size_t MaxSize>
class SharedTexts {
public:
    /// The reference is valid until the next call.
    const QString &operator[](std::string_view view)
    {
        if (view.size() > MaxSize) {
            m_unshared = makeText(view);
            return m_unshared;
        }
        Slot &slot = m_slots[slotOf(view)];
        // The view of an unused slot equals an empty text, but has no data.
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

    /// Hashes the size, the first and the last eight bytes.
    static std::size_t slotOf(std::string_view view)
    {
        constexpr std::uint64_t Spread = 0x9E3779B97F4A7C15;
        std::uint64_t head = 0;
        std::memcpy(&head, view.data(), sizeof head);
        std::uint64_t tail = 0;
        if (view.size() >= sizeof head)
            std::memcpy(&tail, view.data() + view.size() - sizeof tail, sizeof tail);
        else
            head &= (std::uint64_t(1) << (8 * view.size())) - 1;
        const std::uint64_t mixed = (head ^ view.size()) * Spread + tail;
        return static_cast<std::size_t>((mixed * Spread) >> (64 - SlotBits));
    }

    Slot m_slots[std::size_t(1) << SlotBits];
    QString m_unshared;
};

/// A qlonglong for whole numbers in its range, however they are written ("1.0", "1e3").
QVariant numberVariant(double value)
{
    constexpr double Limit = 9223372036854775808.0; // 2^63
    if (value >= -Limit && value < Limit && value == std::trunc(value))
        return QVariant(static_cast<qlonglong>(value));
    return QVariant(value);
}

/// Converts one parsed text to variants, each of which is built in its final place.
class VariantBuilder {
public:
    /// False when the text is nested deeper than VeskJson::MaxDepth.
    bool build(QVariant &out, const dom::element &root)
    {
        add(out, root);
        return !m_tooDeep;
    }

private:
    /// Counts the nesting depth, as simdjson's own limit ignores an empty array or object at the
    /// deepest level.
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
        // Beyond the range of int64_t only.
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

/// A parser whose buffers each thread reuses, unless they are large.
class ThreadParser {
public:
    /// Frees a large parser's buffers at the end of the scope.
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

} // namespace

QVariant VeskJson::parse(const QByteArray &data, VeskError &error, unsigned int *position)
{
    static thread_local ThreadParser parser;
    const ThreadParser::Shrinker shrinker(parser);
    error = VeskError();
    QVariant result;
    dom::element root;
    // Nearly all texts are strict JSON; only the others are repaired and parsed again.
    if (parser.parse(data.constData(), std::size_t(data.size())).get(root) == simdjson::SUCCESS
        && VariantBuilder().build(result, root))
        return result;

    const Result<std::string, VeskError> repaired = repairJson(data);
    if (repaired && parser.parse(repaired->data(), repaired->size()).get(root) == simdjson::SUCCESS
        && VariantBuilder().build(result, root))
        return result;
    error = repaired ? VeskError(QStringLiteral("not readable"), 0) : repaired.error();
    if (position)
        *position = static_cast<unsigned int>(error.offset());
    return QVariant();
}

QByteArray VeskJson::write(const QVariant &value)
{
    return writeJson(value);
}
