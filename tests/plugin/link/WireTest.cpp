// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/link/Wire.h"

#include "api/core/Language.h"
#include "api/values/VeskValue.h"

#include <QSize>

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#include <fstream>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace {

/// The wire format's tags, for payloads that tests write by hand.
constexpr quint8 TagNull = 0;
constexpr quint8 TagText = 8;
constexpr quint8 TagBytes = 9;
constexpr quint8 TagTexts = 10;
constexpr quint8 TagList = 11;
constexpr quint8 TagHash = 12;
constexpr quint8 TagMap = 13;
constexpr quint8 TagTranslatable = 14;
constexpr quint8 TagLast = 15;

QVariant throughWire(const QVariant &value)
{
    WireWriter writer;
    writer.writeVariant(value);
    WireReader reader(writer.bytes());
    const QVariant read = reader.readVariant();
    EXPECT_TRUE(reader.isAtEnd());
    return read;
}

TrString throughWire(const TrString &text)
{
    const QVariant read = throughWire(QVariant(text));
    EXPECT_EQ(read.userType(), qMetaTypeId<TrString>());
    return read.value<TrString>();
}

bool isReadable(const QByteArray &bytes)
{
    WireReader reader(bytes);
    reader.readVariant();
    return reader.isAtEnd();
}

/// Lists or hashes, nested \a depth deep.
QByteArray nested(int depth, bool hashes)
{
    WireWriter writer;
    for (int i = 0; i < depth; ++i) {
        writer.writeByte(hashes ? TagHash : TagList);
        writer.writeCount(1);
        if (hashes)
            writer.writeCount(i == 0 ? 0 : 1); // the key's text once, then its index
        if (hashes && i == 0)
            writer.writeText(QStringLiteral("k"));
    }
    writer.writeByte(TagNull);
    return writer.bytes();
}

/// A list of \a count nulls.
QByteArray nulls(int count)
{
    WireWriter writer;
    writer.writeByte(TagList);
    writer.writeCount(static_cast<quint64>(count));
    writer.bytes().append(count, char(TagNull));
    return writer.bytes();
}

/// A value of every type that a response may carry.
QVariant everything()
{
    CMPath path(QStringLiteral("TuneIn"), QStringLiteral("browse/x"));
    path.addParam(QStringLiteral("id"), QStringLiteral("s1"));
    const QVariantHash row {{QStringLiteral("title"), TrString("Rows", "Stations")},
        {QStringLiteral("path"), QVariant::fromValue(path)}, {QStringLiteral("type"), 3},
        {QStringLiteral("image"), QByteArray("\x89PNG\0\xff", 6)}};
    const TrString plural(QStringLiteral("Rows"), QStringLiteral("%n of %1"),
        QStringLiteral("count"), 4, {TrArg(QStringLiteral("many"), 8, QLatin1Char('.'))});
    const QVariantMap map {{QStringLiteral("flag"), true}, {QStringLiteral("rate"), 1.5},
        {QStringLiteral("none"), QVariant()}, {QStringLiteral("title"), plural}};
    return QVariantList {row, row, map, QStringList {QStringLiteral("a"), QStringLiteral("bc")},
        Language::ntr(QStringLiteral("Radio Eins")), qlonglong(-5), qulonglong(300), 7U};
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
/// Limits the address space to what is in use plus \a bytes; an allocation beyond that throws
/// std::bad_alloc, which fails the test.
class MemoryLimit {
public:
    explicit MemoryLimit(rlim_t bytes)
    {
        ::getrlimit(RLIMIT_AS, &m_former);
        rlim_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlimit limits {
            pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) + bytes, m_former.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_AS, &limits), 0);
    }
    ~MemoryLimit() { ::setrlimit(RLIMIT_AS, &m_former); }

private:
    rlimit m_former {};
};
#else
/// No limit: sanitizers reserve huge address ranges, and report oversized allocations themselves.
class MemoryLimit {
public:
    explicit MemoryLimit(unsigned long) { }
    ~MemoryLimit() { }
};
#endif

