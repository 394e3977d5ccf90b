// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Rows.h"

#include <algorithm>
#include <ctime>

namespace directory {

namespace {

std::string label(const Context &context, const Station &station, StationText text)
{
    if (text == StationText::Place)
        return station.name + " (" + placeOf(context, station) + ')';
    const std::string named
        = station.name + " (" + context.catalog().genreName(station.genre) + ')';
    return station.frequency.empty() ? named : station.frequency + " | " + named;
}

std::string formatsOf(const Context &context, const Station &station)
{
    std::string formats;
    std::set<std::string> seen;
    for (const Stream &stream : station.streams) {
        if (context.accepts(stream.codec) && seen.insert(stream.codec).second)
            formats += (formats.empty() ? "" : ",") + stream.codec;
    }
    return formats;
}

Json unavailableRow(const Context &context, const Station &station, const std::string &obstacle)
{
    const char *reason = obstacle == "georestricted" ? "Not available in your country"
        : obstacle == "restricted"                   ? "Not available"
        : obstacle == "nostream"                     ? "Does not stream"
                                                     : "No compatible stream";
    return {{"element", "outline"}, {"type", "audio"}, {"text", station.name + " - Not Supported"},
        {"URL", context.placeholder(obstacle)}, {"guide_id", station.id}, {"subtext", reason},
        {"key", "unavailable"}, {"item", "station"}, {"preset_id", station.id}};
}

/// "Saturday Mar 14"
std::string shortDate(const std::string &date)
{
    std::tm parts {};
    parts.tm_year = parseNumber(date.substr(0, 4)) - 1900;
    parts.tm_mon = parseNumber(date.substr(5, 2)) - 1;
    parts.tm_mday = parseNumber(date.substr(8, 2));
    timegm(&parts); // fills in the day of the week
    char text[40];
    std::strftime(text, sizeof text, "%A %b %e", &parts);
    return text;
}

std::string lasting(int minutes)
{
    const std::string rest = std::to_string(minutes % 60) + 'm';
    return minutes < 60 ? rest : std::to_string(minutes / 60) + "h, " + rest;
}

} // namespace

Json textRow(const std::string &text)
{
    return {{"element", "outline"}, {"type", "text"}, {"text", text}};
}

Json textRow(const std::string &text, const std::string &guideId)
{
    Json row = textRow(text);
    row["guide_id"] = guideId;
    return row;
}

Json linkRow(const std::string &text, const std::string &url, const std::string &guideId,
    const std::string &key)
{
    Json row = {{"element", "outline"}, {"type", "link"}, {"text", text}, {"URL", url}};
    if (!guideId.empty())
        row["guide_id"] = guideId;
    if (!key.empty())
        row["key"] = key;
    return row;
}

Json section(const std::string &text, const std::string &key, Json children)
{
    return {
        {"element", "outline"}, {"text", text}, {"key", key}, {"children", std::move(children)}};
}

std::string placeOf(const Context &context, const Station &station)
{
    const Region *city = context.catalog().region(station.city);
    const Region *country = context.catalog().above(station.city, Region::Kind::Country);
    return (city ? city->name : std::string()) + (country ? ", " + country->name : std::string());
}

Json stationRow(
    const Context &context, const Station &station, StationText text, const Query &extra)
{
    const std::string obstacle = context.obstacle(station);
    if (!obstacle.empty())
        return unavailableRow(context, station, obstacle);
    const auto stream = std::find_if(station.streams.begin(), station.streams.end(),
        [&context](const Stream &each) { return context.accepts(each.codec); });
    const Playing playing = context.playing(station);
    const Broadcast onAir = context.onAir(station, context.now());

    Query link {{"id", station.id}};
    link.merge(extra);
    Json row = {{"element", "outline"}, {"type", "audio"}, {"text", label(context, station, text)},
        {"URL", context.api("Tune.ashx", link)}, {"bitrate", std::to_string(stream->bitrate)},
        {"reliability", std::to_string(stream->reliability)}, {"guide_id", station.id}};
    if (!playing.text.empty() || !station.slogan.empty())
        row["subtext"] = playing.text.empty() ? station.slogan : playing.text;
    row["genre_id"] = station.genre;
    row["formats"] = formatsOf(context, station);
    if (!playing.text.empty()) {
        row["playing"] = playing.text;
        row["playing_image"]
            = context.logo(playing.artistId.empty() ? station.id : playing.artistId);
    }
    if (onAir.show)
        row["show_id"] = onAir.show->id;
    row["item"] = "station";
    row["image"] = context.logo(station.id);
    if (onAir.show)
        row["current_track"] = onAir.show->title;
    row["now_playing_id"] = station.id;
    row["preset_id"] = station.id;
    if (context.isPreset(station.id))
        row["is_preset"] = "true";
    return row;
}

Json showRow(const Context &context, const Show &show)
{
    Query link {{"c", "pbrowse"}, {"id", show.id}};
    if (!show.station.empty())
        link.add("sid", show.station);
    Json row = {{"element", "outline"}, {"type", "link"}, {"text", show.title},
        {"URL", context.api("Tune.ashx", link)}, {"guide_id", show.id}};
    const std::string summary = show.description.substr(0, show.description.find('\r'));
    if (!summary.empty())
        row["subtext"] = summary;
    row["genre_id"] = show.genre;
    row["item"] = "show";
    row["image"] = context.logo(show.id);
    if (!summary.empty())
        row["current_track"] = summary;
    row["preset_id"] = show.id;
    if (context.isPreset(show.id))
        row["is_preset"] = "true";
    return row;
}

Json topicRow(const Context &context, const Topic &topic)
{
    const std::string date = shortDate(topic.date);
    return {{"element", "outline"}, {"type", "audio"},
        {"text", topic.title + " (" + lasting(topic.minutes) + ')'},
        {"URL", context.api("Tune.ashx", {{"id", topic.id}, {"sid", topic.show}})},
        {"guide_id", topic.id}, {"stream_type", "download"}, {"media_type", "mp3"},
        {"topic_duration", std::to_string(topic.minutes * 60)}, {"subtext", date},
        {"item", "topic"}, {"image", context.logo(topic.show)}, {"current_track", date},
        {"now_playing_id", topic.id}};
}

Json artistRow(const Context &context, const Artist &artist)
{
    return linkRow(context.word("artist") + ": " + artist.name,
        context.api("Browse.ashx", {{"id", artist.id}}), artist.id);
}

Json nothingRows(const Context &context)
{
    return Json::array({textRow(context.word("nothing"))});
}

Json orNothing(const Context &context, Json rows)
{
    return rows.empty() ? nothingRows(context) : std::move(rows);
}

} // namespace directory
