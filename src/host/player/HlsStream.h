#pragma once

#include "host/player/HlsPlaylist.h"
#include "host/player/HttpStream.h"
#include "host/player/StreamOutcome.h"

#include <QByteArray>
#include <QUrl>

#include <functional>

class StreamConsumer;

/// Plays one HTTP Live Streaming playlist: picks a variant, fetches segment after segment and,
/// while the stream goes on, the playlist again. Reader's thread only; for one play() each.
class HlsStream {
public:
    /// Waits; false when the play is over.
    using Wait = std::function<bool(std::chrono::milliseconds)>;
    /// False when the play is over.
    using GoOn = std::function<bool()>;

    HlsStream(HttpStream &http, StreamConsumer &consumer, Wait wait, GoOn goOn);

    /// \a text is the playlist that \a url answered with.
    StreamOutcome play(const QUrl &url, const QByteArray &text);

private:
    StreamOutcome playMedia(const QUrl &url, HlsPlaylist playlist);
    StreamOutcome playSegments(const HlsPlaylist &playlist);
    StreamOutcome playSegment(const HlsSegment &segment);
    StreamOutcome fetchPlaylist(const QUrl &url, HlsPlaylist &playlist);
    StreamOutcome fetchAudio(const QUrl &url);

    HttpStream &m_http;
    StreamConsumer &m_consumer;
    const Wait m_wait;
    const GoOn m_goOn;
    qint64 m_next = -1; ///< number of the segment to play next; -1 at the start
    QUrl m_map;
    bool m_begun = false;
    int m_missed = 0; ///< segments in a row that could not be had
};
