// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/radiobrowser/RadioBrowserDns.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <arpa/nameser.h>

namespace {

QByteArray twoBytes(int number)
{
    return QByteArray(1, static_cast<char>(number >> 8)) + static_cast<char>(number & 0xFF);
}

QByteArray encodedName(const QByteArray &name)
{
    QByteArray encoded;
    for (const QByteArray &label : name.split('.'))
        encoded += static_cast<char>(label.size()) + label;
    return encoded + '\0';
}

struct Record {
    QByteArray host;
    int port = 443;
    int type = ns_t_srv;
};

/// The name server's answer to the question for the service.
QByteArray message(const QList<Record> &records)
{
    const QByteArray service = encodedName("_api._tcp.radio-browser.info");
    QByteArray bytes = twoBytes(7) + twoBytes(0x8180) + twoBytes(1) + twoBytes(records.size())
        + twoBytes(0) + twoBytes(0) + service + twoBytes(ns_t_srv) + twoBytes(ns_c_in);
    for (const Record &record : records) {
        const QByteArray data
            = twoBytes(0) + twoBytes(0) + twoBytes(record.port) + encodedName(record.host);
        // The name is the question's, which stands behind the header of twelve bytes.
        bytes += twoBytes(0xC00C) + twoBytes(record.type) + twoBytes(ns_c_in) + twoBytes(0)
            + twoBytes(300) + twoBytes(data.size()) + data;
    }
    return bytes;
}

} // namespace

TEST(RadioBrowserDnsTest, ReadsTheServersOfAnAnswer)
{
    EXPECT_EQ(radioBrowserServersIn(message({{"de1.api.radio-browser.info"},
                  {"NL1.api.Radio-Browser.info"}, {"fi1.api.radio-browser.info", 8443}})),
        QStringList(
            {text("https://de1.api.radio-browser.info"), text("https://nl1.api.radio-browser.info"),
                text("https://fi1.api.radio-browser.info:8443")}));
}

TEST(RadioBrowserDnsTest, LeavesOutWhatIsNoServerOfTheDirectory)
{
    for (const Record &record : {Record {"evil.example"},
             Record {"radio-browser.info.evil.example"}, Record {"notradio-browser.info"},
             Record {"a b.radio-browser.info"}, Record {"de1.api.radio-browser.info", 0},
             Record {"de1.api.radio-browser.info", 443, ns_t_txt}}) {
        EXPECT_EQ(radioBrowserServersIn(message({record})), QStringList())
            << record.host.toStdString();
    }
}

TEST(RadioBrowserDnsTest, NamesAServerOnceAndAtMostSixteen)
{
    QList<Record> records {{"de1.api.radio-browser.info"}, {"de1.api.radio-browser.info"}};
    EXPECT_EQ(radioBrowserServersIn(message(records)).size(), 1);
    for (int i = 2; i < 40; ++i)
        records.append({"de" + QByteArray::number(i) + ".api.radio-browser.info"});
    EXPECT_EQ(radioBrowserServersIn(message(records)).size(), 16);
}

TEST(RadioBrowserDnsTest, SurvivesAMessageThatIsCutOffAnywhere)
{
    const QByteArray whole
        = message({{"de1.api.radio-browser.info"}, {"nl1.api.radio-browser.info"}});
    for (int size = 0; size < whole.size(); ++size)
        EXPECT_LT(radioBrowserServersIn(whole.left(size)).size(), 2) << size;
    EXPECT_EQ(radioBrowserServersIn(whole).size(), 2);
}

TEST(RadioBrowserDnsTest, SurvivesANameThatPointsAtItself)
{
    QByteArray bytes = message({{"de1.api.radio-browser.info"}});
    const int host = bytes.lastIndexOf("\3de1");
    bytes.replace(host, 2, twoBytes(0xC000 | host));
    EXPECT_EQ(radioBrowserServersIn(bytes), QStringList());
}
