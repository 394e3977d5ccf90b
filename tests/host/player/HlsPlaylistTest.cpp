// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/HlsPlaylist.h"

#include "host/player/Playlist.h"

#include <QElapsedTimer>
#include <QStringList>

#include <gtest/gtest.h>

#include <limits>

namespace {

using Milliseconds = std::chrono::milliseconds;

const QUrl Base(QStringLiteral("http://radio.example/live/list.m3u8?token=1"));

HlsPlaylist parse(const QByteArray &text)
{
    return parseHlsPlaylist(text, Base);
}

/// A media playlist of its header lines and \a lines.
HlsPlaylist media(const QByteArray &lines)
{
    return parse("#EXTM3U\n#EXT-X-TARGETDURATION:10\n" + lines);
}

HlsPlaylist master(const QByteArray &lines)
{
    return parse("#EXTM3U\n" + lines);
}

QString text(const QUrl &url)
{
    return QString::fromLatin1(url.toEncoded());
}

QByteArray segments(int count, int seconds = 10)
{
    QByteArray lines;
    for (int i = 0; i < count; ++i)
        lines += "#EXTINF:" + QByteArray::number(seconds) + ",\n" + QByteArray::number(i) + ".ts\n";
    return lines;
}

/// The duration of a segment whose EXTINF has this value.
Milliseconds durationOf(const QByteArray &value)
{
    const HlsPlaylist playlist = media("#EXTINF:" + value + "\na.ts\n");
    if (playlist.segments.size() != 1) {
        ADD_FAILURE() << value.constData();
        return Milliseconds(-1);
    }
    return playlist.segments.first().duration;
}

Milliseconds targetOf(const QByteArray &value)
{
    return parse("#EXTM3U\n#EXT-X-TARGETDURATION:" + value + "\n" + segments(1)).targetDuration;
}

qint64 firstNumber(const QByteArray &value)
{
    const HlsPlaylist playlist = media("#EXT-X-MEDIA-SEQUENCE:" + value + "\n" + segments(3));
    if (playlist.segments.size() != 3) {
        ADD_FAILURE() << value.constData();
        return -1;
    }
    EXPECT_EQ(playlist.segments.last().number, playlist.segments.first().number + 2);
    return playlist.segments.first().number;
}

int bandwidthOf(const QByteArray &attributes)
{
    const HlsPlaylist playlist = master("#EXT-X-STREAM-INF:" + attributes + "\na.m3u8\n");
    if (playlist.variants.size() != 1) {
        ADD_FAILURE() << attributes.constData();
        return -1;
    }
    return playlist.variants.first().bandwidth;
}

int bestOf(std::initializer_list<int> bandwidths)
{
    HlsPlaylist playlist;
    for (const int bandwidth : bandwidths)
        playlist.variants.append({QUrl(QStringLiteral("http://h/%1").arg(bandwidth)), bandwidth});
    const HlsVariant best = playlist.bestVariant();
    EXPECT_EQ(best.url, QUrl(QStringLiteral("http://h/%1").arg(best.bandwidth)));
    return best.bandwidth;
}

} // namespace

TEST(HlsPlaylistTest, ReadsALiveMediaPlaylist)
{
    const HlsPlaylist playlist
        = parse("#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:8\n#EXT-X-MEDIA-SEQUENCE:2680\n\n"
                "#EXTINF:7.975,\nhttps://priv.example/fileSequence2680.ts\n"
                "#EXTINF:7.941,Some title, with a comma\nfileSequence2681.ts?x=1\n"
                "#EXTINF:8,\n/other/fileSequence2682.ts\n");
    EXPECT_FALSE(playlist.isMaster());
    EXPECT_FALSE(playlist.ended);
    EXPECT_FALSE(playlist.encrypted);
    EXPECT_EQ(playlist.targetDuration, Milliseconds(8000));
    ASSERT_EQ(playlist.segments.size(), 3);
    const HlsSegment &first = playlist.segments.at(0);
    EXPECT_EQ(text(first.url), QStringLiteral("https://priv.example/fileSequence2680.ts"));
    EXPECT_EQ(first.number, 2680);
    EXPECT_EQ(first.duration, Milliseconds(7975));
    EXPECT_FALSE(first.discontinuity);
    EXPECT_TRUE(first.map.isEmpty());
    EXPECT_EQ(text(playlist.segments.at(1).url),
        QStringLiteral("http://radio.example/live/fileSequence2681.ts?x=1"));
    EXPECT_EQ(playlist.segments.at(1).number, 2681);
    EXPECT_EQ(text(playlist.segments.at(2).url),
        QStringLiteral("http://radio.example/other/fileSequence2682.ts"));
}

