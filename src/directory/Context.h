// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// One request together with everything an endpoint needs to answer it: the data, the member, the
/// time, and the rules that all answers share (what a listener can play, which parameters links
/// repeat, the words of the menus). Lives for one request, on the server's thread.
#pragma once

#include "directory/Api.h"
#include "directory/Catalog.h"
#include "directory/Members.h"

#include <set>

namespace directory {

/// What a station plays at the moment; empty texts when that is unknown.
struct Playing {
    std::string text; ///< "Artist - Title"
    std::string artist;
    std::string song;
    std::string artistId;
};

/// In its n-th turn, counted from the epoch.
Playing playingAt(const Catalog &catalog, const Station &station, std::int64_t turn);

/// A show's broadcast: when it began or begins, in seconds since the epoch.
struct Broadcast {
    const Show *show = nullptr;
    std::int64_t start = 0;
    std::int64_t seconds = 0;
};

class Context {
public:
    Context(const ApiRequest &request, const Catalog &catalog, Members &members, std::int64_t now);

    const ApiRequest &request() const { return m_request; }
    const Catalog &catalog() const { return m_catalog; }
    Members &members() const { return m_members; }
    std::int64_t now() const { return m_now; }
    std::string param(const char *name) const { return m_request.query.value(name); }

    /// A word of the menus in the request's language.
    const std::string &word(const char *key) const;

    /// A link to the API. The request's global parameters are repeated in it, none of them twice.
    std::string api(const char *page, Query query) const;
    /// An address on this server, as the client can reach it.
    std::string here(const std::string &path) const;
    std::string logo(const std::string &guideId) const;
    std::string placeholder(const std::string &name) const;
    std::string streamAddress(const Station &station, std::size_t index) const;

    bool accepts(const std::string &codec) const;
    bool accepts(const Station &station) const;
    /// The placeholder that the listener gets instead of the station; empty when it can be played.
    std::string obstacle(const Station &station) const;

    /// The presets of the user or device of the request; null when there are none.
    const Library *library() const;
    bool isPreset(const std::string &id) const;

    /// Where the listener is: as the request says, or the data file's home.
    const Region *city() const;

    Playing playing(const Station &station) const
    {
        return playingAt(m_catalog, station, m_now / m_catalog.songSeconds);
    }
    std::int64_t utcOffset(const Station &station) const;
    /// What is on at that second; its show is null when nothing is.
    Broadcast onAir(const Station &station, std::int64_t at) const;
    /// The broadcasts that begin on that local day, counted from the epoch.
    std::vector<Broadcast> schedule(const Station &station, std::int64_t day) const;

private:
    const ApiRequest &m_request;
    const Catalog &m_catalog;
    Members &m_members;
    std::int64_t m_now;
    std::string m_language;
    std::string m_base;
    std::set<std::string> m_formats;
};

/// A hash that is the same on every machine, for choices that should vary between items but stay
/// the same between runs.
std::uint32_t stableNumber(const std::string &text);
/// "mp3", "m3u8" (hls), "flv" (flash)
std::string codecExtension(const std::string &codec);
/// As codecExtension, or "pls" if that leads to a playlist: how an address of the stream ends.
std::string streamExtension(const Stream &stream);
/// "2026-03-16T06:00:00"
std::string isoTime(std::int64_t seconds);

} // namespace directory
