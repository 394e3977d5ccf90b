// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzz/StationsChecks.h"
#include "modules/stations/StationsParsers.h"

// Files with stations in XML: OPML and XSPF.

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    stations_checks::require(readStationsXml(bytes));
    return 0;
}
