// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/BrowsePages.h"
#include "directory/Endpoints.h"
#include "directory/Rows.h"

namespace directory {

namespace {

/// A category that is always empty: languages without stations lead to it.
constexpr char EmptyCategory[] = "c424724";

Answer wrongId()
{
    return failure("400", "Invalid ID for browse", "request.idInvalid");
}

Answer browseId(const Context &context, const std::string &id)
{
    const Catalog &catalog = context.catalog();
    if (const Region *region = catalog.region(id))
        return regionPage(context, *region);
    if (const Genre *genre = catalog.genre(id))
        return genrePage(context, *genre);
    if (const Category *category = catalog.category(id))
        return categoryPage(context, *category);
    if (const Station *station = catalog.station(id))
        return stationRelated(context, *station);
    if (const Show *show = catalog.show(id))
        return showRelated(context, *show);
    if (const Artist *artist = catalog.artist(id))
        return artistPage(context, *artist);
    if (const Language *language = catalog.language(id))
        return languagePage(context, language);
    if (id.front() == 'a')
        return networkPage(context, id);
    return id == EmptyCategory ? success(context.word("browse"), nothingRows(context)) : wrongId();
}

Answer browseItem(const Context &context, const std::string &c)
{
    const std::string id = context.param("id");
    const Station *station = context.catalog().station(id);
    if (station && c == "schedule")
        return stationSchedule(context, *station);
    if (station && c == "playlist")
        return stationPlaylist(context, *station);
    const Show *show = context.catalog().show(id);
    return show && c == "topics" ? showTopics(context, *show) : wrongId();
}

Answer browseCategory(const Context &context, const std::string &c)
{
    if (c == "local")
        return localStations(context);
    if (c == "music" || c == "talk" || c == "sports")
        return topicMenu(context, c);
    if (c == "lang") {
        return context.param("filter").empty()
            ? languageMenu(context)
            : languagePage(context, context.catalog().language(context.param("filter")));
    }
    if (c == "podcast")
        return podcastMenu(context);
    if (c == "presets")
        return presetsPage(context);
    if (c == "trending")
        return favouredStations(context, "trending", context.catalog().pageSize);
    if (c == "popular" || c == "best")
        return favouredStations(context, "popular", 2 * context.catalog().pageSize);
    if (c == "world")
        return regionPage(context, *context.catalog().region("r0"));
    if (c == "schedule" || c == "playlist" || c == "topics")
        return browseItem(context, c);
    return c.substr(0, 5) == "index" ? rootMenu(context) : failure("400", "Invalid root category");
}

} // namespace

Answer browse(const Context &context)
{
    const std::string c = lowered(context.param("c"));
    if (!c.empty())
        return browseCategory(context, c);
    const std::string id = context.param("id");
    if (!id.empty())
        return browseId(context, id);
    return context.request().query.has("id") ? wrongId() : rootMenu(context);
}

} // namespace directory
