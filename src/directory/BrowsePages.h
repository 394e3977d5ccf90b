// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The screens of Browse.ashx by what they show; Browse.cpp decides which one a request means.
#pragma once

#include "directory/Context.h"

namespace directory {

// Menus (BrowseMenus.cpp)
Answer rootMenu(const Context &context);
Answer topicMenu(const Context &context, const std::string &menu); ///< "music", "talk" or "sports"
Answer languageMenu(const Context &context);
Answer podcastMenu(const Context &context);
Answer localStations(const Context &context);
Answer favouredStations(const Context &context, const char *word, std::size_t count);

// Genres, categories, languages (BrowseGenre.cpp)
Answer genrePage(const Context &context, const Genre &genre);
Answer categoryPage(const Context &context, const Category &category);
Answer languagePage(const Context &context, const Language *language);

// Places (BrowseRegion.cpp)
Answer regionPage(const Context &context, const Region &region);
Answer networkPage(const Context &context, const std::string &id);

// What belongs to one station, show or artist (BrowseItem.cpp)
Answer stationRelated(const Context &context, const Station &station);
Answer showRelated(const Context &context, const Show &show);
Answer artistPage(const Context &context, const Artist &artist);
Answer stationSchedule(const Context &context, const Station &station);
Answer stationPlaylist(const Context &context, const Station &station);
Answer showTopics(const Context &context, const Show &show);

// Favorites (BrowsePresets.cpp)
Answer presetsPage(const Context &context);

} // namespace directory
