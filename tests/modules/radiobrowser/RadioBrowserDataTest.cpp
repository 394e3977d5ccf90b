// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/radiobrowser/RadioBrowserData.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace {

RadioBrowserStation station(const char *json)
{
    const auto entries = radioBrowserEntries(QByteArray("[") + json + "]", 1);
    return RadioBrowserStation(entries.value_or(QVariantList()).value(0).toHash());
}

} // namespace

TEST(RadioBrowserDataTest, ReadsAStationsFields)
{
    const RadioBrowserStation jazz = station(R"({
        "stationuuid": "960e57c5-0601-11e8-ae97-52543be04c81", "name": "Jazz FM",
        "url": "http://a.example/jazz.pls", "url_resolved": "http://a.example/jazz",
        "favicon": "https://a.example/i.png", "tags": "jazz,blues", "country": "Germany",
        "codec": "MP3", "bitrate": 128, "hls": 0})");
    EXPECT_EQ(jazz.uuid(), text("960e57c5-0601-11e8-ae97-52543be04c81"));
    EXPECT_EQ(jazz.name(), text("Jazz FM"));
    EXPECT_EQ(jazz.streamUrl(), text("http://a.example/jazz"));
    EXPECT_EQ(jazz.icon(), text("https://a.example/i.png"));
    EXPECT_EQ(jazz.bitRate(), 128000);
    EXPECT_EQ(jazz.tags(), QStringList({text("jazz"), text("blues")}));
    EXPECT_EQ(jazz.description(), text("MP3, 128 kbit/s, Germany, jazz, blues"));
    EXPECT_TRUE(jazz.isPlayable());
}

TEST(RadioBrowserDataTest, ReadsNumbersThatAreTextsAndTextsThatAreNumbers)
{
    const RadioBrowserStation odd = station(R"({"name": 104.6, "bitrate": "64", "hls": "1"})");
    EXPECT_EQ(odd.name(), text("104.6"));
    EXPECT_EQ(odd.bitRate(), 64000);
    EXPECT_EQ(odd.mimeType(), text("application/vnd.apple.mpegurl"));
}

TEST(RadioBrowserDataTest, LeavesOutWhatIsNotKnownOrOfAnotherType)
{
    for (const char *json : {"{}", "7", "null", "\"text\"", "[1]",
             R"({"stationuuid": 5, "name": ["a"], "url": {}, "favicon": null, "tags": {"a": 1},
                 "country": [], "codec": {}, "bitrate": [128], "hls": {}})",
             R"({"codec": "UNKNOWN", "bitrate": 0, "tags": ",, ,", "country": ""})"}) {
        const RadioBrowserStation odd = station(json);
        EXPECT_FALSE(odd.isPlayable()) << json;
        EXPECT_EQ(odd.icon(), QString()) << json;
        EXPECT_EQ(odd.bitRate(), 0) << json;
        EXPECT_EQ(odd.mimeType(), text("audio/unknown")) << json;
        EXPECT_TRUE(odd.tags().isEmpty()) << json;
    }
    EXPECT_EQ(station(R"({"codec": "UNKNOWN", "country": "Italy"})").description(), text("Italy"));
}

TEST(RadioBrowserDataTest, PlaysTheAddressThatWasEnteredWhereNoneWasResolved)
{
    for (const char *resolved : {"\"\"", "null", "\"rtsp://a.example/b\"", "12"}) {
        const QByteArray json = QByteArray(R"({"url": "http://a.example/list.m3u",
            "url_resolved": )")
            + resolved + "}";
        EXPECT_EQ(station(json.constData()).streamUrl(), text("http://a.example/list.m3u"))
            << resolved;
    }
}

