// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsFormats.h"
#include "tests/support/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace {

/// "title=address" of each station, with its folders before it; a folder that is empty ends in "/".
QStringList shown(const std::vector<StationsEntry> &entries, const QString &before = {})
{
    QStringList all;
    for (const StationsEntry &entry : entries) {
        const QString inside = before + entry.title + text("/");
        if (!entry.isFolder())
            all.append(before + entry.title + text("=") + entry.address);
        else if (entry.entries.empty())
            all.append(inside);
        else
            all += shown(entry.entries, inside);
    }
    return all;
}

struct Good {
    const char *what;
    QByteArray bytes;
    QStringList entries;
    int skipped = 0;
};

void PrintTo(const Good &good, std::ostream *out)
{
    *out << good.what;
}

struct Bad {
    const char *what;
    QByteArray bytes;
    const char *error;
};

void PrintTo(const Bad &bad, std::ostream *out)
{
    *out << bad.what;
}

class StationsFormatsTest : public testing::TestWithParam<Good> { };
class StationsBadFormatsTest : public testing::TestWithParam<Bad> { };

QByteArray opml(const QByteArray &outlines, const QByteArray &head = {})
{
    return "<?xml version=\"1.0\"?><opml version=\"2.0\"><head>" + head + "</head><body>" + outlines
        + "</body></opml>";
}

QByteArray xspf(const QByteArray &tracks)
{
    return "<playlist version=\"1\" xmlns=\"http://xspf.org/ns/0/\"><trackList>" + tracks
        + "</trackList></playlist>";
}

template <std::size_t Size>
QByteArray utf16(const char16_t (&text)[Size])
{
    return QByteArray(reinterpret_cast<const char *>(text), static_cast<int>(2 * (Size - 1)));
}

QByteArray repeated(const char *text, int times)
{
    return QByteArray(text).repeated(times);
}

} // namespace

TEST_P(StationsFormatsTest, ReadsTheStations)
{
    const StationsFile file = readStations(GetParam().bytes);
    EXPECT_EQ(file.error.toString(), QString());
    EXPECT_EQ(shown(file.entries), GetParam().entries);
    EXPECT_EQ(file.skippedCount(), GetParam().skipped);
}

INSTANTIATE_TEST_SUITE_P(M3u, StationsFormatsTest,
    testing::Values(
        Good {"titles", "#EXTM3U\n#EXTINF:-1,Jazz, live\nhttp://a/1\n#EXTINF:0,Blues\nhttps://a/2",
            {text("Jazz, live=http://a/1"), text("Blues=https://a/2")}},
        Good {"bare addresses", "http://a.example/jazz/\nhttp://b",
            {text("a.example/jazz=http://a.example/jazz/"), text("b=http://b")}},
        Good {"carriage returns", "#EXTM3U\r\n#EXTINF:1,A\r\nhttp://a\r\n", {text("A=http://a")}},
        Good {"carriage returns alone", "#EXTM3U\r#EXTINF:1,A\rhttp://a\r", {text("A=http://a")}},
        Good {"byte order mark", "\xEF\xBB\xBF#EXTM3U\n#EXTINF:1,\xC3\xA9\nhttp://a",
            {text("\xC3\xA9=http://a")}},
        Good {"Latin-1", "#EXTM3U\n#EXTINF:1,caf\xE9\nhttp://a", {text("caf\xC3\xA9=http://a")}},
        Good {"attributes",
            "#EXTM3U\n#EXTINF:-1 tvg-logo=\"http://a/x,y.png\" group-title=\"Jazz, old\",A, "
            "B\nhttp://a",
            {text("Jazz, old/A, B=http://a")}},
        Good {"an attribute that does not end", "#EXTM3U\n#EXTINF:-1 tvg-logo=\"x,A\nhttp://a",
            {text("A=http://a")}},
        Good {"a title without a comma", "#EXTM3U\n#EXTINF:-1\nhttp://a", {text("a=http://a")}},
        Good {"groups",
            "#EXTM3U\n#EXTGRP:A / B\n#EXTINF:1,x\nhttp://a\nhttp://b\n#EXTGRP:A\nhttp://c",
            {text("A/B/x=http://a"), text("A/c=http://c"), text("b=http://b")}},
        Good {"an empty group", "#EXTM3U\n#EXTGRP:A", {text("A/")}},
        Good {"a slash in a group", "#EXTM3U\n#EXTGRP:Rock/Pop\nhttp://a",
            {text("Rock/Pop/a=http://a")}},
        Good {"the empty list", "#EXTM3U\n", {}},
        Good {"no web addresses",
            "#EXTM3U\nfile:///etc/passwd\n../x.mp3\nC:\\x.mp3\nrtsp://a/b\nhttp://\nhttp://a",
            {text("a=http://a")}, 5},
        Good {"a title of a skipped entry", "#EXTM3U\n#EXTINF:1,A\nx.mp3\nhttp://b",
            {text("b=http://b")}, 1},
        Good {"capital letters", "#extm3u\n#extinf:1,A\nHTTP://a", {text("A=HTTP://a")}}));

