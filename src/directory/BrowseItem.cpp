// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/BrowsePages.h"
#include "directory/Lists.h"

#include <algorithm>
#include <ctime>

namespace directory {

namespace {

constexpr std::int64_t SecondsPerDay = std::int64_t(24) * 3600;
constexpr std::size_t MaxSimilar = 10;
constexpr int SongsShown = 12;
constexpr int SecondsPerSong = 240;

Json genreSection(const Context &context, const std::string &genreId)
{
    const Genre *genre = context.catalog().genre(genreId);
    Json rows = Json::array();
    rows.push_back(linkRow(genre->name, context.api("Browse.ashx", {{"id", genre->id}}), genre->id,
        genre->menu == "music" ? "music" : "talk"));
    return section(context.word("genres"), "genres", std::move(rows));
}

/// Network links carry no guide id.
Json networkSection(const Context &context, const Station &station)
{
    const Region *country = context.catalog().above(station.city, Region::Kind::Country);
    Json rows = Json::array();
    rows.push_back(linkRow(country->name + " Network",
        context.api("Browse.ashx", {{"id", 'a' + country->countryId.substr(1)}})));
    return section(context.word("networks"), "affiliates", std::move(rows));
}

/// Days since the epoch for "20260316"; `fallback` for anything else.
std::int64_t dayOf(const std::string &text, std::int64_t fallback)
{
    const int number = text.size() == 8 ? parseNumber(text) : -1;
    if (number < 0)
        return fallback;
    std::tm parts {};
    // Where time_t has 32 bits, it ends in 2038; later is as good as without an end.
    parts.tm_year = std::min(number / 10000, 2037) - 1900;
    parts.tm_mon = number / 100 % 100 - 1;
    parts.tm_mday = number % 100;
    if (parts.tm_year < 70 || parts.tm_mon < 0 || parts.tm_mon > 11 || parts.tm_mday < 1
        || parts.tm_mday > 31)
        return fallback;
    return timegm(&parts) / SecondsPerDay;
}

const std::string &timeZone(const Context &context, const Station &station)
{
    return context.catalog().above(station.city, Region::Kind::Country)->timeZone;
}

} // namespace

Answer stationRelated(const Context &context, const Station &station)
{
    Scope scope;
    scope.genres = {station.genre};
    Json similar = Json::array();
    for (const Station *other : stationsOf(context, scope, {})) {
        if (other != &station && similar.size() < MaxSimilar)
            similar.push_back(stationRow(context, *other));
    }
    Json shows = Json::array();
    for (const Show &show : context.catalog().shows) {
        if (show.station == station.id)
            shows.push_back(showRow(context, show));
    }
    Json body = Json::array();
    if (!similar.empty())
        body.push_back(section(context.word("similar"), "recommendations", std::move(similar)));
    if (!shows.empty())
        body.push_back(section(context.word("shows"), "shows", std::move(shows)));
    body.push_back(genreSection(context, station.genre));
    body.push_back(networkSection(context, station));
    return success(station.name, std::move(body));
}

Answer showRelated(const Context &context, const Show &show)
{
    Json body = Json::array();
    body.push_back(genreSection(context, show.genre));
    if (const Station *station = context.catalog().station(show.station))
        body.push_back(networkSection(context, *station));
    return success(show.title, std::move(body));
}

Answer artistPage(const Context &context, const Artist &artist)
{
    Json rows = Json::array();
    for (const Station &station : context.catalog().stations) {
        const bool plays = station.playing.empty()
            ? station.genre == artist.genre
            : std::any_of(station.playing.begin(), station.playing.end(),
                [&artist](const std::string &text) { return text.rfind(artist.name, 0) == 0; });
        if (plays)
            rows.push_back(stationRow(context, station));
    }
    return success(artist.name, orNothing(context, std::move(rows)));
}

Answer stationSchedule(const Context &context, const Station &station)
{
    const std::int64_t offset = context.utcOffset(station);
    const std::int64_t today = (context.now() + offset) / SecondsPerDay;
    const std::int64_t first = dayOf(context.param("start"), today);
    // A week at most: the days come from the client.
    const std::int64_t last = std::clamp(dayOf(context.param("stop"), first), first, first + 6);
    Json rows = Json::array();
    for (std::int64_t day = first; day <= last; ++day) {
        for (const Broadcast &broadcast : context.schedule(station, day)) {
            const Show &show = *broadcast.show;
            Json row = linkRow(show.title,
                context.api(
                    "Browse.ashx", {{"c", "topics"}, {"id", show.id}, {"title", show.title}}),
                show.id);
            row["start"] = isoTime(broadcast.start + offset);
            row["start_utc"] = isoTime(broadcast.start);
            row["duration"] = std::to_string(broadcast.seconds);
            row["image"] = context.logo(show.id);
            row["tz"] = timeZone(context, station);
            rows.push_back(std::move(row));
        }
    }
    return success(
        context.word("schedule") + " - " + station.name, orNothing(context, std::move(rows)));
}

Answer stationPlaylist(const Context &context, const Station &station)
{
    Json rows = Json::array();
    for (int back = 0; back < SongsShown; ++back) {
        const std::int64_t at = (context.now() / SecondsPerSong - back) * SecondsPerSong;
        const Context then(context.request(), context.catalog(), context.members(), at);
        const Playing playing = then.playing(station);
        if (playing.artistId.empty())
            continue;
        Json row = linkRow(
            playing.song, context.api("Browse.ashx", {{"id", playing.artistId}}), playing.artistId);
        row["subtext"] = playing.artist;
        row["start"] = isoTime(at + context.utcOffset(station));
        row["tz"] = timeZone(context, station);
        rows.push_back(std::move(row));
    }
    return success(station.name, orNothing(context, std::move(rows)));
}

Answer showTopics(const Context &context, const Show &show)
{
    Json rows = Json::array();
    for (const std::string &id : show.topics)
        rows.push_back(topicRow(context, *context.catalog().topic(id)));
    const std::string title = context.param("title");
    return success(title.empty() ? show.title : title, orNothing(context, std::move(rows)));
}

} // namespace directory
