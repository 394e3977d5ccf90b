// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/Playlist.h"

#include <QElapsedTimer>
#include <QStringList>

#include <gtest/gtest.h>

#include <ostream>

namespace {

const QUrl Base(QStringLiteral("http://radio.example/dir/list?x=1"));

QStringList addresses(const QByteArray &text, StreamContent content, const QUrl &base = Base)
{
    QStringList result;
    for (const QUrl &url : parsePlaylist(text, content, base)) {
        EXPECT_TRUE(url.isValid());
        result.append(QString::fromLatin1(url.toEncoded()));
    }
    return result;
}

QStringList list(std::initializer_list<const char *> utf8)
{
    QStringList result;
    for (const char *each : utf8)
        result.append(QString::fromUtf8(each));
    return result;
}

QStringList m3u(const QByteArray &text)
{
    return addresses(text, StreamContent::M3u);
}

QStringList pls(const QByteArray &text)
{
    return addresses(text, StreamContent::Pls);
}

QStringList asx(const QByteArray &text)
{
    return addresses(text, StreamContent::Asx);
}

QStringList xspf(const QByteArray &text)
{
    return addresses(text, StreamContent::Xspf);
}

/// An ASCII text in UTF-16 with a byte order mark.
QByteArray utf16(const char *text, bool bigEndian)
{
    QByteArray result = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : QByteArray(text)) {
        const QByteArray unit = bigEndian ? QByteArray(1, '\0') + c : c + QByteArray(1, '\0');
        result += unit;
    }
    return result;
}

/// The addresses that each kind of playlist yields when \a address is its only entry.
std::vector<QStringList> inEveryPlaylist(const QByteArray &address)
{
    return {m3u(address + "\n"), pls("[playlist]\nFile1=" + address + "\n"),
        asx("<asx><entry><ref href=\"" + address + "\"/></entry></asx>"),
        pls("[Reference]\nRef1=" + address + "\n"),
        xspf("<playlist><trackList><track><location>" + address
            + "</location></track></trackList></playlist>")};
}

struct Content {
    const char *name;
    QByteArray bytes;
    StreamContent content;
};

std::ostream &operator<<(std::ostream &out, const Content &content)
{
    return out << content.name;
}

QByteArray bytesOf(std::initializer_list<int> values)
{
    QByteArray result;
    for (const int value : values)
        result.append(static_cast<char>(value));
    return result;
}

} // namespace

class StreamContentTest : public testing::TestWithParam<Content> { };

TEST_P(StreamContentTest, IsJudgedFromAWholeAnswer)
{
    EXPECT_EQ(sniffStream(GetParam().bytes, true), GetParam().content);
}

TEST_P(StreamContentTest, IsNotJudgedWronglyFromItsBeginning)
{
    const QByteArray &bytes = GetParam().bytes;
    bool decided = false;
    for (int size = 0; size <= bytes.size(); ++size) {
        const StreamContent content = sniffStream(bytes.left(size), false);
        if (content == StreamContent::Undecided) {
            EXPECT_FALSE(decided) << size;
            continue;
        }
        EXPECT_EQ(content, GetParam().content) << size;
        decided = true;
    }
}

TEST_P(StreamContentTest, IsDecidedAtOneKib)
{
    const QByteArray bytes = GetParam().bytes + QByteArray(1024, '\n');
    EXPECT_EQ(sniffStream(bytes.left(1024), false), GetParam().content);
}

