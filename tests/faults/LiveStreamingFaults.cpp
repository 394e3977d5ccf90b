// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Fault.h"

#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

using namespace script;

namespace {

constexpr double SegmentSeconds = 2;
constexpr int Window = 5;

const QList<QByteArray> &segmentBytes()
{
    static const QList<QByteArray> pieces = media::segments(media::aac());
    return pieces;
}

/// The content of a live playlist at some age.
struct Live {
    int first = 0; ///< number of the first segment
    bool ended = false;
    QByteArray prefix = "s"; ///< of the segments' URLs
    QByteArray more {}; ///< lines before the segments
    int discontinuity = -1; ///< the number of the first segment of other content

    QByteArray text() const
    {
        QByteArray lines = "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:2\n"
                           "#EXT-X-MEDIA-SEQUENCE:"
            + QByteArray::number(first) + "\n" + more;
        for (int i = first; i < first + Window; ++i) {
            if (i == discontinuity)
                lines += "#EXT-X-DISCONTINUITY\n";
            lines += "#EXTINF:2.0,\n" + prefix + QByteArray::number(i) + ".aac\n";
        }
        return lines + (ended ? "#EXT-X-ENDLIST\n" : "");
    }
};

int firstAt(double age)
{
    return static_cast<int>(age / SegmentSeconds);
}

Step playlist(const std::function<QByteArray(double age)> &text)
{
    return answer(text, "application/vnd.apple.mpegurl");
}

Script segment(int number)
{
    return {answer(200, segmentBytes().at(number % segmentBytes().size()), "audio/aac")};
}

/// A station whose playlist is \a text(age), with segments for two minutes.
Site station(const std::function<QByteArray(double age)> &text)
{
    Site site;
    site.pages["/"] = {{playlist(text)}};
    for (int i = 0; i < 60; ++i)
        site.pages["/s" + QByteArray::number(i) + ".aac"] = {segment(i)};
    return site;
}

QByteArray healthyText(double age)
{
    return Live {firstAt(age)}.text();
}

/// From eight to sixteen seconds of age the playlist is \a text(age).
Site troubled(const std::function<QByteArray(double age)> &text)
{
    return station(
        [text](double age) { return age > 8 && age < 16 ? text(age) : healthyText(age); });
}

QByteArray variants()
{
    return "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=128000\nbest\n"
           "#EXT-X-STREAM-INF:BANDWIDTH=64000\nother\n";
}

/// A station with two variants, of which the better one disappears at some age.
Site withVariants(double bestUntil)
{
    Site site = station(healthyText);
    site.pages["/"] = {{answer(200, variants())}};
    site.pages["/other"] = {{playlist(healthyText)}};
    site.pages["/best"] = {{[bestUntil](Line &line) {
        if (line.age() < bestUntil)
            return playlist(healthyText)(line);
        return answer(404)(line);
    }}};
    return site;
}

/// The URL of a local file that would be audible if the player opened it.
QByteArray audibleFile()
{
    static const QTemporaryDir folder;
    static const QString name = [] {
        QFile file(folder.filePath(QStringLiteral("tone.mp3")));
        if (file.open(QIODevice::WriteOnly))
            file.write(media::mp3().bytes);
        return file.fileName();
    }();
    return "file://" + name.toUtf8();
}

} // namespace

