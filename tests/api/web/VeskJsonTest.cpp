// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/VeskJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <string>

namespace {

QVariant parsed(const QByteArray &json)
{
    VeskError error(QStringLiteral("left from before"), 1);
    unsigned int position = 0;
    const QVariant value = VeskJson::parse(json, error, &position);
    EXPECT_TRUE(error.isEmpty()) << error.message().toStdString() << " at " << error.offset();
    return value;
}

testing::AssertionResult isRejected(const QByteArray &json)
{
    VeskError error;
    unsigned int position = 999999999;
    const QVariant value = VeskJson::parse(json, error, &position);
    if (error.isEmpty())
        return testing::AssertionFailure() << "accepted: " << json.left(60).toStdString();
    if (value.isValid() || error.message().isEmpty() || position > unsigned(json.size())
        || int(position) != error.offset())
        return testing::AssertionFailure() << "badly reported, at " << position;
    return testing::AssertionSuccess();
}

/// UTF-8 with half surrogate pairs replaced.
std::string quoted(const QString &text)
{
    const QVector<uint> codePoints = text.toUcs4();
    QString whole;
    for (const char32_t c : codePoints)
        whole += QChar::isSurrogate(c) ? QString(QChar::ReplacementCharacter)
                                       : QString::fromUcs4(&c, 1);
    return '"' + whole.toStdString() + '"';
}

std::string joined(const std::map<std::string, std::string> &members)
{
    std::string text = "{";
    for (const auto &member : members)
        text += member.first + ':' + member.second + ',';
    return text + '}';
}

/// Every value with its exact type, objects in key order.
std::string dump(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return "null";
    case QMetaType::QVariantHash: {
        std::map<std::string, std::string> sorted;
        const QVariantHash hash = value.toHash();
        for (auto it = hash.begin(); it != hash.end(); ++it)
            sorted[quoted(it.key())] = dump(it.value());
        return joined(sorted);
    }
    case QMetaType::QVariantList: {
        std::string text = "[";
        const QVariantList list = value.toList();
        for (const QVariant &element : list)
            text += dump(element) + ',';
        return text + ']';
    }
    case QMetaType::QString:
        return quoted(value.toString());
    case QMetaType::Bool:
        return value.toBool() ? "true" : "false";
    case QMetaType::LongLong:
        return "i" + std::to_string(value.toLongLong());
    case QMetaType::Double:
        return "d" + QByteArray::number(value.toDouble(), 'g', 17).toStdString();
    default:
        return std::string("unexpected ") + value.typeName();
    }
}

/// The same for a value that QJsonDocument has parsed.
std::string dumpQt(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Object: {
        std::map<std::string, std::string> sorted;
        const QJsonObject object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it)
            sorted[quoted(it.key())] = dumpQt(it.value());
        return joined(sorted);
    }
    case QJsonValue::Array: {
        std::string text = "[";
        const QJsonArray array = value.toArray();
        for (const QJsonValue &element : array)
            text += dumpQt(element) + ',';
        return text + ']';
    }
    case QJsonValue::Double:
        return dump(value.toVariant());
    case QJsonValue::Null:
        return "null";
    default:
        return dump(value.toVariant());
    }
}

/// Expects that VeskJson and QJsonDocument either parse the same from \a json or both reject it.
void expectSameAsQt(const QByteArray &json)
{
    QJsonParseError qtError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &qtError);
    VeskError error;
    const QVariant value = VeskJson::parse(json, error);
    ASSERT_EQ(error.isEmpty(), qtError.error == QJsonParseError::NoError)
        << json.left(200).toStdString();
    if (error.isEmpty()) {
        EXPECT_EQ(
            dump(value), document.isArray() ? dumpQt(document.array()) : dumpQt(document.object()))
            << json.left(200).toStdString();
    }
}

QByteArray element(int number)
{
    const QByteArray id = "s" + QByteArray::number(10000 + number);
    return "{ \"element\" : \"outline\",\n\"type\":\"audio\", \"text\":\"Example Folk \xE2\x99\xAB "
        + QByteArray::number(number)
        + " (Dublin)\", \"URL\":\"http://opml.radiotime.com/Tune.ashx?id=" + id
        + "\", \"bitrate\":\"128\",\"reliability\":97, \"guide_id\":\"" + id
        + "\", \"subtext\":\"Singer \\u2013 \\\"Song\\\"\\r\\n\", \"is_direct\":true,"
          "\"position\":-0.5, \"current_album\":null, \"preset_id\":\""
        + id + "\", \"children\":[ ] }";
}