INSTANTIATE_TEST_SUITE_P(Pls, StationsFormatsTest,
    testing::Values(Good {"entries by number",
                        "[playlist]\nFile2=http://b\nTitle2=B = "
                        "b\nFile1=http://a\nTitle1=A\nLength1=-1\nNumberOfEntries=2\nVersion=2",
                        {text("A=http://a"), text("B = b=http://b")}},
        Good {"small letters and blanks", "\n [Playlist]\r\nfile1= http://a \r\ntitle1= A",
            {text("A=http://a")}},
        Good {"no address", "[playlist]\nTitle1=A\nFile2=x.mp3\nFile3=http://c",
            {text("c=http://c")}, 2},
        Good {"strange numbers",
            "[playlist]\nFile0=http://a\nFile=http://b\nFile99999999999=http://c\n=x\nFile-1=http:/"
            "/d",
            {}},
        Good {"folders", "[playlist]\nFolder1=A\nFile1=http://a\nFolder2=B",
            {text("A/a=http://a"), text("B/")}}));

INSTANTIATE_TEST_SUITE_P(Xspf, StationsFormatsTest,
    testing::Values(
        Good {"tracks",
            xspf("<track><location> http://a </location><title>A &amp; B</title></track>"),
            {text("A & B=http://a")}},
        Good {"several locations",
            xspf("<track><location>x.mp3</location><location>http://b</location></track>"),
            {text("b=http://b")}},
        Good {"no location", xspf("<track><title>A</title></track>"), {}, 1},
        Good {"a prefix",
            "<x:playlist "
            "xmlns:x='http://xspf.org/ns/0/'><x:trackList><x:track><x:location>http://a</"
            "x:location></x:track></x:trackList></x:playlist>",
            {text("a=http://a")}},
        Good {"other elements",
            xspf("<track><extension><location>http://x</location></extension><location>http://a</"
                 "location></track>"),
            {text("a=http://a")}},
        Good {"CDATA", xspf("<track><location><![CDATA[http://a/?b&c]]></location></track>"),
            {text("a=http://a/?b&c")}}));

