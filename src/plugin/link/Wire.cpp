// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/link/Wire.h"

#include "api/core/Language.h"
#include "api/core/qtversions.h"

#include <QMetaType>

#include <cstring>

namespace {

/// What a written value is. The numbers are part of the protocol.
enum Tag : quint8 {
    Null = 0,
    False = 1,
    True = 2,
    Int = 3,
    UInt = 4,
    LongLong = 5,
    ULongLong = 6,
    Double = 7,
    Text = 8,
    Bytes = 9,
    Texts = 10,
    List = 11,
    Hash = 12,
    Map = 13,
    Translatable = 14,
    Path = 15
};

/// How a translatable text is written: a name is shown as it stands, in every language.
enum TextKind : quint8 { Name = 0, Translated = 1, WithArguments = 2 };

/// What comes in front of a text that may be written by its number.
enum Sharing : quint64 { Plain = 0, New = 1, FirstShared = 2 };

constexpr int MostBytesOfCount = 10;
constexpr int CharBytes = sizeof(QChar);
/// A field of a text is filled up to its width by whoever shows it.
constexpr qint64 MaxFieldWidth = 1000;

quint64 zigzag(qint64 number)
{
    return (static_cast<quint64>(number) << 1) ^ static_cast<quint64>(number >> 63);
}

qint64 unzigzag(quint64 code)
{
    return static_cast<qint64>(code >> 1) ^ -static_cast<qint64>(code & 1);
}

} // namespace

WireWriter::WireWriter()
{
    m_bytes.reserve(512);
}

/// Place for \a size more bytes.
char *WireWriter::grow(int size)
{
    const int had = m_bytes.size();
    if (had + size > m_bytes.capacity())
        m_bytes.reserve(2 * (had + size));
    m_bytes.resize(had + size);
    return m_bytes.data() + had;
}

void WireWriter::writeCount(quint64 count)
{
    char bytes[MostBytesOfCount];
    int size = 0;
    for (; count >= 0x80; count >>= 7)
        bytes[size++] = static_cast<char>(count | 0x80);
    bytes[size++] = static_cast<char>(count);
    std::memcpy(grow(size), bytes, static_cast<std::size_t>(size));
}

void WireWriter::writeInt(qint64 number)
{
    writeCount(zigzag(number));
}

void WireWriter::writeText(const QString &text)
{
    // Most texts are addresses: one byte for each character does, unless one needs two.
    const auto *const characters = reinterpret_cast<const ushort *>(text.constData());
    const int size = text.size();
    ushort all = 0;
    for (int i = 0; i < size; ++i)
        all |= characters[i];
    const bool isNarrow = all < 0x100;
    writeCount(static_cast<quint64>(size) << 1 | (isNarrow ? 1 : 0));
    if (!isNarrow) {
        std::memcpy(grow(size * CharBytes), characters, static_cast<std::size_t>(size) * CharBytes);
        return;
    }
    char *const narrow = grow(size);
    for (int i = 0; i < size; ++i)
        narrow[i] = static_cast<char>(characters[i]);
}

void WireWriter::writeBytes(const QByteArray &bytes)
{
    writeCount(static_cast<quint64>(bytes.size()));
    m_bytes.append(bytes);
}

void WireWriter::writeTexts(const QStringList &texts)
{
    writeCount(static_cast<quint64>(texts.size()));
    for (const QString &text : texts)
        writeText(text);
}

void WireWriter::writePath(const CMPath &path)
{
    writeText(path.toEncoded());
}

void WireWriter::writeTrString(const TrString &text)
{
    const QVector<TrArg> arguments = text.arguments();
    if (!text.isTranslatable() && arguments.isEmpty()) {
        writeByte(Name);
        writeText(text.sourceText());
        return;
    }
    writeByte(arguments.isEmpty() ? Translated : WithArguments);
    writeKey(text.context());
    writeKey(text.sourceText());
    writeKey(text.disambiguation());
    writeInt(text.count());
    if (arguments.isEmpty())
        return;
    writeCount(static_cast<quint64>(arguments.size()));
    for (const TrArg &argument : arguments) {
        writeText(argument.value);
        writeInt(argument.fieldWidth);
        writeCount(argument.fill.unicode());
    }
}

void WireWriter::writeHash(const QVariantHash &hash)
{
    writeEntries(hash);
}

void WireWriter::writeKey(const QString &key)
{
    // Most keys are few texts that live as long as the process.
    const auto address = reinterpret_cast<quintptr>(key.constData());
    RecentKey &recent = m_recentKeys[(address >> 4) % m_recentKeys.size()];
    if (recent.address == address && m_temporaries == 0)
        return writeCount(static_cast<quint64>(recent.number));
    int &number = m_keys[key];
    const bool isNew = number == 0;
    if (isNew)
        number = m_keys.size();
    if (m_temporaries == 0)
        recent = {address, number};
    writeCount(isNew ? 0 : static_cast<quint64>(number));
    if (isNew)
        writeText(key);
}

