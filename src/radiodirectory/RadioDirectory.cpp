// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "radiodirectory/RadioDirectory.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <glib.h>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace radiodirectory {

namespace {

std::string lowered(const std::string &text)
{
    const std::unique_ptr<char, decltype(&g_free)> small(
        g_utf8_strdown(text.c_str(), static_cast<gssize>(text.size())), g_free);
    return small.get();
}

std::string textOf(const Json &station, const std::string &field)
{
    return station.value(field, std::string());
}

std::vector<std::string> split(const std::string &list)
{
    std::vector<std::string> parts;
    std::istringstream stream(list);
    for (std::string part; std::getline(stream, part, ',');) {
        if (!part.empty())
            parts.push_back(part);
    }
    return parts;
}

std::string param(const Query &query, const std::string &name)
{
    const auto found = query.find(name);
    return found == query.end() ? std::string() : found->second;
}

bool isOn(const Query &query, const std::string &name)
{
    return param(query, name) == "true";
}

std::size_t numberOf(const Query &query, const std::string &name, std::size_t otherwise)
{
    const std::string text = param(query, name);
    return text.empty() ? otherwise : std::strtoul(text.c_str(), nullptr, 10);
}

bool isBroken(const Json &station)
{
    return station.value("lastcheckok", 1) == 0;
}

/// Whether \a wanted is \a text, or, unless \a exact, a part of it.
bool matches(const std::string &text, const std::string &wanted, bool exact)
{
    const std::string have = lowered(text);
    const std::string want = lowered(wanted);
    return exact ? have == want : have.find(want) != std::string::npos;
}

bool matches(const Json &station, const Query &query)
{
    struct Filter {
        const char *parameter;
        const char *field;
        bool isAlwaysExact;
        bool isList;
    };
    static constexpr Filter Filters[] = {
        {"name", "name", false, false},
        {"tag", "tags", false, true},
        {"language", "language", false, true},
        {"countrycode", "countrycode", true, false},
        {"codec", "codec", true, false},
    };
    if (isOn(query, "hidebroken") && isBroken(station))
        return false;
    return std::all_of(std::begin(Filters), std::end(Filters), [&](const Filter &filter) {
        const std::string wanted = param(query, filter.parameter);
        const bool exact
            = filter.isAlwaysExact || isOn(query, std::string(filter.parameter) + "Exact");
        const std::string text = textOf(station, filter.field);
        const auto isWanted
            = [&](const std::string &value) { return matches(value, wanted, exact); };
        if (wanted.empty() || !filter.isList)
            return wanted.empty() || isWanted(text);
        const std::vector<std::string> values = split(text);
        return std::any_of(values.begin(), values.end(), isWanted);
    });
}

/// Texts are compared without case; what a station lacks comes first.
bool isLess(const Json &a, const Json &b, const std::string &field)
{
    static const Json none;
    const auto valueIn = [&field](const Json &entry) -> const Json & {
        const auto found = entry.find(field);
        return found == entry.end() ? none : *found;
    };
    const Json &left = valueIn(a);
    const Json &right = valueIn(b);
    if (left.is_string() && right.is_string())
        return lowered(left) < lowered(right);
    return left < right;
}

/// Orders and cuts \a entries as the query says.
Json listed(std::vector<const Json *> entries, const Query &query)
{
    std::string order = param(query, "order").empty() ? "name" : param(query, "order");
    if (order == "changetimestamp")
        order = "lastchangetime";
    const bool reverse = isOn(query, "reverse");
    std::stable_sort(entries.begin(), entries.end(), [&](const Json *a, const Json *b) {
        return reverse ? isLess(*b, *a, order) : isLess(*a, *b, order);
    });
    const std::size_t offset = std::min(numberOf(query, "offset", 0), entries.size());
    const std::size_t limit
        = std::min(numberOf(query, "limit", entries.size()), entries.size() - offset);
    Json list = Json::array();
    for (std::size_t i = offset; i < offset + limit; ++i)
        list.push_back(*entries[i]);
    return list;
}

std::string uuidOf(std::size_t number)
{
    char end[32];
    std::snprintf(end, sizeof end, "%012zx", number);
    return std::string("b0a00000-0000-4000-8001-") + end;
}

} // namespace

/// A field by which stations are counted, and a second one that goes with its value.
struct RadioDirectory::Grouping {
    const char *path;
    const char *field;
    const char *code;
    const char *codeField;
    bool isList;
};