TEST_P(StreamContentTest, IsAPlaylistWhenParsePlaylistReadsIt)
{
    const StreamContent content = GetParam().content;
    const bool expected = content == StreamContent::M3u || content == StreamContent::Pls
        || content == StreamContent::Asx || content == StreamContent::Xspf;
    EXPECT_EQ(isPlaylist(content), expected);
    EXPECT_TRUE(expected || addresses(GetParam().bytes, content).isEmpty());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Playlists, StreamContentTest, testing::Values(
    Content {"extended m3u", "#EXTM3U\n#EXTINF:-1,Radio\nhttp://h/a\n", StreamContent::M3u},
    Content {"extended m3u with attributes", "#EXTM3U x-tvg-url=\"http://h/\"\n#EXTINF:-1 tvg-id=\"x\",Radio\nhttp://h/a\n", StreamContent::M3u},
    Content {"extended m3u with VLC's options", "#EXTM3U\n#EXTVLCOPT:network-caching=1000\nhttp://h/a\n", StreamContent::M3u},
    Content {"extended m3u with lengths", "#EXTM3U\n#EXTINF:10,Radio\nhttp://h/a\n#EXTINF:10.5,Radio\nhttp://h/b\n", StreamContent::M3u},
    Content {"m3u in lower case", "#extm3u\nhttp://h/a\n", StreamContent::M3u},
    Content {"m3u with a byte order mark", "\xEF\xBB\xBF#EXTM3U\nhttp://h/a\n", StreamContent::M3u},
    Content {"m3u with carriage returns", "#EXTM3U\r#EXTINF:-1,Radio\rhttp://h/a\r", StreamContent::M3u},
    Content {"plain m3u", "http://h/a\nhttp://h/b\n", StreamContent::M3u},
    Content {"plain m3u with a byte order mark", "\xEF\xBB\xBFhttp://h/a\r\n", StreamContent::M3u},
    Content {"one address without a line's end", "https://h/a.mp3", StreamContent::M3u},
    Content {"address in upper case", "HTTP://H/A\r\n", StreamContent::M3u},
    Content {"m3u after blank lines", "\r\n\r\n  http://h/a\r\n", StreamContent::M3u},
    Content {"m3u after a comment", "# our streams\nhttp://h/a\n", StreamContent::M3u},
    Content {"m3u that is not UTF-8", "#EXTM3U\n#EXTINF:-1,Caf\xE9\nhttp://h/a\n", StreamContent::M3u},
    Content {"pls", "[playlist]\nNumberOfEntries=1\nFile1=http://h/a\n", StreamContent::Pls},
    Content {"pls in upper case", "[PLAYLIST]\r\nFILE1=http://h/a\r\n", StreamContent::Pls},
    Content {"pls in mixed case", "[Playlist]\nfile1=http://h/a\n", StreamContent::Pls},
    Content {"pls with a byte order mark", "\xEF\xBB\xBF[playlist]\nFile1=http://h/a\n", StreamContent::Pls},
    Content {"pls after blank lines", "\n\n [playlist]\nFile1=http://h/a\n", StreamContent::Pls},
    Content {"asx", "<asx version=\"3.0\"><entry><ref href=\"http://h/a\"/></entry></asx>", StreamContent::Asx},
    Content {"asx in upper case", "<ASX VERSION=\"3.0\">\r\n<ENTRY><REF HREF=\"http://h/a\" /></ENTRY></ASX>", StreamContent::Asx},
    Content {"asx with a declaration", "<?xml version=\"1.0\"?>\n<Asx Version=\"3.0\"></Asx>", StreamContent::Asx},
    Content {"asx after a comment", "<!-- made by hand -->\n<asx version=\"3.0\"></asx>", StreamContent::Asx},
    Content {"references in the form of pls", "[Reference]\r\nRef1=http://h/a?MSWMExt=.asf\r\n", StreamContent::Pls},
    Content {"xspf", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<playlist version=\"1\" xmlns=\"http://xspf.org/ns/0/\"><trackList/></playlist>", StreamContent::Xspf},
    Content {"xspf without a declaration", "<playlist version=\"1\" xmlns=\"http://xspf.org/ns/0/\"><trackList/></playlist>", StreamContent::Xspf},
    Content {"xspf with a prefix", "<?xml version=\"1.0\"?><x:playlist xmlns:x=\"http://xspf.org/ns/0/\"></x:playlist>", StreamContent::Xspf},
    Content {"xspf with a byte order mark", "\xEF\xBB\xBF<?xml version=\"1.0\"?><playlist></playlist>", StreamContent::Xspf}));

INSTANTIATE_TEST_SUITE_P(LiveStreaming, StreamContentTest, testing::Values(
    Content {"media playlist", "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:10\n#EXTINF:10,\na.ts\n", StreamContent::Hls},
    Content {"media playlist with a late tag", "#EXTM3U\n#EXTINF:10,\na.ts\n#EXT-X-TARGETDURATION:10\n", StreamContent::Hls},
    Content {"media playlist in Windows lines", "#EXTM3U\r\n#EXT-X-MEDIA-SEQUENCE:7\r\n", StreamContent::Hls},
    Content {"media playlist with a byte order mark", "\xEF\xBB\xBF#EXTM3U\n#EXT-X-TARGETDURATION:10\n", StreamContent::Hls},
    Content {"master playlist", "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=64000,CODECS=\"mp4a.40.2\"\nlow.m3u8\n", StreamContent::Hls},
    Content {"master playlist after a comment", "#EXTM3U\n## made by a server\n\n#EXT-X-INDEPENDENT-SEGMENTS\n#EXT-X-STREAM-INF:BANDWIDTH=1\na\n", StreamContent::Hls}));