constexpr unsigned long Mebibyte = 1024UL * 1024;

TEST(Wire, PlainValuesSurviveWithTheirTypes)
{
    const QVariantList values {QVariant(), true, false, 0, 1, -1, std::numeric_limits<int>::max(),
        std::numeric_limits<int>::min(), 0U, std::numeric_limits<uint>::max(), qlonglong(0),
        std::numeric_limits<qlonglong>::max(), std::numeric_limits<qlonglong>::min(), qulonglong(0),
        std::numeric_limits<qulonglong>::max(), 0.0, 1.5, std::numeric_limits<double>::max(),
        std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::infinity(),
        QString(), QStringLiteral("text"), QByteArray(), QByteArray("a\0b\xff", 4), QStringList(),
        QStringList {QString(), QStringLiteral("one"), QStringLiteral("two")}};
    for (const QVariant &value : values) {
        const QVariant read = throughWire(value);
        EXPECT_EQ(read.userType(), value.userType()) << value.typeName();
        EXPECT_EQ(read, value) << value.typeName();
    }
}

TEST(Wire, DoublesSurviveToTheLastBit)
{
    EXPECT_TRUE(std::isnan(throughWire(std::nan("")).toDouble()));
    EXPECT_TRUE(std::signbit(throughWire(-0.0).toDouble()));
    EXPECT_EQ(throughWire(0.1).toDouble(), 0.1);
    EXPECT_EQ(throughWire(QVariant::fromValue(0.5F)), QVariant(0.5)) << "a float, as a double";
}