INSTANTIATE_TEST_SUITE_P(Opml, StationsFormatsTest,
    testing::Values(Good {"stations",
                        opml("<outline type=\"audio\" text=\"A\" URL=\"http://a\"/><outline "
                             "text='B' url='http://b'/><outline title='C' xmlUrl='http://c'/>"),
                        {text("A=http://a"), text("B=http://b"), text("C=http://c")}},
        Good {"folders",
            opml("<outline text='F'><outline text='G'><outline text='A' "
                 "URL='http://a'/></outline></outline><outline text='E'/>"),
            {text("F/G/A=http://a"), text("E/")}},
        Good {"folders of one name",
            opml("<outline text='F'><outline text='A' URL='http://a'/></outline><outline "
                 "text='F'><outline text='B' URL='http://b'/></outline>"),
            {text("F/A=http://a"), text("F/B=http://b")}},
        Good {"links",
            opml("<outline type='link' text='More' URL='http://a/Browse'/><outline type='text' "
                 "text='None'/>"),
            {}, 1},
        Good {"no web address", opml("<outline text='A' URL='mms://a'/>"), {}, 1},
        Good {"a station with outlines",
            opml("<outline text='A' URL='http://a'><outline text='B' URL='http://b'/></outline>"),
            {text("A=http://a"), text("A/B=http://b")}},
        Good {"Latin-1 that says so",
            "<?xml version='1.0' encoding='ISO-8859-1'?><opml><body><outline text='\xE9' "
            "URL='http://a'/></body></opml>",
            {text("\xC3\xA9=http://a")}},
        Good {"Latin-1 that does not",
            "<opml><body><outline text='\xE9' URL='http://a'/></body></opml>",
            {text("\xC3\xA9=http://a")}},
        Good {"UTF-16",
            utf16(u"\xFEFF<opml><body><outline text='A' URL='http://a'/></body></opml>"),
            {text("A=http://a")}},
        Good {"a byte order mark and space",
            "\xEF\xBB\xBF\n<opml><body><outline text='A' URL='http://a'/></body></opml>",
            {text("A=http://a")}},
        Good {"too many folders in each other",
            opml(repeated("<outline text='F'>", 8) + "<outline text='in' URL='http://a'/>"
                + repeated("<outline text='F'>", 50) + "<outline text='out' URL='http://b'/>"
                + repeated("</outline>", 58)),
            {text("F/F/F/F/F/F/F/F/in=http://a")}, 1},
        Good {"ten thousand outlines in each other",
            opml(repeated("<outline text='F' URL='http://a'>", 10000)
                + repeated("</outline>", 10000)),
            {text("F=http://a"), text("F/F=http://a"), text("F/F/F=http://a"),
                text("F/F/F/F=http://a"), text("F/F/F/F/F=http://a"), text("F/F/F/F/F/F=http://a"),
                text("F/F/F/F/F/F/F=http://a"), text("F/F/F/F/F/F/F/F=http://a"),
                text("F/F/F/F/F/F/F/F/F=http://a")},
            9991}));

TEST_P(StationsBadFormatsTest, SaysWhatIsWrong)
{
    const StationsFile file = readStations(GetParam().bytes);
    EXPECT_EQ(file.error.toString(), text(GetParam().error));
    EXPECT_TRUE(file.entries.empty());
}

INSTANTIATE_TEST_SUITE_P(All, StationsBadFormatsTest,
    testing::Values(Bad {"nothing", "", "This is no list of stations."},
        Bad {"a text", "Hello,\nthis is me", "This is no list of stations."},
        Bad {"bytes", QByteArray("\0\x01\xFF\0", 4), "This is no list of stations."},
        Bad {"a group without stations", "#EXTGRP:A", "This is no list of stations."},
        Bad {"a page", "<!-- x --><html><body/></html>", "This is no list of stations."},
        Bad {"a page with a type", "<!DOCTYPE html><html/>",
            "The file defines a document type (DOCTYPE), which is not read."},
        Bad {"entities in each other",
            "<?xml version='1.0'?><!DOCTYPE opml [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b "
            "'&a;&a;&a;&a;&a;&a;'>]>"
            "<opml><body><outline text='&b;' URL='http://a'/></body></opml>",
            "The file defines a document type (DOCTYPE), which is not read."},
        Bad {"half a file", "<opml><body>\n<outline text='A' URL='http://a'/>\n",
            "The file is damaged: line 3 cannot be read as XML."},
        Bad {"an unknown entity",
            "<opml><body><outline text='&nope;' URL='http://a'/></body></opml>",
            "The file is damaged: line 1 cannot be read as XML."},
        Bad {"more after the end", "<opml><body/></opml><opml>",
            "The file is damaged: line 1 cannot be read as XML."},
        Bad {"a stream's playlist", "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\nhttp://a/1.m3u8\n",
            "This is the playlist of one stream. Add the stream by its address."},
        Bad {"a stream's segments", "#EXTM3U\n#EXT-X-TARGETDURATION:5\n#EXTINF:5,\nhttp://a/1.ts\n",
            "This is the playlist of one stream. Add the stream by its address."},
        Bad {"more than a mebibyte", "#EXTM3U\n" + QByteArray(1024 * 1024, '\n'),
            "The file is larger than 1 MiB."}));