INSTANTIATE_TEST_SUITE_P(Others, StreamContentTest, testing::Values(
    Content {"page", "<!DOCTYPE html>\n<html><head><title>Log in</title></head></html>", StreamContent::WebPage},
    Content {"page in upper case", "<HTML><HEAD><META HTTP-EQUIV=\"refresh\" CONTENT=\"0;url=/login\">", StreamContent::WebPage},
    Content {"page with a byte order mark", "\xEF\xBB\xBF\r\n<!doctype html><html>", StreamContent::WebPage},
    Content {"page after a comment", "<!-- portal --><html lang=\"en\"></html>", StreamContent::WebPage},
    Content {"page in XHTML", "<?xml version=\"1.0\"?>\n<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Strict//EN\" \"x\"><html></html>", StreamContent::WebPage},
    Content {"refusal", "Sorry, this stream is not available in your country.\n", StreamContent::Text},
    Content {"JSON", "{\"error\": \"http://h/a is gone\"}", StreamContent::Text},
    Content {"JSON array", "[\"http://h/a\"]", StreamContent::Text},
    Content {"ICY's refusal", "ICY 404 Resource Not Found\r\nicy-notice1:http://h/\r\n", StreamContent::Text},
    Content {"text that is not ASCII", "Die Übertragung ist zu Ende.\n", StreamContent::Text}));

INSTANTIATE_TEST_SUITE_P(Audio, StreamContentTest, testing::Values(
    Content {"MP3", bytesOf({0xFF, 0xFB, 0x90, 0x64, 0x00, 0x0F, 0xF0, 0x00}), StreamContent::Audio},
    Content {"MP3 of version 2.5", bytesOf({0xFF, 0xE3, 0x18, 0xC4, 0x00, 0x00}), StreamContent::Audio},
    Content {"MP3 with ID3", QByteArray("ID3\x04\0\0\0\0\x02\x01TSSE", 14), StreamContent::Audio},
    Content {"ADTS", bytesOf({0xFF, 0xF1, 0x50, 0x80, 0x2E, 0x7F, 0xFC, 0x21}), StreamContent::Audio},
    Content {"Ogg", QByteArray("OggS\0\x02\0\0\0\0\0\0\0\0abcd", 18), StreamContent::Audio},
    Content {"FLAC", QByteArray("fLaC\0\0\0\x22\x10\0\x10\0", 12), StreamContent::Audio},
    Content {"MPEG transport stream", QByteArray("G@\0\x10\0\0\xB0\r\0\x01\xC1\0\0", 13), StreamContent::Audio},
    Content {"WAVE", QByteArray("RIFF\x24\x08\0\0WAVEfmt \x10\0\0\0\x01\0", 22), StreamContent::Audio},
    Content {"WAVE without a length", QByteArray("RIFF\xFF\xFF\xFF\xFFWAVEfmt \x10\0\0\0", 20), StreamContent::Audio},
    Content {"fragmented MP4", QByteArray("\0\0\0\x18" "ftypiso5\0\0\0\x01iso5dash", 24), StreamContent::Audio},
    Content {"the middle of a frame", QByteArray("UUUUUUUUUU\xFF\xFB\x90\x64\0\0UUUU", 20), StreamContent::Audio},
    Content {"silence", QByteArray(64, '\0'), StreamContent::Audio}));
// clang-format on

TEST(PlaylistTest, AudioIsKnownWithinItsFirstBytes)
{
    for (const QByteArray &begin : {bytesOf({0xFF, 0xFB, 0x90, 0x64}),
             bytesOf({'I', 'D', '3', 4, 0}), bytesOf({'I', 'D', '3', 3, 0}),
             bytesOf({0xFF, 0xF1, 0x50, 0x80}), bytesOf({0xFF, 0xF9, 0x50, 0x80}),
             QByteArray("OggS\0\x02", 6), QByteArray("fLaC\0", 5), QByteArray("G@\0\x10", 4),
             QByteArray("GA\0\x10", 4), QByteArray("RIFF\x24\x08\0\0WAVE", 12),
             QByteArray("\0\0\0\x18"
                        "ftyp",
                 8)})
        EXPECT_EQ(sniffStream(begin, false), StreamContent::Audio) << begin.toHex().constData();
}