void WireWriter::writeSharedText(const QString &text)
{
    if (m_temporaries > 0 || text.isDetached() || text.isEmpty()) {
        writeCount(Plain);
        writeText(text);
        return;
    }
    int &number = m_texts[text.constData()];
    if (number > 0)
        return writeCount(static_cast<quint64>(number) - 1 + FirstShared);
    number = m_texts.size();
    writeCount(New);
    writeText(text);
}

template <class Map>
void WireWriter::writeEntries(const Map &map)
{
    writeCount(static_cast<quint64>(map.size()));
    for (auto it = map.constBegin(); it != map.constEnd(); ++it) {
        writeKey(it.key());
        writeVariant(it.value());
    }
}

void WireWriter::writeVariant(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return writeTag(Tag::Null);
    case QMetaType::Bool:
        return writeTag(value.toBool() ? Tag::True : Tag::False);
    case QMetaType::Int:
        writeTag(Tag::Int);
        return writeInt(value.toInt());
    case QMetaType::UInt:
        writeTag(Tag::UInt);
        return writeCount(value.toUInt());
    case QMetaType::LongLong:
        writeTag(Tag::LongLong);
        return writeInt(value.toLongLong());
    case QMetaType::ULongLong:
        writeTag(Tag::ULongLong);
        return writeCount(value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double: {
        const double number = value.toDouble();
        writeTag(Tag::Double);
        std::memcpy(grow(sizeof number), &number, sizeof number);
        return;
    }
    case QMetaType::QString:
        writeTag(Tag::Text);
        return writeSharedText(*static_cast<const QString *>(value.constData()));
    case QMetaType::QByteArray:
        writeTag(Tag::Bytes);
        return writeBytes(value.toByteArray());
    case QMetaType::QStringList:
        writeTag(Tag::Texts);
        return writeTexts(value.toStringList());
    case QMetaType::QVariantList: {
        const auto &list = *static_cast<const QVariantList *>(value.constData());
        writeTag(Tag::List);
        writeCount(static_cast<quint64>(list.size()));
        for (const QVariant &entry : list)
            writeVariant(entry);
        return;
    }
    case QMetaType::QVariantHash:
        writeTag(Tag::Hash);
        return writeEntries(*static_cast<const QVariantHash *>(value.constData()));
    case QMetaType::QVariantMap:
        writeTag(Tag::Map);
        return writeEntries(*static_cast<const QVariantMap *>(value.constData()));
    default:
        break;
    }
    if (value.userType() == qMetaTypeId<TrString>()) {
        writeTag(Tag::Translatable);
        writeTrString(*static_cast<const TrString *>(value.constData()));
    } else if (value.userType() == qMetaTypeId<CMPath>()) {
        writeTag(Tag::Path);
        writePath(*static_cast<const CMPath *>(value.constData()));
    } else if (veskHasConverter(value.userType(), QMetaType::QVariantHash)) {
        writeTag(Tag::Hash);
        ++m_temporaries;
        writeEntries(value.value<QVariantHash>());
        --m_temporaries;
    } else {
        writeTag(Tag::Null);
    }
}

WireReader::WireReader(const QByteArray &bytes, int from)
    : m_next(bytes.constData() + from)
    , m_end(bytes.constData() + bytes.size())
{
}

void WireReader::fail()
{
    m_ok = false;
    m_next = m_end;
}

quint8 WireReader::readByte()
{
    if (m_next == m_end) {
        fail();
        return 0;
    }
    return static_cast<quint8>(*m_next++);
}

quint64 WireReader::readCount()
{
    quint64 count = 0;
    for (int i = 0; i < MostBytesOfCount && m_ok; ++i) {
        const quint8 byte = readByte();
        count |= static_cast<quint64>(byte & 0x7f) << (7 * i);
        if (byte < 0x80)
            return m_ok ? count : 0;
    }
    fail();
    return 0;
}

qint64 WireReader::readInt()
{
    return unzigzag(readCount());
}

int WireReader::readSize(int least)
{
    const quint64 size = readCount();
    if (size > static_cast<quint64>(left() / least)) {
        fail();
        return 0;
    }
    return static_cast<int>(size);
}

QString WireReader::readText()
{
    const quint64 code = readCount();
    const bool isNarrow = (code & 1) != 0;
    const quint64 size = code >> 1;
    if (size > static_cast<quint64>(left() / (isNarrow ? 1 : CharBytes))) {
        fail();
        return QString();
    }
    const int length = static_cast<int>(size);
    spend(0, length);
    if (!m_ok)
        return QString();
    const char *const characters = m_next;
    m_next += isNarrow ? length : length * CharBytes;
    if (isNarrow)
        return QString::fromLatin1(characters, length);
    QString text(length, Qt::Uninitialized);
    std::memcpy(text.data(), characters, static_cast<std::size_t>(length) * CharBytes);
    return text;
}

