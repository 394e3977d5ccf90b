// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/private/JsonWriter.h"

#include "api/core/TrString.h"
#include "api/core/qtversions.h"
#include "api/core/utf8.h"
#include "api/values/CMPath.h"
#include "api/web/VeskJson.h"
#include "api/web/VeskUrl.h"

#include <QStringList>
#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>

namespace {

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

    /// JSON has neither infinities nor NaN; they become null.
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
        constexpr int Longest = 32;
        char *const begin = room(Longest);
        m_size += int(std::to_chars(begin, begin + Longest, value).ptr - begin);
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
        else if (veskHasConverter(type, QMetaType::QVariantHash))
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
        // In pieces, because space is reserved for the longest form of each UTF-16 unit, "\u0001".
        constexpr int PieceSize = 4096;
        append('"');
        for (int begin = 0; begin < text.size();) {
            int end = qMin(text.size(), begin + PieceSize);
            // Keep the halves of a surrogate pair together.
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
                veskWriteUtf8(codePoint, [&out](uint byte) { *out++ = static_cast<char>(byte); });
            } else if (c >= 0x20 && c != '"' && c != '\\') {
                *out++ = static_cast<char>(c);
            } else {
                out = encodeEscape(out, static_cast<char>(c));
            }
        }
        return out;
    }

    static char *encodeEscape(char *out, char c)
    {
        static constexpr std::string_view Named = "\"\\\b\f\n\r\t";
        static constexpr char Letters[] = "\"\\bfnrt";
        *out++ = '\\';
        if (const auto index = Named.find(c); index != std::string_view::npos) {
            *out++ = Letters[index];
            return out;
        }
        static constexpr char Digits[] = "0123456789abcdef";
        for (const char digit : {'u', '0', '0', Digits[c >> 4], Digits[c & 15]})
            *out++ = digit;
        return out;
    }

    QByteArray m_out;
    int m_size = 0;
    int m_depth = 0;
};

} // namespace

QByteArray writeJson(const QVariant &value)
{
    Writer writer;
    writer.write(value);
    return writer.take();
}
