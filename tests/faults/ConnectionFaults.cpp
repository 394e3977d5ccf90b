// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Fault.h"
#include "tests/faults/Stage.h"

using namespace script;

namespace {

Script healthy()
{
    return {head(), live(media::mp3())};
}

/// A stream whose first connection runs \a first; every later one is healthy.
Site healedAfter(const Script &first)
{
    return {{{"/", {first, healthy()}}}};
}

/// A stream that breaks after eight seconds, with four seconds of sound buffered.
Site brokenBy(const Step &end)
{
    return healedAfter({head(), live(media::mp3(), 8), end});
}

Site always(const Script &script)
{
    return {{{"/", {script}}}};
}

Action away(double at)
{
    return {at, [](Stage &stage) {
                stage.markFault();
                stage.server().goAway();
            }};
}

Action back(double at)
{
    return {at, [](Stage &stage) { stage.server().comeBack(); }};
}

} // namespace

std::vector<Fault> connectionFaults()
{
    return {
        {"connection refused", told("cannot be reached"), 40,
            [] {
                Site site;
                site.url = "http://refused.test/";
                return site;
            }},
        {"no such name", told("has no address"), 40,
            [] {
                Site site;
                site.url = "http://nameless.test/";
                return site;
            }},
        {"reset at the start, each time", told("lost|reached|answer"), 40,
            [] { return always({reset()}); }},
        {"reset at the start, three times", sounds(), 12,
            [] {
                return Site {{{"/", {{reset()}, {reset()}, {reset()}, healthy()}}}};
            }},
        {"reset after 100 bytes", sounds().within(5), 12,
            [] {
                return healedAfter({head(), send(media::mp3().bytes.left(100)), reset()});
            },
            true},
        {"reset in mid-stream", sounds(), 18, [] { return brokenBy(reset()); }, true},
        {"closed in mid-stream", sounds(), 18, [] { return brokenBy(close()); }, true},
        {"closed every six seconds", sounds(), 40,
            [] {
                return always({head(), live(media::mp3(), 6), close()});
            }},
        {"closed right after the head, three times", sounds(), 12,
            [] {
                const Script empty {head(), close()};
                return Site {{{"/", {empty, empty, empty, healthy()}}}};
            }},
        {"stall before the head", sounds().within(12), 20, [] { return healedAfter({stall()}); }},
        {"stall before the head, each time", told("does not answer"), 40,
            [] { return always({stall()}); }},
        {"stall after the head", sounds().within(12), 20,
            [] {
                return healedAfter({head(), stall()});
            }},
        {"stall in mid-stream", sounds().silentFor(6), 28, [] { return brokenBy(stall()); }, true},
        {"stall in mid-stream, twice", sounds().silentFor(6), 45,
            [] {
                const Script stalling {head(), live(media::mp3(), 8), stall()};
                return Site {{{"/", {stalling, stalling, healthy()}}}};
            }},
        // Bytes keep arriving, so the fault shows only as silence once the buffer is empty.
        {"a trickle in mid-stream", sounds().silentFor(13).noticedIn(16), 40,
            [] {
                return healedAfter({head(), live(media::mp3(), 8),
                    [](Line &line) {
                        line.markFault();
                        return true;
                    },
                    flood(media::mp3().bytes.left(50), 500)});
            }},
        {"a trickle from the start, each time", told("."), 40,
            [] {
                return always({head(), flood(media::mp3().bytes.left(50), 500)});
            }},
        {"the server is away for 20 seconds", sounds().silentFor(36), 70,
            [] {
                Site site = always(healthy());
                site.actions = {away(8), back(28)};
                return site;
            }},
        {"the server is away for two seconds, three times", sounds().silentFor(3), 40,
            [] {
                Site site = always(healthy());
                site.actions = {away(6), back(8), away(16), back(18), away(26), back(28)};
                return site;
            }},
        {"the station moves to another server", sounds(), 20,
            [] {
                const auto to = [](const char *address) {
                    return Script {
                        answer(302, {}, "text/plain", QByteArray("Location: ") + address + "\r\n")};
                };
                return Site {{{"/", {to("http://radio.test/a"), to("http://moved.test/b")}},
                                 {"/a", {{head(), live(media::mp3(), 8), close()}, {answer(410)}}}},
                    {{"/b", {healthy()}}}};
            },
            true},
        {"an episode breaks off", sounds(), 30,
            [] {
                // 90 seconds; the server resumes by ranges or sends everything again.
                QByteArray episode;
                while (episode.size() < 90 * 16000)
                    episode += media::mp3().bytes;
                const QByteArray length
                    = "Content-Length: " + QByteArray::number(episode.size()) + "\r\n";
                Site site {{{"/",
                    {{head("audio/mpeg", length), send(episode.left(6 * 16000)), reset()},
                        {head("audio/mpeg", length), send(episode)}}}}};
                site.live = false;
                return site;
            }},
        {"an episode of five bytes", told("."), 40,
            [] {
                Site site {{{"/", {{answer(200, media::mp3().bytes.left(5), "audio/mpeg")}}}}};
                site.live = false;
                return site;
            }},
        {"an episode is gone in its middle", told(".").within(135), 150,
            [] {
                const QByteArray length = "Content-Length: 1600000\r\n";
                Site site {{{"/",
                    {{head("audio/mpeg", length), live(media::mp3(), 5), reset()},
                        {answer(404)}}}}};
                site.live = false;
                return site;
            }},
    };
}
