// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/Language.h"
#include "api/core/TrString.h"
#include "api/values/CMError.h"
#include "api/values/CMPath.h"
#include "api/web/VeskJson.h"
#include "api/web/VeskUrl.h"

#include <QDate>
#include <QJsonDocument>
#include <QPoint>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

std::string written(const QVariant &value)
{
    return VeskJson::write(value).toStdString();
}

} // namespace

TEST(VeskJsonWriteTest, WritesEveryPlainType)
{
    EXPECT_EQ(written(QVariant()), "null");
    EXPECT_EQ(written(true), "true");
    EXPECT_EQ(written(false), "false");
    EXPECT_EQ(written(-5), "-5");
    EXPECT_EQ(written(std::numeric_limits<unsigned>::max()), "4294967295");
    EXPECT_EQ(written(std::numeric_limits<qlonglong>::min()), "-9223372036854775808");
    EXPECT_EQ(written(std::numeric_limits<qulonglong>::max()), "18446744073709551615");
    EXPECT_EQ(written(QVariant::fromValue<short>(-3)), "-3");
    EXPECT_EQ(written(QVariant::fromValue<uchar>(200)), "200");
    EXPECT_EQ(written(QVariant::fromValue<long>(-7)), "-7");
    EXPECT_EQ(written(QVariant::fromValue<ulong>(7)), "7");
    EXPECT_EQ(written(QStringLiteral("text")), "\"text\"");
    EXPECT_EQ(written(QByteArray("b\xC3\xA4")), "\"b\xC3\xA4\"");
    EXPECT_EQ(written(QChar(0xE4)), "\"\xC3\xA4\"");
    EXPECT_EQ(written(QVariantList {1, QVariant(), QStringLiteral("x")}), "[1,null,\"x\"]");
    EXPECT_EQ(written(QStringList {QStringLiteral("a"), QStringLiteral("b")}), "[\"a\",\"b\"]");
    EXPECT_EQ(written(QVariantList()), "[]");
    EXPECT_EQ(written(QVariantHash()), "{}");
    EXPECT_EQ(written(QVariantMap()), "{}");
    EXPECT_EQ(written(QString()), "\"\"");
}

TEST(VeskJsonWriteTest, WritesRealNumbersShortAndExact)
{
    EXPECT_EQ(written(0.1), "0.1");
    EXPECT_EQ(written(5.0), "5");
    EXPECT_EQ(written(-0.5), "-0.5");
    EXPECT_EQ(written(0.1f), "0.1");
    for (const double value :
        {1e300, 5e-324, 1.0 / 3, 123456789.123456789, -1e21, std::numeric_limits<double>::max()}) {
        const QJsonDocument document = QJsonDocument::fromJson("[" + VeskJson::write(value) + "]");
        EXPECT_EQ(document.toVariant().toList().value(0).toDouble(), value);
    }
}

TEST(VeskJsonWriteTest, WritesNullForWhatJsonHasNoFormFor)
{
    EXPECT_EQ(written(std::nan("")), "null");
    EXPECT_EQ(written(std::numeric_limits<double>::infinity()), "null");
    EXPECT_EQ(written(-std::numeric_limits<float>::infinity()), "null");
    EXPECT_EQ(written(QPoint(1, 2)), "null");
    EXPECT_EQ(written(QDate(2020, 1, 1)), "null");
    EXPECT_EQ(written(QVariant::fromValue(nullptr)), "null");
}

TEST(VeskJsonWriteTest, WritesHashesInAscendingOrderOfTheirKeys)
{
    QVariantHash hash;
    QVariantMap map;
    for (const char *key : {"b", "a", "ab", "", "B", "\xC3\xA4"}) {
        hash.insert(QString::fromUtf8(key), 1);
        map.insert(QString::fromUtf8(key), 1);
    }
    const std::string expected = "{\"\":1,\"B\":1,\"a\":1,\"ab\":1,\"b\":1,\"\xC3\xA4\":1}";
    EXPECT_EQ(written(hash), expected);
    EXPECT_EQ(written(map), expected);

    for (int i = 0; i < 100; ++i)
        hash.insert(QStringLiteral("key%1").arg(i, 3, 10, QLatin1Char('0')), i);
    const QByteArray json = VeskJson::write(hash);
    for (int i = 1; i < 100; ++i)
        EXPECT_LT(json.indexOf("key" + QByteArray::number(i - 1).rightJustified(3, '0')),
            json.indexOf("key" + QByteArray::number(i).rightJustified(3, '0')));
}

