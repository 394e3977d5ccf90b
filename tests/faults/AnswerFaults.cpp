// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Fault.h"

using namespace script;

namespace {

Script healthy()
{
    return {head(), live(media::mp3())};
}

Site always(const Script &script)
{
    return {{{"/", {script}}}};
}

Script refusal(int code, const QByteArray &more = {})
{
    return {answer(code, "no", "text/plain", more)};
}

Script redirect(const QByteArray &to)
{
    return refusal(302, "Location: " + to + "\r\n");
}

/// A live stream in chunks, of which the last is malformed.
Step brokenChunks(double seconds)
{
    return [seconds](Line &line) {
        const QByteArray &bytes = media::mp3().bytes;
        const int size = static_cast<int>(media::mp3().bytesPerSecond() / 4);
        const QByteArray chunk = QByteArray::number(size, 16) + "\r\n" + bytes.left(size) + "\r\n";
        for (int i = 0; i < 16; ++i) {
            if (!line.send(chunk))
                return false;
        }
        for (int i = 0; i < seconds * 4; ++i) {
            if (!line.wait(0.25) || !line.send(chunk))
                return false;
        }
        line.markFault();
        return line.send("ZZZ\r\nthis is no chunk\r\n");
    };
}

} // namespace

std::vector<Fault> answerFaults()
{
    return {
        {"404", told("404|no longer|not there").within(5), 40, [] { return always(refusal(404)); },
            true},
        {"410", told("410|no longer|not there").within(5), 40, [] { return always(refusal(410)); }},
        {"403", told("403|refused"), 40, [] { return always(refusal(403)); }},
        {"500", told("500|refused"), 40, [] { return always(refusal(500)); }},
        {"503 three times at the start", sounds(), 12,
            [] {
                return Site {{{"/", {refusal(503), refusal(503), refusal(503), healthy()}}}};
            }},
        {"503 three times after a break", sounds().silentFor(9), 30,
            [] {
                return Site {{{"/",
                    {{head(), live(media::mp3(), 6), close()}, refusal(503), refusal(503),
                        refusal(503), healthy()}}}};
            }},
        {"503 with Retry-After of two seconds", sounds().within(5), 10,
            [] {
                return Site {{{"/", {refusal(503, "Retry-After: 2\r\n"), healthy()}}}};
            },
            true},
        {"404 for ever after a break", triesOn("Trying again|Trying another"), 30,
            [] {
                return Site {{{"/", {{head(), live(media::mp3(), 6), close()}, refusal(404)}}}};
            }},
        {"503 with Retry-After of an hour after a break",
            triesOn("Trying again|busy|minutes|later"), 25,
            [] {
                return Site {{{"/",
                    {{head(), live(media::mp3(), 6), close()},
                        refusal(503, "Retry-After: 3600\r\n")}}}};
            }},
        {"redirect loop", told("address to address|redirect").connecting(200), 40,
            [] { return always(redirect("http://radio.test/")); }},
        // Not "too many redirects": each of these is reported for what it is.
        {"redirect to a file", told("^(?!.*address to address)"), 40,
            [] { return always(redirect("file:///etc/passwd")); }},
        {"https leads to http", told("safe|secure|encrypt"), 40,
            [] {
                Site site = always(healthy());
                site.url = "https://safe.test/";
                site.safe = true;
                site.forbidden = {"/"};
                return site;
            }},
        {"a head without end", told("^(?!.*(address to address|Failed writing))"), 40,
            [] {
                return always({send("HTTP/1.1 200 OK\r\n"),
                    flood("X-Padding: " + QByteArray(1000, 'x') + "\r\n", 500000)});
            }},
        {"a head of a megabyte", told("^(?!.*(address to address|Failed writing))"), 40,
            [] {
                QByteArray lines;
                for (int i = 0; i < 1000; ++i)
                    lines += "X-Padding-" + QByteArray::number(i) + ": " + QByteArray(1000, 'x')
                        + "\r\n";
                return always({head("audio/mpeg", lines), live(media::mp3())});
            }},
        {"no HTTP at all", told("^(?!.*Received HTTP/0.9)"), 40,
            [] { return always({live(media::mp3())}); }},
        {"no content type", sounds().within(3), 8,
            [] {
                return always(
                    {send("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n"), live(media::mp3())});
            },
            true},
        {"a wrong content type", sounds().within(3), 8,
            [] {
                return always({head("text/html"), live(media::mp3())});
            }},
        {"\"ICY 200 OK\" in place of HTTP", sounds().within(3), 8,
            [] {
                return always({send("ICY 200 OK\r\nicy-name: Old\r\ncontent-type: audio/mpeg\r\n"
                                    "\r\n"),
                    live(media::mp3())});
            }},
        {"an empty answer", told("."), 40, [] { return always({answer(200)}); }},
        {"a web page", told("web page").within(5), 40,
            [] {
                return always({answer(200,
                    "<!DOCTYPE html><html><head><title>Log in</title></head>"
                    "<body>Pay first</body></html>",
                    "text/html")});
            },
            true},
        {"text for ever", told("no audio|nothing to hear"), 40,
            [] {
                return always({head("text/plain"), flood("All work and no play. ", 20000)});
            }},
        {"the content length of a station is reached", sounds(), 25,
            [] {
                const int bytes = static_cast<int>(10 * media::mp3().bytesPerSecond());
                const QByteArray length = "Content-Length: " + QByteArray::number(bytes) + "\r\n";
                return Site {
                    {{"/", {{head("audio/mpeg", length), live(media::mp3(), 20)}, healthy()}}}};
            },
            true},
        {"a content length of the whole world", sounds(), 18,
            [] {
                return Site {{{"/",
                    {{head("audio/mpeg", "Content-Length: 9223372036854775807\r\n"),
                         live(media::mp3(), 8), close()},
                        healthy()}}}};
            }},
        {"two content lengths", sounds().within(10), 18,
            [] {
                return Site {{{"/",
                    {{head("audio/mpeg", "Content-Length: 5\r\nContent-Length: 500\r\n"),
                         live(media::mp3(), 8)},
                        healthy()}}}};
            }},
        {"chunks that are none", sounds(), 18,
            [] {
                return Site {{{"/",
                    {{head("audio/mpeg", "Transfer-Encoding: chunked\r\n"), brokenChunks(6)},
                        healthy()}}}};
            }},
        {"a body that claims to be compressed", sounds().within(10), 18,
            [] {
                return Site {{{"/",
                    {{head("audio/mpeg", "Content-Encoding: gzip\r\n"), live(media::mp3())}}}}};
            }},
        // The player takes a quarter of the audio for titles.
        {"ICY metadata where there is none", sounds().silentFor(3), 25,
            [] {
                return always({head("audio/mpeg", "icy-metaint: 16000\r\n"), live(media::mp3())});
            }},
        {"ICY metadata of the greatest length", sounds(), 15,
            [] {
                return always({head("audio/mpeg", "icy-metaint: 8000\r\n"),
                    liveWithTitles(media::mp3(), 8000, media::garbage(255 * 16))});
            }},
        {"an ICY interval of two gigabytes", sounds(), 10,
            [] {
                return always(
                    {head("audio/mpeg", "icy-metaint: 2147483647\r\n"), live(media::mp3())});
            }},
    };
}