TEST(PlaylistTest, AnEmptyAnswerIsNothing)
{
    EXPECT_EQ(sniffStream(QByteArray(), false), StreamContent::Undecided);
    for (const char *bytes : {"", "\n", "   \r\n", "\xEF\xBB\xBF"}) {
        const StreamContent content = sniffStream(bytes, true);
        EXPECT_EQ(content, StreamContent::Text) << QByteArray(bytes).toHex().constData();
        EXPECT_FALSE(isPlaylist(content));
    }
}

TEST(PlaylistTest, NeedsNoMoreThanOneKibToDecide)
{
    for (const QByteArray &unit : {QByteArray("x"), QByteArray("\n"), QByteArray(" "),
             QByteArray("#"), QByteArray("<!--"), QByteArray("# c\n"), QByteArray("<?xml "),
             QByteArray("\xC3"), QByteArray("\xEF\xBB\xBF"), QByteArray("[")}) {
        const QByteArray bytes = unit.repeated(1024).left(1024);
        EXPECT_NE(sniffStream(bytes, false), StreamContent::Undecided) << unit.constData();
        EXPECT_NE(sniffStream(bytes, true), StreamContent::Undecided) << unit.constData();
        EXPECT_EQ(sniffStream(bytes, false), sniffStream(bytes + bytes, false)) << unit.constData();
    }
}

TEST(PlaylistTest, AWholeAnswerIsAlwaysDecided)
{
    for (const char *bytes : {"#", "#EXTM3U", "#EXT", "<", "<?xml", "[", "[play", "h", "http", "I",
             "\xEF", "\xEF\xBB", "ID3", "{"})
        EXPECT_NE(sniffStream(bytes, true), StreamContent::Undecided) << bytes;
    EXPECT_EQ(sniffStream("#EXTM3U", true), StreamContent::M3u);
    EXPECT_EQ(sniffStream("#EXTM3U", false), StreamContent::Undecided);
}

TEST(PlaylistTest, ReadsPlainM3u)
{
    EXPECT_EQ(m3u("http://h/a\nhttps://h:8000/b;stream.mp3?x=1&y=2\n"),
        list({"http://h/a", "https://h:8000/b;stream.mp3?x=1&y=2"}));
    EXPECT_EQ(m3u("http://h/a"), list({"http://h/a"}));
    EXPECT_EQ(m3u(""), QStringList());
}

TEST(PlaylistTest, ReadsExtendedM3u)
{
    EXPECT_EQ(m3u("#EXTM3U\n#EXTINF:-1,http://title/\nhttp://h/a\n#EXTINF:-1,B\n\nhttp://h/b\n"
                  "# comment http://h/c\n#http://h/d\n"),
        list({"http://h/a", "http://h/b"}));
}

TEST(PlaylistTest, ReadsEveryEndOfLine)
{
    for (const char *end : {"\n", "\r\n", "\r", "\n\n", "\r\n\r\n", " \n", "\t\r\n"}) {
        const QByteArray eol(end);
        EXPECT_EQ(m3u("\xEF\xBB\xBF#EXTM3U" + eol + "#EXTINF:-1,A" + eol + "http://h/a" + eol + "#c"
                      + eol + " http://h/b" + eol + "http://h/c"),
            list({"http://h/a", "http://h/b", "http://h/c"}));
        EXPECT_EQ(pls("\xEF\xBB\xBF[playlist]" + eol + "File1=http://h/a" + eol + "Title1=A" + eol
                      + "File2=http://h/b" + eol),
            list({"http://h/a", "http://h/b"}));
        EXPECT_EQ(pls("[Reference]" + eol + "Ref1=http://h/a" + eol + "Ref2=http://h/b" + eol),
            list({"http://h/a", "http://h/b"}));
    }
    EXPECT_EQ(m3u("\xEF\xBB\xBFhttp://h/a\r\n"), list({"http://h/a"}));
}

TEST(PlaylistTest, ResolvesRelativeAddresses)
{
    EXPECT_EQ(m3u("a.mp3\n/b.mp3\n../c.mp3\n//other.example/d\n?e\n./f g.mp3\n"),
        list({"http://radio.example/dir/a.mp3", "http://radio.example/b.mp3",
            "http://radio.example/c.mp3", "http://other.example/d",
            "http://radio.example/dir/list?e", "http://radio.example/dir/f%20g.mp3"}));
    EXPECT_EQ(addresses("//h/a\n", StreamContent::M3u, QUrl(QStringLiteral("https://s.example/l"))),
        list({"https://h/a"}));
    EXPECT_EQ(pls("[playlist]\nFile1=a.mp3\n"), list({"http://radio.example/dir/a.mp3"}));
    EXPECT_EQ(asx("<asx><entry><ref href='a.mp3'/></entry></asx>"),
        list({"http://radio.example/dir/a.mp3"}));
    EXPECT_EQ(xspf("<playlist><trackList><track><location>a.mp3</location></track></trackList>"
                   "</playlist>"),
        list({"http://radio.example/dir/a.mp3"}));
}

