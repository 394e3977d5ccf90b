// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

/// \file
/// The playlists that stations hand out in place of their streams. Pure functions of bytes, any
/// thread. http and https only: nothing in a playlist makes the player read a file or speak another
/// protocol.

/// What a server's bytes are, by their content: servers' content types are often wrong.
enum class StreamContent {
    Undecided, ///< More bytes are needed.
    Audio, ///< Or whatever else is not text: the decoder tells.
    Hls, ///< An HTTP Live Streaming playlist (RFC 8216).
    M3u,
    Pls,
    Asx,
    Xspf,
    WebPage,
    Text, ///< None of these.
};

/// Bounds of a playlist.
struct PlaylistLimits {
    static constexpr int MaxBytes = 256 * 1024;
    static constexpr int MaxEntries = 200;
    /// Playlists within playlists.
    static constexpr int MaxDepth = 5;
};

/// The lines that are not empty, ended in any system's way, without blanks around them; from the
/// first MaxBytes, less what these cut in two.
QList<QByteArray> playlistLines(const QByteArray &text);
/// Judges the first bytes of an answer; \a complete when they are all. Decides at the latest at 1
/// KiB.
StreamContent sniffStream(const QByteArray &begin, bool complete);
/// Whether the content is one that parsePlaylist reads.
bool isPlaylist(StreamContent content);

/// An address in a playlist, resolved against the playlist's own; empty when that is no http or
/// https address, or longer than any that is in use.
QUrl playlistAddress(const QByteArray &address, const QUrl &base);
/// The addresses in a playlist, in order, resolved against the playlist's own; at most MaxEntries,
/// from the first MaxBytes. What is no http or https address is left out.
QList<QUrl> parsePlaylist(const QByteArray &text, StreamContent content, const QUrl &base);
