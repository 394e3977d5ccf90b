#include "worker/link/Wire.h"

#include "api/core/Language.h"

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
enum TextKind : quint8 { Name = 0, Plain = 1, WithArguments = 2 };

constexpr int MostBytesOfCount = 10;
constexpr int CharBytes = sizeof(QChar);

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

void WireWriter::writeCount(quint64 count)
{
    while (count >= 0x80) {
        writeByte(static_cast<quint8>(count | 0x80));
        count >>= 7;
    }
    writeByte(static_cast<quint8>(count));
}

void WireWriter::writeInt(qint64 number)
{
    writeCount(zigzag(number));
}

void WireWriter::writeText(const QString &text)
{
    writeCount(static_cast<quint64>(text.size()));
    m_bytes.append(reinterpret_cast<const char *>(text.constData()), text.size() * CharBytes);
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
    writeByte(arguments.isEmpty() ? Plain : WithArguments);
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
    const int known = m_keys.value(key);
    writeCount(static_cast<quint64>(known));
    if (known > 0)
        return;
    m_keys.insert(key, m_keys.size() + 1);
    writeText(key);
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
        m_bytes.append(reinterpret_cast<const char *>(&number), sizeof number);
        return;
    }
    case QMetaType::QString:
        writeTag(Tag::Text);
        return writeText(*static_cast<const QString *>(value.constData()));
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
    } else if (QMetaType::hasRegisteredConverterFunction(
                   value.userType(), QMetaType::QVariantHash)) {
        writeTag(Tag::Hash);
        writeEntries(value.value<QVariantHash>());
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
    const int size = readSize(CharBytes);
    QString text(size, Qt::Uninitialized);
    std::memcpy(text.data(), m_next, static_cast<std::size_t>(size) * CharBytes);
    m_next += size * CharBytes;
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
    if ((m_values += size) > MaxValues)
        fail();
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
    if (kind != Plain && kind != WithArguments)
        fail();
    const QString context = readKey();
    const QString sourceText = readKey();
    const QString disambiguation = readKey();
    const int count = static_cast<int>(readInt());
    QVector<TrArg> arguments;
    const int size = kind == WithArguments ? readSize(3) : 0;
    for (int i = 0; i < size && m_ok; ++i) {
        const QString value = readText();
        const int width = static_cast<int>(readInt());
        arguments.append(TrArg(value, width, QChar(static_cast<ushort>(readCount()))));
    }
    return TrString(context, sourceText, disambiguation, count, arguments);
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
    return m_keys.at(static_cast<int>(known) - 1);
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
    if ((m_values += size) > MaxValues)
        fail();
    if (enter()) {
        if constexpr (std::is_same_v<Map, QVariantHash>)
            map.reserve(size);
        for (int i = 0; i < size && m_ok; ++i) {
            const QString key = readKey();
            map.insert(key, readVariant());
        }
    }
    --m_depth;
    return map;
}

QVariantList WireReader::readList()
{
    QVariantList list;
    const int size = readSize(1);
    if ((m_values += size) > MaxValues)
        fail();
    if (enter()) {
        list.reserve(size);
        for (int i = 0; i < size && m_ok; ++i)
            list.append(readVariant());
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
        return readText();
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
