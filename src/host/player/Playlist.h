// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

/// \file
/// Recognizing and parsing the playlists that stations publish in place of their streams. Pure
/// functions, callable from any thread. Only http and https addresses are accepted: a playlist
/// cannot make the player read a file or use another protocol.

/// The kind of a response, judged by its content because Content-Type headers are often wrong.
enum class StreamContent {
    Undecided, ///< More bytes are needed.
    Audio, ///< Anything that is not text; whether it can be played is up to the decoder.
    Hls, ///< An HTTP Live Streaming playlist (RFC 8216).
    M3u,
    Pls,
    Asx,
    Xspf,
    WebPage,
    Text, ///< any other text
};

/// Limits on untrusted playlists.
struct PlaylistLimits {
    static constexpr int MaxBytes = 256 * 1024;
    static constexpr int MaxEntries = 200;
    /// Nesting of playlists.
    static constexpr int MaxDepth = 5;
};

/// The non-empty lines of the first MaxBytes of \a text, trimmed; LF, CR and CR LF all end a line.
/// A last line that the limit cuts in two is dropped.
QList<QByteArray> playlistLines(const QByteArray &text);
/// Judges the first bytes of a response. \a complete: there are no more bytes. Never Undecided when
/// complete or from 1 KiB on.
StreamContent sniffStream(const QByteArray &begin, bool complete);
/// Whether parsePlaylist() can parse this content.
bool isPlaylist(StreamContent content);

/// \a address resolved against \a base, the playlist's own address. Empty if the result is not an
/// http or https address, or if \a address is longer than 8 KiB.
QUrl playlistAddress(const QByteArray &address, const QUrl &base);
/// The addresses in a playlist, in order, resolved against \a base; at most MaxEntries, from the
/// first MaxBytes of \a text. Entries without an http or https address are skipped.
QList<QUrl> parsePlaylist(const QByteArray &text, StreamContent content, const QUrl &base);
