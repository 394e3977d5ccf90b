// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Lists.h"

#include <algorithm>
#include <map>

namespace directory {

namespace {

/// The first character, ASCII letters in upper case.
std::string initialOf(const std::string &name)
{
    std::size_t length = 1;
    while (length < name.size() && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80)
        ++length;
    std::string initial = name.substr(0, length);
    if (initial.size() == 1 && initial[0] >= 'a' && initial[0] <= 'z')
        initial[0] = static_cast<char>(initial[0] - 'a' + 'A');
    return initial;
}

bool contains(const std::vector<std::string> &list, const std::string &value)
{
    return list.empty() || std::find(list.begin(), list.end(), value) != list.end();
}

std::string filterFor(const Context &context, const std::string &fallback)
{
    const std::string filter = context.param("filter");
    return filter.empty() ? fallback : filter;
}

Query withFilter(const Scope &scope, const std::string &filter)
{
    Query query = scope.address;
    query.add("filter", filter);
    return query;
}

template <typename Item, typename MakeRow>
Json page(const std::vector<const Item *> &items, std::size_t offset, std::size_t size,
    const MakeRow &makeRow)
{
    Json rows = Json::array();
    for (std::size_t i = offset; i < items.size() && i - offset < size; ++i)
        rows.push_back(makeRow(*items[i]));
    return rows;
}

Json cursor(const Context &context, const Scope &scope, const char *word, const char *key,
    const char *filter, std::size_t offset)
{
    Query query {{"offset", std::to_string(offset)}};
    query.merge(scope.address);
    query.merge({{"filter", filterFor(context, filter)}});
    return linkRow(context.word(word), context.api("Browse.ashx", query), {}, key);
}

Json recentTopics(const Context &context, const Scope &scope)
{
    std::vector<const Topic *> topics;
    for (const Show *show : showsOf(context, scope)) {
        for (const std::string &id : show->topics)
            topics.push_back(context.catalog().topic(id));
    }
    std::stable_sort(topics.begin(), topics.end(),
        [](const Topic *a, const Topic *b) { return a->date > b->date; });
    return page(topics, offsetOf(context), context.catalog().pageSize,
        [&context](const Topic &topic) { return topicRow(context, topic); });
}

Json letterRows(const Context &context, const Scope &scope)
{
    std::map<std::string, int> letters;
    for (const Station *station : stationsOf(context, scope, {}))
        ++letters[initialOf(station->name)];
    Json rows = Json::array();
    for (const auto &letter : letters) {
        rows.push_back(linkRow(
            letter.first, context.api("Browse.ashx", withFilter(scope, "s:~" + letter.first))));
    }
    return rows;
}

Json genreRows(const Context &context, const Scope &scope)
{
    std::set<std::string> present;
    for (const Station *station : stationsOf(context, scope, {}))
        present.insert(station->genre);
    Json rows = Json::array();
    for (const Genre &genre : context.catalog().genres) {
        if (present.count(genre.id) != 0)
            rows.push_back(linkRow(genre.name,
                context.api("Browse.ashx", withFilter(scope, "s:" + genre.id)), genre.id));
    }
    return rows;
}

Json countryRows(const Context &context, const Scope &scope)
{
    std::set<std::string> present;
    for (const Station *station : stationsOf(context, scope, {}))
        present.insert(context.catalog().above(station->city, Region::Kind::Country)->id);
    Json rows = Json::array();
    for (const Region &region : context.catalog().regions) {
        if (present.count(region.id) != 0)
            rows.push_back(linkRow(region.name,
                context.api("Browse.ashx", withFilter(scope, "s:" + region.id)), region.id));
    }
    return rows;
}

} // namespace

Filter Filter::parse(const Catalog &catalog, const std::string &text)
{
    Filter filter;
    for (const std::string &part : split(text, ':')) {
        if (part == "s")
            filter.stations = true;
        else if (part == "p" || part == "show")
            filter.shows = true;
        else if (part == "topic")
            filter.topics = true;
        else if (part == "popular" || part == "topvoted" || part == "topclick")
            filter.popular = true;
        else if (part.size() > 1 && part[0] == '~')
            filter.initial = part.substr(1);
        else if (catalog.genre(part))
            filter.genre = part;
        else if (catalog.region(part))
            filter.region = part;
        else if (catalog.language(part))
            filter.language = part;
    }
    return filter;
}

std::vector<const Station *> stationsOf(
    const Context &context, const Scope &scope, const Filter &filter)
{
    const Catalog &catalog = context.catalog();
    std::vector<const Station *> stations;
    for (const Station &station : catalog.stations) {
        const bool chosen = contains(scope.genres, station.genre)
            && (scope.region.empty() || catalog.within(station.city, scope.region))
            && (scope.language.empty() || station.language == scope.language)
            && (filter.genre.empty() || station.genre == filter.genre)
            && (filter.region.empty() || catalog.within(station.city, filter.region))
            && (filter.language.empty() || station.language == filter.language)
            && (filter.initial.empty() || initialOf(station.name) == filter.initial);
        if (chosen)
            stations.push_back(&station);
    }
    if (filter.initial.empty()) {
        std::stable_sort(stations.begin(), stations.end(), [](const Station *a, const Station *b) {
            return stableNumber(a->name) < stableNumber(b->name);
        });
    } else {
        std::sort(stations.begin(), stations.end(),
            [](const Station *a, const Station *b) { return a->name < b->name; });
    }
    return stations;
}

std::vector<const Show *> showsOf(const Context &context, const Scope &scope)
{
    std::vector<const Show *> shows;
    for (const Show &show : context.catalog().shows) {
        if (!contains(scope.genres, show.genre))
            continue;
        const Station *station = context.catalog().station(show.station);
        const bool placed = !scope.region.empty() || !scope.language.empty();
        if (placed
            && (!station
                || (!scope.region.empty() && !context.catalog().within(station->city, scope.region))
                || (!scope.language.empty() && station->language != scope.language)))
            continue;
        shows.push_back(&show);
    }
    return shows;
}

std::size_t offsetOf(const Context &context)
{
    return static_cast<std::size_t>(std::max(0, parseNumber(context.param("offset"))));
}

Json stationPage(const Context &context, const Scope &scope,
    const std::vector<const Station *> &stations, std::size_t offset)
{
    const std::size_t size = context.catalog().pageSize;
    Json rows = page(stations, offset, size,
        [&context](const Station &station) { return stationRow(context, station); });
    if (stations.size() > offset && stations.size() - offset > size)
        rows.push_back(cursor(context, scope, "moreStations", "nextStations", "s", offset + size));
    return rows;
}

Json showPage(const Context &context, const Scope &scope, const std::vector<const Show *> &shows,
    std::size_t offset)
{
    // The front page shows only a few, the pages behind its cursor are of full length.
    const std::size_t size
        = offset == 0 ? context.catalog().showsPerPage : context.catalog().pageSize;
    Json rows = page(
        shows, offset, size, [&context](const Show &show) { return showRow(context, show); });
    if (shows.size() > offset && shows.size() - offset > size)
        rows.push_back(cursor(context, scope, "moreShows", "nextShows", "p", offset + size));
    return rows;
}

bool asksForPart(const Context &context)
{
    const Filter filter = Filter::parse(context.catalog(), context.param("filter"));
    return !filter.empty() || filter.popular || !filter.initial.empty() || !filter.region.empty()
        || context.request().query.has("pivot") || context.request().query.has("offset");
}

Json pivotRows(const Context &context, const Scope &scope, const std::string &pivot)
{
    if (pivot == "name")
        return letterRows(context, scope);
    if (pivot == "genre")
        return genreRows(context, scope);
    return countryRows(context, scope);
}

Answer listScreen(const Context &context, const Scope &scope)
{
    const std::string pivot = context.param("pivot");
    if (!pivot.empty())
        return success(scope.title, orNothing(context, pivotRows(context, scope, pivot)));

    const Filter filter = Filter::parse(context.catalog(), context.param("filter"));
    const std::size_t offset = offsetOf(context);
    if (filter.topics) {
        return success(context.word("recentEpisodes") + " - " + scope.title,
            orNothing(context, recentTopics(context, scope)));
    }
    if (filter.shows && !filter.stations) {
        const std::string prefix = offset > 0 ? context.word("moreShows") : context.word("shows");
        return success(prefix + " - " + scope.title,
            orNothing(context, showPage(context, scope, showsOf(context, scope), offset)));
    }
    const auto stations = stationsOf(context, scope, filter);
    Json rows = stationPage(context, scope, stations, offset);
    if (offset > 0 && stations.size() > offset + context.catalog().pageSize) {
        Query byName = scope.address;
        byName.add("pivot", "name");
        byName.add("filter", "s");
        rows.push_back(
            linkRow(context.word("byName"), context.api("Browse.ashx", byName), {}, "pivotName"));
    }
    const std::string title
        = offset > 0 ? context.word("moreStations") + " - " + scope.title : scope.title;
    return success(title, orNothing(context, std::move(rows)));
}

} // namespace directory
