// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Fault.h"
#include "tests/faults/Stage.h"

#include <csignal>

namespace {

constexpr const char *Station = "trial%2001";

/// A station of the local directory, and what happens while it plays.
Site directory(std::vector<Action> actions, const char *search = Station)
{
    Site site;
    site.search = search;
    site.actions = std::move(actions);
    return site;
}

/// A fault of the directory that affects the stream that plays.
Action streamFault(double at, const QByteArray &fault)
{
    return {at, [fault](Stage &stage) {
                stage.setFault(fault);
                stage.markFault();
            }};
}

/// A fault that should not affect the stream that plays.
Action otherFault(double at, const QByteArray &fault)
{
    return {at, [fault](Stage &stage) { stage.setFault(fault); }};
}

Action signalTo(const QByteArray &process, int number, double at)
{
    return {at, [process, number](Stage &stage) { stage.signalChildren(number, process); }};
}

} // namespace

std::vector<Fault> houseFaults()
{
    return {
        {"directory and streams are down for 20 seconds", sounds().silentFor(36), 70,
            [] { return directory({otherFault(8, "down:20")}); }},
        {"the directory's pages stall while a station plays", sounds().silentFor(0.5), 20,
            [] {
                return directory(
                    {otherFault(5, "[\"stall@Report.ashx\", \"stall@Describe.ashx\"]")});
            }},
        {"the directory resets a stream", sounds(), 18,
            [] { return directory({streamFault(8, "stream-reset@/stream/:0*1")}); }},
        {"the directory stalls a stream", sounds().silentFor(6), 28,
            [] { return directory({streamFault(8, "stream-stall@/stream/:0*1")}); }},
        {"the directory sends garbage in a stream", sounds().silentFor(2), 20,
            [] { return directory({otherFault(8, "stream-garbage@/stream/:0,20000*1")}); }},
        {"a stream is refused three times", sounds().silentFor(9), 30,
            [] {
                return directory({streamFault(
                    8, "[\"http-status@/stream/:503*3\", \"stream-close@/stream/:0*1\"]")});
            }},
        {"a station whose first stream is missing", sounds().within(5), 12,
            [] { return directory({}, "trial%2005"); }, true},
        {"a station whose first stream is refused", sounds().within(5), 12,
            [] { return directory({}, "trial%2006"); }},
        {"a station of which nothing works", told(".").within(60), 65,
            [] { return directory({}, "trial%2017"); }},
        {"a playlist without end", sounds(), 12, [] { return directory({}, "trial%2009"); }},
        {"plug-ins' processes are killed while a station plays", sounds().silentFor(0.5), 15,
            [] { return directory({signalTo("vesk-plugin", SIGKILL, 6)}); }, true},
        {"plug-ins' processes are stopped while a station plays", sounds().silentFor(0.5), 15,
            [] {
                return directory(
                    {signalTo("vesk-plugin", SIGSTOP, 6), signalTo("vesk-plugin", SIGCONT, 12)});
            }},
        {"all of the host's processes are killed while a station plays", sounds(), 18,
            [] { return directory({signalTo({}, SIGKILL, 8)}); }, true},
        {"all of the host's processes are killed every five seconds", sounds().silentFor(1.5), 35,
            [] {
                return directory({signalTo({}, SIGKILL, 8), signalTo({}, SIGKILL, 13),
                    signalTo({}, SIGKILL, 18), signalTo({}, SIGKILL, 23)});
            }},
    };
}
