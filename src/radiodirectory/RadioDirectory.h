// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// What Radio Browser's web API (https://docs.radio-browser.info) answers, for the stations of a
/// data file. One thread.
#pragma once

#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
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
    /// Indices of m_stations.
    using Order = std::vector<std::size_t>;

    Answer search(const Query &query);
    const Order &orderOf(const std::string &field, bool reverse);
    Answer byUuid(const Query &query) const;
    Answer groups(const Grouping &grouping, const Query &query) const;
    Answer click(const std::string &uuid);
    Answer stats() const;

    std::vector<Json> m_stations;
    /// The small letters of what each of them is searched by, by the number of the filter.
    std::vector<std::vector<std::string>> m_texts;
    /// As they are asked for; by field, and whether it is reversed.
    std::map<std::pair<std::string, bool>, Order> m_orders;
    unsigned m_clicks = 0;
};

} // namespace radiodirectory