QByteArray WireReader::readBytes()
{
    const int size = readSize(1);
    const QByteArray bytes(m_next, size);
    m_next += size;
    return bytes;
}

QStringList WireReader::readTexts()
{
    QStringList texts;
    const int size = readSize(1);
    spend(size, 0);
    for (int i = 0; i < size && m_ok; ++i)
        texts.append(readText());
    return texts;
}

CMPath WireReader::readPath()
{
    return CMPath::fromEncoded(readText());
}

TrString WireReader::readTrString()
{
    const quint8 kind = readByte();
    if (kind == Name)
        return Language::ntr(readText());
    if (kind != Translated && kind != WithArguments)
        fail();
    const QString context = readKey();
    const QString sourceText = readKey();
    const QString disambiguation = readKey();
    const int count = static_cast<int>(readInt());
    QVector<TrArg> arguments;
    const int size = kind == WithArguments ? readSize(3) : 0;
    for (int i = 0; i < size && m_ok; ++i) {
        const QString value = readText();
        const qint64 width = readInt();
        if (width < -MaxFieldWidth || width > MaxFieldWidth)
            fail();
        arguments.append(
            TrArg(value, static_cast<int>(width), QChar(static_cast<ushort>(readCount()))));
    }
    return m_ok ? TrString(context, sourceText, disambiguation, count, arguments) : TrString();
}

QVariantHash WireReader::readHash()
{
    return readEntries<QVariantHash>();
}

QString WireReader::readKey()
{
    const quint64 known = readCount();
    if (known == 0) {
        m_keys.append(readText());
        return m_keys.last();
    }
    if (known > static_cast<quint64>(m_keys.size())) {
        fail();
        return QString();
    }
    const QString &key = m_keys.at(static_cast<int>(known) - 1);
    spend(0, key.size());
    return key;
}

QString WireReader::readSharedText()
{
    const quint64 code = readCount();
    if (code == Plain)
        return readText();
    if (code == New) {
        m_texts.append(readText());
        return m_texts.last();
    }
    if (code - FirstShared >= static_cast<quint64>(m_texts.size())) {
        fail();
        return QString();
    }
    const QString &text = m_texts.at(static_cast<int>(code - FirstShared));
    spend(0, text.size());
    return text;
}

void WireReader::spend(qint64 values, qint64 characters)
{
    m_values += values;
    m_characters += characters;
    if (m_values > MaxValues || m_characters > MaxCharacters)
        fail();
}

bool WireReader::enter()
{
    if (++m_depth > MaxDepth)
        fail();
    return m_ok;
}

template <class Map>
Map WireReader::readEntries()
{
    Map map;
    const int size = readSize(2);
    spend(size, 0);
    if (enter()) {
        if constexpr (std::is_same_v<Map, QVariantHash>)
            map.reserve(size);
        for (int i = 0; i < size && m_ok; ++i) {
            QVariant &value = map[readKey()];
            value = readVariant();
        }
    }
    --m_depth;
    return map;
}

QVariantList WireReader::readList()
{
    QVariantList list;
    const int size = readSize(1);
    spend(size, 0);
    if (enter()) {
        list.reserve(size);
        for (int i = 0; i < size && m_ok; ++i) {
            // Moved to where it stays: a copy would count references up and down.
            list.append(QVariant());
            list.last() = readVariant();
        }
    }
    --m_depth;
    return list;
}

QVariant WireReader::readVariant()
{
    return readTagged(readByte());
}

QVariant WireReader::readTagged(quint8 tag)
{
    switch (tag) {
    case Tag::Null:
        return QVariant();
    case Tag::False:
        return false;
    case Tag::True:
        return true;
    case Tag::Int:
        return static_cast<int>(readInt());
    case Tag::UInt:
        return static_cast<uint>(readCount());
    case Tag::LongLong:
        return static_cast<qlonglong>(readInt());
    case Tag::ULongLong:
        return static_cast<qulonglong>(readCount());
    case Tag::Double: {
        double number = 0;
        if (left() < static_cast<int>(sizeof number)) {
            fail();
            return QVariant();
        }
        std::memcpy(&number, m_next, sizeof number);
        m_next += sizeof number;
        return number;
    }
    case Tag::Text:
        return readSharedText();
    case Tag::Bytes:
        return readBytes();
    case Tag::Texts:
        return readTexts();
    case Tag::List:
        return readList();
    case Tag::Hash:
        return readHash();
    case Tag::Map:
        return readEntries<QVariantMap>();
    case Tag::Translatable:
        return readTrString();
    case Tag::Path:
        return QVariant::fromValue(readPath());
    default:
        fail();
        return QVariant();
    }
}
