// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Endpoints.h"
#include "directory/Rows.h"

#include <cstdio>
#include <cstdlib>

namespace directory {

namespace {

Json value(const std::string &key, const std::string &text)
{
    Json row = textRow(text);
    row["key"] = key;
    return row;
}

std::string zoneOffset(int minutes)
{
    char text[16];
    std::snprintf(text, sizeof text, "%c%02d:%02d", minutes < 0 ? '-' : '+', std::abs(minutes) / 60,
        std::abs(minutes) % 60);
    return text;
}

/// The server stands in the data file's home; the listener is where the request says.
Answer time(const Context &context)
{
    const Catalog &catalog = context.catalog();
    const Region *home = catalog.above(catalog.homeCity, Region::Kind::Country);
    const Region *there = catalog.above(context.city()->id, Region::Kind::Country);
    return success({},
        {value("utc_time", isoTime(context.now())),
            value("server_time", isoTime(context.now() + home->utcOffsetMinutes * 60)),
            value("server_tz", home->timeZone),
            value("server_offset", zoneOffset(home->utcOffsetMinutes)),
            value("detected_time", isoTime(context.now() + there->utcOffsetMinutes * 60)),
            value("detected_tz", there->timeZone),
            value("detected_offset", zoneOffset(there->utcOffsetMinutes))});
}

Answer api(const Context &context)
{
    return success({},
        {value("albumart.url", context.here("/logo/{id}{size}.png")),
            value("albumart.sizes", "t,q,d,g")});
}

} // namespace

Answer config(const Context &context)
{
    const std::string c = lowered(context.param("c"));
    if (c == "time")
        return time(context);
    if (c == "api")
        return api(context);
    if (c == "contentquery")
        return success({}, {value("contentQuery", "aa1")});
    if (c == "streamsamplequery")
        return success({}, {value("streamSampleQuery", "aa2")});
    return failure("404", "Invalid method", "api.methodNotFound");
}

} // namespace directory
