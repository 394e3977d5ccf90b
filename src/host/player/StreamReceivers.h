// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/HttpStream.h"
#include "host/player/IcyStream.h"
#include "host/player/Playlist.h"
#include "host/player/StreamOutcome.h"

#include <QByteArray>

#include <functional>
#include <optional>

class SpokenExcuses;
class StreamFeed;

/// Why an answer with such a head is no stream; Ended when it may be one.
StreamOutcome streamRefusal(const HttpStreamHead &head);

/// Takes a whole short answer.
class TextReceiver : public HttpStreamReceiver {
public:
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

/// Finds out what an address answers with: hands audio to the consumer as it comes, without the
/// titles between, and keeps the text of a playlist. For one address; a file that broke off is gone
/// on with by further requests.
class AudioReceiver : public HttpStreamReceiver {
public:
    /// \a excuses must outlive it.
    AudioReceiver(StreamFeed &feed, const SpokenExcuses &excuses);

    bool begin(const HttpStreamHead &head) override;
    bool take(const char *data, std::size_t size) override;
    bool goOn() override;
    bool hasPlenty() const override;

    /// Judges what came so far as all that there is.
    void complete();
    /// What has become of an exchange that brought audio, or nothing.
    StreamOutcome judge(const HttpStreamResult &result, bool live) const;
    StreamContent content() const { return m_content; }
    const QByteArray &text() const { return m_text; }
    const HttpStreamHead &head() const { return m_head; }
    /// Bytes of the body that are done with.
    qint64 received() const { return m_received; }

private:
    bool takeBody(const char *data, std::size_t size);
    bool decide(bool complete);
    bool takeAudio(const char *data, std::size_t size);
    bool refuse(StreamOutcome::Kind kind, const TrString &problem);

    StreamFeed &m_feed;
    const SpokenExcuses &m_excuses;
    HttpStreamHead m_head;
    StreamContent m_content = StreamContent::Undecided;
    QByteArray m_text; ///< what came before it was decided; the playlist
    std::optional<IcyStream> m_icy;
    qint64 m_received = 0;
    qint64 m_skip = 0; ///< bytes to come that were received before
    /// Why this is nothing to play; Ended when nothing is wrong.
    StreamOutcome m_refusal {StreamOutcome::Ended, {}};
};
