// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Context.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace directory {

namespace {

constexpr std::int64_t SecondsPerDay = 24 * 3600;
/// Port 1 (tcpmux): nothing listens there.
constexpr char DeadAddress[] = "http://127.0.0.1:1";

constexpr const char *RepeatedParams[]
    = {"formats", "partnerId", "username", "serial", "locale", "latlon", "filter"};

bool plausibleHost(const std::string &host)
{
    return !host.empty() && host.size() <= 255 && std::all_of(host.begin(), host.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
            || c == '.' || c == '-' || c == ':' || c == '[' || c == ']' || c == '_';
    });
}

std::string baseAddress(const ApiRequest &request)
{
    if (!plausibleHost(request.host))
        return "http://127.0.0.1";
    // The web API's links are http even in answers over TLS. But a host with a port is this server
    // under its own address, and that port speaks TLS.
    const bool namesPort = request.host.find(':') != std::string::npos;
    return (request.secure && namesPort ? "https://" : "http://") + request.host;
}

bool readPosition(const std::string &text, Position &position)
{
    char *end = nullptr;
    position.latitude = std::strtod(text.c_str(), &end);
    if (end == text.c_str() || *end != ',')
        return false;
    const char *second = end + 1;
    position.longitude = std::strtod(second, &end);
    return end != second && *end == '\0' && std::abs(position.latitude) <= 90
        && std::abs(position.longitude) <= 180;
}

std::int64_t floorDiv(std::int64_t a, std::int64_t b)
{
    return a / b - (a % b < 0 ? 1 : 0);
}

} // namespace

std::uint32_t stableNumber(const std::string &text)
{
    std::uint32_t hash = 2166136261u;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    return hash ^ (hash >> 15);
}

std::string codecExtension(const std::string &codec)
{
    if (codec == "hls")
        return "m3u8";
    return codec == "flash" ? "flv" : codec;
}

std::string streamExtension(const Stream &stream)
{
    return stream.playlist.empty() ? codecExtension(stream.codec) : stream.playlist;
}

std::string isoTime(std::int64_t seconds)
{
    const std::time_t time = static_cast<std::time_t>(seconds);
    std::tm parts {};
    gmtime_r(&time, &parts);
    char text[40];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    return text;
}

Context::Context(
    const ApiRequest &request, const Catalog &catalog, Members &members, std::int64_t now)
    : m_request(request)
    , m_catalog(catalog)
    , m_members(members)
    , m_now(now)
    , m_base(baseAddress(request))
{
    const std::string locale = lowered(param("locale").substr(0, 2));
    m_language = catalog.texts.count(locale) != 0 ? locale : "en";
    for (std::string &format : split(lowered(param("formats")), ','))
        m_formats.insert(std::move(format));
    if (m_formats.empty())
        m_formats.insert("mp3"); // the default of clients that name no formats
}

const std::string &Context::word(const char *key) const
{
    static const std::string missing;
    for (const std::string &language : {m_language, std::string("en")}) {
        const auto words = m_catalog.texts.find(language);
        if (words == m_catalog.texts.end())
            continue;
        const auto found = words->second.find(key);
        if (found != words->second.end())
            return found->second;
    }
    return missing;
}

std::string Context::api(const char *page, Query query) const
{
    for (const char *name : RepeatedParams) {
        std::string value = param(name);
        if (!value.empty() && !query.has(name))
            query.add(name, std::move(value));
    }
    return std::string("http://opml.radiotime.com/") + page + '?' + query.encoded();
}

std::string Context::here(const std::string &path) const
{
    return m_base + path;
}

std::string Context::logo(const std::string &guideId) const
{
    return here("/logo/" + guideId + "q.png");
}

std::string Context::placeholder(const std::string &name) const
{
    return here("/service/Audio/" + name + ".enUS.mp3");
}

std::string Context::streamAddress(const Station &station, std::size_t index) const
{
    const Stream &stream = station.streams[index];
    const std::string path
        = "/stream/" + station.id + '/' + std::to_string(index + 1) + '.' + streamExtension(stream);
    return stream.trick == "refused" ? DeadAddress + path : here(path);
}

bool Context::accepts(const std::string &codec) const
{
    return m_formats.count("*") != 0 || m_formats.count(codec) != 0;
}

bool Context::accepts(const Station &station) const
{
    return std::any_of(station.streams.begin(), station.streams.end(),
        [this](const Stream &stream) { return accepts(stream.codec); });
}

std::string Context::obstacle(const Station &station) const
{
    if (!station.availability.empty())
        return station.availability;
    return accepts(station) ? std::string() : "notcompatible";
}

const Library *Context::library() const
{
    return m_members.find(param("username"), param("serial"));
}

bool Context::isPreset(const std::string &id) const
{
    const Library *presets = library();
    return presets && presets->holds(id);
}

const Region *Context::city() const
{
    Position position;
    if (readPosition(param("latlon"), position))
        return m_catalog.cityNearest(position);
    return m_catalog.region(m_catalog.homeCity);
}

Playing playingAt(const Catalog &catalog, const Station &station, std::int64_t when)
{
    Playing playing;
    const std::size_t turn = static_cast<std::size_t>(when) + stableNumber(station.id);
    if (!station.playing.empty()) {
        playing.text = station.playing[turn % station.playing.size()];
        const std::size_t dash = playing.text.find(" - ");
        playing.artist = playing.text.substr(0, dash);
        playing.song = dash == std::string::npos ? std::string() : playing.text.substr(dash + 3);
        for (const Artist &artist : catalog.artists) {
            if (artist.name == playing.artist)
                playing.artistId = artist.id;
        }
        return playing;
    }
    std::vector<const Artist *> artists;
    for (const Artist &artist : catalog.artists) {
        if (artist.genre == station.genre)
            artists.push_back(&artist);
    }
    if (artists.empty())
        return playing;
    const Artist &artist = *artists[turn % artists.size()];
    playing.artist = artist.name;
    playing.artistId = artist.id;
    playing.song = artist.songs[turn / artists.size() % artist.songs.size()];
    playing.text = playing.artist + " - " + playing.song;
    return playing;
}

std::int64_t Context::utcOffset(const Station &station) const
{
    const Region *country = m_catalog.above(station.city, Region::Kind::Country);
    return country ? country->utcOffsetMinutes * 60 : 0;
}

std::vector<Broadcast> Context::schedule(const Station &station, std::int64_t day) const
{
    std::vector<Broadcast> broadcasts;
    const auto weekday = static_cast<std::size_t>(((day + 4) % 7 + 7) % 7); // day 0 was a Thursday
    for (const Show &show : m_catalog.shows) {
        if (show.station != station.id || !show.slot || !show.slot->days[weekday])
            continue;
        const std::int64_t start
            = day * SecondsPerDay + show.slot->startMinute * 60 - utcOffset(station);
        broadcasts.push_back({&show, start, show.slot->minutes * 60});
    }
    std::sort(broadcasts.begin(), broadcasts.end(),
        [](const Broadcast &a, const Broadcast &b) { return a.start < b.start; });
    return broadcasts;
}

Broadcast Context::onAir(const Station &station, std::int64_t at) const
{
    const std::int64_t today = floorDiv(at + utcOffset(station), SecondsPerDay);
    for (const std::int64_t day : {today, today - 1}) { // a late show runs on after midnight
        for (const Broadcast &broadcast : schedule(station, day)) {
            if (broadcast.start <= at && at < broadcast.start + broadcast.seconds)
                return broadcast;
        }
    }
    return {};
}

} // namespace directory