TEST(VeskJsonWriteTest, WritesTheSystemsOwnTypes)
{
    EXPECT_EQ(written(TrString("TuneIn", "My \"Favorites\"")), "\"My \\\"Favorites\\\"\"");
    EXPECT_EQ(written(Language::ntr(QStringLiteral("Folk"))), "\"Folk\"");
    const CMPath path(QStringLiteral("TuneIn"), QStringLiteral("browse"),
        {{QStringLiteral("c"), QStringLiteral("a b")}});
    EXPECT_EQ(written(QVariant::fromValue(path)), "\"TuneIn:browse?c=a%20b\"");
    EXPECT_EQ(written(QVariant::fromValue(CMPath())), "\"\"");
    EXPECT_EQ(written(QVariant::fromValue(VeskUrl(QStringLiteral("http://h/a b")))),
        "\"http://h/a%20b\"");
    VeskHash hash;
    hash.insert(QStringLiteral("k"), path.toEncoded());
    EXPECT_EQ(written(QVariant::fromValue(hash)), "{\"k\":\"TuneIn:browse?c=a%20b\"}");
    EXPECT_EQ(written(hash), "{\"k\":\"TuneIn:browse?c=a%20b\"}");
    const CMError error(QStringLiteral("n"), TrString("c", "m"), TrString("c", "t"));
    EXPECT_EQ(
        written(QVariant::fromValue(error)), "{\"message\":\"m\",\"name\":\"n\",\"title\":\"t\"}");
}

TEST(VeskJsonWriteTest, EscapesWhatMustBeEscapedAndNothingElse)
{
    QString text;
    for (ushort c = 0; c < 0x80; ++c)
        text += QChar(c);
    EXPECT_EQ(written(text),
        "\"\\u0000\\u0001\\u0002\\u0003\\u0004\\u0005\\u0006\\u0007\\b\\t\\n\\u000b\\f\\r\\u000e\\u"
        "000f"
        "\\u0010\\u0011\\u0012\\u0013\\u0014\\u0015\\u0016\\u0017\\u0018\\u0019\\u001a\\u001b\\u001"
        "c"
        "\\u001d\\u001e\\u001f "
        "!\\\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\\\]^_`"
        "abcdefghijklmnopqrstuvwxyz{|}~\x7f\"");
}

TEST(VeskJsonWriteTest, WritesUtf8WithHalfSurrogatePairsReplaced)
{
    EXPECT_EQ(
        written(QString::fromUtf8("\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80"
                                  "\xF4\x8F\xBF\xBF")),
        "\"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF\"");
    const QString high(1, QChar(0xD83C));
    const QString low(1, QChar(0xDFB5));
    EXPECT_EQ(written(high), "\"\xEF\xBF\xBD\"");
    EXPECT_EQ(written(low + high), "\"\xEF\xBF\xBD\xEF\xBF\xBD\"");
    EXPECT_EQ(written(high + high + low), "\"\xEF\xBF\xBD\xF0\x9F\x8E\xB5\"");
    EXPECT_EQ(written(high + QLatin1Char('x')), "\"\xEF\xBF\xBDx\"");
}

TEST(VeskJsonWriteTest, WritesLongTextsWhole)
{
    // With both shifts, surrogate pairs straddle every position at which a writer may cut.
    for (int shift = 0; shift < 2; ++shift) {
        QString text(shift, QLatin1Char('x'));
        for (int i = 0; i < 10000; ++i)
            text += QStringLiteral("\U0001F3B5");
        EXPECT_EQ(VeskJson::write(text), '"' + text.toUtf8() + '"');
    }
}

TEST(VeskJsonWriteTest, ReadsBackWhatItWrote)
{
    QVariantHash inner {{QStringLiteral("text"), QStringLiteral("a\"\\\n\u00e4")},
        {QStringLiteral("number"), qlonglong(1) << 60}, {QStringLiteral("real"), 0.25},
        {QStringLiteral("none"), QVariant()}, {QStringLiteral("flag"), true}};
    const QVariantHash value {
        {QStringLiteral("rows"), QVariantList {inner, QVariantList(), inner}}};
    VeskError error;
    EXPECT_EQ(VeskJson::parse(VeskJson::write(value), error), QVariant(value));
    EXPECT_TRUE(error.isEmpty());
}

TEST(VeskJsonWriteTest, WritesNullBelowTheDepthThatItReads)
{
    QVariant value = 1;
    for (int i = 0; i < VeskJson::MaxDepth + 10; ++i)
        value = i % 2 ? QVariant(QVariantList {value})
                      : QVariant(QVariantHash {{QStringLiteral("a"), value}});
    VeskError error;
    const QByteArray json = VeskJson::write(value);
    EXPECT_TRUE(VeskJson::parse(json, error).isValid());
    EXPECT_TRUE(error.isEmpty());
    EXPECT_EQ(json.count('[') + json.count('{'), VeskJson::MaxDepth);
    EXPECT_TRUE(json.contains("null"));
}
