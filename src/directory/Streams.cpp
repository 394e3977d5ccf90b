// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Streams.h"

#include "directory/Hls.h"
#include "directory/IcyMetadata.h"

#include <algorithm>
#include <glib.h>
#include <stdexcept>

namespace directory {

namespace {

constexpr std::size_t MaxPieces = 100;
constexpr int FileBitrate = 96;
constexpr std::uint64_t PrerollSeconds = 4;
constexpr std::size_t HugePlaylist = 300 * 1024;
constexpr int ManyEntries = 1000;

// Files are MP3 with frames of constant size, so a length is known without encoding.
constexpr unsigned FileRate = 48000;
constexpr std::uint64_t FileFrame = 1152;
constexpr std::uint64_t LoopSeconds = 6; ///< whole rounds of the melody and whole frames
constexpr std::uint64_t LoopFrames = LoopSeconds * FileRate / FileFrame;

constexpr std::uint64_t FrameBytes = FileFrame / 8 * FileBitrate * 1000 / FileRate;

const std::string PlaylistKinds[] {"m3u", "pls", "asx", "xspf"};

Answer nothing()
{
    return textAnswer(404, "There is nothing here.");
}

std::string typeOf(const std::string &codec)
{
    if (codec == "mp3")
        return "audio/mpeg";
    if (codec == "aac")
        return "audio/aac";
    return codec == "flac" ? "audio/flac" : "audio/ogg";
}

/// Without control characters, which would break a header.
std::string oneLine(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return text;
}

std::uint64_t milliseconds()
{
    return static_cast<std::uint64_t>(g_get_real_time() / 1000);
}

Answer typed(const std::string &type, std::string body)
{
    Answer answer;
    answer.contentType = type;
    answer.body = std::move(body);
    answer.headers.emplace_back("Cache-Control", "no-cache");
    return answer;
}

int variantBitrate(const Stream &stream, int variant)
{
    return stream.bitrate / (stream.playlist.empty() ? 1 : variant);
}

/// A range of RFC 9110, 14.1.2: first and last byte. Anything but a single range is ignored.
struct Range {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
};

std::optional<Range> parseRange(const std::string &text, std::uint64_t length)
{
    constexpr std::string_view Unit = "bytes=";
    const std::size_t dash = text.find('-');
    if (text.rfind(Unit, 0) != 0 || dash == std::string::npos || length == 0)
        return std::nullopt;
    const std::string from = text.substr(Unit.size(), dash - Unit.size());
    const std::string to = text.substr(dash + 1);
    const int first = parseNumber(from);
    const int last = parseNumber(to);
    if ((first < 0 && !from.empty()) || (last < 0 && !to.empty()) || (from.empty() && last < 0))
        return std::nullopt;
    Range range {0, length - 1};
    if (first < 0)
        range.first = length - std::min(length, static_cast<std::uint64_t>(last));
    else
        range.first = static_cast<std::uint64_t>(first);
    if (first >= 0 && last >= 0)
        range.last = std::min(range.last, static_cast<std::uint64_t>(last));
    return range;
}

std::string padded(const std::string &text, std::size_t size)
{
    const std::string line = "# Nothing to be heard on this line.\n";
    std::string out;
    while (out.size() + text.size() < size)
        out += line;
    return out + text;
}

/// That of a tenth stream, which no station has.
Melody prerollMelody(const std::string &stationId)
{
    return Melody(stationId, 9);
}

/// MP3 that can be repeated seamlessly.
std::string loopOf(const Melody &melody)
{
    const AudioFormat format {"mp3", FileBitrate, FileRate, 2};
    constexpr std::size_t Size = LoopFrames * FrameBytes;
    std::string all;
    for (const std::string &piece :
        encoded(format, melody.samples(0, 3 * LoopFrames * FileFrame, FileRate, format.channels)))
        all += piece;
    // The bit reservoir is empty in the first frames, and the encoder's delay cuts off the last
    // ones: take the middle.
    if (all.size() < 2 * Size)
        throw std::runtime_error("the encoder gave too little");
    return all.substr(Size, Size);
}

Json melodyOf(const Melody &melody, const std::string &path, const std::string &codec, int bitrate)
{
    return {{"path", path}, {"codec", codec}, {"bitrate", bitrate}, {"notes", melody.notes()},
        {"note_seconds", Melody::NoteSeconds}};
}

} // namespace

std::string pathHere(const Catalog &catalog, const std::string &host, const std::string &path)
{
    // The default port is left out of the Host header.
    const std::string named = host.find(':') == std::string::npos ? host + ":80" : host;
    for (const OtherServer &server : catalog.otherServers) {
        if (path == server.path && equalIgnoringCase(named, server.host))
            return "/stream/" + server.station.id + "/1."
                + streamExtension(server.station.streams.front());
    }
    return path;
}

Streams::Streams(const Catalog &catalog)
    : m_catalog(catalog)
{
    m_samples.id = "sample";
    m_samples.name = "Samples";
    for (const Sample &sample : catalog.streamSamples)
        m_samples.streams.push_back(sample.stream);
}

const Station *Streams::stationOf(const std::string &id) const
{
    if (id == m_samples.id)
        return &m_samples;
    for (const OtherServer &server : m_catalog.otherServers) {
        if (server.station.id == id)
            return &server.station;
    }
    return m_catalog.station(id);
}

std::optional<Streams::Place> Streams::placeOf(
    const std::string &id, const std::string &number) const
{
    Place place;
    place.station = stationOf(id);
    place.index = static_cast<std::size_t>(parseNumber(number)) - 1;
    if (!place.station || place.index >= place.station->streams.size()
        || !place.station->availability.empty())
        return std::nullopt;
    return place;
}

Answer Streams::answer(const Context &context)
{
    try {
        return found(context);
    } catch (const std::runtime_error &error) {
        return textAnswer(500, error.what());
    }
}

Answer Streams::found(const Context &context)
{
    const std::vector<std::string> parts = split(context.request().path, '/');
    if (parts.size() < 3 || parts.size() > 4)
        return nothing();
    if (const Topic *episode = m_catalog.topic(parts[1]))
        return parts.size() == 3 && parts[2] == "1.mp3" ? topic(context, *episode) : nothing();
    if (parts.size() == 4) {
        const std::optional<Place> place = placeOf(parts[1], parts[2]);
        return place ? below(context, *place, parts[3]) : nothing();
    }
    const std::size_t dot = std::min(parts[2].rfind('.'), parts[2].size());
    std::string number = parts[2].substr(0, dot);
    for (std::size_t i = 0; parts[1] == m_samples.id && i < m_catalog.streamSamples.size(); ++i) {
        if (m_catalog.streamSamples[i].file == parts[2])
            number = std::to_string(i + 1);
    }
    const std::optional<Place> place = placeOf(parts[1], number);
    return place ? atPlace(context, *place, parts[2].substr(std::min(dot + 1, parts[2].size())))
                 : nothing();
}

Answer Streams::atPlace(const Context &context, const Place &place, const std::string &extension)
{
    const Stream &stream = place.stream();
    if (stream.trick == "missing")
        return nothing();
    if (!stream.playlist.empty() && extension == stream.playlist)
        return playlist(context, place, stream.depth);
    if (extension != codecExtension(stream.codec))
        return nothing();
    if (stream.codec == "hls")
        return typed(playlistType("m3u8"),
            Hls::mediaPlaylist(std::to_string(place.index + 1) + "/1-", milliseconds()));
    return live(context, place);
}

Answer Streams::below(const Context &context, const Place &place, const std::string &file)
{
    const Stream &stream = place.stream();
    const std::size_t dot = std::min(file.rfind('.'), file.size());
    const std::string name = file.substr(0, dot);
    const std::string extension = file.substr(std::min(dot + 1, file.size()));
    const int number = parseNumber(name);
    if (stream.codec == "hls") {
        if (extension == "ts")
            return segment(place, name);
        if (extension == "m3u8" && (number == 1 || number == 2))
            return typed(playlistType("m3u8"), Hls::mediaPlaylist(name + '-', milliseconds()));
        return nothing();
    }
    if (stream.trick == "preroll" && file == "preroll.mp3")
        return clip(context, "preroll " + place.station->id, prerollMelody(place.station->id),
            PrerollSeconds);
    const bool level = number > 0 && number < stream.depth
        && extension == PlaylistKinds[static_cast<std::size_t>(number) % std::size(PlaylistKinds)];
    return level ? playlist(context, place, number) : nothing();
}

Answer Streams::live(const Context &context, const Place &place) const
{
    const Station &station = *place.station;
    const Stream &stream = place.stream();
    if (!canEncode(stream.codec))
        return nothing();
    const bool takesTitles = stream.codec == "mp3" || stream.codec == "aac";
    LiveAudio audio {formatFor(stream.codec, stream.bitrate), Melody(station.id, place.index), {}};
    Answer answer = typed(typeOf(stream.codec), {});
    answer.headers.emplace_back("icy-name", oneLine(station.name));
    answer.headers.emplace_back("icy-genre", oneLine(m_catalog.genreName(station.genre)));
    answer.headers.emplace_back("icy-br", std::to_string(stream.bitrate));
    if (takesTitles && context.request().wantsTitles) {
        answer.headers.emplace_back("icy-metaint", std::to_string(IcyMetadata::Interval));
        const int asked = parseNumber(context.param("title_seconds"));
        const double period = asked > 0 ? asked : m_catalog.songSeconds;
        const auto start = static_cast<double>(context.now());
        audio.title = [this, &station, start, period](double elapsed) {
            const auto turn = static_cast<std::int64_t>((start + elapsed) / period);
            const std::string playing = playingAt(m_catalog, station, turn).text;
            return oneLine(playing.empty() ? station.name : playing);
        };
    }
    answer.audio.live = std::make_shared<const LiveAudio>(std::move(audio));
    return answer;
}

std::vector<PlaylistEntry> Streams::entriesOf(const Context &context, const Place &place, int level)
{
    const Stream &stream = place.stream();
    const std::string base = "/stream/" + place.station->id + '/' + std::to_string(place.index + 1);
    PlaylistEntry main {
        place.station->name, context.here(base + '.' + codecExtension(stream.codec))};
    if (level > 1)
        main.address = context.here(base + '/' + std::to_string(level - 1) + '.'
            + PlaylistKinds[static_cast<std::size_t>(level - 1) % std::size(PlaylistKinds)]);
    if (stream.trick == "loop")
        main.address = context.here(base + '.' + stream.playlist);
    if (stream.trick == "dead-first")
        return {{"Off the air", context.here(base + "/nothing-here.mp3")}, main};
    if (stream.trick == "preroll")
        return {{"A word first", context.here(base + "/preroll.mp3")}, main};
    return std::vector<PlaylistEntry>(stream.trick == "many" ? ManyEntries : 1, main);
}

Answer Streams::playlist(const Context &context, const Place &place, int level) const
{
    const Stream &stream = place.stream();
    const std::string number = std::to_string(place.index + 1);
    const std::string kind = level == stream.depth
        ? stream.playlist
        : PlaylistKinds[static_cast<std::size_t>(level) % std::size(PlaylistKinds)];
    if (stream.trick == "endless")
        return live(context, place);
    if (stream.trick == "html")
        return typed("text/html; charset=utf-8",
            "<!DOCTYPE html>\n<html><head><title>" + place.station->name
                + "</title></head>\n<body><p>Listen to us in our app.</p></body></html>\n");
    if (stream.codec == "hls")
        return typed(playlistType("m3u8"),
            Hls::masterPlaylist({{number + "/1.m3u8", variantBitrate(stream, 1)},
                {number + "/2.m3u8", variantBitrate(stream, 2)}}));

    std::string text = playlistText(kind, entriesOf(context, place, level));
    if (stream.trick == "huge")
        text = padded(text, HugePlaylist);
    return typed(stream.trick == "mislabelled" ? "text/html" : playlistType(kind), text);
}

Answer Streams::segment(const Place &place, const std::string &name)
{
    const std::size_t dash = std::min(name.find('-'), name.size());
    const int variant = parseNumber(name.substr(0, dash));
    const std::string digits = name.substr(std::min(dash + 1, name.size()));
    if ((variant != 1 && variant != 2) || digits.empty() || digits.size() > 15
        || digits.find_first_not_of("0123456789") != std::string::npos)
        return nothing();
    const std::uint64_t number = std::stoull(digits);
    if (!Hls::available(number, milliseconds()))
        return nothing();
    auto &piece = m_pieces[place.station->id + '/' + std::to_string(place.index) + '/' + name];
    if (!piece)
        piece = std::make_shared<const std::string>(
            Hls::segment(Melody(place.station->id, place.index),
                variantBitrate(place.stream(), variant), number));
    Answer answer = typed("video/mp2t", *piece);
    if (m_pieces.size() > MaxPieces)
        m_pieces.clear();
    return answer;
}

Answer Streams::topic(const Context &context, const Topic &topic)
{
    return clip(
        context, topic.id, Melody(topic.id, 0), static_cast<std::uint64_t>(topic.minutes) * 60);
}

Answer Streams::clip(
    const Context &context, const std::string &name, const Melody &melody, std::uint64_t seconds)
{
    auto &loop = m_pieces[name];
    if (!loop)
        loop = std::make_shared<const std::string>(loopOf(melody));
    FileAudio audio {loop, 0, seconds * FileRate / FileFrame * FrameBytes};
    if (m_pieces.size() > MaxPieces)
        m_pieces.clear();

    Answer answer = typed("audio/mpeg", {});
    answer.headers.emplace_back("Accept-Ranges", "bytes");
    const std::uint64_t whole = audio.length;
    if (const std::optional<Range> range = parseRange(context.request().range, whole)) {
        if (range->first > range->last) {
            answer = textAnswer(416, "This part is not there.");
            answer.headers.emplace_back("Content-Range", "bytes */" + std::to_string(whole));
            return answer;
        }
        answer.status = 206;
        audio.offset = range->first;
        audio.length = range->last - range->first + 1;
        answer.headers.emplace_back("Content-Range",
            "bytes " + std::to_string(range->first) + '-' + std::to_string(range->last) + '/'
                + std::to_string(whole));
    }
    answer.headers.emplace_back("Content-Length", std::to_string(audio.length));
    answer.audio.file = std::make_shared<const FileAudio>(std::move(audio));
    return answer;
}

Answer Streams::melodies(const Context &context) const
{
    const std::string id = context.param("id");
    Json list = Json::array();
    Json answer = {{"id", id}};
    if (m_catalog.topic(id))
        list.push_back(melodyOf(Melody(id, 0), "/stream/" + id + "/1.mp3", "mp3", FileBitrate));
    else if (const Station *station = stationOf(id)) {
        for (std::size_t i = 0; i < station->streams.size(); ++i) {
            const Stream &stream = station->streams[i];
            const std::string base = "/stream/" + id + '/' + std::to_string(i + 1);
            Json entry = melodyOf(
                Melody(id, i), base + '.' + streamExtension(stream), stream.codec, stream.bitrate);
            if (!stream.playlist.empty())
                entry["leads_to"] = base + '.' + codecExtension(stream.codec);
            if (stream.trick == "preroll")
                entry["preroll"]
                    = melodyOf(Melody(id, 9), base + "/preroll.mp3", "mp3", stream.bitrate);
            list.push_back(std::move(entry));
        }
    } else
        return textAnswer(404, "Nothing here has this id.");
    answer["streams"] = std::move(list);
    Answer out;
    out.body = serialized(answer) + '\n';
    return out;
}

} // namespace directory
