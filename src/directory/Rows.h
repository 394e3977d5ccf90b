// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The rows of lists: one function per kind of outline.
#pragma once

#include "directory/Context.h"

namespace directory {

enum class StationText {
    Place, ///< "Name (City, Country)"
    Frequency, ///< "98.1 | Name (Genre)"
};

Json textRow(const std::string &text);
Json textRow(const std::string &text, const std::string &guideId);
/// Guide id and key are left out when empty.
Json linkRow(const std::string &text, const std::string &url, const std::string &guideId = {},
    const std::string &key = {});
/// A heading with rows below it. Keys hold neither "_" nor "~": clients join them with these.
Json section(const std::string &text, const std::string &key, Json children);

/// A station to play, or its "unavailable" row when the listener cannot play it. `extra` goes into
/// the link.
Json stationRow(const Context &context, const Station &station,
    StationText text = StationText::Place, const Query &extra = {});
Json showRow(const Context &context, const Show &show);
Json topicRow(const Context &context, const Topic &topic);
Json artistRow(const Context &context, const Artist &artist);

/// The one row of a list that has none.
Json nothingRows(const Context &context);
/// `rows`, or the row that says that there is nothing.
Json orNothing(const Context &context, Json rows);

std::string placeOf(const Context &context, const Station &station);

} // namespace directory
