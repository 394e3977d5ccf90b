// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/access/DeviceList.h"

#include "host/access/Secrets.h"

#include <gtest/gtest.h>

#include <set>

namespace {

KeptDevice device(int number)
{
    KeptDevice device;
    device.id = QStringLiteral("%1").arg(number, 16, 16, QLatin1Char('0'));
    device.name = QStringLiteral("Tablet %1").arg(number);
    device.role = number % 2 == 0 ? AccessRole::Owner : AccessRole::Listener;
    device.paired = QDateTime::fromSecsSinceEpoch(1700000000 + number).toUTC();
    device.digest = accessTokenDigest(QByteArray::number(number));
    return device;
}

DeviceList listOf(int count)
{
    DeviceList list;
    for (int number = 0; number < count; ++number)
        list.devices.append(device(number));
    return list;
}

QString repeated(const char *utf8, int count)
{
    return QString::fromUtf8(utf8).repeated(count);
}

TEST(DeviceListTest, NamesAreWhatCanBeShown)
{
    const struct {
        QString name;
        bool isGood;
    } cases[] = {
        {QStringLiteral("Kitchen tablet"), true}, {QStringLiteral("K"), true},
        {repeated("Küche 🎵", 1), true}, {repeated("x", 64), true}, {repeated("x", 65), false},
        {repeated("📻", 64), true}, // two QChars, four bytes each
        {repeated("📻", 65), false}, {repeated("x", 100000), false},
        {QString::fromUtf8("👩‍👧"), true}, // with a zero width joiner
        {QString(), false}, {QStringLiteral(" "), false}, {QStringLiteral(" x"), false},
        {QStringLiteral("x\n"), false}, {QStringLiteral("a\nb"), false},
        {QStringLiteral("a\tb"), false}, {QStringLiteral("a\x1b[31mb"), false},
        {QStringLiteral("a\x7f"), false}, {QString(QChar(0)), false},
        {QString(QChar(0x85)) + QLatin1Char('x'), false},
        {QStringLiteral("a") + QChar(0x9b) + QLatin1Char('b'), false},
        {QStringLiteral("a") + QChar(QChar::LineSeparator) + QLatin1Char('b'), false},
        {QStringLiteral("a") + QChar(QChar::ParagraphSeparator) + QLatin1Char('b'), false},
        {QStringLiteral("a") + QChar(0x202e) + QLatin1Char('b'), false}, // right-to-left override
        {QStringLiteral("a") + QChar(0x2066) + QLatin1Char('b'), false}, // isolate
        {QString(QChar(0x200b)), false}, // a zero width space alone
        {QString(QChar(0x200d)) + QChar(0x2060), false},
        {QString(QChar(0xd83d)), false}, // half a character
        {QString(QChar(0xdcfb)) + QChar(0xd83d), false},
        {QStringLiteral("<b>x</b>"), true}, // the page shows texts as texts
    };
    for (const auto &c : cases)
        EXPECT_EQ(DeviceList::isName(c.name), c.isGood) << c.name.left(80).toStdString();
}

TEST(DeviceListTest, AddressesAreLiterals)
{
    for (const char *const good : {"192.168.1.5", "::1", "fe80::1", "::ffff:10.0.0.1"})
        EXPECT_TRUE(DeviceList::isAddress(QString::fromLatin1(good))) << good;
    for (const char *const bad : {"", "radio.local", "192.168.1", "192.168.1.5:80", "[::1]",
             "fe80::1%eth0", "1.2.3.4 ", "0x7f.0.0.1"})
        EXPECT_FALSE(DeviceList::isAddress(QString::fromLatin1(bad))) << bad;
    EXPECT_FALSE(DeviceList::isAddress(QStringLiteral("1.2.3.4") + QChar(0) + QLatin1Char('x')));
    EXPECT_FALSE(DeviceList::isAddress(QStringLiteral("1.2.3.") + QChar(0x664)));
}

TEST(DeviceListTest, AFileGivesBackWhatWasWrittenToIt)
{
    DeviceList list = listOf(3);
    list.devices[1].name = QString::fromUtf8("Ωμέγα \"📻\" \\ </script>");
    list.devices[1].seen = QDateTime::fromSecsSinceEpoch(1800000000).toUTC();
    list.devices[1].address = QStringLiteral("fe80::1");
    const auto read = DeviceList::fromFile(list.toFile());
    ASSERT_TRUE(read);
    ASSERT_EQ(read->devices.size(), 3);
    for (int i = 0; i < 3; ++i) {
        const KeptDevice &a = list.devices.at(i);
        const KeptDevice &b = read->devices.at(i);
        EXPECT_EQ(a.id, b.id);
        EXPECT_EQ(a.name, b.name);
        EXPECT_EQ(a.role, b.role);
        EXPECT_EQ(a.paired, b.paired);
        EXPECT_EQ(a.seen, b.seen);
        EXPECT_EQ(a.address, b.address);
        EXPECT_EQ(a.digest, b.digest);
    }
    EXPECT_TRUE(DeviceList::fromFile(DeviceList().toFile()));
}

TEST(DeviceListTest, TheLargestListFitsIntoItsFileThreeTimes)
{
    DeviceList list = listOf(DeviceList::MaxDevices);
    for (KeptDevice &device : list.devices) {
        device.name = repeated("📻", DeviceList::MaxNameLength);
        device.seen = device.paired;
        device.address = QStringLiteral("1111:2222:3333:4444:5555:6666:7777:8888");
    }
    EXPECT_LT(list.toFile().size() * 3, int(DeviceList::MaxFileSize));
    EXPECT_TRUE(DeviceList::fromFile(list.toFile()));
    list.devices.append(device(1000));
    EXPECT_FALSE(DeviceList::fromFile(list.toFile())) << "one device too many";
}

TEST(DeviceListTest, AFileWithAnythingWrongLetsNobodyIn)
{
    const QByteArray good = listOf(2).toFile();
    const QByteArray digest = accessTokenDigest("1").toHex();
    const struct {
        QByteArray before;
        QByteArray after;
    } cases[] = {
        {"\"role\":\"owner\"", "\"role\":\"Owner\""},
        {"\"role\":\"owner\"", "\"role\":2"},
        {"\"role\":\"owner\"", "\"role\":null"},
        {"\"role\":\"owner\",", ""},
        {"0000000000000001", "000000000000001"},
        {"0000000000000001", "000000000000000G"},
        {"0000000000000001", "00000000 0000001"},
        {"0000000000000001", "0000000000000000"}, // two with one id
        {"Tablet 1", "Tablet\\u00001"},
        {"Tablet 1", ""},
        {"\"Tablet 1\"", "[\"Tablet 1\"]"},
        {"Tablet 1", repeated("x", 65).toUtf8()},
        {"2023-11-14T22:13:20Z", "2023-11-14T22:13:20"},
        {"2023-11-14T22:13:20Z", "2023-11-14T22:13:20+01:00"},
        {"2023-11-14T22:13:20Z", "2023-13-14T22:13:20Z"},
        {"2023-11-14T22:13:20Z", "soon"},
        {"\"2023-11-14T22:13:20Z\"", "1700000000"},
        {"\"paired\":\"2023-11-14T22:13:20Z\"",
            "\"paired\":\"2023-11-14T22:13:20Z\",\"seen\":\"never\""},
        {"\"paired\":\"2023-11-14T22:13:20Z\"",
            "\"paired\":\"2023-11-14T22:13:20Z\",\"address\":\"evil.example\""},
        {digest, ""},
        {digest, digest.left(62)},
        {digest, digest + "00"},
        {digest, digest.toUpper()},
        {digest, accessTokenDigest("0").toHex()}, // two with one token
        {'"' + digest + '"', "true"},
        {"\"devices\":[", "\"devices\":[null,"},
        {"\"devices\":[", "\"devices\":[[],"},
        {"\"devices\":[", "\"others\":["},
    };
    ASSERT_TRUE(DeviceList::fromFile(good));
    for (const auto &c : cases) {
        QByteArray bad = good;
        bad.replace(c.before, c.after);
        ASSERT_NE(bad, good) << c.before.constData();
        EXPECT_FALSE(DeviceList::fromFile(bad)) << bad.constData();
    }
    for (const QByteArray &bad : {QByteArray(), QByteArray("null"), QByteArray("[]"),
             QByteArray("{}"), QByteArray("\0", 1), QByteArray("{\"devices\":{}}"),
             QByteArray("{\"devices\":null}"), good.left(40), good.mid(1), QByteArray(100000, '[')})
        EXPECT_FALSE(DeviceList::fromFile(bad)) << bad.left(50).constData();
}

TEST(DeviceListTest, MembersOfALaterVersionAreIgnored)
{
    QByteArray file = listOf(1).toFile();
    file.replace("\"role\"", "\"color\":\"red\",\"role\"");
    file.replace("{\"devices\"", "{\"alpha\":{},\"devices\"");
    const auto read = DeviceList::fromFile(file);
    ASSERT_TRUE(read) << file.constData();
    EXPECT_EQ(read->devices.size(), 1);
}

TEST(SecretsTest, TokensHave256BitsAndTheirAlphabet)
{
    std::set<QByteArray> tokens;
    for (int i = 0; i < 1000; ++i) {
        const QByteArray token = makeAccessToken();
        ASSERT_EQ(token.size(), AccessTokenLength);
        for (const char c : token)
            ASSERT_TRUE(isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_') << c;
        EXPECT_EQ(QByteArray::fromBase64(token, QByteArray::Base64UrlEncoding).size(), 32);
        tokens.insert(token);
    }
    EXPECT_EQ(tokens.size(), 1000U);
    EXPECT_EQ(accessTokenDigest("abc").toHex(),
        "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(SecretsTest, CodesHaveSixDigitsZerosInFrontIncluded)
{
    int zeros = 0;
    constexpr int Count = 10000;
    for (int i = 0; i < Count; ++i) {
        const QByteArray code = makePairingCode();
        ASSERT_EQ(code.size(), PairingCodeLength);
        bool isNumber = false;
        code.toInt(&isNumber);
        ASSERT_TRUE(isNumber);
        zeros += code.startsWith('0') ? 1 : 0;
    }
    // A tenth; that far off only once in 10^20 runs.
    EXPECT_NEAR(zeros, Count / 10, 300);
}

TEST(SecretsTest, ComparesWholeSecrets)
{
    EXPECT_TRUE(isSameSecret("012345", "012345"));
    EXPECT_FALSE(isSameSecret("012345", "012346"));
    EXPECT_FALSE(isSameSecret("012345", "12345"));
    EXPECT_FALSE(isSameSecret("012345", "0123456"));
    EXPECT_FALSE(isSameSecret("012345", QByteArray()));
}

} // namespace