TEST(Wire, TextsWithAnyCharactersSurvive)
{
    const QChar lone(0xd800);
    const QStringList texts {QString(3, QChar(0)), QStringLiteral("a\0b") + QChar(0),
        QString::fromUtf8("\xf0\x9f\x93\xbb radio"), QString(lone),
        QStringLiteral("x") + lone + QStringLiteral("y"), QString(QChar(0xdc00)) + lone,
        QString(QChar(0xffff)), QString(200'000, QLatin1Char('z'))};
    for (const QString &text : texts) {
        const QString read = throughWire(QVariant(text)).toString();
        EXPECT_EQ(read.size(), text.size());
        EXPECT_TRUE(read == text) << text.left(20).toStdString();
    }
    EXPECT_EQ(throughWire(QVariant(texts)), QVariant(texts));
}

TEST(Wire, NestedContainersSurvive)
{
    const QVariantMap map {{QStringLiteral("b"), 1}, {QStringLiteral("a"), QVariantList()},
        {QString(), QVariantHash()}};
    const QVariantHash hash {{QStringLiteral("map"), map}, {QStringLiteral("b"), QVariantMap()}};
    const QVariantList list {hash, map, QVariantList {hash, QVariant(), QVariantList {1, 2}}};
    const QVariant read = throughWire(list);
    EXPECT_EQ(read, QVariant(list));
    const QVariantList entries = read.toList();
    EXPECT_EQ(entries.value(0).userType(), int(QMetaType::QVariantHash));
    EXPECT_EQ(entries.value(1).userType(), int(QMetaType::QVariantMap));
}

TEST(Wire, TranslatableTextsSurvive)
{
    const TrArg filled(QStringLiteral("%1"), -12, QChar(0x2026));
    const QList<TrString> texts {TrString(), TrString("Context", "Source"),
        Language::ntr(QString::fromUtf8("R\xc3\xa4"
                                        "dio %1")),
        Language::ntr(QString()),
        TrString(QStringLiteral("C"), QStringLiteral("S"), QStringLiteral("D")),
        TrString(QStringLiteral("C"), QStringLiteral("%n hits"), QString(), 0),
        TrString(QStringLiteral("C"), QStringLiteral("%n hits"), QString(),
            std::numeric_limits<int>::max()),
        TrString(QStringLiteral("C"), QStringLiteral("%1 of %2"), QStringLiteral("D"), 3,
            {TrArg(QString()), filled}),
        TrString(QString(), QStringLiteral("%1"), QString(), -1, {filled})};
    for (const TrString &text : texts) {
        const TrString read = throughWire(text);
        EXPECT_EQ(read, text) << text.sourceText().toStdString();
        EXPECT_EQ(read.isTranslatable(), text.isTranslatable());
        EXPECT_EQ(read.context(), text.context());
        EXPECT_EQ(read.disambiguation(), text.disambiguation());
        EXPECT_EQ(read.count(), text.count());
        EXPECT_EQ(read.arguments(), text.arguments());
        EXPECT_EQ(read.toString(), text.toString());
    }
}

TEST(Wire, PathsSurvive)
{
    CMPath path(QStringLiteral("TuneIn"), QString::fromUtf8("a b/\xc3\xa4"));
    path.addParam(QStringLiteral("k&="), QString::fromUtf8("?\xf0\x9f\x93\xbb"));
    path.addParam(QString(), QString());
    for (const CMPath &tested : {path, CMPath(), CMPath(QStringLiteral("p"), QString())}) {
        const QVariant read = throughWire(QVariant::fromValue(tested));
        EXPECT_EQ(read.userType(), qMetaTypeId<CMPath>());
        EXPECT_EQ(read.value<CMPath>(), tested);
    }
    WireWriter writer;
    writer.writeText(QStringLiteral("no path"));
    EXPECT_TRUE(WireReader(writer.bytes()).readPath().isEmpty());
}

TEST(Wire, TypesThatConvertToAHashAreReadAsOne)
{
    const VeskValue value = VeskValue::fromString(QStringLiteral("me"));
    const QVariant read = throughWire(QVariant::fromValue(value));
    EXPECT_EQ(read.userType(), int(QMetaType::QVariantHash));
    EXPECT_EQ(VeskValue(read.toHash()).string_(), QStringLiteral("me"));
    EXPECT_EQ(read, QVariant(value.toHash()));
}

TEST(Wire, UnknownTypesAreNull)
{
    EXPECT_FALSE(throughWire(QVariant(QSize(1, 2))).isValid());
    EXPECT_FALSE(throughWire(QVariant::fromValue(static_cast<QObject *>(nullptr))).isValid());
    const QVariantList list {1, QSize(1, 2), 3};
    EXPECT_EQ(throughWire(list), QVariant(QVariantList {1, QVariant(), 3}));
}

TEST(Wire, AKeyIsWrittenOnce)
{
    const QString key(1000, QLatin1Char('k'));
    QVariantList rows;
    for (int i = 0; i < 100; ++i)
        rows.append(QVariantHash {{key, i}});
    WireWriter writer;
    writer.writeVariant(rows);
    EXPECT_LT(writer.bytes().size(), 2 * 1000 + 100 * 10);
    EXPECT_EQ(throughWire(rows), QVariant(rows));
}

TEST(Wire, KeysAreSharedWithinOneWriter)
{
    const QVariantHash hash {{QStringLiteral("Rows"), 1}};
    const TrString text("Rows", "Stations");
    WireWriter writer;
    writer.writeHash(hash);
    writer.writeTrString(text);
    writer.writeHash(hash);
    writer.writeTrString(text);
    WireReader reader(writer.bytes());
    EXPECT_EQ(reader.readHash(), hash);
    EXPECT_EQ(reader.readTrString(), text);
    EXPECT_EQ(reader.readHash(), hash);
    EXPECT_EQ(reader.readTrString(), text);
    EXPECT_TRUE(reader.isAtEnd());
}

TEST(Wire, NumbersOfEverySizeSurvive)
{
    QVector<quint64> counts {0, std::numeric_limits<quint64>::max()};
    for (int bit = 0; bit < 64; ++bit) {
        counts.append(quint64(1) << bit);
        counts.append((quint64(1) << bit) - 1);
    }
    WireWriter writer;
    for (const quint64 count : std::as_const(counts)) {
        writer.writeCount(count);
        writer.writeInt(static_cast<qint64>(count));
    }
    WireReader reader(writer.bytes());
    for (const quint64 count : std::as_const(counts)) {
        EXPECT_EQ(reader.readCount(), count);
        EXPECT_EQ(reader.readInt(), static_cast<qint64>(count));
    }
    EXPECT_TRUE(reader.isAtEnd());
}

TEST(Wire, TruncatedValuesAreRefused)
{
    WireWriter writer;
    writer.writeVariant(everything());
    const QByteArray whole = writer.bytes();
    ASSERT_TRUE(isReadable(whole));
    for (int size = 0; size < whole.size(); ++size) {
        // An allocation of its own, so that sanitizers notice reads beyond its end.
        const QByteArray cut(whole.constData(), size);
        EXPECT_FALSE(isReadable(cut)) << size;
    }
}

TEST(Wire, EveryDamagedByteIsSafe)
{
    WireWriter writer;
    writer.writeVariant(everything());
    const QByteArray whole = writer.bytes();
    const MemoryLimit limit(64 * Mebibyte);
    int refused = 0;
    for (int at = 0; at < whole.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            QByteArray damaged(whole.constData(), whole.size());
            damaged[at] = static_cast<char>(value);
            WireReader reader(damaged);
            const QVariant read = reader.readVariant();
            if (!reader.isAtEnd()) {
                ++refused;
                continue;
            }
            // A value that was read survives another round trip.
            WireWriter again;
            again.writeVariant(read);
            EXPECT_TRUE(isReadable(again.bytes())) << at << ' ' << value;
        }
    }
    EXPECT_GT(refused, 0);
}

TEST(Wire, ReadsEmptyValuesAfterAFailure)
{
    WireWriter writer;
    writer.writeByte(TagLast + 1);
    writer.writeText(QStringLiteral("text"));
    WireReader reader(writer.bytes());
    EXPECT_FALSE(reader.readVariant().isValid());
    EXPECT_FALSE(reader.isOk());
    EXPECT_FALSE(reader.isAtEnd());
    EXPECT_EQ(reader.readText(), QString());
    EXPECT_EQ(reader.readBytes(), QByteArray());
    EXPECT_EQ(reader.readTexts(), QStringList());
    EXPECT_EQ(reader.readCount(), 0U);
    EXPECT_EQ(reader.readInt(), 0);
    EXPECT_EQ(reader.readByte(), 0);
    EXPECT_EQ(reader.readHash(), QVariantHash());
    EXPECT_TRUE(reader.readPath().isEmpty());
    EXPECT_TRUE(reader.readTrString().isEmpty());
    EXPECT_FALSE(reader.isOk());
}

TEST(Wire, RefusesUnknownTags)
{
    for (int tag = TagLast + 1; tag < 256; ++tag) {
        const QByteArray bytes = QByteArray(1, static_cast<char>(tag)) + QByteArray(16, '\1');
        EXPECT_FALSE(isReadable(bytes)) << tag;
    }
    for (const char kind : {3, 4, 127, -1}) {
        const QByteArray bytes
            = QByteArray(1, char(TagTranslatable)) + QByteArray(1, kind) + QByteArray(16, '\0');
        EXPECT_FALSE(isReadable(bytes)) << int(kind);
    }
}

TEST(Wire, RefusesCountsBeyondTheInput)
{
    const MemoryLimit limit(64 * Mebibyte);
    const QVector<quint64> counts {17, 1000, 0x7fffffff, 0x80000000, 0xffffffff, 0x100000000,
        quint64(1) << 62, std::numeric_limits<quint64>::max()};
    for (const quint8 tag : {TagText, TagBytes, TagTexts, TagList, TagHash, TagMap}) {
        for (const quint64 count : counts) {
            WireWriter writer;
            writer.writeByte(tag);
            writer.writeCount(count);
            writer.bytes().append(QByteArray(16, '\0'));
            WireReader reader(writer.bytes());
            reader.readVariant();
            EXPECT_FALSE(reader.isOk()) << int(tag) << ' ' << count;
        }
    }
}

TEST(Wire, RefusesKeysThatWereNeverWritten)
{
    for (const quint64 known : {quint64(1), quint64(2), quint64(0xffffffff), ~quint64(0)}) {
        WireWriter writer;
        writer.writeByte(TagHash);
        writer.writeCount(1);
        writer.writeCount(known);
        writer.writeByte(TagNull);
        EXPECT_FALSE(isReadable(writer.bytes())) << known;
    }
}

TEST(Wire, RefusesNumbersOfTooManyBytes)
{
    const QByteArray nine(9, '\x80');
    const auto isNumber = [](const QByteArray &bytes) {
        WireReader reader(bytes);
        reader.readCount();
        return reader.isAtEnd();
    };
    EXPECT_TRUE(isNumber(nine + '\1')) << "ten are what the greatest takes";
    EXPECT_FALSE(isNumber(nine + '\x80' + '\0'));
    EXPECT_FALSE(isNumber(QByteArray(1000, '\x80')));
    EXPECT_FALSE(isNumber(nine));
}

TEST(Wire, RefusesTooDeepNesting)
{
    for (const bool hashes : {false, true}) {
        EXPECT_TRUE(isReadable(nested(WireReader::MaxDepth, hashes)));
        EXPECT_FALSE(isReadable(nested(WireReader::MaxDepth + 1, hashes)));
        EXPECT_FALSE(isReadable(nested(1'000'000, hashes)));
    }
}

TEST(Wire, DepthCountsNestingOnly)
{
    QVariantList flat;
    for (int i = 0; i < 2 * WireReader::MaxDepth; ++i)
        flat.append(QVariant(QVariantList {QVariantHash()}));
    EXPECT_EQ(throughWire(flat), QVariant(flat));
}

TEST(Wire, SharedTextsCountEachTime)
{
    const auto repeated = [](qint64 characters) {
        const QString text(1024 * 1024, QLatin1Char('x'));
        QVariantList texts;
        for (qint64 i = 0; i < characters / text.size(); ++i)
            texts.append(text);
        WireWriter writer;
        writer.writeVariant(texts);
        EXPECT_LT(writer.bytes().size(), 2 * text.size()) << "it is written once";
        return writer.bytes();
    };
    EXPECT_TRUE(isReadable(repeated(WireReader::MaxCharacters)));
    EXPECT_FALSE(isReadable(repeated(WireReader::MaxCharacters + 1024 * 1024)));
}

TEST(Wire, RefusesTooManyValues)
{
    EXPECT_TRUE(isReadable(nulls(WireReader::MaxValues)));
    EXPECT_FALSE(isReadable(nulls(WireReader::MaxValues + 1)));
    // The limit counts across lists.
    WireWriter writer;
    writer.writeByte(TagList);
    writer.writeCount(2);
    const QByteArray half = nulls(WireReader::MaxValues / 2);
    EXPECT_FALSE(isReadable(writer.bytes() + half + half));
    QStringList texts;
    for (int i = 0; i < WireReader::MaxValues + 1; ++i)
        texts.append(QString());
    WireWriter textWriter;
    textWriter.writeVariant(texts);
    EXPECT_FALSE(isReadable(textWriter.bytes()));
}

TEST(Wire, FieldWidthsAreBounded)
{
    // Rendering pads a value to its width, so an unbounded one would exhaust the memory.
    for (const int width : {std::numeric_limits<int>::max(), std::numeric_limits<int>::min(),
             1'000'000'000, -1'000'000'000}) {
        WireWriter writer;
        writer.writeTrString(TrString(QStringLiteral("C"), QStringLiteral("%1"), QString(), -1,
            {TrArg(QStringLiteral("a"), width)}));
        WireReader reader(writer.bytes());
        const TrString read = reader.readTrString();
        EXPECT_LT(read.toString().size(), 10'000) << width;
    }
}

} // namespace
