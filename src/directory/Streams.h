// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Everything below /stream/: the stations' audio and playlists, and the episodes of shows. Lives
/// on the server's thread. Endless audio is only described here (AudioDelivery encodes it); short
/// pieces are encoded at once, which blocks for some milliseconds, and cached.
#pragma once

#include "directory/Context.h"
#include "directory/Playlists.h"

#include <map>
#include <memory>
#include <optional>

namespace directory {

constexpr char MelodyPath[] = "/_tunes";

/// Maps `path` of `host` to a path of this server: the same, unless the host is one of the other
/// servers that this one stands in for.
std::string pathHere(const Catalog &catalog, const std::string &host, const std::string &path);

class Streams {
public:
    explicit Streams(const Catalog &catalog);
    Streams(const Streams &) = delete;
    Streams &operator=(const Streams &) = delete;

    /// Unknown paths give 404.
    Answer answer(const Context &context);
    /// What the streams of an id sound like, for tests.
    Answer melodies(const Context &context) const;

private:
    struct Place {
        const Station *station = nullptr;
        std::size_t index = 0;
        const Stream &stream() const { return station->streams[index]; }
    };

    const Station *stationOf(const std::string &id) const;
    std::optional<Place> placeOf(const std::string &id, const std::string &number) const;
    Answer found(const Context &context);
    Answer atPlace(const Context &context, const Place &place, const std::string &extension);
    Answer below(const Context &context, const Place &place, const std::string &file);
    Answer topic(const Context &context, const Topic &topic);
    Answer live(const Context &context, const Place &place) const;
    Answer playlist(const Context &context, const Place &place, int level) const;
    static std::vector<PlaylistEntry> entriesOf(
        const Context &context, const Place &place, int level);
    Answer segment(const Place &place, const std::string &name);
    /// A file of that length, or the part of it that is asked for.
    Answer clip(const Context &context, const std::string &name, const Melody &melody,
        std::uint64_t seconds);

    const Catalog &m_catalog;
    Station m_samples; ///< the search for samples, as if they were one station's streams
    std::map<std::string, std::shared_ptr<const std::string>> m_pieces;
};

} // namespace directory
