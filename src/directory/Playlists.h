// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Writes playlists of the kinds that stations publish.
#pragma once

#include <string>
#include <vector>

namespace directory {

struct PlaylistEntry {
    std::string title;
    std::string address;
};

/// `kind` is m3u, m3u8, pls, asx or xspf.
std::string playlistText(const std::string &kind, const std::vector<PlaylistEntry> &entries);
std::string playlistType(const std::string &kind);

} // namespace directory