TEST(PlaylistTest, EncodesWhatAnAddressMayNotHave)
{
    EXPECT_EQ(
        m3u("http://h/a b%20c\xC3\xA9?q=%26 x\n"), list({"http://h/a%20b%20c%C3%A9?q=%26%20x"}));
    EXPECT_EQ(m3u("http://h/caf\xE9\n"), list({"http://h/caf%E9"}));
}

TEST(PlaylistTest, LeavesOutWhatIsNeitherHttpNorHttps)
{
    for (const char *address :
        {"file:///etc/passwd", "FILE:///etc/passwd", "mms://h/a", "rtsp://h/a", "rtmp://h/a",
            "javascript:alert(1)", "data:audio/mpeg,x", "ftp://h/a", "http://", "https:///a",
            "http:", "httpx://h/a", "", "   ", "C:\\Music\\a.mp3", "D:/a.mp3"})
        for (const QStringList &found : inEveryPlaylist(address))
            EXPECT_EQ(found, QStringList()) << address;
}

TEST(PlaylistTest, LeavesOutAnAddressOfTenKib)
{
    for (const QStringList &found : inEveryPlaylist("http://h/" + QByteArray(10 * 1024, 'a')))
        EXPECT_EQ(found, QStringList());
    for (const QStringList &found : inEveryPlaylist("http://h/" + QByteArray(1000, 'a')))
        EXPECT_EQ(found.size(), 1);
    EXPECT_EQ(
        m3u("http://h/" + QByteArray(10 * 1024, 'a') + "\nhttp://h/b\n"), list({"http://h/b"}));
}

TEST(PlaylistTest, IgnoresABaseThatIsNoAddress)
{
    EXPECT_EQ(addresses("a.mp3\nhttp://h/b\n", StreamContent::M3u, QUrl()), list({"http://h/b"}));
    EXPECT_EQ(addresses("a.mp3\n/etc/passwd\n", StreamContent::M3u,
                  QUrl(QStringLiteral("file:///etc/x.m3u"))),
        QStringList());
}

TEST(PlaylistTest, ReadsPlsInAnyCaseAndOrder)
{
    EXPECT_EQ(
        pls("[PLAYLIST]\nVersion=2\nFILE2=http://h/b\nLength1=-1\ntitle2=B\nfile1=http://h/a\n"
            "File10=http://h/j\nnumberofentries=3\n"),
        list({"http://h/b", "http://h/a", "http://h/j"}));
}

TEST(PlaylistTest, ReadsPlsWithBlanksAroundTheEqualsSign)
{
    EXPECT_EQ(pls("[playlist]\nFile1 = http://h/a \n\tFile2\t=\thttp://h/b\t\n File3= http://h/c"),
        list({"http://h/a", "http://h/b", "http://h/c"}));
}

TEST(PlaylistTest, ReadsPlsWithoutHeaderOrCount)
{
    EXPECT_EQ(pls("File1=http://h/a\nFile2=http://h/b\n"), list({"http://h/a", "http://h/b"}));
    EXPECT_EQ(pls("[playlist]\nNumberOfEntries=1\nFile1=http://h/a\nFile2=http://h/b\n"),
        list({"http://h/a", "http://h/b"}));
    EXPECT_EQ(sniffStream("File1=http://h/a\nTitle1=A\n", true), StreamContent::Pls);
    EXPECT_EQ(sniffStream("NumberOfEntries=1\nFile1=http://h/a\n", true), StreamContent::Pls);
}

TEST(PlaylistTest, KeepsAnEqualsSignInAPlsAddress)
{
    EXPECT_EQ(pls("[playlist]\nFile1=http://h/a?x=1&y==2\n"), list({"http://h/a?x=1&y==2"}));
}

