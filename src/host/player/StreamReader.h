// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/BackOff.h"
#include "host/player/ConnectPace.h"
#include "host/player/HttpStream.h"
#include "host/player/SleepWatch.h"
#include "host/player/StreamFeed.h"
#include "host/player/StreamOutcome.h"
#include "host/player/StreamSource.h"
#include "host/player/StreamWait.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QThread>
#include <QUrl>

#include <chrono>
#include <optional>

class AudioReceiver;
class StreamConsumer;

/// Fetches the audio of one play and feeds it to a StreamConsumer: resolves playlists (recognized
/// by content, nested up to five levels), tries their entries in order, follows HTTP Live Streaming
/// and reconnects with a growing delay when a connection breaks. A source that was never audible is
/// given up after half a minute, or at once when every address it leads to is refused for good. A
/// station that was audible is retried until stop(), a file for two minutes.
///
/// Runs on its own thread, started by start(), with one connection at a time. The consumer must
/// outlive the reader and is called on the reader thread.
class StreamReader : public QThread {
    Q_OBJECT

public:
    struct Times {
        HttpStream::Times http;
        std::chrono::milliseconds entry {
            4000}; ///< like HttpStream::Times::connect, while there are other addresses to try
        std::chrono::milliseconds giveUp {30000}; ///< for a source that was never audible
        /// After the break, for a file that was audible.
        std::chrono::milliseconds giveUpFile {120000};
        /// Without sound on a connection that delivers bytes.
        std::chrono::milliseconds silence {10000};
        std::chrono::milliseconds lastTry {3000}; ///< time left for the last try before giving up
        /// A station is rejoined when the machine slept for longer.
        std::chrono::milliseconds sleep {5000};
        SleepWatch::Now sinceBoot; ///< empty: the system's boot-time clock
    };

    StreamReader(const StreamSource &source, StreamConsumer &consumer, const Times &times);
    /// Stops the thread and waits for it.
    ~StreamReader() override;

    /// Asks the thread to end, without waiting for it. Any thread.
    void stop();
    /// Ends the delay before the next try, because the network is back. Any thread.
    void tryNow() { m_wait.cutShort(); }

Q_SIGNALS:
    /// All audio was handed to the consumer and decoded.
    void ended();
    void gaveUp(const TrString &problem);
    /// The machine slept, so the audio received so far is out of date. The reader ends; start
    /// another one to rejoin the station live.
    void fellBehind();
    /// A text for the user about a fault and the retry; empty once a connection delivers audio
    /// again.
    void problemChanged(const TrString &problem);

protected:
    void run() override;

private:
    using Clock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::milliseconds;

    StreamOutcome playOnce();
    StreamOutcome playAddress(const QUrl &url, int depth, bool othersFollow);
    StreamOutcome openAddress(const QUrl &url, int depth, bool othersFollow);
    StreamOutcome playEntries(const QList<QUrl> &entries, int depth, bool othersFollow);
    StreamOutcome playHls(const QUrl &url, const AudioReceiver &receiver);
    StreamOutcome playAudio(const QUrl &url, AudioReceiver &receiver, HttpStreamResult result);
    StreamOutcome playFrom(const QUrl &url, const AudioReceiver &receiver, bool othersFollow);
    StreamOutcome finish(StreamOutcome outcome);
    StreamOutcome rejoin();
    std::optional<StreamStart> findStart(const StreamFile &file);
    bool isGivenUp(const StreamOutcome &outcome) const;
    bool wasGood();
    void recover();
    Milliseconds patience(bool othersFollow) const;
    bool pace();
    bool waitBeforeRetry(const StreamOutcome &outcome);
    bool waitFor(Milliseconds time);
    bool goOn();
    void tell(const TrString &problem);
    std::optional<Clock::time_point> deadline() const;
    bool isTimeUp() const;
    bool isAsleep();
    bool isOver() const;

    const StreamSource m_source;
    StreamConsumer &m_consumer;
    const Times m_times;
    HttpStream m_http;
    Clock::time_point m_start; ///< of run()

    // Reader thread only.
    StreamFeed m_feed;
    BackOff m_backOff;
    ConnectPace m_pace;
    SleepWatch m_sleep;
    bool m_slept = false;
    /// Where to begin; unset once audio came from there.
    std::optional<StreamStart> m_startAt;
    int m_round = 0; ///< passes over all addresses of the source since the last audio
    std::optional<Clock::time_point> m_brokenSince; ///< unset while audio arrives
    Clock::time_point m_opened; ///< when the current connection was opened
    QUrl m_current; ///< the last address that delivered audio
    QSet<QUrl> m_finished; ///< addresses played to their end
    QUrl m_lastFinished;
    QHash<QUrl, StreamOutcome> m_tried; ///< outcomes in this round
    QUrl m_hlsUrl;
    qint64 m_hlsNext = -1; ///< media sequence number to continue with at m_hlsUrl
    /// The last problemChanged().
    TrString m_told;

    /// Other threads end it early, by stop() and tryNow().
    StreamWait m_wait;
};
