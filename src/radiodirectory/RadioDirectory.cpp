// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "radiodirectory/RadioDirectory.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <glib.h>
#include <iterator>
#include <memory>
#include <numeric>
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

/// What stations are searched by.
struct Filter {
    const char *parameter;
    const char *field;
    bool isAlwaysExact;
    bool isList;
};
constexpr Filter Filters[] = {
    {"name", "name", false, false},
    {"tag", "tags", false, true},
    {"language", "language", false, true},
    {"countrycode", "countrycode", true, false},
    {"codec", "codec", true, false},
};

/// A filter with what a query asks of it.
struct Wanted {
    std::size_t filter;
    std::string text; ///< in small letters
    bool isExact;
};

std::vector<Wanted> wantedBy(const Query &query)
{
    std::vector<Wanted> all;
    for (std::size_t i = 0; i < std::size(Filters); ++i) {
        const std::string text = param(query, Filters[i].parameter);
        const std::string exact = std::string(Filters[i].parameter) + "Exact";
        if (!text.empty())
            all.push_back({i, lowered(text), Filters[i].isAlwaysExact || isOn(query, exact)});
    }
    return all;
}

/// Whether \a text, in small letters, is what is wanted, or, unless exactly that is, has it as a
/// part.
bool matches(const std::string &text, const Wanted &wanted)
{
    const auto isWanted = [&](const std::string &value) {
        return wanted.isExact ? value == wanted.text : value.find(wanted.text) != std::string::npos;
    };
    if (!Filters[wanted.filter].isList)
        return isWanted(text);
    const std::vector<std::string> values = split(text);
    return std::any_of(values.begin(), values.end(), isWanted);
}

std::vector<std::string> textsOf(const Json &station)
{
    std::vector<std::string> texts;
    for (const Filter &filter : Filters)
        texts.push_back(lowered(textOf(station, filter.field)));
    return texts;
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

/// The field by which a query orders.
std::string orderIn(const Query &query)
{
    const std::string order = param(query, "order");
    if (order == "changetimestamp")
        return "lastchangetime";
    return order.empty() ? "name" : order;
}

/// Orders and cuts \a entries as the query says.
Json listed(std::vector<const Json *> entries, const Query &query)
{
    const std::string order = orderIn(query);
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
        m_texts.push_back(textsOf(station));
        m_stations.push_back(std::move(station));
    }
}

void RadioDirectory::invent(std::size_t count)
{
    const std::vector<Json> models = std::move(m_stations);
    m_stations.clear();
    m_texts.clear();
    for (std::size_t i = 0; i < count; ++i) {
        Json station = models[i % models.size()];
        station["name"] = textOf(station, "name") + ' ' + std::to_string(i + 1);
        station["stationuuid"] = uuidOf(i + 1);
        station["clickcount"] = count - i;
        m_texts.push_back(textsOf(station));
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

/// Of tens of thousands of stations only those up to the limit are looked at.
Answer RadioDirectory::search(const Query &query)
{
    const std::vector<Wanted> wanted = wantedBy(query);
    const bool hidesBroken = isOn(query, "hidebroken");
    std::size_t skipped = numberOf(query, "offset", 0);
    const std::size_t limit = numberOf(query, "limit", m_stations.size());
    Json list = Json::array();
    for (const std::size_t index : orderOf(orderIn(query), isOn(query, "reverse"))) {
        if (list.size() >= limit)
            break;
        const auto isMatch
            = [&](const Wanted &each) { return matches(m_texts[index][each.filter], each); };
        if (hidesBroken && isBroken(m_stations[index]))
            continue;
        if (!std::all_of(wanted.begin(), wanted.end(), isMatch))
            continue;
        if (skipped > 0)
            --skipped;
        else
            list.push_back(m_stations[index]);
    }
    return {200, list};
}

/// Any text may be asked for as a field, so only those that stations have are remembered.
const RadioDirectory::Order &RadioDirectory::orderOf(const std::string &field, bool reverse)
{
    const bool isKnown = !m_stations.empty() && m_stations.front().contains(field);
    const std::string known = isKnown ? field : std::string();
    Order &order = m_orders[{known, reverse}];
    if (!order.empty())
        return order;
    order.resize(m_stations.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return reverse ? isLess(m_stations[b], m_stations[a], known)
                       : isLess(m_stations[a], m_stations[b], known);
    });
    return order;
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
        for (const bool reverse : {false, true})
            m_orders.erase({"clickcount", reverse});
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