TEST(HlsPlaylistTest, ReadsEveryEndOfLine)
{
    const QByteArray text = "#EXTM3U\n#EXT-X-TARGETDURATION:10\n#EXT-X-MEDIA-SEQUENCE:5\n"
                            "#EXTINF:9.5,\n a.ts \n\n# comment\n#EXTINF:9.5,\nb.ts\n#EXT-X-ENDLIST";
    for (const char *end : {"\n", "\r\n", "\r", "\n\n", " \r\n"}) {
        const HlsPlaylist playlist = parse("\xEF\xBB\xBF" + QByteArray(text).replace("\n", end));
        ASSERT_EQ(playlist.segments.size(), 2);
        EXPECT_EQ(
            playlist.segments.at(0).url, QUrl(QStringLiteral("http://radio.example/live/a.ts")));
        EXPECT_EQ(playlist.segments.at(0).duration, Milliseconds(9500));
        EXPECT_EQ(playlist.segments.at(1).number, 6);
        EXPECT_EQ(playlist.targetDuration, Milliseconds(10000));
        EXPECT_TRUE(playlist.ended);
    }
}

TEST(HlsPlaylistTest, NumbersSegmentsFromTheMediaSequence)
{
    EXPECT_EQ(firstNumber("0"), 0);
    EXPECT_EQ(firstNumber("7"), 7);
    EXPECT_EQ(firstNumber(" 7 "), 7);
    EXPECT_EQ(firstNumber("4294967296"), Q_INT64_C(4294967296));
    EXPECT_EQ(media(segments(1)).segments.first().number, 0);
}

TEST(HlsPlaylistTest, BoundsTheMediaSequence)
{
    for (const char *value : {"-1", "-9223372036854775808", "18446744073709551615",
             "9223372036854775807", "99999999999999999999999999", "x", "", "1x", "0x10", "1e9"})
        EXPECT_GE(firstNumber(value), 0) << value;
}

TEST(HlsPlaylistTest, CountsASegmentItCannotPlay)
{
    const HlsPlaylist playlist
        = media("#EXT-X-MEDIA-SEQUENCE:10\n#EXTINF:10,\nfile:///etc/passwd\n"
                "#EXTINF:10,\na.ts\n#EXTINF:10,\nhttp://\n#EXTINF:10,\nb.ts\n");
    ASSERT_EQ(playlist.segments.size(), 2);
    EXPECT_EQ(playlist.segments.at(0).number, 11);
    EXPECT_EQ(playlist.segments.at(1).number, 13);
}

