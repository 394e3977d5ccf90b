// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "host/player/HlsPlaylist.h"
#include "host/player/HttpStream.h"
#include "host/player/StreamOutcome.h"

#include <QByteArray>
#include <QUrl>

#include <functional>

class StreamFeed;

/// Plays one HTTP Live Streaming playlist: picks a variant, fetches segment after segment and
/// reloads the playlist while the stream is live. A variant that is or becomes unavailable is
/// replaced by the next one. Reader thread only; one play() per object.
class HlsStream {
public:
    /// How a stream is played. The functions are called on the reader thread.
    struct Manner {
        /// A station: the end of the stream is a fault.
        bool live = true;
        /// How long to wait for a response while there is another variant.
        std::chrono::milliseconds patience {0};
        /// Sleeps; false when the play is over.
        std::function<bool(std::chrono::milliseconds)> wait;
        /// Limits the request rate: sleeps before a request that follows a failure. False when the
        /// play is over.
        std::function<bool()> pace;
        /// Where to begin in a stream that ends.
        std::chrono::microseconds start {0};
    };

    HlsStream(HttpStream &http, StreamFeed &feed, const Manner &manner);

    /// Plays the playlist \a text, which was fetched from \a url. \a next is the media sequence
    /// number to start with, negative for the place where a new listener joins; it is set to the
    /// number to continue with.
    StreamOutcome play(const QUrl &url, const QByteArray &text, qint64 &next);

private:
    StreamOutcome playVariants(const QVector<HlsVariant> &variants);
    StreamOutcome playMedia(const QUrl &url, HlsPlaylist playlist);
    StreamOutcome playSegments(const HlsPlaylist &playlist);
    StreamOutcome playSegment(const HlsPlaylist &playlist, const HlsSegment &segment);
    void begin(const HlsPlaylist &playlist, const HlsSegment &segment);
    Result<HlsPlaylist, StreamOutcome> fetchPlaylist(const QUrl &url);
    StreamOutcome fetchAudio(const QUrl &url);
    StreamOutcome refusal(const HttpStreamResult &result, const HttpStreamHead &head);
    void join(const HlsPlaylist &playlist);
    bool isMissedTooOften();
    std::chrono::milliseconds patience() const;

    HttpStream &m_http;
    StreamFeed &m_feed;
    const Manner m_manner;
    qint64 m_next = -1; ///< media sequence number to play next; -1 at the start
    /// join() has run for this connection.
    bool m_joined = false;
    /// What is left to skip of the segment in which the stream was to begin.
    std::chrono::microseconds m_skip {0};
    QUrl m_map;
    /// The decoder was started for the current sequence of segments.
    bool m_begun = false;
    int m_missed = 0; ///< failed fetches in a row
    qint64 m_firstMissed = -1; ///< media sequence number of the first segment among them
    bool m_othersFollow = false; ///< there is another variant to fall back to
};
