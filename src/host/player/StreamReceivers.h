// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/HttpStream.h"
#include "host/player/IcyStream.h"
#include "host/player/MediaHead.h"
#include "host/player/Playlist.h"
#include "host/player/StreamOutcome.h"
#include "host/player/StreamSource.h"

#include <QByteArray>

#include <functional>
#include <optional>

class SpokenExcuses;
class StreamFeed;

/// Why a response with this head cannot be a stream, by its status code; Ended if it can.
StreamOutcome streamRefusal(const HttpStreamHead &head);

/// Collects a short response.
class TextReceiver : public HttpStreamReceiver {
public:
    /// Ends the exchange after \a limit bytes, or when \a goOn returns false.
    TextReceiver(int limit, std::function<bool()> goOn);

    bool begin(const HttpStreamHead &head) override;
    bool take(const char *data, std::size_t size) override;
    bool goOn() override { return m_goOn(); }

    const HttpStreamHead &head() const { return m_head; }
    const QByteArray &text() const { return m_text; }

private:
    const int m_limit;
    const std::function<bool()> m_goOn;
    HttpStreamHead m_head;
    QByteArray m_text;
};

/// Recognizes what a response contains: passes audio on to the feed as it arrives, with ICY
/// metadata taken out, and collects the text of a playlist. One per address; it can receive several
/// responses in a row that resume one file. Reader thread only.
class AudioReceiver : public HttpStreamReceiver {
public:
    /// Both must outlive the receiver.
    AudioReceiver(StreamFeed &feed, const SpokenExcuses &excuses);

    /// What is received is a file and no station: its beginning is passed to the feed's consumer.
    /// \a only: then the exchange ends, without audio for the feed; see hasHead().
    void expectFile(const QUrl &url, bool only);
    /// Nothing was passed on to the feed, because the file's beginning had been asked for only.
    bool hasHead() const { return m_headOnly && m_content == StreamContent::Audio; }
    /// The file, as far as it is known.
    const StreamFile &file() const { return m_file; }
    /// Takes the file from the place \a start on. Before the next request, which is for received().
    void beginAt(const StreamStart &start);

    bool begin(const HttpStreamHead &head) override;
    bool take(const char *data, std::size_t size) override;
    bool goOn() override;
    bool hasPlenty() const override;

    /// The response is complete: decides content() by what was received.
    void complete();
    /// The outcome of an exchange that ended with \a result and is not a playlist. \a live: the
    /// source is a station, whose end is a break.
    StreamOutcome judge(const HttpStreamResult &result, bool live) const;
    StreamContent content() const { return m_content; }
    const QByteArray &text() const { return m_text; }
    const HttpStreamHead &head() const { return m_head; }
    /// Bytes of the body received so far, over all requests; where to resume.
    qint64 received() const { return m_received; }

private:
    bool takeBody(const char *data, std::size_t size);
    bool decide(bool complete);
    bool takeAudio(const char *data, std::size_t size);
    void noteHead(const char *data, std::size_t size);
    void passHead();
    bool refuse(StreamOutcome::Kind kind, const TrString &problem);

    StreamFeed &m_feed;
    const SpokenExcuses &m_excuses;
    HttpStreamHead m_head;
    StreamContent m_content = StreamContent::Undecided;
    QByteArray m_text; ///< the bytes before content() was decided; then the playlist
    std::optional<IcyStream> m_icy;
    qint64 m_received = 0;
    qint64 m_skip = 0; ///< bytes to drop, because an earlier request delivered them
    StreamFile m_file;
    std::optional<MediaHead> m_beginning;
    bool m_headOnly = false;
    std::optional<StreamStart> m_start; ///< until the feed was started there
    /// Why the response is not playable; Ended if nothing is wrong.
    StreamOutcome m_refusal {StreamOutcome::Ended, {}};
};