TEST(HlsPlaylistTest, BoundsTheTargetDuration)
{
    EXPECT_EQ(targetOf("10"), Milliseconds(10000));
    EXPECT_EQ(targetOf(" 10 "), Milliseconds(10000));
    EXPECT_EQ(targetOf("1"), Milliseconds(1000));
    EXPECT_EQ(targetOf("60"), Milliseconds(60000));
    EXPECT_EQ(targetOf("61"), Milliseconds(60000));
    EXPECT_EQ(targetOf("99999999999999999999"), Milliseconds(60000));
    EXPECT_EQ(targetOf("0"), Milliseconds(1000));
    EXPECT_EQ(targetOf("-10"), Milliseconds(1000));
    EXPECT_EQ(targetOf("9.6"), Milliseconds(9600));
    for (const char *value : {"", "x", "nan", "inf", "-inf", "1e300", "4294967297", "2147483648"}) {
        EXPECT_GE(targetOf(value), Milliseconds(1000)) << value;
        EXPECT_LE(targetOf(value), Milliseconds(60000)) << value;
    }
    const HlsPlaylist without = parse("#EXTM3U\n" + segments(2));
    EXPECT_GE(without.targetDuration, Milliseconds(1000));
    EXPECT_LE(without.targetDuration, Milliseconds(60000));
}

TEST(HlsPlaylistTest, ReadsDurationsInEveryForm)
{
    EXPECT_EQ(durationOf("10,"), Milliseconds(10000));
    EXPECT_EQ(durationOf("10"), Milliseconds(10000));
    EXPECT_EQ(durationOf("9.009,Title"), Milliseconds(9009));
    EXPECT_EQ(durationOf(" 9.5 , Title"), Milliseconds(9500));
    EXPECT_EQ(durationOf("10.5 tvg-id=\"a,b\",Title"), Milliseconds(10500));
    EXPECT_EQ(durationOf("0,"), Milliseconds(0));
    EXPECT_EQ(durationOf(".5,"), Milliseconds(500));
}

TEST(HlsPlaylistTest, BoundsDurations)
{
    for (const char *value : {"-1,", "-1e300,", "nan,", "inf,", "-inf,", "1e300,",
             "99999999999999999,", "9223372036854775807,", ",", "", "x,"}) {
        EXPECT_GE(durationOf(value), Milliseconds(0)) << value;
        EXPECT_LE(durationOf(value), Milliseconds(3600 * 1000)) << value;
    }
}

TEST(HlsPlaylistTest, ADurationIsOfTheNextSegmentAlone)
{
    const HlsPlaylist playlist
        = media("#EXTINF:7,\n\n# comment\n#EXT-X-PROGRAM-DATE-TIME:2026-01-01T00:00:00Z\n"
                "a.ts\nb.ts\n");
    ASSERT_GE(playlist.segments.size(), 1);
    EXPECT_EQ(playlist.segments.first().duration, Milliseconds(7000));
    if (playlist.segments.size() > 1) {
        EXPECT_NE(playlist.segments.last().duration, Milliseconds(7000));
    }
}

TEST(HlsPlaylistTest, MarksTheSegmentAfterADiscontinuity)
{
    const HlsPlaylist playlist
        = media("#EXT-X-DISCONTINUITY-SEQUENCE:4\n#EXTINF:10,\na.ts\n"
                "#EXT-X-DISCONTINUITY\n#EXTINF:10,\nb.ts\n#EXTINF:10,\nc.ts\n"
                "#EXTINF:10,\n#EXT-X-DISCONTINUITY\nd.ts\n");
    ASSERT_EQ(playlist.segments.size(), 4);
    EXPECT_FALSE(playlist.segments.at(0).discontinuity);
    EXPECT_TRUE(playlist.segments.at(1).discontinuity);
    EXPECT_FALSE(playlist.segments.at(2).discontinuity);
    EXPECT_TRUE(playlist.segments.at(3).discontinuity);
}

TEST(HlsPlaylistTest, ADiscontinuityOutlivesASegmentItCannotPlay)
{
    const HlsPlaylist playlist
        = media("#EXT-X-DISCONTINUITY\n#EXTINF:10,\nfile:///x\n#EXTINF:10,\na.ts\n");
    ASSERT_EQ(playlist.segments.size(), 1);
    EXPECT_TRUE(playlist.segments.first().discontinuity);
}

