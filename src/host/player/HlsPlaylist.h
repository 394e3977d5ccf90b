// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QUrl>
#include <QVector>

#include <chrono>

/// A media segment (RFC 8216, 3).
struct HlsSegment {
    QUrl url;
    qint64 number = 0; ///< media sequence number
    std::chrono::milliseconds duration {0};
    bool discontinuity = false; ///< EXT-X-DISCONTINUITY: the encoding changes here
    QUrl map; ///< media initialization section (EXT-X-MAP); empty without one
};

/// A variant stream of a master playlist.
struct HlsVariant {
    QUrl url;
    int bandwidth = 0; ///< BANDWIDTH, in bit/s
};

/// A playlist of HTTP Live Streaming (RFC 8216): either a master playlist with variants or a media
/// playlist with segments. Parsed from untrusted input, so every number is bounded.
struct HlsPlaylist {
    static constexpr int MaxSegments = 5000;
    static constexpr int MaxVariants = 100;

    QVector<HlsVariant> variants;
    QVector<HlsSegment> segments;
    std::chrono::milliseconds targetDuration {0}; ///< from 1 to 60 seconds
    bool ended = false; ///< EXT-X-ENDLIST: no segments will be added
    bool encrypted = false; ///< at least one segment needs a key

    bool isMaster() const { return !variants.isEmpty(); }
    /// The variant to play: the highest bandwidth that audio alone can need, or the lowest one if
    /// all are above that.
    HlsVariant bestVariant() const { return orderedVariants().value(0); }
    /// All variants in order of preference, for falling back.
    QVector<HlsVariant> orderedVariants() const;
    /// Index of the first segment to play: near the end while the stream is live.
    int firstSegment() const;
};

/// Parses up to PlaylistLimits::MaxBytes of \a text; addresses are resolved against \a base.
/// Unknown tags are ignored and invalid entries skipped. Any thread.
HlsPlaylist parseHlsPlaylist(const QByteArray &text, const QUrl &base);
