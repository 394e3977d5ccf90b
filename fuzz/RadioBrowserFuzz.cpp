// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzz/fuzzing.h"
#include "modules/radiobrowser/RadioBrowserData.h"
#include "modules/radiobrowser/RadioBrowserDns.h"

#include <algorithm>

// Responses of Radio Browser's servers, and DNS responses about these servers: texts are single
// lines of limited length, URLs are http or https and numbers are within their bounds.

namespace {

constexpr int MostEntries = 100;
constexpr int LongestText = 600;

void requireLine(const QString &text)
{
    FUZZ_REQUIRE(text.size() <= LongestText);
    FUZZ_REQUIRE(std::none_of(
        text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; }));
}

void requireWebAddress(const QString &address)
{
    FUZZ_REQUIRE(address.isEmpty()
        || address.startsWith(QLatin1String("http://"), Qt::CaseInsensitive)
        || address.startsWith(QLatin1String("https://"), Qt::CaseInsensitive));
}

void readEntry(const QVariantHash &entry)
{
    const RadioBrowserStation station(entry);
    requireLine(station.name());
    requireLine(station.description());
    requireWebAddress(station.streamUrl());
    requireWebAddress(station.icon());
    FUZZ_REQUIRE(!station.mimeType().isEmpty());
    FUZZ_REQUIRE(station.bitRate() >= 0 && station.bitRate() <= 10000000);
    FUZZ_REQUIRE(station.uuid().isEmpty() || station.uuid().size() == 36);

    const RadioBrowserCategory category(entry);
    requireLine(category.name());
    FUZZ_REQUIRE(category.stationCount() >= 0);
    FUZZ_REQUIRE(category.countryCode().isEmpty() || category.countryCode().size() == 2);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const auto entries = radioBrowserEntries(bytes, MostEntries);
    if (entries) {
        FUZZ_REQUIRE(entries->size() <= MostEntries);
        for (const QVariant &entry : *entries)
            readEntry(entry.toHash());
    }
    for (const QString &server : radioBrowserServersIn(bytes)) {
        FUZZ_REQUIRE(server.startsWith(QLatin1String("https://")));
        FUZZ_REQUIRE(server.contains(QLatin1String(".radio-browser.info")));
    }
    return 0;
}