TEST(HlsPlaylistTest, AMapIsOfTheSegmentsBehindIt)
{
    const HlsPlaylist playlist
        = media("#EXTINF:10,\na.aac\n#EXT-X-MAP:URI=\"init,1.mp4\"\n#EXTINF:10,\n"
                "b.m4s\n#EXTINF:10,\nc.m4s\n#EXT-X-MAP:BYTERANGE=\"720@0\",URI=\"/i2.mp4\"\n"
                "#EXTINF:10,\nd.m4s\n");
    ASSERT_EQ(playlist.segments.size(), 4);
    EXPECT_TRUE(playlist.segments.at(0).map.isEmpty());
    const QUrl map(QStringLiteral("http://radio.example/live/init,1.mp4"));
    EXPECT_EQ(playlist.segments.at(1).map, map);
    EXPECT_EQ(playlist.segments.at(2).map, map);
    EXPECT_NE(playlist.segments.at(3).map, map);
}

TEST(HlsPlaylistTest, AMapIsFetchedByHttpAlone)
{
    for (const char *uri :
        {"URI=\"file:///etc/passwd\"", "URI=\"data:,x\"", "URI=\"\"", "", "X=1"}) {
        const HlsPlaylist playlist
            = media("#EXT-X-MAP:" + QByteArray(uri) + "\n#EXTINF:10,\na.m4s\n");
        for (const HlsSegment &segment : playlist.segments)
            EXPECT_TRUE(segment.map.isEmpty()) << uri;
    }
}

TEST(HlsPlaylistTest, KnowsSegmentsThatNeedAKey)
{
    EXPECT_TRUE(
        media("#EXT-X-KEY:METHOD=AES-128,URI=\"key.bin\",IV=0x1\n" + segments(1)).encrypted);
    EXPECT_TRUE(media("#EXT-X-KEY:URI=\"k\",METHOD=SAMPLE-AES\n" + segments(1)).encrypted);
    EXPECT_TRUE(media("#EXT-X-KEY:METHOD=AES-128,URI=\"k\"\n" + segments(1)
        + "#EXT-X-KEY:METHOD=NONE\n" + segments(1))
                    .encrypted);
    EXPECT_TRUE(
        media(segments(1) + "#EXT-X-KEY:METHOD=AES-128,URI=\"k\"\n" + segments(1)).encrypted);
}

TEST(HlsPlaylistTest, KnowsSegmentsThatNeedNoKey)
{
    EXPECT_FALSE(media("#EXT-X-KEY:METHOD=NONE\n" + segments(1)).encrypted);
    EXPECT_FALSE(media("#EXT-X-KEY: METHOD = NONE \n" + segments(1)).encrypted);
    EXPECT_FALSE(media(segments(1)).encrypted);
    EXPECT_FALSE(
        media("#EXT-X-KEY:METHOD=AES-128,URI=\"k\"\n#EXT-X-KEY:METHOD=NONE\n" + segments(1))
            .encrypted);
    EXPECT_FALSE(media(segments(1) + "#EXT-X-KEY:METHOD=AES-128,URI=\"k\"\n").encrypted);
    EXPECT_FALSE(media("#EXT-X-KEYS:METHOD=AES-128\n" + segments(1)).encrypted);
}

TEST(HlsPlaylistTest, EndsWithItsTagAlone)
{
    EXPECT_TRUE(media(segments(1) + "#EXT-X-ENDLIST\n").ended);
    EXPECT_TRUE(media("#EXT-X-ENDLIST\n" + segments(1)).ended);
    EXPECT_FALSE(media(segments(1) + "#EXT-X-ENDLISTS\n").ended);
    EXPECT_FALSE(media(segments(1) + "# #EXT-X-ENDLIST\n").ended);
    EXPECT_FALSE(media("#EXT-X-PLAYLIST-TYPE:EVENT\n" + segments(1)).ended);
}

