// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Endpoints.h"
#include "directory/Rows.h"

#include <cstdio>

namespace directory {

namespace {

Answer cached(Answer answer, int seconds)
{
    answer.headers.emplace_back("Cache-Control", "max-age=" + std::to_string(seconds));
    return answer;
}

template <typename Items, typename MakeRow>
Answer taxonomy(const Items &items, const MakeRow &makeRow)
{
    Json rows = Json::array();
    for (const auto &item : items) {
        Json row = makeRow(item);
        if (!row.is_null())
            rows.push_back(std::move(row));
    }
    return cached(success({}, std::move(rows)), 3600);
}

Answer formatList()
{
    struct Format {
        const char *code;
        const char *name;
    };
    static constexpr Format Formats[] = {{"aac", "AAC"}, {"am", "AM"}, {"dab", "DAB"}, {"fm", "FM"},
        {"hd", "HD Radio"}, {"html", "HTML"}, {"mp3", "MP3"}, {"ogg", "Ogg Vorbis"},
        {"qt", "QuickTime"}, {"real", "Real"}, {"flash", "Flash"}, {"sat", "Satellite"},
        {"wma", "Windows Media"}, {"wmpro", "Windows Media Professional"},
        {"wmvideo", "Windows Media Video"}, {"wmvoice", "Windows Media Voice"}};
    return taxonomy(Formats, [](const Format &format) {
        Json row = textRow(format.name);
        row["key"] = format.code;
        return row;
    });
}

Answer localeList()
{
    static constexpr const char *Locales[] = {"en-US", "en-GB", "de-DE", "fr-FR", "es-ES"};
    return taxonomy(Locales, [](const char *locale) {
        Json row = textRow(locale);
        row["key"] = locale;
        return row;
    });
}

std::string decimals(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

Json orNull(const std::string &text)
{
    return text.empty() ? Json() : Json(text);
}

Json stationObject(const Context &context, const Station &station)
{
    const Catalog &catalog = context.catalog();
    const Region *city = catalog.region(station.city);
    const Region *country = catalog.above(station.city, Region::Kind::Country);
    const Genre *genre = catalog.genre(station.genre);
    const Playing playing = context.playing(station);
    const bool music = genre->menu == "music";
    bool scheduled = false;
    for (const Show &show : catalog.shows)
        scheduled = scheduled || show.station == station.id;
    const std::string digits = station.id.substr(1);
    return {{"element", "station"}, {"guide_id", station.id}, {"preset_id", station.id},
        {"name", station.name}, {"call_sign", station.callSign}, {"slogan", station.slogan},
        {"frequency", station.frequency}, {"band", station.band},
        {"url", "http://www.example.org/" + station.id}, {"report_url", ""},
        {"detail_url", "http://www.example.org/" + station.id},
        {"is_preset", context.isPreset(station.id)}, {"is_available", station.availability.empty()},
        {"is_music", music}, {"has_song", !playing.song.empty()}, {"has_schedule", scheduled},
        {"has_topics", false}, {"twitter_id", ""}, {"logo", context.logo(station.id)},
        {"location", placeOf(context, station)}, {"current_song", orNull(playing.song)},
        {"current_artist", orNull(playing.artist)}, {"current_artist_id", orNull(playing.artistId)},
        {"current_album", nullptr}, {"current_artist_art", nullptr}, {"current_album_art", nullptr},
        {"description", station.description.empty() ? station.slogan : station.description},
        {"email", ""}, {"phone", ""}, {"mailing_address", ""},
        {"language", catalog.languageName(station.language)}, {"genre_id", station.genre},
        {"genre_name", genre->name}, {"region_id", city->id},
        {"country_region_id", parseNumber(country->id.substr(1))},
        {"latlon", decimals(city->position.latitude) + ',' + decimals(city->position.longitude)},
        {"tz", country->timeZone}, {"tz_offset", std::to_string(country->utcOffsetMinutes)},
        {"publish_song", music}, {"tunein_url", "http://tunein.com/station/?StationId=" + digits},
        {"is_family_content", false}, {"is_mature_content", false}, {"is_event", false},
        {"content_classification", genre->menu}, {"echoed_count", nullptr},
        {"favorited_count", nullptr}, {"has_profile", "true"}, {"can_cast", true},
        {"use_native_player", false}, {"live_seek_stream", false}, {"seek_disabled", false}};
}

Json showObject(const Context &context, const Show &show)
{
    const Catalog &catalog = context.catalog();
    const Station *station = catalog.station(show.station);
    const Broadcast onAir = station ? context.onAir(*station, context.now()) : Broadcast();
    const bool live = onAir.show == &show;
    return {{"element", "show"}, {"title", show.title}, {"hosts", show.hosts},
        {"guide_id", show.id}, {"preset_id", show.id}, {"description", show.description},
        {"is_preset", context.isPreset(show.id)}, {"is_event", false},
        {"url", "http://www.example.org/" + show.id}, {"report_url", ""},
        {"detail_url", "http://www.example.org/" + show.id}, {"twitter_id", ""},
        {"logo", context.logo(show.id)},
        {"location", station ? placeOf(context, *station) : std::string()},
        {"has_topics", !show.topics.empty()}, {"email", ""}, {"phone", ""},
        {"language", station ? catalog.languageName(station->language) : std::string("English")},
        {"start", live ? isoTime(onAir.start + context.utcOffset(*station)) : std::string()},
        {"start_utc", live ? isoTime(onAir.start) : std::string()},
        {"duration", live ? std::to_string(onAir.seconds) : std::string()},
        {"genre_id", show.genre}, {"genre_name", catalog.genreName(show.genre)},
        {"secondary_genre_id", ""}, {"secondary_genre_name", ""}, {"fb_share", false},
        {"twitter_share", false}, {"ad_eligible", false},
        {"tunein_url", "http://tunein.com/program/?ProgramId=" + show.id.substr(1)},
        {"is_family_content", false}, {"is_mature_content", false},
        {"content_classification", "talk"}, {"echoed_count", nullptr}, {"favorited_count", nullptr},
        {"is_favorited", nullptr}, {"is_favoritable", nullptr}, {"has_profile", "true"}};
}

Json topicObject(const Context &context, const Topic &topic)
{
    const Show *show = context.catalog().show(topic.show);
    return {{"element", "topic"}, {"guide_id", topic.id}, {"title", topic.title},
        {"description", show->description}, {"hosts", show->hosts},
        {"url", context.here("/stream/" + topic.id + "/1.mp3")}, {"logo", context.logo(show->id)},
        {"is_available", true}, {"stream_type", "download"}, {"media_type", "mp3"},
        {"show_id", show->id}, {"show_title", show->title}};
}

Answer nowPlaying(const Context &context, const Station &station)
{
    Json rows = Json::array();
    Json name = textRow(station.name, station.id);
    name["key"] = "station";
    name["image"] = context.logo(station.id);
    name["preset_id"] = station.id;
    rows.push_back(std::move(name));

    const Broadcast onAir = context.onAir(station, context.now());
    const std::int64_t remaining = onAir.start + onAir.seconds - context.now();
    if (onAir.show) {
        Json show = textRow(onAir.show->title, onAir.show->id);
        show["key"] = "show";
        show["seconds_remaining"] = std::to_string(remaining);
        show["duration"] = std::to_string(onAir.seconds);
        rows.push_back(std::move(show));
    }
    const Playing playing = context.playing(station);
    if (!playing.text.empty())
        rows.push_back(textRow(playing.text));
    rows.push_back(textRow(context.catalog().genreName(station.genre)));
    rows.push_back(textRow(placeOf(context, station)));
    if (onAir.show)
        rows.push_back(textRow(std::to_string(remaining / 60) + "m remaining"));
    return cached(success({}, std::move(rows)), 30);
}

Answer composite(const Context &context, const Station &station)
{
    Json genre = linkRow(context.catalog().genreName(station.genre),
        context.api("Browse.ashx", {{"id", station.genre}}), station.genre);
    return notStored(success({},
        Json::array({section("Listing", "listing", Json::array({stationObject(context, station)})),
            section(context.word("genres"), "genres", Json::array({std::move(genre)}))})));
}

Answer describeList(const Context &context, const std::string &c)
{
    const Catalog &catalog = context.catalog();
    if (c == "genres")
        return taxonomy(
            catalog.genres, [](const Genre &genre) { return textRow(genre.name, genre.id); });
    if (c == "languages")
        return taxonomy(catalog.languages,
            [](const Language &language) { return textRow(language.name, language.id); });
    if (c == "countries")
        return taxonomy(catalog.regions, [](const Region &region) {
            if (region.countryId.empty())
                return Json();
            Json row = textRow(region.name, region.countryId);
            row["iso"] = region.iso;
            return row;
        });
    if (c == "formats")
        return formatList();
    if (c == "locales")
        return localeList();
    if (c != "nowplaying" && c != "composite")
        return failure("404", "Invalid method", "api.methodNotFound");
    const Station *station = catalog.station(context.param("id"));
    if (!station)
        return failure("400", "Invalid ID", "request.idInvalid");
    return c == "nowplaying" ? nowPlaying(context, *station) : composite(context, *station);
}

} // namespace

Answer describe(const Context &context)
{
    const std::string c = lowered(context.param("c"));
    if (!c.empty())
        return describeList(context, c);
    const std::string id = context.param("id");
    Json body = Json::array();
    if (const Station *station = context.catalog().station(id))
        body.push_back(stationObject(context, *station));
    else if (const Show *show = context.catalog().show(id))
        body.push_back(showObject(context, *show));
    else if (const Topic *topic = context.catalog().topic(id))
        body.push_back(topicObject(context, *topic));
    return notStored(success({}, std::move(body)));
}

} // namespace directory