TEST(StationsFormatsLimitsTest, ReadsWhatElseIsKnownOfAStation)
{
    const QByteArray files[] = {
        "#EXTM3U\n#PLAYLIST:Mine\n#EXTINF:-1,A\n#EXTIMG:logo http://a/p.png\n#EXTDESC:All "
        "day\nhttp://a",
        "#EXTM3U\n#PLAYLIST:Mine\n#EXTINF:-1 tvg-logo=\"http://a/p.png\",A\n#EXTDESC:All "
        "day\nhttp://a",
        "[playlist]\nX-GNOME-Title=Mine\nFile1=http://a\nTitle1=A\nPicture1=http://a/"
        "p.png\nDescription1=All day",
        "<playlist><title>Mine</title><trackList><track><location>http://a</location><title>A</"
        "title>"
        "<image>http://a/p.png</image><annotation>All\nday</annotation></track></trackList></"
        "playlist>",
        opml("<outline text='A' URL='http://a' image='http://a/p.png' subtext='All day'/>",
            "<title>Mine</title>"),
    };
    for (const QByteArray &bytes : files) {
        SCOPED_TRACE(bytes.constData());
        const StationsFile file = readStations(bytes);
        EXPECT_EQ(file.title, text("Mine"));
        ASSERT_EQ(file.entries.size(), 1U);
        const StationsEntry expected {
            text("A"), text("http://a"), text("http://a/p.png"), text("All day")};
        EXPECT_TRUE(file.entries.front() == expected);
    }
}

TEST(StationsFormatsLimitsTest, BoundsTheNumberOfEntries)
{
    QByteArray m3u = "#EXTM3U\n";
    QByteArray pls = "[playlist]\n";
    QByteArray outlines;
    for (int i = 0; i < StationsLimits::Entries + 10; ++i) {
        const QByteArray number = QByteArray::number(i + 1);
        m3u += "http://a/" + number + "\n";
        pls += "File" + number + "=http://a/" + number + "\n";
        outlines += "<outline text='A' URL='http://a/" + number + "'/>";
    }
    for (const QByteArray &bytes : {m3u, pls, opml(outlines)}) {
        const StationsFile file = readStations(bytes);
        EXPECT_EQ(file.entries.size(), static_cast<std::size_t>(StationsLimits::Entries));
        EXPECT_EQ(file.skipped.at(StationsSkip::TooMany), 10);
        EXPECT_EQ(file.skippedCount(), 10);
    }
}

TEST(StationsFormatsLimitsTest, BoundsTexts)
{
    const StationsFile file = readStations("#EXTM3U\n#EXTINF:1," + QByteArray(5000, 'x')
        + "\n#EXTDESC:" + QByteArray(5000, 'y') + "\n#EXTIMG:http://a/" + QByteArray(5000, 'z')
        + "\nhttp://a\nhttp://a/" + QByteArray(3000, 'z') + "\n");
    ASSERT_EQ(file.entries.size(), 1U);
    EXPECT_EQ(file.entries.front().title.size(), StationsLimits::Title);
    EXPECT_EQ(file.entries.front().description.size(), StationsLimits::Description);
    EXPECT_EQ(file.entries.front().picture, QString());
    EXPECT_EQ(file.skipped.at(StationsSkip::TooLong), 1);
}

TEST(StationsFormatsLimitsTest, PutsTextsOnOneLineWithoutWhatCannotBeShown)
{
    const std::pair<const char *, const char *> cases[] = {
        {" a \t b ", "a b"},
        {"a\x01\x1B[2J b\x7F", "a [2J b"},
        {"a\xE2\x80\xA8"
         "b",
            "a b"},
        {"\xEF\xBF\xBF", ""},
        {"\xF0\x9F\x8E\xB7", "\xF0\x9F\x8E\xB7"},
    };
    for (const auto &[given, expected] : cases)
        EXPECT_EQ(stationsText(text(given), 20), text(expected));
    EXPECT_EQ(stationsText(QString(QChar(0xD83C)) + text("a"), 20), text("a"));
    EXPECT_EQ(stationsText(text("ab\xF0\x9F\x8E\xB7"), 3), text("ab"));
}