TEST(RadioBrowserDataTest, RefusesAddressesThatAreNotOfTheWeb)
{
    const QByteArray longUrl = "http://a.example/" + QByteArray(3000, 'x');
    for (const QByteArray &url :
        {QByteArray("file:///etc/passwd"), QByteArray("rtmp://a.example/b"),
            QByteArray("javascript:alert(1)"), QByteArray("data:audio/mpeg;base64,AAAA"),
            QByteArray("//a.example/b"), QByteArray("http://"), QByteArray("a.example"), longUrl}) {
        const QByteArray json = "{\"url\": \"" + url + "\", \"favicon\": \"" + url + "\"}";
        EXPECT_EQ(station(json.constData()).streamUrl(), QString()) << url.left(40).toStdString();
        EXPECT_EQ(station(json.constData()).icon(), QString()) << url.left(40).toStdString();
    }
    EXPECT_EQ(
        station(R"({"url": " HTTPS://a.example/b "})").streamUrl(), text("HTTPS://a.example/b"));
}

TEST(RadioBrowserDataTest, TellsTheFormatByCodecAndHls)
{
    struct Case {
        const char *json;
        const char *mime;
    };
    for (const Case &each : {Case {R"({"codec": "MP3"})", "audio/mpeg"},
             Case {R"({"codec": "AAC+"})", "audio/aac"}, Case {R"({"codec": "aac"})", "audio/aac"},
             Case {R"({"codec": "OGG"})", "audio/ogg"}, Case {R"({"codec": "FLAC"})", "audio/flac"},
             Case {R"({"codec": "WMA"})", "audio/unknown"},
             Case {R"({"codec": "AAC", "hls": 1})", "application/vnd.apple.mpegurl"}})
        EXPECT_EQ(station(each.json).mimeType(), text(each.mime)) << each.json;
}

TEST(RadioBrowserDataTest, BoundsBitRates)
{
    for (const char *rate : {"-1", "10001", "99999999999", "1.5", "true", "\"12x\""}) {
        const QByteArray json = QByteArray("{\"bitrate\": ") + rate + "}";
        EXPECT_EQ(station(json.constData()).bitRate(), 0) << rate;
    }
    EXPECT_EQ(station(R"({"bitrate": 10000})").bitRate(), 10000000);
}

TEST(RadioBrowserDataTest, CutsTextsAndPutsThemOnOneLine)
{
    EXPECT_EQ(radioBrowserText(text(" a\n\tb  c\x1b[31m "), 60), text("a b c[31m"));
    EXPECT_EQ(radioBrowserText(QString(1000, QLatin1Char('x')), 60).size(), 60);
    // Half a character is none.
    EXPECT_EQ(radioBrowserText(text("abc😀"), 4), text("abc"));
    EXPECT_EQ(radioBrowserText(text("abc😀"), 5), text("abc😀"));
    const QByteArray json = "{\"tags\": \"" + QByteArray("tag,").repeated(100) + "\"}";
    EXPECT_EQ(station(json.constData()).tags().size(), 3);
}

TEST(RadioBrowserDataTest, ReadsCategories)
{
    struct Case {
        const char *json;
        const char *name;
        const char *code;
        int count;
    };
    for (const Case &each :
        {Case {R"({"name": "Germany", "iso_3166_1": "de", "stationcount": 5000})", "Germany", "DE",
             5000},
            Case {R"({"name": "jazz", "stationcount": "17"})", "jazz", "", 17},
            Case {R"({"name": "odd", "iso_3166_1": "D1", "stationcount": -3})", "odd", "", 0},
            Case {R"({"name": "odd", "iso_3166_1": "DEU"})", "odd", "", 0}}) {
        const RadioBrowserCategory category(station(each.json).toHash());
        EXPECT_EQ(category.name(), text(each.name)) << each.json;
        EXPECT_EQ(category.countryCode(), text(each.code)) << each.json;
        EXPECT_EQ(category.stationCount(), each.count) << each.json;
    }
}

TEST(RadioBrowserDataTest, BoundsListsAndKeepsThePlacesOfTheirEntries)
{
    const auto entries = radioBrowserEntries(R"([{"name": "a"}, 7, {"name": "b"}, {}])", 3);
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 3);
    EXPECT_EQ(RadioBrowserCategory(entries->at(0).toHash()).name(), text("a"));
    EXPECT_EQ(RadioBrowserCategory(entries->at(1).toHash()).name(), QString());
    EXPECT_EQ(RadioBrowserCategory(entries->at(2).toHash()).name(), text("b"));
}

TEST(RadioBrowserDataTest, RejectsAnythingButAList)
{
    for (const char *json : {"", "{}", "null", "<html>", "[{}", "\"[]\"", "[] []"})
        EXPECT_FALSE(radioBrowserEntries(json, 10)) << json;
    EXPECT_TRUE(radioBrowserEntries("[]", 10));
}
