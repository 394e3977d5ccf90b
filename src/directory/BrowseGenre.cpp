// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/BrowsePages.h"
#include "directory/Lists.h"

#include <algorithm>

namespace directory {

namespace {

constexpr std::size_t MaxLocal = 5;

Json localSection(const Context &context, const Scope &scope)
{
    Scope local = scope;
    local.region = context.catalog().above(context.city()->id, Region::Kind::Country)->id;
    auto stations = stationsOf(context, local, {});
    stations.resize(std::min(stations.size(), MaxLocal));
    Json rows = Json::array();
    for (const Station *station : stations)
        rows.push_back(stationRow(context, *station));
    const std::string count = " (" + std::to_string(rows.size()) + ')';
    return section(context.word("localStations") + count, "local", std::move(rows));
}

Json showSection(const Context &context, const Scope &scope)
{
    Json rows = showPage(context, scope, showsOf(context, scope), 0);
    if (!rows.empty()) {
        Query recent = scope.address;
        recent.add("filter", "p:topic");
        rows.push_back(linkRow(context.word("recentEpisodes"), context.api("Browse.ashx", recent)));
    }
    return section(context.word("shows"), "shows", std::move(rows));
}

Json relatedSection(const Context &context, const Scope &scope)
{
    const auto link = [&](const char *word, const char *key, const Query &extra) {
        Query query = scope.address;
        query.merge(extra);
        return linkRow(context.word(word), context.api("Browse.ashx", query), {}, key);
    };
    Json rows = Json::array();
    rows.push_back(link("popular", "popular", {{"filter", "s:popular"}}));
    if (scope.genres.size() > 1) {
        for (const std::string &id : scope.genres)
            rows.push_back(linkRow(
                context.catalog().genreName(id), context.api("Browse.ashx", {{"id", id}}), id));
    }
    rows.push_back(link("location", "pivotLocation", {{"pivot", "country"}, {"filter", "s"}}));
    rows.push_back(link("byName", "pivotName", {{"pivot", "name"}, {"filter", "s"}}));
    return section(context.word("explore") + ' ' + scope.title, "related", std::move(rows));
}

Answer sections(const Context &context, const Scope &scope)
{
    Json body = Json::array();
    const auto stations = stationsOf(context, scope, {});
    for (Json each :
        {localSection(context, scope),
            section(context.word("stations"), "stations", stationPage(context, scope, stations, 0)),
            showSection(context, scope)}) {
        if (!each["children"].empty())
            body.push_back(std::move(each));
    }
    if (!body.empty())
        body.push_back(relatedSection(context, scope));
    return success(scope.title, orNothing(context, std::move(body)));
}

} // namespace

Answer genrePage(const Context &context, const Genre &genre)
{
    Scope scope;
    scope.title = genre.name;
    scope.address = {{"id", genre.id}};
    scope.genres = {genre.id};
    return asksForPart(context) ? listScreen(context, scope) : sections(context, scope);
}

Answer categoryPage(const Context &context, const Category &category)
{
    Scope scope;
    scope.title = category.name;
    scope.address = {{"id", category.id}};
    scope.genres = category.genres;
    return asksForPart(context) ? listScreen(context, scope) : sections(context, scope);
}

Answer languagePage(const Context &context, const Language *language)
{
    Scope scope;
    scope.title = language ? language->name : context.word("stations");
    scope.address = {{"c", "lang"}};
    scope.language = language ? language->id : std::string();
    return listScreen(context, scope);
}

} // namespace directory