RadioDirectory::RadioDirectory(const std::string &file, const std::string &streams)
{
    std::ifstream in(file);
    if (!in)
        throw std::runtime_error(file + ": cannot be read");
    const Json stations = Json::parse(in);
    if (!stations.is_array() || stations.empty())
        throw std::runtime_error(file + ": no list of stations");
    for (Json station : stations) {
        for (const char *const field : {"url", "favicon"}) {
            const std::string address = textOf(station, field);
            if (!address.empty() && address.front() == '/')
                station[field] = streams + address;
        }
        if (!station.contains("url_resolved"))
            station["url_resolved"] = station["url"];
        m_stations.push_back(std::move(station));
    }
}

void RadioDirectory::invent(std::size_t count)
{
    const std::vector<Json> models = std::move(m_stations);
    m_stations.clear();
    for (std::size_t i = 0; i < count; ++i) {
        Json station = models[i % models.size()];
        station["name"] = textOf(station, "name") + ' ' + std::to_string(i + 1);
        station["stationuuid"] = uuidOf(i + 1);
        station["clickcount"] = count - i;
        m_stations.push_back(std::move(station));
    }
}

Answer RadioDirectory::answer(const std::string &path, const Query &query)
{
    static constexpr Grouping Groupings[] = {
        {"/json/countries", "country", "iso_3166_1", "countrycode", false},
        {"/json/countrycodes", "countrycode", nullptr, nullptr, false},
        {"/json/languages", "language", "iso_639", "languagecodes", true},
        {"/json/tags", "tags", nullptr, nullptr, true},
        {"/json/codecs", "codec", nullptr, nullptr, false},
    };
    static const std::string clickPath = "/json/url/";
    if (path == "/json/stations/search")
        return search(query);
    if (path == "/json/stations/byuuid")
        return byUuid(query);
    for (const Grouping &grouping : Groupings) {
        if (path == grouping.path)
            return groups(grouping, query);
    }
    if (path.rfind(clickPath, 0) == 0)
        return click(path.substr(clickPath.size()));
    if (path == "/json/servers")
        return {200, {{{"ip", "127.0.0.1"}, {"name", "localhost"}}}};
    if (path == "/json/stats")
        return stats();
    return {404, {{"ok", false}, {"message", "there is no such page"}}};
}

Answer RadioDirectory::search(const Query &query) const
{
    std::vector<const Json *> found;
    for (const Json &station : m_stations) {
        if (matches(station, query))
            found.push_back(&station);
    }
    return {200, listed(std::move(found), query)};
}

Answer RadioDirectory::byUuid(const Query &query) const
{
    const std::vector<std::string> uuids = split(param(query, "uuids"));
    Json found = Json::array();
    for (const Json &station : m_stations) {
        if (std::find(uuids.begin(), uuids.end(), textOf(station, "stationuuid")) != uuids.end())
            found.push_back(station);
    }
    return {200, found};
}

Answer RadioDirectory::groups(const Grouping &grouping, const Query &query) const
{
    std::map<std::string, Json> byName;
    for (const Json &station : m_stations) {
        if (isOn(query, "hidebroken") && isBroken(station))
            continue;
        const std::string text = textOf(station, grouping.field);
        for (const std::string &name :
            grouping.isList ? split(text) : std::vector<std::string> {text}) {
            Json &group = byName[name];
            group["name"] = name;
            group["stationcount"] = group.value("stationcount", 0) + 1;
            if (grouping.code)
                group[grouping.code] = textOf(station, grouping.codeField);
        }
    }
    std::vector<const Json *> found;
    found.reserve(byName.size());
    for (const auto &group : byName)
        found.push_back(&group.second);
    return {200, listed(std::move(found), query)};
}

Answer RadioDirectory::click(const std::string &uuid)
{
    for (Json &station : m_stations) {
        if (textOf(station, "stationuuid") != uuid)
            continue;
        ++m_clicks;
        station["clickcount"] = station.value("clickcount", 0) + 1;
        return {200,
            {{"ok", true}, {"message", "retrieved station url"}, {"stationuuid", uuid},
                {"name", station["name"]}, {"url", station["url_resolved"]}}};
    }
    return {404, {{"ok", false}, {"message", "did not find station with matching id"}}};
}

Answer RadioDirectory::stats() const
{
    const auto broken = std::count_if(m_stations.begin(), m_stations.end(), isBroken);
    return {200,
        {{"supported_version", 1}, {"software_version", "0.7"}, {"status", "OK"},
            {"stations", m_stations.size()}, {"stations_broken", broken},
            {"clicks_last_hour", m_clicks}, {"clicks_last_day", m_clicks}}};
}

} // namespace radiodirectory