TEST(PlaylistTest, SkipsPlsLinesThatAreNoFile)
{
    EXPECT_EQ(pls("[playlist]\nFile\nFile=\n=http://h/x\nFile1\nFile3=\nFilename=http://h/y\n"
                  "Title1=http://h/t\nFile2=http://h/b\n"),
        list({"http://h/b"}));
}

TEST(PlaylistTest, ReadsAsxInAnyCase)
{
    EXPECT_EQ(
        asx("<ASX VERSION=\"3.0\"><TITLE>T</TITLE><ENTRY><REF HREF=\"http://h/a\"/></ENTRY></ASX>"),
        list({"http://h/a"}));
    EXPECT_EQ(asx("<Asx><Entry><Ref Href = 'http://h/a' /></Entry></Asx>"), list({"http://h/a"}));
    EXPECT_EQ(
        asx("<asx><entry>\n<ref\n\thref=\"http://h/a\"\n/></entry></asx>"), list({"http://h/a"}));
    EXPECT_EQ(asx("<asx><entry><ref href=http://h/a /></entry></asx>"), list({"http://h/a"}));
    EXPECT_EQ(asx("<asx><entry><ref href=\" http://h/a \"/></entry></asx>"), list({"http://h/a"}));
}

TEST(PlaylistTest, ReadsEntitiesInAsx)
{
    EXPECT_EQ(asx("<asx><ref href=\"http://h/a?x=1&amp;y=2&#38;z=3&#x26;w=4\"/></asx>"),
        list({"http://h/a?x=1&y=2&z=3&w=4"}));
    EXPECT_EQ(asx("<asx><ref href=\"http://h/a?x=1&y=2\"/></asx>"), list({"http://h/a?x=1&y=2"}));
    EXPECT_EQ(asx("<asx><ref href=\"http://h/a&amp;amp;b\"/></asx>"), list({"http://h/a&amp;b"}));
}

TEST(PlaylistTest, ReadsAsxWithMissingClosingTags)
{
    EXPECT_EQ(asx("<asx version=\"3.0\">\n<entry>\n<title>Rock & Roll\n<ref href=\"http://h/a\">\n"
                  "<entry><ref href=\"http://h/b\">\n"),
        list({"http://h/a", "http://h/b"}));
    EXPECT_EQ(asx("<asx><entry><ref href=\"http://h/a\"/><ref href=\"http://h/b").value(0),
        QStringLiteral("http://h/a"));
}

TEST(PlaylistTest, FollowsAnAsxThatNamesAnother)
{
    EXPECT_EQ(asx("<asx><entryref href=\"http://h/other.asx\"/><entry><ref "
                  "href='http://h/a'/></entry></asx>"),
        list({"http://h/other.asx", "http://h/a"}));
    EXPECT_EQ(
        asx("<ASX><ENTRYREF HREF='http://h/other.asx' /></ASX>"), list({"http://h/other.asx"}));
}

TEST(PlaylistTest, TakesOnlyReferencesFromAnAsx)
{
    EXPECT_EQ(asx("<asx><moreinfo href=\"http://h/info\"/><banner href='http://h/b.gif'/>"
                  "<base href=\"http://h/base/\"/><logo href=\"http://h/l\"/>"
                  "<!-- <ref href=\"http://h/old\"/> --><reference href=\"http://h/no\"/>"
                  "<entry><ref href=\"http://h/a\"/></entry></asx>"),
        list({"http://h/a"}));
    EXPECT_EQ(
        asx("<asx><ref xhref=\"http://h/no\" href=\"http://h/a\"/></asx>"), list({"http://h/a"}));
    EXPECT_EQ(asx("<asx><ref title=\"a > b href='http://h/no'\" href=\"http://h/a\"/></asx>"),
        list({"http://h/a"}));
}

TEST(PlaylistTest, ReadsReferencesInTheFormOfPls)
{
    EXPECT_EQ(pls("[Reference]\r\nRef1=http://h/a?MSWMExt=.asf\r\nRef2=http://h/b\r\n"),
        list({"http://h/a?MSWMExt=.asf", "http://h/b"}));
    EXPECT_EQ(pls("[REFERENCE]\nREF1 = http://h/a\n"), list({"http://h/a"}));
}

