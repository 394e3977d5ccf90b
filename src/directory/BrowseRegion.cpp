// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/BrowsePages.h"
#include "directory/Lists.h"

namespace directory {

namespace {

Scope scopeOf(const Context &context, const Region &region)
{
    Scope scope;
    scope.title = region.kind == Region::Kind::World ? context.word("location") : region.name;
    scope.address = {{"id", region.id}};
    scope.region = region.id;
    return scope;
}

Json childLinks(const Context &context, const Region &region)
{
    Json rows = Json::array();
    for (const std::string &id : region.children) {
        const Region *child = context.catalog().region(id);
        rows.push_back(
            linkRow(child->name, context.api("Browse.ashx", {{"id", child->id}}), child->id));
    }
    return rows;
}

Json allStations(const Context &context, const Region &region)
{
    const auto link = [&](const char *word, const char *key, const Query &extra) {
        Query query {{"id", region.id}};
        query.merge(extra);
        return linkRow(context.word(word), context.api("Browse.ashx", query), {}, key);
    };
    return section(context.word("allStations"), "pivot",
        Json::array({link("popular", "popular", {{"filter", "s:popular"}}),
            link("byGenre", "pivotGenre", {{"pivot", "genre"}, {"filter", "s"}}),
            link("byName", "pivotName", {{"pivot", "name"}, {"filter", "s"}})}));
}

Answer cityPage(const Context &context, const Region &city)
{
    const Scope scope = scopeOf(context, city);
    Json stations = Json::array();
    std::set<std::string> present;
    for (const Station *station : stationsOf(context, scope, {})) {
        stations.push_back(stationRow(context, *station, StationText::Frequency));
        present.insert(station->genre);
    }
    if (stations.empty())
        return success(city.name, nothingRows(context));
    Json genres = Json::array();
    for (const Genre &genre : context.catalog().genres) {
        if (present.count(genre.id) != 0)
            genres.push_back(linkRow(genre.name,
                context.api("Browse.ashx", {{"id", city.id}, {"filter", genre.id}}), genre.id));
    }
    return success(city.name,
        Json::array({section(context.word("allStations"), "stations", std::move(stations)),
            section(context.word("byGenre"), "pivotGenre", std::move(genres))}));
}

} // namespace

Answer regionPage(const Context &context, const Region &region)
{
    const Scope scope = scopeOf(context, region);
    if (asksForPart(context))
        return listScreen(context, scope);
    if (region.kind == Region::Kind::City)
        return cityPage(context, region);
    Json rows = childLinks(context, region);
    if (region.kind == Region::Kind::Country || region.kind == Region::Kind::Area)
        rows.insert(rows.begin(), allStations(context, region));
    return success(scope.title, orNothing(context, std::move(rows)));
}

Answer networkPage(const Context &context, const std::string &id)
{
    for (const Region &region : context.catalog().regions) {
        if (!region.countryId.empty() && id == 'a' + region.countryId.substr(1)) {
            Scope scope = scopeOf(context, region);
            scope.address = {{"id", id}};
            return listScreen(context, scope);
        }
    }
    return failure("400", "Invalid ID for browse", "request.idInvalid");
}

} // namespace directory