std::vector<Fault> liveStreamingFaults()
{
    std::vector<Fault> faults {
        {"HLS in order", sounds(), 20, [] { return station(healthyText); }, true},
        {"HLS without segments, for ever", told("."), 40,
            [] {
                return station([](double) {
                    return QByteArray("#EXTM3U\n#EXT-X-TARGETDURATION:2\n"
                                      "#EXT-X-MEDIA-SEQUENCE:0\n");
                });
            }},
        {"HLS without segments at first", sounds().within(12), 25,
            [] {
                return station([](double age) {
                    return age > 5 ? healthyText(age)
                                   : QByteArray("#EXTM3U\n#EXT-X-TARGETDURATION:2\n"
                                                "#EXT-X-MEDIA-SEQUENCE:0\n");
                });
            }},
        {"HLS of a station that ends, and goes on", sounds().silentFor(12), 40,
            [] {
                return troubled([](double) {
                    Live text {4};
                    text.ended = true;
                    return text.text();
                });
            }},
        {"HLS stands still for eight seconds", sounds().silentFor(10), 40,
            [] { return troubled([](double) { return Live {4}.text(); }); }},
        {"HLS stands still for 20 seconds", sounds().silentFor(28), 60,
            [] {
                return station([](double age) {
                    return Live {age > 8 && age < 28 ? 4 : firstAt(age)}.text();
                });
            }},
        {"HLS whose better variant is gone at the start", sounds(), 20,
            [] { return withVariants(0); }},
        {"HLS whose better variant goes in mid-stream", sounds().silentFor(5), 40,
            [] { return withVariants(8); }},
        {"HLS with one segment missing", sounds().silentFor(3), 30,
            [] {
                Site site = station(healthyText);
                site.pages["/s7.aac"] = {{answer(404)}};
                return site;
            }},
        {"HLS with all segments missing", told("404|refused|no longer|not there|nothing"), 40,
            [] {
                Site site;
                site.pages["/"] = {{playlist(healthyText)}};
                return site;
            }},
        {"HLS with a segment that stalls", sounds().silentFor(10), 40,
            [] {
                Site site = station(healthyText);
                site.pages["/s7.aac"] = {{head("audio/aac"), stall()}};
                return site;
            }},
        {"HLS whose format changes at a discontinuity", sounds(), 30,
            [] {
                Site site = station([](double age) {
                    Live text {firstAt(age)};
                    text.discontinuity = 8;
                    return text.text();
                });
                const QList<QByteArray> others = media::segments(media::aacHalfRate());
                for (int i = 8; i < 60; ++i)
                    site.pages["/s" + QByteArray::number(i) + ".aac"]
                        = {{answer(200, others.at(i % others.size()), "audio/aac")}};
                return site;
            }},
        {"HLS whose format changes without a word", sounds(), 30,
            [] {
                Site site = station(healthyText);
                const QList<QByteArray> others = media::segments(media::aacHalfRate());
                for (int i = 8; i < 60; ++i)
                    site.pages["/s" + QByteArray::number(i) + ".aac"]
                        = {{answer(200, others.at(i % others.size()), "audio/aac")}};
                return site;
            }},
        {"HLS whose numbers begin anew", sounds().silentFor(5), 30,
            [] {
                return station(
                    [](double age) { return Live {firstAt(age > 10 ? age - 10 : age)}.text(); });
            }},
        {"HLS whose numbers run away", sounds().silentFor(5), 30,
            [] {
                Site site = station([](double age) {
                    return age < 10 ? healthyText(age) : Live {1000 + firstAt(age - 10)}.text();
                });
                for (int i = 1000; i < 1060; ++i)
                    site.pages["/s" + QByteArray::number(i) + ".aac"] = {segment(i)};
                return site;
            }},
        {"HLS that is encrypted", told("encrypted").within(5), 40,
            [] {
                return station([](double age) {
                    Live text {firstAt(age)};
                    text.more = "#EXT-X-KEY:METHOD=AES-128,URI=\"key\"\n";
                    return text.text();
                });
            },
            true},
        {"HLS with files among its segments", sounds().silentFor(5), 25,
            [] {
                return station([](double age) {
                    return healthyText(age).replace(
                        "#EXT-X-VERSION:3\n", "#EXTINF:2.0,\n" + audibleFile() + "\n");
                });
            }},
        {"HLS with a control character that leads to a file", told("."), 40,
            [] {
                return station([](double) {
                    return "#EXTM3U\n#EXT-X-VERSION:3\x01\n#EXT-X-TARGETDURATION:10\n"
                           "#EXT-X-MEDIA-SEQUENCE:0\n#EXTINF:10.0,\n"
                        + audibleFile() + "\n#EXTINF:10.0,\nhttp://radio.test/never\n";
                });
            }},
        {"HLS whose playlist becomes a web page", sounds().silentFor(10), 40,
            [] {
                return troubled([](double) {
                    return QByteArray("<!DOCTYPE html><html><body>Sorry</body></html>");
                });
            }},
        {"HLS whose playlist is 404 for eight seconds", sounds().silentFor(10), 40,
            [] {
                Site site = station(healthyText);
                site.pages["/"] = {{[](Line &line) {
                    if (line.age() > 8 && line.age() < 16)
                        return answer(404)(line);
                    return playlist(healthyText)(line);
                }}};
                return site;
            }},
        {"HLS whose segments are web pages", told("."), 40,
            [] {
                Site site = station(healthyText);
                for (int i = 0; i < 60; ++i)
                    site.pages["/s" + QByteArray::number(i) + ".aac"]
                        = {{answer(200, "<html><body>Sorry</body></html>", "text/html")}};
                return site;
            }},
    };
    // A playlist with segments of two seconds needs fewer than two requests a second.
    for (Fault &fault : faults)
        fault.expected = fault.expected.connecting(fault.seconds * 2);
    return faults;
}