TEST(PlaylistTest, ReadsXspf)
{
    const QByteArray tracks = "<title>http://h/no</title><info>http://h/no</info><trackList>\n"
                              "<track><title>A</title><location>http://h/a</location></track>\n"
                              "<track><location>\n  https://h/b?x=1&amp;y=2 \n</location>"
                              "<image>http://h/no</image></track></trackList>";
    for (const QByteArray &begin : {QByteArray("<playlist>"),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<playlist version=\"1\" "
                        "xmlns=\"http://xspf.org/ns/0/\">"),
             QByteArray("\xEF\xBB\xBF<?xml version='1.0'?><!-- by hand --><playlist>")})
        EXPECT_EQ(
            xspf(begin + tracks + "</playlist>"), list({"http://h/a", "https://h/b?x=1&y=2"}));
}

TEST(PlaylistTest, ReadsXspfWithAPrefix)
{
    EXPECT_EQ(
        xspf("<?xml version=\"1.0\"?><x:playlist xmlns:x=\"http://xspf.org/ns/0/\"><x:trackList>"
             "<x:track><x:location>http://h/a</x:location></x:track></x:trackList></x:playlist>"),
        list({"http://h/a"}));
}

TEST(PlaylistTest, ReadsXspfWithCdata)
{
    EXPECT_EQ(
        xspf("<playlist><trackList><track><location><![CDATA[http://h/a?x=1&y=2]]></location>"
             "</track><track><location> <![CDATA[ http://h/b ]]> </location></track></trackList>"
             "</playlist>"),
        list({"http://h/a?x=1&y=2", "http://h/b"}));
}

TEST(PlaylistTest, ReadsEncodedAddressesInXspf)
{
    EXPECT_EQ(
        xspf("<playlist><trackList><track><location>http://h/a%20b/%C3%A9?q=%26&amp;r=&#49;&lt;"
             "</location></track></trackList></playlist>"),
        list({"http://h/a%20b/%C3%A9?q=%26&r=1%3C"}));
}

TEST(PlaylistTest, LeavesOutCommentsInXspf)
{
    EXPECT_EQ(xspf("<playlist><trackList><!-- <track><location>http://h/old</location></track> -->"
                   "<track><location>http://h/a</location></track></trackList></playlist>"),
        list({"http://h/a"}));
}

TEST(PlaylistTest, ReadsWhatComesBeforeTheDamageOfAnXspf)
{
    EXPECT_EQ(xspf("<playlist><trackList><track><location>http://h/a</location></track><track>"
                   "<title>Rock & Roll</wrong><location>"),
        list({"http://h/a"}));
}

TEST(PlaylistTest, ExpandsNoEntitiesOfAnXspfsOwn)
{
    QByteArray laughs
        = "<?xml version=\"1.0\"?><!DOCTYPE playlist [<!ENTITY a \"http://h/aaaaaaaa\">";
    for (char c = 'b'; c <= 'k'; ++c) {
        const QByteArray before = QByteArray("&") + static_cast<char>(c - 1) + ";";
        laughs += QByteArray("<!ENTITY ") + c + " \"" + before.repeated(10) + "\">";
    }
    laughs += "]><playlist><trackList><track><location>&k;</location></track>"
              "<track><location>http://h/a</location></track></trackList></playlist>";
    QElapsedTimer time;
    time.start();
    for (const QString &address : xspf(laughs))
        EXPECT_LE(address.size(), 4096);
    for (const QString &address :
        xspf(
            "<!DOCTYPE x [<!ENTITY f SYSTEM \"file:///etc/hostname\">]><playlist><trackList><track>"
            "<location>http://h/&f;</location></track></trackList></playlist>"))
        EXPECT_TRUE(address == QLatin1String("http://h/") || address.contains(QLatin1String("f;")))
            << address.toStdString();
    EXPECT_LT(time.elapsed(), 5000);
}

TEST(PlaylistTest, HasAtMostTwoHundredEntries)
{
    QByteArray lines;
    QByteArray files = "[playlist]\n";
    QByteArray refs = "<asx>";
    QByteArray tracks = "<playlist><trackList>";
    for (int i = 1; i <= 300; ++i) {
        const QByteArray address = "http://h/" + QByteArray::number(i);
        lines += address + "\n";
        files += "File" + QByteArray::number(i) + "=" + address + "\n";
        refs += "<entry><ref href='" + address + "'/></entry>";
        tracks += "<track><location>" + address + "</location></track>";
    }
    for (const QStringList &found :
        {m3u(lines), pls(files), asx(refs + "</asx>"), xspf(tracks + "</trackList></playlist>")}) {
        ASSERT_EQ(found.size(), PlaylistLimits::MaxEntries);
        EXPECT_EQ(found.first(), QStringLiteral("http://h/1"));
        EXPECT_EQ(found.last(), QStringLiteral("http://h/200"));
    }
}

