// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Search.ashx: stations, shows and artists by the beginnings of their words, without regard to
/// case and accents. The index is built once from the catalog, which must outlive it; reading it is
/// safe from any thread.
#pragma once

#include "directory/Context.h"

namespace directory {

class Search {
public:
    /// Rows of one answer; a search does not page.
    static constexpr std::size_t MaxRows = 190;
    /// Longer queries find nothing.
    static constexpr std::size_t MaxQuery = 200;

    explicit Search(const Catalog &catalog);

    Answer answer(const Context &context) const;

private:
    using Words = std::vector<std::string>;
    struct Entry {
        Words name; ///< hits here come first
        Words other;
    };

    /// The folded words; for an index also their forms without accents.
    static Words wordsOf(const std::string &text, bool withAlternates = true);
    static bool begins(const Words &words, const std::string &term);
    /// 0 no hit, 1 a hit, 2 a hit in the name alone.
    static int rank(const Entry &entry, const Words &terms);
    static std::vector<std::size_t> hits(const std::vector<Entry> &entries, const Words &terms);

    Json found(const Context &context, const Words &terms) const;

    const Catalog &m_catalog;
    std::vector<Entry> m_stations;
    std::vector<Entry> m_shows;
    std::vector<Entry> m_artists;
};

} // namespace directory
