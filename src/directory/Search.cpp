// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Search.h"

#include "directory/Rows.h"

#include <algorithm>
#include <glib.h>

namespace directory {

namespace {

/// The searches for samples that Config.ashx names, for testers.
constexpr char LanguageSearch[] = "aa1";
constexpr char StreamSearch[] = "aa2";

Json languageSamples(const Context &context)
{
    Json rows = Json::array();
    for (const Sample &sample : context.catalog().languageSamples) {
        const Station *station = context.catalog().station(sample.station);
        if (station) {
            Json row = stationRow(context, *station);
            row["text"] = sample.text;
            row["subtext"] = sample.subtext;
            rows.push_back(std::move(row));
        } else {
            Json row = linkRow(sample.text,
                context.api("Browse.ashx", {{"c", "lang"}, {"filter", sample.language}}),
                sample.language);
            row["subtext"] = sample.subtext;
            rows.push_back(std::move(row));
        }
    }
    return rows;
}

Json streamSamples(const Context &context)
{
    Json rows = Json::array();
    for (const Sample &sample : context.catalog().streamSamples) {
        rows.push_back({{"element", "outline"}, {"type", "audio"}, {"text", sample.text},
            {"URL", context.here("/stream/sample/" + sample.file)},
            {"bitrate", std::to_string(sample.stream.bitrate)}, {"media_type", sample.stream.codec},
            {"item", "station"}, {"image", context.logo("s2")}});
    }
    return rows;
}

} // namespace

Search::Words Search::wordsOf(const std::string &text, bool withAlternates)
{
    gchar *valid = g_utf8_make_valid(text.c_str(), static_cast<gssize>(text.size()));
    gchar **ascii = nullptr;
    gchar **folded = g_str_tokenize_and_fold(valid, nullptr, withAlternates ? &ascii : nullptr);
    Words words;
    for (gchar **list : {folded, ascii}) {
        for (gchar **word = list; word && *word; ++word)
            words.emplace_back(*word);
    }
    g_strfreev(folded);
    g_strfreev(ascii);
    g_free(valid);
    return words;
}

Search::Search(const Catalog &catalog)
    : m_catalog(catalog)
{
    for (const Station &station : catalog.stations) {
        const Region *city = catalog.region(station.city);
        const Region *country = catalog.above(station.city, Region::Kind::Country);
        m_stations.push_back({wordsOf(station.name),
            wordsOf(catalog.genreName(station.genre) + ' ' + station.slogan + ' ' + station.callSign
                + ' ' + (city ? city->name : "") + ' ' + (country ? country->name : ""))});
    }
    for (const Show &show : catalog.shows)
        m_shows.push_back({wordsOf(show.title),
            wordsOf(show.hosts + ' ' + catalog.genreName(show.genre) + ' ' + show.description)});
    for (const Artist &artist : catalog.artists)
        m_artists.push_back({wordsOf(artist.name), wordsOf(catalog.genreName(artist.genre))});
}

bool Search::begins(const Words &words, const std::string &term)
{
    return std::any_of(words.begin(), words.end(),
        [&term](const std::string &word) { return word.compare(0, term.size(), term) == 0; });
}

int Search::rank(const Entry &entry, const Words &terms)
{
    bool nameAlone = true;
    for (const std::string &term : terms) {
        if (begins(entry.name, term))
            continue;
        nameAlone = false;
        if (!begins(entry.other, term))
            return 0;
    }
    return nameAlone ? 2 : 1;
}

std::vector<std::size_t> Search::hits(const std::vector<Entry> &entries, const Words &terms)
{
    std::vector<std::size_t> best;
    std::vector<std::size_t> rest;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const int value = rank(entries[i], terms);
        if (value == 2)
            best.push_back(i);
        else if (value == 1)
            rest.push_back(i);
    }
    best.insert(best.end(), rest.begin(), rest.end());
    return best;
}

Json Search::found(const Context &context, const Words &terms) const
{
    Json rows = Json::array();
    Json unavailable = Json::array();
    // Other values, and lists of them, are ignored.
    const std::string types = lowered(context.param("types"));
    const bool onlyStations = types == "station";
    const bool onlyShows = types == "show";
    if (!onlyShows) {
        for (const std::size_t i : hits(m_stations, terms)) {
            const Station &station = m_catalog.stations[i];
            Json &list = context.obstacle(station).empty() ? rows : unavailable;
            if (list.size() < MaxRows)
                list.push_back(stationRow(context, station));
        }
    }
    if (!onlyStations) {
        for (const std::size_t i : hits(m_shows, terms))
            rows.push_back(showRow(context, m_catalog.shows[i]));
    }
    if (!onlyStations && !onlyShows) {
        for (const std::size_t i : hits(m_artists, terms))
            rows.push_back(artistRow(context, m_catalog.artists[i]));
    }
    if (rows.size() > MaxRows)
        rows.erase(rows.begin() + MaxRows, rows.end());
    if (!unavailable.empty())
        rows.push_back(section(context.word("notPlayable"), "unavailable", std::move(unavailable)));
    return rows;
}

Answer Search::answer(const Context &context) const
{
    const std::string query = context.param("query");
    const std::string title = context.word("searchResults") + ": " + query;
    if (query == LanguageSearch)
        return success(title, languageSamples(context));
    if (query == StreamSearch)
        return success(title, streamSamples(context));
    if (query.find_first_not_of(' ') == std::string::npos)
        return failure("400", "The query is empty", "request.queryInvalid");

    const Words terms = query.size() <= MaxQuery ? wordsOf(query, false) : Words();
    Json rows = terms.empty() ? Json::array() : found(context, terms);
    if (rows.empty())
        rows.push_back(textRow(context.word("noResults") + ' ' + query));
    return success(title, std::move(rows));
}

} // namespace directory