TEST(PlaylistTest, WhatIsLeftOutIsNoEntry)
{
    EXPECT_EQ(m3u(QByteArray("mms://h/a\n").repeated(300) + "http://h/a\n"), list({"http://h/a"}));
}

TEST(PlaylistTest, ReadsNoMoreThanItsFirst256Kib)
{
    const QByteArray comment = "#" + QByteArray(1022, 'x') + "\n";
    EXPECT_EQ(m3u("http://h/a\n" + comment.repeated(250) + "http://h/b\n"),
        list({"http://h/a", "http://h/b"}));
    EXPECT_EQ(m3u("http://h/a\n" + comment.repeated(256) + "http://h/b\n"), list({"http://h/a"}));
    EXPECT_EQ(pls("File1=http://h/a\n" + comment.repeated(256) + "File2=http://h/b\n"),
        list({"http://h/a"}));
    const QByteArray xml = "<!--" + QByteArray(PlaylistLimits::MaxBytes, 'x') + "-->";
    EXPECT_EQ(asx("<asx><ref href='http://h/a'/>" + xml + "<ref href='http://h/b'/></asx>"),
        list({"http://h/a"}));
    EXPECT_EQ(xspf("<playlist><trackList><track><location>http://h/a</location></track>" + xml
                  + "<track><location>http://h/b</location></track></trackList></playlist>"),
        list({"http://h/a"}));
}

TEST(PlaylistTest, Utf16IsNoPlaylist)
{
    for (const bool bigEndian : {false, true}) {
        for (const char *text : {"#EXTM3U\r\n#EXTINF:-1,A\r\nhttp://h/a\r\n",
                 "<asx><ref href=\"http://h/a\"/></asx>", "[playlist]\r\nFile1=http://h/a\r\n"})
            EXPECT_EQ(sniffStream(utf16(text, bigEndian), true), StreamContent::Audio);
    }
}

TEST(PlaylistTest, TakesNoLocationButATracksFromXspf)
{
    EXPECT_EQ(xspf("<playlist><location>http://h/self.xspf</location><attribution>"
                   "<location>http://h/original.xspf</location></attribution><trackList><track>"
                   "<location>http://h/a</location></track></trackList>"
                   "<location>http://h/self.xspf</location></playlist>"),
        list({"http://h/a"}));
}

TEST(PlaylistTest, ReadsNoAddressThatItsBoundCutsInTwo)
{
    const QByteArray address = "http://h/abcdefghij";
    const QByteArray comment
        = "#" + QByteArray(PlaylistLimits::MaxBytes - address.size(), 'x') + "\n";
    EXPECT_EQ(m3u("http://h/1\n" + comment.mid(11) + address + "\n"), list({"http://h/1"}));
    EXPECT_EQ(m3u(comment.left(100) + "\n" + address), list({"http://h/abcdefghij"}));
}

TEST(PlaylistTest, OtherContentHasNoAddresses)
{
    for (const StreamContent content : {StreamContent::Undecided, StreamContent::Audio,
             StreamContent::Hls, StreamContent::WebPage, StreamContent::Text})
        EXPECT_EQ(addresses("http://h/a\n", content), QStringList());
}

TEST(PlaylistTest, HostileTextTakesNoTime)
{
    QElapsedTimer time;
    time.start();
    for (const QByteArray &unit : {QByteArray("<"), QByteArray("<ref "), QByteArray("<ref href="),
             QByteArray("<ref href='"), QByteArray("<!--"), QByteArray("&"), QByteArray("\""),
             QByteArray("<location>"), QByteArray("<a>"), QByteArray("["), QByteArray("File1="),
             QByteArray("File1=http://h/a\n"), QByteArray("\r"), QByteArray("\0", 1),
             QByteArray("<![CDATA["), QByteArray("&amp;"), QByteArray("#\n")}) {
        const QByteArray text = unit.repeated(PlaylistLimits::MaxBytes / unit.size());
        for (const StreamContent content :
            {StreamContent::M3u, StreamContent::Pls, StreamContent::Asx, StreamContent::Xspf})
            EXPECT_LE(parsePlaylist(text, content, Base).size(), PlaylistLimits::MaxEntries);
        EXPECT_LE(asx("<asx><ref href='http://h/" + text + "'/>" + text).size(), 200);
        EXPECT_LE(xspf("<playlist><trackList><track><location>" + text).size(), 200);
    }
    EXPECT_LT(time.elapsed(), 20000);
}
