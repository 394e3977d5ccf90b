// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzz/StationsChecks.h"
#include "modules/stations/StationsGatherer.h"
#include "modules/stations/StationsParsers.h"

// Files with stations in lines, M3U and PLS, and the folders that they name.

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    stations_checks::require(readStations(bytes));
    stations_checks::require(readStationsM3u(bytes));
    stations_checks::require(readStationsPls(bytes));
    const QStringList folders = splitStationsFolders(QString::fromUtf8(bytes).simplified());
    FUZZ_REQUIRE(splitStationsFolders(joinStationsFolders(folders)) == folders);
    return 0;
}
