// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/BrowsePages.h"
#include "directory/Lists.h"

#include <algorithm>

namespace directory {

namespace {

Json menuRow(const Context &context, const char *word, const char *key, const Query &query)
{
    return linkRow(context.word(word), context.api("Browse.ashx", query), {}, key);
}

} // namespace

Answer rootMenu(const Context &context)
{
    Json rows = Json::array();
    const bool known = !context.param("serial").empty() || !context.param("username").empty();
    if (known && !context.param("partnerId").empty())
        rows.push_back(menuRow(context, "favorites", "presets", {{"c", "presets"}}));
    rows.push_back(menuRow(context, "local", "local", {{"c", "local"}}));
    rows.push_back(menuRow(context, "music", "music", {{"c", "music"}}));
    rows.push_back(menuRow(context, "talk", "talk", {{"c", "talk"}}));
    rows.push_back(menuRow(context, "sports", "sports", {{"c", "sports"}}));
    rows.push_back(menuRow(context, "location", "location", {{"id", "r0"}}));
    rows.push_back(menuRow(context, "language", "language", {{"c", "lang"}}));
    rows.push_back(menuRow(context, "podcast", "podcast", {{"c", "podcast"}}));
    return success(context.word("browse"), std::move(rows));
}

Answer topicMenu(const Context &context, const std::string &menu)
{
    Json rows = Json::array();
    for (const Category &category : context.catalog().categories) {
        if (category.menu == menu)
            rows.push_back(linkRow(
                category.name, context.api("Browse.ashx", {{"id", category.id}}), category.id));
    }
    for (const Genre &genre : context.catalog().genres) {
        if (genre.menu == menu && genre.listed)
            rows.push_back(
                linkRow(genre.name, context.api("Browse.ashx", {{"id", genre.id}}), genre.id));
    }
    return success(context.word(menu.c_str()), orNothing(context, std::move(rows)));
}

Answer languageMenu(const Context &context)
{
    std::set<std::string> spoken;
    for (const Station &station : context.catalog().stations)
        spoken.insert(station.language);
    Json rows = Json::array();
    for (const Language &language : context.catalog().languages) {
        Query query
            = spoken.count(language.id) != 0 ? Query {{"c", "lang"}} : Query {{"id", "c424724"}};
        query.add("filter", language.id);
        rows.push_back(linkRow(language.name, context.api("Browse.ashx", query), language.id));
    }
    return success(context.word("language"), orNothing(context, std::move(rows)));
}

Answer podcastMenu(const Context &context)
{
    std::set<std::string> genres;
    for (const Show &show : context.catalog().shows)
        genres.insert(show.genre);
    Json sections = Json::array();
    for (const char *menu : {"music", "talk", "sports"}) {
        Json rows = Json::array();
        for (const Genre &genre : context.catalog().genres) {
            if (genre.menu == menu && genres.count(genre.id) != 0)
                rows.push_back(linkRow(genre.name,
                    context.api("Browse.ashx", {{"id", genre.id}, {"filter", "p"}}), genre.id));
        }
        if (!rows.empty())
            sections.push_back(section(context.word(menu), menu, std::move(rows)));
    }
    return success(context.word("podcast"), orNothing(context, std::move(sections)));
}

Answer localStations(const Context &context)
{
    Json rows = Json::array();
    const Region *city = context.city();
    const Region *country = context.catalog().above(city->id, Region::Kind::Country);
    rows.push_back(linkRow(country->name, context.api("Browse.ashx", {{"id", country->id}}),
        country->id, "localCountry"));
    Scope scope;
    scope.region = city->id;
    for (const Station *station : stationsOf(context, scope, {}))
        rows.push_back(stationRow(context, *station, StationText::Frequency));
    return success(context.word("local"), std::move(rows));
}

Answer favouredStations(const Context &context, const char *word, std::size_t count)
{
    auto stations = stationsOf(context, {}, {});
    stations.resize(std::min(stations.size(), count));
    Json rows = Json::array();
    for (const Station *station : stations)
        rows.push_back(stationRow(context, *station));
    return success(context.word(word), orNothing(context, std::move(rows)));
}

} // namespace directory
