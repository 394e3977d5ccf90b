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

/// Plays one HTTP Live Streaming playlist: picks a variant, fetches segment after segment and,
/// while the stream goes on, the playlist again. A variant that cannot be had, or no longer, is
/// replaced by the next one. Reader's thread only; for one play() each.
class HlsStream {
public:
    /// How a stream is played.
    struct Manner {
        /// Its end is a break.
        bool live = true;
        /// For a server's answer, while there is another variant.
        std::chrono::milliseconds patience {0};
        /// Waits; false when the play is over.
        std::function<bool(std::chrono::milliseconds)> wait;
        /// Waits as long as it takes so that no server is run over by what fails at once; false
        /// when the play is over.
        std::function<bool()> pace;
    };

    HlsStream(HttpStream &http, StreamFeed &feed, const Manner &manner);

    /// \a text is the playlist that \a url answered with. \a next is the number of the segment to
    /// begin with, negative for where a listener joins the stream; afterwards that of the one to
    /// go on with.
    StreamOutcome play(const QUrl &url, const QByteArray &text, qint64 &next);

private:
    StreamOutcome playVariants(const QVector<HlsVariant> &variants);
    StreamOutcome playMedia(const QUrl &url, HlsPlaylist playlist);
    StreamOutcome playSegments(const HlsPlaylist &playlist);
    StreamOutcome playSegment(const HlsSegment &segment);
    Result<HlsPlaylist, StreamOutcome> fetchPlaylist(const QUrl &url);
    StreamOutcome fetchAudio(const QUrl &url);
    StreamOutcome refusal(const HttpStreamResult &result, const HttpStreamHead &head);
    void join(const HlsPlaylist &playlist);
    bool isMissedTooOften();
    std::chrono::milliseconds patience() const;

    HttpStream &m_http;
    StreamFeed &m_feed;
    const Manner m_manner;
    qint64 m_next = -1; ///< number of the segment to play next; -1 at the start
    bool m_joined = false;
    QUrl m_map;
    bool m_begun = false;
    int m_missed = 0; ///< answers in a row that could not be had
    qint64 m_firstMissed = -1; ///< number of the first segment among them
    bool m_othersFollow = false; ///< There is another variant.
};
