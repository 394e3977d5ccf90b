// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The directory's data: stations, shows, artists and the trees that lead to them. Filled once by
/// CatalogLoader and immutable afterwards, so any thread may read it. Guide ids include their
/// letter
/// ("s20001"); the find functions return null for an unknown id.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace directory {

struct Genre {
    std::string id;
    std::string name;
    std::string menu; ///< "music", "talk" or "sports"
    bool listed = true; ///< stands in its menu itself, not only inside a category
};

/// A heading of a menu that gathers several genres.
struct Category {
    std::string id;
    std::string name;
    std::string menu;
    std::vector<std::string> genres;
};

struct Language {
    std::string id;
    std::string name;
};

struct Position {
    double latitude = 0;
    double longitude = 0;
};

/// A node of the tree world, continent, country, region, city. Parents and children are guide ids.
struct Region {
    enum class Kind { World, Continent, Country, Area, City };
    std::string id;
    std::string name;
    Kind kind = Kind::World;
    std::string parent;
    std::vector<std::string> children;
    // Countries only
    std::string countryId; ///< "n88", as accounts and searches name it
    std::string iso;
    std::string language;
    std::string timeZone;
    int utcOffsetMinutes = 0;
    // Cities only
    Position position;
};

struct Stream {
    std::string codec; ///< mp3, aac, ogg, opus, flac, hls, wma, flash
    int bitrate = 0; ///< kbit/s
    std::string playlist; ///< m3u, m3u8, pls, asx or xspf when the address leads to a playlist
    int reliability = 99;
    std::string trick; ///< a deliberate peculiarity; docs/directory.md lists them
    int depth = 1; ///< of nested playlists
};

struct Station {
    std::string id;
    std::string name;
    std::string city;
    std::string genre;
    std::string language;
    std::string frequency;
    std::string band;
    std::string slogan;
    std::string callSign;
    std::string description;
    std::string
        availability; ///< empty, or the placeholder it plays: georestricted, restricted, nostream
    std::vector<std::string> playing;
    std::vector<Stream> streams;
};

struct Topic {
    std::string id;
    std::string show;
    std::string title;
    std::string date;
    int minutes = 0;
};

struct Slot {
    std::array<bool, 7> days {}; ///< Sunday first
    int startMinute = 0;
    int minutes = 60;
};

struct Show {
    std::string id;
    std::string title;
    std::string hosts;
    std::string genre;
    std::string description;
    std::string station; ///< where it is on the air; empty for a podcast
    std::optional<Slot> slot;
    std::vector<std::string> topics;
};

struct Artist {
    std::string id;
    std::string name;
    std::string genre;
    std::vector<std::string> songs;
};

/// A row of one of the two fixed searches that menus for testers lead to.
struct Sample {
    std::string text;
    std::string subtext;
    std::string station; ///< an audio row plays it
    std::string language; ///< a link row leads to it
    Stream stream;
    std::string file;
};

/// A server of one station that this one stands in for: clients are configured to connect here for
/// it, and still send its name as the host.
struct OtherServer {
    std::string host; ///< as clients name it: "nine.example.org:8100"
    std::string path; ///< where its stream is
    std::string fault; ///< for each of its requests, as /_faults takes it
    Station station; ///< in no list, with one stream
};

/// One of a station's streams; none without a station.
struct StreamInstance {
    const Station *station = nullptr;
    std::size_t index = 0;
};
/// The id of a station's n-th stream: "e" with the station's digits and one more.
std::string streamId(const Station &station, std::size_t index);

struct Catalog {
    std::size_t pageSize = 25;
    std::size_t showsPerPage = 6;
    std::string homeCity;
    int songSeconds = 240;

    std::vector<Genre> genres;
    std::vector<Category> categories;
    std::vector<Language> languages;
    std::vector<Region> regions;
    std::vector<Station> stations;
    std::vector<Show> shows;
    std::vector<Topic> topics;
    std::vector<Artist> artists;
    std::vector<Sample> languageSamples;
    std::vector<Sample> streamSamples;
    std::vector<OtherServer> otherServers;
    /// Texts by language code ("de"), then by key; "en" is complete.
    std::map<std::string, std::map<std::string, std::string>> texts;

    const Genre *genre(std::string_view id) const;
    const Category *category(std::string_view id) const;
    const Language *language(std::string_view id) const;
    const Region *region(std::string_view id) const;
    const Station *station(std::string_view id) const;
    /// Streams have the ids that streamId() gives.
    StreamInstance stream(std::string_view id) const;
    const Show *show(std::string_view id) const;
    const Topic *topic(std::string_view id) const;
    const Artist *artist(std::string_view id) const;

    /// The nearest region of that kind at or above `id`; null when there is none.
    const Region *above(std::string_view id, Region::Kind kind) const;
    /// Whether `id` is `ancestor` or lies in it.
    bool within(std::string_view id, std::string_view ancestor) const;
    const Region *cityNearest(const Position &position) const;
    std::string languageName(std::string_view id) const;
    std::string genreName(std::string_view id) const;

    /// To be called once when everything is in its list.
    void buildIndex();

private:
    enum class List : std::uint8_t {
        Genre,
        Category,
        Language,
        Region,
        Station,
        Show,
        Topic,
        Artist
    };
    struct Place {
        List list;
        std::size_t index;
    };
    template <typename T>
    const T *look(std::string_view id, List list, const std::vector<T> &items) const;
    template <typename T>
    void enter(List list, const std::vector<T> &items);

    std::unordered_map<std::string, Place> m_index;
};

} // namespace directory