QByteArray answer(int elements)
{
    QByteArray json = "{ \"head\": { \"title\": \"Folk\", \"status\": \"200\" }, \"body\": [ ";
    for (int i = 0; i < elements; ++i)
        json += (i > 0 ? ",\n" : "") + element(i);
    return json + " ] }";
}

QByteArray nested(int depth, const QByteArray &inner = {})
{
    return QByteArray(depth, '[') + inner + QByteArray(depth, ']');
}

} // namespace

TEST(VeskJsonTest, ReadsADirectoryAnswer)
{
    const QVariantHash root = parsed(answer(3)).toHash();
    EXPECT_EQ(root.value(QStringLiteral("head")).toHash().value(QStringLiteral("status")),
        QVariant(QStringLiteral("200")));
    const QVariantList body = root.value(QStringLiteral("body")).toList();
    ASSERT_EQ(body.size(), 3);
    EXPECT_EQ(dump(body.at(2)),
        "{\"URL\":\"http://opml.radiotime.com/Tune.ashx?id=s10002\",\"bitrate\":\"128\","
        "\"children\":[],\"current_album\":null,\"element\":\"outline\",\"guide_id\":\"s10002\","
        "\"is_direct\":true,\"position\":d-0.5,\"preset_id\":\"s10002\",\"reliability\":i97,"
        "\"subtext\":\"Singer \xE2\x80\x93 \"Song\"\r\n\","
        "\"text\":\"Example Folk \xE2\x99\xAB 2 (Dublin)\",\"type\":\"audio\",}");
}

TEST(VeskJsonTest, RejectsAnAnswerCutAtAnyByte)
{
    const QByteArray whole = answer(2);
    for (int size = 0; size < whole.size(); ++size)
        ASSERT_TRUE(isRejected(whole.left(size))) << "cut at " << size;
    EXPECT_EQ(parsed(whole).toHash().size(), 2);
}

TEST(VeskJsonTest, ReadsOrRejectsAnyByteAtAnyOffset)
{
    const QByteArray whole = answer(1);
    for (int at = 0; at < whole.size(); ++at) {
        for (const char byte : {'\0', '"', '\\', '{', ']', ',', ':', '0', '\xFF', '\xC3', '\n'}) {
            QByteArray damaged = whole;
            damaged[at] = byte;
            // After a backslash, QJsonDocument reads a stray byte as Latin-1.
            if (at > 0 && whole.at(at - 1) == '\\' && static_cast<uchar>(byte) >= 0x80)
                EXPECT_TRUE(isRejected(damaged));
            else
                expectSameAsQt(damaged);
        }
    }
}

TEST(VeskJsonTest, ReportsTheOffsetAndTheReasonOfAnError)
{
    const struct {
        const char *json;
        int offset;
        const char *message;
    } cases[] = {
        {"", 0, "unexpected end"},
        {"{\"a\": 1, \"b\": x}", 14, "unexpected character"},
        {"[1,]", 3, "unexpected character"},
        {"{\"a\":1,}", 7, "unexpected character"},
        {"[1] x", 4, "unexpected character"},
        {"[1 2]", 3, "unexpected character"},
        {"[1}", 2, "unexpected character"},
        {"{\"a\":1]", 6, "unexpected character"},
        {"[\"ab", 4, "unexpected end"},
        {"[[1, 2", 6, "unexpected end"},
        {"[\"\\u12x4\"]", 2, "unexpected character"},
        {"[\"\\\xC3\xA4\"]", 3, "unexpected character"},
        {"[0, 1e400]", 4, "number out of range"},
        {"[\"a\xC3\"]", 3, "invalid UTF-8"},
        {"#STATUS: 400", 0, "unexpected character"},
    };
    for (const auto &expected : cases) {
        VeskError error;
        unsigned int position = 0;
        EXPECT_FALSE(VeskJson::parse(expected.json, error, &position).isValid());
        EXPECT_EQ(error.message().toStdString(), expected.message) << expected.json;
        EXPECT_EQ(int(position), expected.offset) << expected.json;
        EXPECT_EQ(error.offset(), expected.offset);
    }
}

TEST(VeskJsonTest, RejectsWhatIsNoJson)
{
    for (const char *json : {"", " ", "#STATUS: 400", "<opml version=\"1\"/>", "{", "}", "[1 2]",
             "{\"a\" 1}", "{a:1}", "{'a':1}", "[01]", "[-]", "[.]", "[-.]", "[.e1]", "[1.e]",
             "[00]", "[+1]", "[1e]", "[tru]", "[nul]", "[NaN]", "[Infinity]", "[1],", "{} {}",
             "[\"\\u12\"]", "[\"a]", "\"a", "-", "[1e999]", "//x\n[]", "[1,]", "{\"a\":1,}"})
        EXPECT_TRUE(isRejected(json)) << json;
}