TEST(HlsPlaylistTest, ReadsAMasterPlaylist)
{
    const HlsPlaylist playlist = master(
        "#EXT-X-INDEPENDENT-SEGMENTS\n"
        "#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"a\",NAME=\"A\",URI=\"audio.m3u8\"\n"
        "#EXT-X-I-FRAME-STREAM-INF:BANDWIDTH=100,URI=\"iframes.m3u8\"\n"
        "#EXT-X-STREAM-INF:BANDWIDTH=128000,CODECS=\"mp4a.40.2\"\n\n# comment\nhigh/index.m3u8\n"
        "#EXT-X-STREAM-INF:CODECS=\"mp4a.40.5,avc1.42\",BANDWIDTH=64000\nhttps://h/low.m3u8\n");
    EXPECT_TRUE(playlist.isMaster());
    EXPECT_TRUE(playlist.segments.isEmpty());
    ASSERT_EQ(playlist.variants.size(), 2);
    EXPECT_EQ(text(playlist.variants.at(0).url),
        QStringLiteral("http://radio.example/live/high/index.m3u8"));
    EXPECT_EQ(playlist.variants.at(0).bandwidth, 128000);
    EXPECT_EQ(text(playlist.variants.at(1).url), QStringLiteral("https://h/low.m3u8"));
    EXPECT_EQ(playlist.variants.at(1).bandwidth, 64000);
}

TEST(HlsPlaylistTest, ReadsAttributesWithCommasInQuotes)
{
    EXPECT_EQ(bandwidthOf("NAME=\"a,BANDWIDTH=9,b\",BANDWIDTH=64000"), 64000);
    EXPECT_EQ(bandwidthOf("AVERAGE-BANDWIDTH=5,BANDWIDTH=64000"), 64000);
    EXPECT_EQ(bandwidthOf("BANDWIDTH=64000,AVERAGE-BANDWIDTH=5"), 64000);
    EXPECT_EQ(bandwidthOf("PROGRAM-ID=1, BANDWIDTH=64000, RESOLUTION=1x1"), 64000);
    EXPECT_EQ(bandwidthOf(" BANDWIDTH = 64000 "), 64000);
    EXPECT_EQ(bandwidthOf("CODECS=\"mp4a.40.2,mp4a.40.5\",X=\"=\",BANDWIDTH=64000"), 64000);
    EXPECT_EQ(bandwidthOf(",,=,A,\"\",BANDWIDTH=64000"), 64000);
}

TEST(HlsPlaylistTest, BoundsBandwidths)
{
    for (const char *attributes : {"BANDWIDTH=-1", "BANDWIDTH=-99999999999999999999",
             "BANDWIDTH=", "BANDWIDTH=x", "CODECS=\"open", "", "CODECS=\"BANDWIDTH=5\""})
        EXPECT_EQ(bandwidthOf(attributes), 0) << attributes;
    for (const char *attributes :
        {"BANDWIDTH=4294967297", "BANDWIDTH=2147483648", "BANDWIDTH=99999999999999999999999"})
        EXPECT_GE(bandwidthOf(attributes), 0) << attributes;
}

TEST(HlsPlaylistTest, AnUnreadablyLargeBandwidthIsNotTakenForASmallOne)
{
    const HlsPlaylist playlist = master("#EXT-X-STREAM-INF:BANDWIDTH=4294967297\nhuge.m3u8\n"
                                        "#EXT-X-STREAM-INF:BANDWIDTH=5000000\nlarge.m3u8\n");
    EXPECT_EQ(playlist.bestVariant().bandwidth, 5000000);
}

TEST(HlsPlaylistTest, AVariantNeedsAnAddress)
{
    const HlsPlaylist playlist
        = master("#EXT-X-STREAM-INF:BANDWIDTH=1\n#EXT-X-STREAM-INF:BANDWIDTH=2\nb\n"
                 "#EXT-X-STREAM-INF:BANDWIDTH=3\nfile:///etc/passwd\n"
                 "#EXT-X-STREAM-INF:BANDWIDTH=4\nmms://h/x\n"
                 "#EXT-X-STREAM-INF:BANDWIDTH=5\n");
    ASSERT_EQ(playlist.variants.size(), 1);
    EXPECT_EQ(playlist.variants.first().bandwidth, 2);
}

