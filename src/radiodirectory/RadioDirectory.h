// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// What Radio Browser's web API (https://docs.radio-browser.info) answers, for the stations of a
/// data file. One thread.
#pragma once

#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace radiodirectory {

using Json = nlohmann::json;
using Query = std::map<std::string, std::string>;

struct Answer {
    unsigned status = 200;
    Json body = Json::array();
};

class RadioDirectory {
public:
    /// \a file holds a list of stations with the API's fields; an address in it that begins with
    /// "/" is one at \a streams ("http://127.0.0.1:8074"). Throws std::exception.
    RadioDirectory(const std::string &file, const std::string &streams);

    /// Replaces the stations by \a count invented ones, which are like them but for name and id.
    void invent(std::size_t count);

    /// \a path is decoded: "/json/stations/search".
    Answer answer(const std::string &path, const Query &query);

private:
    struct Grouping;

    Answer search(const Query &query) const;
    Answer byUuid(const Query &query) const;
    Answer groups(const Grouping &grouping, const Query &query) const;
    Answer click(const std::string &uuid);
    Answer stats() const;

    std::vector<Json> m_stations;
    unsigned m_clicks = 0;
};

} // namespace radiodirectory
