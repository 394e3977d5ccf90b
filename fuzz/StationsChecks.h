// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "fuzz/fuzzing.h"
#include "modules/stations/StationsFormats.h"

#include <algorithm>

/// What holds for every list of stations that was read: it is within the limits, and the same when
/// it is written and read again, in each of the formats.

namespace stations_checks {

inline void requireLine(const QString &text, int longest)
{
    FUZZ_REQUIRE(text.size() <= longest);
    FUZZ_REQUIRE(text == stationsText(text, longest));
}

inline void requireAddress(const QString &address)
{
    FUZZ_REQUIRE(address.startsWith(QLatin1String("http://"), Qt::CaseInsensitive)
        || address.startsWith(QLatin1String("https://"), Qt::CaseInsensitive));
    FUZZ_REQUIRE(address.size() <= StationsLimits::Address);
    FUZZ_REQUIRE(address == stationsAddress(address));
}

/// Returns how many entries there are.
inline int requireSound(std::vector<StationsEntry> &entries, int depth)
{
    int count = 0;
    for (StationsEntry &entry : entries) {
        FUZZ_REQUIRE(!entry.title.isEmpty());
        requireLine(entry.title, StationsLimits::Title);
        requireLine(entry.description, StationsLimits::Description);
        if (!entry.picture.isEmpty())
            requireAddress(entry.picture);
        if (entry.isFolder()) {
            FUZZ_REQUIRE(depth < StationsLimits::Depth);
            FUZZ_REQUIRE(stationsFolderIn(entries, entry.title) == &entry);
            count += requireSound(entry.entries, depth + 1);
        } else {
            requireAddress(entry.address);
            FUZZ_REQUIRE(entry.entries.empty());
        }
        ++count;
    }
    return count;
}

inline void require(StationsFile file)
{
    FUZZ_REQUIRE(requireSound(file.entries, 0) <= StationsLimits::Entries);
    requireLine(file.title, StationsLimits::Title);
    FUZZ_REQUIRE(file.error.isEmpty() || file.entries.empty());
    for (const StationsFormat format :
        {StationsFormat::M3u, StationsFormat::Pls, StationsFormat::Xspf, StationsFormat::Opml}) {
        const StationsFile again = readStations(writeStations(format, file.title, file.entries));
        FUZZ_REQUIRE(again.error.isEmpty());
        FUZZ_REQUIRE(again.title == file.title);
        FUZZ_REQUIRE(again.skipped.empty());
        FUZZ_REQUIRE(again.entries == file.entries);
    }
}

} // namespace stations_checks