TEST(HlsPlaylistTest, PlaysTheBestVariantThatAudioNeeds)
{
    EXPECT_EQ(bestOf({64000}), 64000);
    EXPECT_EQ(bestOf({64000, 128000, 96000}), 128000);
    EXPECT_EQ(bestOf({128000, 64000}), 128000);
    EXPECT_EQ(bestOf({64000, 128000, 5000000}), 128000);
    EXPECT_EQ(bestOf({8000000, 2000000, 5000000}), 2000000);
    EXPECT_TRUE(HlsPlaylist().bestVariant().url.isEmpty());
}

TEST(HlsPlaylistTest, PlaysAVariantWithoutABandwidthOnlyWhenThereIsNoOther)
{
    EXPECT_EQ(bestOf({0, 64000}), 64000);
    EXPECT_EQ(bestOf({0}), 0);
}

TEST(HlsPlaylistTest, PlaysAStreamThatGoesOnNearItsEnd)
{
    EXPECT_EQ(media(segments(10)).firstSegment(), 7);
    EXPECT_EQ(media(segments(4)).firstSegment(), 1);
    EXPECT_EQ(media(segments(3)).firstSegment(), 0);
    EXPECT_EQ(media(segments(1)).firstSegment(), 0);
    EXPECT_EQ(media("").firstSegment(), 0);
    EXPECT_EQ(HlsPlaylist().firstSegment(), 0);
}

TEST(HlsPlaylistTest, PlaysAWholeStreamFromItsBeginning)
{
    EXPECT_EQ(media(segments(10) + "#EXT-X-ENDLIST\n").firstSegment(), 0);
    EXPECT_EQ(media("#EXT-X-ENDLIST\n").firstSegment(), 0);
}

TEST(HlsPlaylistTest, BoundsTheSegments)
{
    const HlsPlaylist playlist = media(segments(9000) + "#EXT-X-ENDLIST\n");
    EXPECT_EQ(playlist.segments.size(), HlsPlaylist::MaxSegments);
    EXPECT_EQ(playlist.segments.first().number, 0);
}

TEST(HlsPlaylistTest, ALongStreamThatGoesOnKeepsItsNewestSegments)
{
    const HlsPlaylist playlist = media("#EXT-X-MEDIA-SEQUENCE:100\n" + segments(9000));
    EXPECT_EQ(playlist.segments.size(), HlsPlaylist::MaxSegments);
    EXPECT_EQ(playlist.segments.last().number, 100 + 8999);
    EXPECT_EQ(
        text(playlist.segments.last().url), QStringLiteral("http://radio.example/live/8999.ts"));
}

TEST(HlsPlaylistTest, BoundsTheVariants)
{
    const HlsPlaylist playlist
        = master(QByteArray("#EXT-X-STREAM-INF:BANDWIDTH=1\na\n").repeated(1000));
    EXPECT_EQ(playlist.variants.size(), HlsPlaylist::MaxVariants);
}

TEST(HlsPlaylistTest, ReadsAHundredThousandLinesInNoTime)
{
    QElapsedTimer time;
    time.start();
    for (const char *line : {"#EXTINF:10,\n", "#EXT-X-MAP:URI=\"a\"\n", "a.ts\n", "\r", "#\n",
             "#EXT-X-STREAM-INF:BANDWIDTH=1\n", "#EXT-X-KEY:METHOD=AES-128\n",
             "#EXT-X-DISCONTINUITY\n", "#EXT-X-MEDIA-SEQUENCE:9223372036854775807\n"}) {
        const HlsPlaylist playlist = media(QByteArray(line).repeated(100000));
        EXPECT_LE(playlist.segments.size(), HlsPlaylist::MaxSegments);
    }
    media("#EXT-X-STREAM-INF:" + QByteArray("A=\"").repeated(200000) + "\na\n");
    media("#EXT-X-STREAM-INF:" + QByteArray("A=1,").repeated(200000) + "\na\n");
    EXPECT_LT(time.elapsed(), 20000);
}

