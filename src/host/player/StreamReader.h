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

/// Keeps one play supplied with audio: unwraps playlists (by content, nested up to five levels),
/// tries their entries in order, follows HTTP Live Streaming, and stays on the air: whatever breaks
/// is tried again, with a growing wait between tries. What was never heard is given up after half a
/// minute, or at once when all that it leads to is refused for good; a station that was heard is
/// tried for until the reader is stopped, a file for two minutes.
///
/// A thread of its own, which starts with start(); one connection at a time. The consumer must
/// outlive it and is called on the reader's thread.
class StreamReader : public QThread {
    Q_OBJECT

public:
    struct Times {
        HttpStream::Times http;
        std::chrono::milliseconds entry {
            4000}; ///< as HttpStream::Times::connect, while others follow
        std::chrono::milliseconds giveUp {30000}; ///< without anything heard
        std::chrono::milliseconds giveUpFile {120000}; ///< that was heard, since it broke off
        std::chrono::milliseconds silence {10000}; ///< of a connection that brings bytes
        std::chrono::milliseconds lastTry {3000}; ///< before giving up
        std::chrono::milliseconds sleep {5000}; ///< of the machine; more leaves a station behind
        SleepWatch::Now sinceBoot; ///< the machine's own when it is empty
    };

    StreamReader(const StreamSource &source, StreamConsumer &consumer, const Times &times);
    /// Stops and waits.
    ~StreamReader() override;

    /// Any thread; does not wait.
    void stop();
    /// Ends a wait between two tries, because the network is back. Any thread.
    void tryNow() { m_wait.cutShort(); }

Q_SIGNALS:
    /// Everything was played.
    void ended();
    void gaveUp(const TrString &problem);
    /// The machine slept: what was received of the station is old. The reader has ended; another
    /// one joins the station as it is on the air now.
    void fellBehind();
    /// What is being done about a fault, in words; empty once a connection brings audio again.
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
    StreamOutcome finish(StreamOutcome outcome);
    StreamOutcome rejoin();
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
    Clock::time_point m_start; ///< set by run()

    // Reader's thread only.
    StreamFeed m_feed;
    BackOff m_backOff;
    ConnectPace m_pace;
    SleepWatch m_sleep;
    bool m_slept = false;
    int m_round = 0; ///< of going through all that the source leads to, since audio came
    std::optional<Clock::time_point> m_brokenSince; ///< until audio comes again
    Clock::time_point m_opened; ///< when the connection was
    QUrl m_current; ///< what was heard last
    QSet<QUrl> m_finished; ///< what was played to its end
    QUrl m_lastFinished;
    QHash<QUrl, StreamOutcome> m_tried; ///< in this round
    QUrl m_hlsUrl;
    qint64 m_hlsNext = -1; ///< the segment to go on with there
    TrString m_told;

    StreamWait m_wait;
};
