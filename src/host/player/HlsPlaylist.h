// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QUrl>
#include <QVector>

#include <chrono>

/// One piece of a stream in HTTP Live Streaming.
struct HlsSegment {
    QUrl url;
    qint64 number = 0; ///< its media sequence number
    std::chrono::milliseconds duration {0};
    bool discontinuity = false; ///< not a continuation of the one before
    QUrl map; ///< what to decode before it; empty when there is nothing
};

/// One of the streams that a master playlist offers.
struct HlsVariant {
    QUrl url;
    int bandwidth = 0; ///< bit/s, as announced
};

/// A playlist of HTTP Live Streaming (RFC 8216): either a master playlist with variants or a media
/// playlist with segments. A value that is read from hostile bytes; numbers are bounded.
struct HlsPlaylist {
    static constexpr int MaxSegments = 5000;
    static constexpr int MaxVariants = 100;

    QVector<HlsVariant> variants;
    QVector<HlsSegment> segments;
    std::chrono::milliseconds targetDuration {0}; ///< from 1 to 60 seconds
    bool ended = false; ///< No segment will be added.
    bool encrypted = false; ///< There are segments that need a key.

    bool isMaster() const { return !variants.isEmpty(); }
    /// The variant to play: the best of those that audio needs, the smallest if all are larger.
    HlsVariant bestVariant() const { return orderedVariants().value(0); }
    /// All of them, the one to play first, then those to play in its place.
    QVector<HlsVariant> orderedVariants() const;
    /// The first segment to play: of a stream that goes on, one near its end.
    int firstSegment() const;
};

HlsPlaylist parseHlsPlaylist(const QByteArray &text, const QUrl &base);
