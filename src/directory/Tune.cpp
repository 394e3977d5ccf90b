// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Endpoints.h"
#include "directory/Rows.h"

#include <algorithm>

namespace directory {

namespace {

Answer unknownMethod()
{
    return failure("404", "Invalid method", "api.methodNotFound");
}
Answer unknownId()
{
    return failure("400", "Invalid ID", "request.idInvalid");
}

Json audioItem(const std::string &url, const Stream &stream, const std::string &id)
{
    Json item = {{"element", "audio"}, {"url", url}, {"reliability", stream.reliability},
        {"bitrate", stream.bitrate}, {"media_type", stream.codec}, {"position", 0},
        {"player_width", 0}, {"player_height", 0}, {"is_hls_advanced", "false"},
        {"live_seek_stream", "false"}, {"guide_id", id}, {"is_ad_clipped_content_enabled", "false"},
        {"is_direct", stream.playlist.empty()}};
    if (!stream.playlist.empty())
        item["playlist_type"] = stream.playlist;
    return item;
}

Json placeholderItem(const Context &context, const std::string &name, const std::string &id)
{
    Stream stream;
    stream.codec = "mp3";
    stream.bitrate = 24;
    return audioItem(context.placeholder(name), stream, id);
}

Json stationStreams(const Context &context, const Station &station)
{
    Json items = Json::array();
    const std::string obstacle = context.obstacle(station);
    if (!obstacle.empty()) {
        items.push_back(placeholderItem(context, obstacle, station.id));
        return items;
    }
    for (std::size_t i = 0; i < station.streams.size(); ++i) {
        if (context.accepts(station.streams[i].codec))
            items.push_back(audioItem(
                context.streamAddress(station, i), station.streams[i], streamId(station, i)));
    }
    return items;
}

Json topicStream(const Context &context, const Topic &topic)
{
    Stream stream;
    stream.codec = "mp3";
    stream.bitrate = 96;
    return Json::array(
        {audioItem(context.here("/stream/" + topic.id + "/1.mp3"), stream, topic.id)});
}

Json showStreams(const Context &context, const Show &show)
{
    if (const Station *station = context.catalog().station(show.station))
        return stationStreams(context, *station);
    if (show.topics.empty())
        return Json::array({placeholderItem(context, "nostream", show.id)});
    return topicStream(context, *context.catalog().topic(show.topics.front()));
}

/// The items of an id; null for a kind of id that cannot be played, an empty list for an id that
/// does not exist.
Json resolve(const Context &context, const std::string &id)
{
    const Catalog &catalog = context.catalog();
    if (const Station *station = catalog.station(id))
        return stationStreams(context, *station);
    if (const Topic *topic = catalog.topic(id))
        return topicStream(context, *topic);
    if (const Show *show = catalog.show(id))
        return showStreams(context, *show);
    const StreamInstance instance = catalog.stream(id);
    if (instance.station) {
        const Station &station = *instance.station;
        if (!station.availability.empty())
            return Json::array({placeholderItem(context, station.availability, id)});
        return Json::array({audioItem(
            context.streamAddress(station, instance.index), station.streams[instance.index], id)});
    }
    const bool playableKind
        = id.size() > 1 && std::string("stpe").find(id.front()) != std::string::npos;
    return playableKind ? Json::array() : Json();
}

Answer playlistText(const std::string &text)
{
    Answer answer;
    answer.contentType = "audio/x-mpegurl";
    answer.body = text;
    return answer;
}

Answer resolved(const Context &context)
{
    const Json items = resolve(context, context.param("id"));
    if (context.param("render") == "json") {
        if (items.is_null())
            return unknownMethod();
        return items.empty() ? unknownId() : success({}, items);
    }
    if (items.empty())
        return playlistText("#STATUS: 400\n");
    std::string text;
    for (const Json &item : items)
        text += item["url"].get<std::string>() + '\n';
    return playlistText(text);
}

Answer streamPicker(const Context &context)
{
    const Station *station = context.catalog().station(context.param("id"));
    if (!station)
        return unknownId();
    Json rows = Json::array();
    for (std::size_t i = 0; i < station->streams.size(); ++i) {
        const Stream &stream = station->streams[i];
        if (!context.accepts(stream.codec) || !station->availability.empty())
            continue;
        const std::string id = streamId(*station, i);
        rows.push_back({{"element", "outline"}, {"type", "audio"},
            {"text", station->name + " - " + std::to_string(stream.bitrate) + "k " + stream.codec},
            {"URL", context.api("Tune.ashx", {{"id", id}, {"sid", station->id}})},
            {"bitrate", std::to_string(stream.bitrate)},
            {"reliability", std::to_string(stream.reliability)}, {"media_type", stream.codec},
            {"guide_id", id}, {"station_id", station->id}, {"item", "station"}});
    }
    return success(station->name, orNothing(context, std::move(rows)));
}

Json carriers(const Context &context, const Show &show, bool live)
{
    Json rows = Json::array();
    const Station *station = context.catalog().station(show.station);
    if (station && (context.onAir(*station, context.now()).show == &show) == live)
        rows.push_back(stationRow(context, *station, StationText::Place, {{"sid", show.id}}));
    return rows;
}

Answer showContents(const Context &context)
{
    const Show *show = context.catalog().show(context.param("id"));
    if (!show)
        return unknownId();
    Json topics = Json::array();
    for (const std::string &id : show->topics)
        topics.push_back(topicRow(context, *context.catalog().topic(id)));

    Json body = Json::array();
    for (Json each : {section(context.word("liveNow"), "liveShow", carriers(context, *show, true)),
             section(context.word("recentEpisodes"), "topics", std::move(topics)),
             section(context.word("stations"), "stations", carriers(context, *show, false))}) {
        if (!each["children"].empty())
            body.push_back(std::move(each));
    }
    return success(
        show->title + ' ' + context.word("listeningOptions"), orNothing(context, std::move(body)));
}

Answer showCarriers(const Context &context)
{
    const Show *show = context.catalog().show(context.param("id"));
    if (!show)
        return unknownId();
    Json rows = carriers(context, *show, true);
    if (!rows.empty()) {
        const Station *station = context.catalog().station(show->station);
        const Broadcast onAir = context.onAir(*station, context.now());
        rows[0]["seconds_remaining"] = std::to_string(onAir.start + onAir.seconds - context.now());
    }
    return success(show->title, orNothing(context, std::move(rows)));
}

} // namespace

Answer tune(const Context &context)
{
    const std::string c = lowered(context.param("c"));
    if (c.empty())
        return resolved(context);
    if (c == "ebrowse")
        return streamPicker(context);
    if (c == "pbrowse")
        return showContents(context);
    return c == "sbrowse" ? showCarriers(context) : unknownMethod();
}

} // namespace directory
