// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Lists of stations and shows: what a place in the directory and a filter select, their pages, and
/// the pivots that split them.
#pragma once

#include "directory/Rows.h"

#include <string>
#include <vector>

namespace directory {

/// The "filter" parameter: parts joined by ":" in any order. Parts that mean nothing are ignored,
/// so a wrong filter gives the unfiltered list, as the web API does.
struct Filter {
    bool stations = false;
    bool shows = false;
    bool topics = false;
    bool popular = false;
    std::string genre;
    std::string region;
    std::string language;
    std::string initial;

    static Filter parse(const Catalog &catalog, const std::string &text);
    bool empty() const { return !stations && !shows && !topics && genre.empty(); }
};

/// A place in the directory that holds stations.
struct Scope {
    std::string title;
    Query address; ///< of its first page, without filter, pivot and offset
    std::vector<std::string> genres; ///< empty: all
    std::string region; ///< empty: the world
    std::string language; ///< empty: all
};

/// The most popular first, or by name when an initial was asked for.
std::vector<const Station *> stationsOf(
    const Context &context, const Scope &scope, const Filter &filter);
std::vector<const Show *> showsOf(const Context &context, const Scope &scope);

/// From `offset` on, one page of them, the cursor link last when more follow.
Json stationPage(const Context &context, const Scope &scope,
    const std::vector<const Station *> &stations, std::size_t offset);
Json showPage(const Context &context, const Scope &scope, const std::vector<const Show *> &shows,
    std::size_t offset);

/// What the request's filter, pivot and offset select of the scope, as a flat screen.
Answer listScreen(const Context &context, const Scope &scope);
/// Whether the request asks for a part of the scope instead of its front page.
bool asksForPart(const Context &context);

/// The letters, genres or countries under which the scope has stations.
Json pivotRows(const Context &context, const Scope &scope, const std::string &pivot);
/// The request's "offset"; 0 for anything that is no number.
std::size_t offsetOf(const Context &context);

} // namespace directory