TEST(HlsPlaylistTest, TakesThePiecesOfAFileForTheFile)
{
    const HlsPlaylist playlist
        = media("#EXT-X-MAP:URI=\"all.mp4\",BYTERANGE=\"700@0\"\n"
                "#EXTINF:10,\n#EXT-X-BYTERANGE:1000@700\nall.mp4\n"
                "#EXTINF:10,\n#EXT-X-BYTERANGE:1000\nall.mp4\n"
                "#EXTINF:10,\n#EXT-X-BYTERANGE:1000@0\nother.mp4\n#EXTINF:10,\nlast.mp4\n");
    ASSERT_EQ(playlist.segments.size(), 3);
    EXPECT_EQ(
        text(playlist.segments.at(0).url), QStringLiteral("http://radio.example/live/all.mp4"));
    EXPECT_TRUE(playlist.segments.at(0).map.isEmpty());
    EXPECT_EQ(playlist.segments.at(0).number, 0);
    EXPECT_EQ(
        text(playlist.segments.at(1).url), QStringLiteral("http://radio.example/live/other.mp4"));
    EXPECT_FALSE(playlist.segments.at(1).map.isEmpty());
    EXPECT_EQ(playlist.segments.at(1).number, 2);
    EXPECT_EQ(playlist.segments.at(2).number, 3);
}

TEST(HlsPlaylistTest, ASegmentThatComesTwiceIsHeardTwice)
{
    EXPECT_EQ(media("#EXTINF:10,\nad.ts\n#EXTINF:10,\nad.ts\n").segments.size(), 2);
}

TEST(HlsPlaylistTest, ReadsNoMoreThanAPlaylistMayHave)
{
    const QByteArray whole = "#EXTM3U\n#EXTINF:10,\na.ts\n";
    const int room = PlaylistLimits::MaxBytes - whole.size();
    const HlsPlaylist cut = parse(whole + QByteArray(room - 6, '#') + "\nhttp://h/cut.ts\n");
    ASSERT_EQ(cut.segments.size(), 1);
    EXPECT_EQ(text(cut.segments.first().url), QStringLiteral("http://radio.example/live/a.ts"));
}

TEST(HlsPlaylistTest, WithoutATargetItsLongestSegmentCounts)
{
    EXPECT_EQ(parse("#EXTM3U\n#EXTINF:6,\na\n#EXTINF:8.5,\nb\n#EXTINF:2,\nc\n").targetDuration,
        Milliseconds(8500));
}

TEST(HlsPlaylistTest, NumbersOnlyGrow)
{
    const HlsPlaylist playlist = media(
        "#EXT-X-MEDIA-SEQUENCE:5\n" + segments(2) + "#EXT-X-MEDIA-SEQUENCE:0\n" + segments(1));
    ASSERT_EQ(playlist.segments.size(), 3);
    EXPECT_EQ(playlist.segments.last().number, 7);
}

TEST(HlsPlaylistTest, OtherTextIsAnEmptyPlaylist)
{
    for (const QByteArray &text : {QByteArray(), QByteArray("\n\n"), QByteArray("#EXTM3U\n"),
             QByteArray("#EXT-X-ENDLIST"), QByteArray(1000, '\0')}) {
        const HlsPlaylist playlist = parse(text);
        EXPECT_FALSE(playlist.isMaster());
        EXPECT_EQ(playlist.firstSegment(), 0);
        EXPECT_TRUE(playlist.bestVariant().url.isEmpty());
    }
}