TEST(VeskJsonTest, AcceptsAScalarAsTheWhole)
{
    EXPECT_EQ(dump(parsed(" \"a\\n\" ")), "\"a\n\"");
    EXPECT_EQ(dump(parsed("12")), "i12");
    EXPECT_EQ(dump(parsed("true")), "true");
    EXPECT_EQ(dump(parsed("null")), "null");
    EXPECT_EQ(dump(parsed("[]")), "[]");
    EXPECT_EQ(dump(parsed("{}")), "{}");
}

TEST(VeskJsonTest, ReadsNumbersAsWholeWhereTheyFit)
{
    EXPECT_EQ(dump(parsed("[0,-0,1,-1,1.0,1e3,-2.5e1,0.5,1e-3]")),
        "[i0,i0,i1,i-1,i1,i1000,i-25,d0.5,d0.001,]");
    EXPECT_EQ(dump(parsed("[9223372036854775807,-9223372036854775808]")),
        "[i9223372036854775807,i-9223372036854775808,]");
    for (const char *json : {"[9223372036854775808]", "[18446744073709551615]",
             "[18446744073709551616]", "[1e19]", "[123456789012345678901234567890]"}) {
        const QVariant number = parsed(json).toList().first();
        EXPECT_EQ(number.userType(), int(QMetaType::Double)) << json;
        EXPECT_EQ(number.toDouble(), QByteArray(json).mid(1).chopped(1).toDouble()) << json;
    }
    const QVariantList extremes
        = parsed("[1.7976931348623157e308,5e-324,1e-400,4.9e-324]").toList();
    EXPECT_EQ(extremes.at(0).toDouble(), std::numeric_limits<double>::max());
    EXPECT_EQ(extremes.at(1).toDouble(), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(extremes.at(2).toDouble(), 0.0);
    EXPECT_TRUE(isRejected("[1e400]"));
    EXPECT_TRUE(isRejected("[-1e400]"));
}

TEST(VeskJsonTest, TheLastOfEqualKeysWins)
{
    EXPECT_EQ(dump(parsed("{\"a\":1,\"b\":2,\"a\":[3]}")), "{\"a\":[i3,],\"b\":i2,}");
    // Also when the text is repaired first: \q is not an escape of RFC 8259.
    EXPECT_EQ(dump(parsed("{\"a\":1,\"b\":\"\\q\",\"a\":[3]}")), "{\"a\":[i3,],\"b\":\"q\",}");
}

TEST(VeskJsonTest, ReadsTextsOfAnyLengthAndContent)
{
    // Sizes around the limit for sharing equal texts, ASCII and not, each text several times.
    for (int size = 0; size < 130; ++size) {
        const QString plain(size, QLatin1Char('x'));
        const QString mixed = QString(size, QChar(0xE4)) + QStringLiteral("x\U0001F3B5");
        for (const QString &text : {plain, mixed, plain + QLatin1Char('y')}) {
            const QByteArray json = "[\"" + text.toUtf8() + "\",\"" + text.toUtf8() + "\",{\""
                + text.toUtf8() + "\":\"" + text.toUtf8() + "\"}]";
            const QVariantList list = parsed(json).toList();
            ASSERT_EQ(list.size(), 3);
            EXPECT_EQ(list.at(0).toString(), text);
            EXPECT_EQ(list.at(1).toString(), text);
            EXPECT_EQ(list.at(2).toHash().value(text).toString(), text);
        }
    }
}

TEST(VeskJsonTest, KeepsAByteOrderMarkWithinATextOnly)
{
    const QString mark = QChar(QChar::ByteOrderMark);
    for (const char *json :
        {"[\"\xEF\xBB\xBFx\",\"\xEF\xBB\xBF\"]", "\xEF\xBB\xBF[\"\xEF\xBB\xBFx\",\"\\uFEFF\"]"}) {
        const QVariantList list = parsed(json).toList();
        EXPECT_EQ(list.value(0).toString(), mark + QLatin1Char('x'));
        EXPECT_EQ(list.value(1).toString(), mark);
    }
}

TEST(VeskJsonTest, KeepsManyTextsApart)
{
    QByteArray json = "{";
    for (int i = 0; i < 20000; ++i)
        json += "\"k" + QByteArray::number(i) + "\":\"v" + QByteArray::number(i % 5000) + "\",";
    json.chop(1);
    const QVariantHash hash = parsed(json + "}").toHash();
    ASSERT_EQ(hash.size(), 20000);
    for (int i = 0; i < 20000; ++i)
        ASSERT_EQ(hash.value(QStringLiteral("k%1").arg(i)).toString(),
            QStringLiteral("v%1").arg(i % 5000));
}

TEST(VeskJsonTest, SharesRepeatedTexts)
{
    const QVariantList list = parsed("[\"outline\",\"outline\",\"outlinf\"]").toList();
    EXPECT_EQ(list.at(0).toString().constData(), list.at(1).toString().constData());
    EXPECT_NE(list.at(0).toString().constData(), list.at(2).toString().constData());
}

TEST(VeskJsonTest, ReadsWhatServersInTheFieldSend)
{
    EXPECT_EQ(dump(parsed("[\"a\tb\nc\x01\"]")), "[\"a\tb\nc\x01\",]");
    EXPECT_EQ(dump(parsed("[\"a\\qb\\'\"]")), "[\"aqb'\",]");
    EXPECT_EQ(dump(parsed("\xEF\xBB\xBF[1]")), "[i1,]");
    EXPECT_EQ(dump(parsed("[\"\\uD83C\",\"\\uDFB5x\",\"\\uD83C\\uD83C\\uDFB5\",\"\\uD83C\\n\"]")),
        "[\"\xEF\xBF\xBD\",\"\xEF\xBF\xBDx\",\"\xEF\xBF\xBD\xF0\x9F\x8E\xB5\",\"\xEF\xBF\xBD\n\","
        "]");
    EXPECT_EQ(dump(parsed("\"\t\"")), "\"\t\"");
    EXPECT_EQ(dump(parsed("[\"\\q\",null,1.0,9223372036854775808,true,{\"a\":{}}]")),
        "[\"q\",null,i1,d9.2233720368547758e+18,true,{\"a\":{},},]");
}

TEST(VeskJsonTest, RejectsInvalidUtf8)
{
    for (const char *bytes : {"\xFF", "\x80", "\xC3", "\xC3(", "\xC0\xAF", "\xE0\x80\xAF",
             "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF0\x9F\x8E", "\xF8\x88\x80\x80\x80"}) {
        EXPECT_TRUE(isRejected("[\"" + QByteArray(bytes) + "\"]"));
        EXPECT_TRUE(isRejected("{\"" + QByteArray(bytes) + "\":1}"));
        EXPECT_TRUE(isRejected("[\"\\q" + QByteArray(bytes) + "\"]"));
        EXPECT_TRUE(isRejected("[" + QByteArray(bytes) + "]"));
    }
}

TEST(VeskJsonTest, ReadsNullCharactersInTexts)
{
    const QString text = parsed("[\"a\\u0000b\"]").toList().first().toString();
    EXPECT_EQ(text, QStringLiteral("a") + QChar(0) + QLatin1Char('b'));
    EXPECT_EQ(parsed(QByteArray("[\"a\0b\"]", 7)).toList().first().toString(), text);
}

TEST(VeskJsonTest, LimitsTheDepthOfPlainAndRepairedTexts)
{
    // A raw control character forces the parser to repair the text first.
    for (const QByteArray inner : {"", "\"\t\""}) {
        parsed(nested(VeskJson::MaxDepth, inner));
        EXPECT_TRUE(isRejected(nested(VeskJson::MaxDepth + 1, inner)));
    }
    QByteArray objects;
    for (int i = 0; i < VeskJson::MaxDepth - 1; ++i)
        objects += "{\"a\":";
    const QByteArray ends(VeskJson::MaxDepth - 1, '}');
    parsed(objects + "[\"[[[[[[\"]" + ends);
    parsed(objects + "[\"\t[[[[{{{\\\"[[[\"]" + ends);
    EXPECT_TRUE(isRejected(objects + "[[]]" + ends));
    EXPECT_TRUE(isRejected(objects + "[[\"\t\"]]" + ends));
}

TEST(VeskJsonTest, RejectsNestingWithoutRunningOutOfStack)
{
    for (const int depth : {1000, 100000, 3000000}) {
        EXPECT_TRUE(isRejected(nested(depth)));
        EXPECT_TRUE(isRejected(nested(depth, "\"\t\"")));
        EXPECT_TRUE(isRejected(QByteArray(depth, '[')));
        QByteArray objects;
        for (int i = 0; i < depth; ++i)
            objects += "{\"\t\":";
        EXPECT_TRUE(isRejected(objects));
    }
}

TEST(VeskJsonTest, NamesTheDepthWhereItRejectsIt)
{
    VeskError error;
    unsigned int position = 0;
    VeskJson::parse(nested(1000), error, &position);
    EXPECT_EQ(error.message(), QStringLiteral("nested too deeply"));
    EXPECT_EQ(position, unsigned(VeskJson::MaxDepth));
}

TEST(VeskJsonTest, ReadsTenMegabytes)
{
    const QByteArray json = answer(40000);
    ASSERT_GT(json.size(), 10000000);
    const QVariantList body = parsed(json).toHash().value(QStringLiteral("body")).toList();
    ASSERT_EQ(body.size(), 40000);
    EXPECT_EQ(body.last().toHash().value(QStringLiteral("guide_id")).toString(),
        QStringLiteral("s49999"));
    EXPECT_EQ(dump(parsed("[1]")), "[i1,]");
}

TEST(VeskJsonTest, ReadsBytesWithoutATerminator)
{
    const char bytes[]
        = "[1,2]xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx";
    EXPECT_EQ(dump(parsed(QByteArray::fromRawData(bytes, 5))), "[i1,i2,]");
    QByteArray roomy = "[3]";
    roomy.reserve(1000);
    EXPECT_EQ(dump(parsed(roomy)), "[i3,]");
}

TEST(VeskJsonTest, ReadsAsQtDoes)
{
    for (const QByteArray json : {"[0.1,1.5e300,-1e-300,100000000000000000000,1e18,1e19,-1e18]",
             "[4503599627370497.5,9007199254740993,9007199254740993.0,0.30000000000000004]",
             "[123456789.0e-9,1E5,1e+5,1E-0,0e0,0.0,-0.0,-0e1]",
             "[\"\\/\\b\\f\\u0041\\uD83C\\uDFB5\"]", "{\"\":{\"\":[]}}",
             "[1.,.5,-.5,-1.,1.e2,.5e-1,-0.,0.0]", "[-9223372036854775809]",
             "[[],{},[[]],[{}],null,true,false]", "\t\r\n [ 1 , 2 ] \r\n", "[\"\\ud83c\\u0041\"]",
             "[\"\\udfb5x\"]", "[1e-5,12345678901234567]"})
        expectSameAsQt(json);
    expectSameAsQt(answer(50));
}

namespace {

/// Pseudo-random documents, some of them invalid; the same on every run.
class RandomJson {
public:
    explicit RandomJson(unsigned seed)
        : m_random(seed)
    {
    }

    QByteArray value(int depth)
    {
        switch (pick(depth > 0 ? 8 : 6)) {
        case 0:
            return number();
        case 1:
            return QByteArray::number(static_cast<qlonglong>(quint64(m_random()) << pick(60)));
        case 2:
            return pick(2) ? "true" : "false";
        case 3:
            return "null";
        case 4:
        case 5:
            return text();
        case 6:
            return list(depth);
        default:
            return object(depth);
        }
    }

    QByteArray object(int depth)
    {
        QByteArray json = "{";
        for (int i = pick(6); i > 0; --i)
            json += key(i) + space() + ":" + value(depth - 1) + (i > 1 ? "," : "");
        return json + space() + "}";
    }

    QByteArray list(int depth)
    {
        QByteArray json = "[";
        for (int i = pick(6); i > 0; --i)
            json += value(depth - 1) + space() + (i > 1 ? "," : "");
        return json + "]";
    }

private:
    int pick(int count) { return int(m_random() % unsigned(count)); }
    /// Unique keys: QJsonDocument leaks the value of the first of two equal ones.
    QByteArray key(int number) { return text().chopped(1) + QByteArray::number(number) + '"'; }
    QByteArray space() { return QByteArray(pick(3), " \n\t"[pick(3)]); }
    QByteArray number()
    {
        return QByteArray::number(
            (int(m_random()) - 1e9) / (1 + pick(1000)), "fge"[pick(3)], pick(18));
    }
    QByteArray text()
    {
        static const QByteArray pieces[]
            = {"a", "outline", "\\n", "\\u00e4", "\xC3\xA4", "\xF0\x9F\x8E\xB5", "\\\"", "\\\\",
                "/", " ", "guide_id", "\\uD83C\\uDFB5", "\t", "\\x", "\\uD83C"};
        QByteArray json = "\"";
        // The last three go beyond RFC 8259 and are rare, so that most documents stay within it.
        for (int i = pick(5); i > 0; --i)
            json += pieces[pick(pick(40) == 0 ? 15 : 12)];
        return json + "\"";
    }

    std::mt19937 m_random;
};

} // namespace

TEST(VeskJsonTest, ReadsRandomDocumentsAsQtDoes)
{
    for (unsigned seed = 0; seed < 3000; ++seed) {
        RandomJson random(seed);
        expectSameAsQt(seed % 2 ? random.object(5) : random.list(5));
    }
}
