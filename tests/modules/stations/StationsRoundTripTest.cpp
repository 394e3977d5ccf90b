// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/stations/StationsFormats.h"
#include "modules/stations/StationsGatherer.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace {

constexpr StationsFormat Formats[]
    = {StationsFormat::M3u, StationsFormat::Pls, StationsFormat::Xspf, StationsFormat::Opml};

StationsEntry station(
    const char *title, const char *address, const char *picture = "", const char *description = "")
{
    return {text(title), text(address), text(picture), text(description)};
}

StationsEntry folder(const char *title, std::vector<StationsEntry> entries)
{
    return {text(title), {}, {}, {}, std::move(entries)};
}

} // namespace

TEST(StationsRoundTripTest, WhatIsWrittenAndReadAgainIsTheSame)
{
    const std::vector<std::vector<StationsEntry>> lists {
        {},
        {station("A", "http://a")},
        {station("Jazz, \"live\" & <more>", "https://a/?b=1&c=%20#d", "http://p/x,y.png?a=\"",
             "All; day = long"),
            station("#EXTM3U", "http://b"), station("\xF0\x9F\x8E\xB7 caf\xC3\xA9", "http://c")},
        {folder("Empty", {})},
        {folder("A",
             {station("1", "http://1"), folder("B", {station("2", "http://2")}),
                 station("3", "http://3"), folder("Empty", {})}),
            station("4", "http://4")},
        {folder("A / B", {station("1", "http://1")}),
            folder("Rock/Pop", {station("2", "http://2")}), folder("/", {station("3", "http://3")}),
            folder("a /", {folder("/ b", {})}), folder("AC\\DC", {}), folder("\\/", {}),
            folder("\\", {station("4", "http://4")})},
        {folder("1",
            {folder("2",
                {folder("3",
                    {folder("4",
                        {folder("5",
                            {folder("6",
                                {folder("7",
                                    {folder("8", {station("deep", "http://deep")})})})})})})})})},
    };
    for (const StationsFormat format : Formats) {
        for (const auto &list : lists) {
            const QByteArray bytes = writeStations(format, text("My \"list\" & more"), list);
            SCOPED_TRACE(bytes.constData());
            const StationsFile file = readStations(bytes);
            EXPECT_EQ(file.error.toString(), QString());
            EXPECT_EQ(file.title, text("My \"list\" & more"));
            EXPECT_EQ(file.skippedCount(), 0);
            EXPECT_TRUE(file.entries == list);
        }
    }
}

TEST(StationsRoundTripTest, JoinsAndSplitsFolders)
{
    const QStringList lists[] = {{}, {text("A")}, {text("A"), text("B")}, {text("/"), text("/")},
        {text("a /"), text("/ b")}, {text("\\"), text("\\/"), text("/\\")}, {text("a / b / c")},
        {text("AC/DC"), text("a\\b")}};
    for (const QStringList &list : lists)
        EXPECT_EQ(splitStationsFolders(joinStationsFolders(list)), list);
}

TEST(StationsRoundTripTest, NamesTheFormats)
{
    for (const StationsFormat format : Formats)
        EXPECT_EQ(stationsFormat(stationsFormatName(format)), format);
    EXPECT_EQ(stationsFormat(text("exe")), StationsFormat::M3u);
}
