#pragma once

#include "host/player/BackOff.h"
#include "host/player/HttpStream.h"
#include "host/player/StreamOutcome.h"

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QThread>
#include <QUrl>

#include <chrono>
#include <condition_variable>
#include <mutex>

class AudioReceiver;
class StreamConsumer;

/// What there is to play.
struct StreamSource {
    QUrl url;
    /// A station, which goes on for ever: its end is a break, to be mended by joining it anew.
    bool live = true;
    /// Something else can be played in its place: given up unheard at its first failure.
    bool hasAlternatives = false;
};

/// Keeps one play supplied with audio: unwraps playlists (by content, nested up to five levels),
/// tries their entries in order, follows HTTP Live Streaming, and stays on the air: whatever breaks
/// is tried again, with a growing wait between tries. Gives up, once, only when nothing was heard
/// in the first half minute, or when there is no hope; what was heard once is tried for until the
/// reader is stopped.
///
/// A thread of its own, which starts with start(); one connection at a time. The consumer must
/// outlive it and is called on the reader's thread.
class StreamReader : public QThread {
    Q_OBJECT

public:
    struct Times {
        HttpStream::Times http;
        std::chrono::milliseconds giveUp {30000}; ///< without anything heard
        std::chrono::milliseconds silence {10000}; ///< of a connection that brings bytes
        std::chrono::milliseconds lastTry {3000}; ///< before giving up
    };

    StreamReader(const StreamSource &source, StreamConsumer &consumer, const Times &times);
    /// Stops and waits.
    ~StreamReader() override;

    /// Any thread; does not wait.
    void stop();
    /// Ends a wait between two tries, because the network is back. Any thread.
    void tryNow();

Q_SIGNALS:
    /// Everything was played.
    void ended();
    void gaveUp(const TrString &problem);

protected:
    void run() override;

private:
    using Clock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::milliseconds;

    StreamOutcome playOnce();
    StreamOutcome playAddress(const QUrl &url, int depth);
    StreamOutcome playEntries(const QList<QUrl> &entries, int depth);
    StreamOutcome playAudio(AudioReceiver &receiver, HttpStreamResult result);
    StreamOutcome judge(const AudioReceiver &receiver, const HttpStreamResult &result) const;
    bool waitBeforeRetry(const StreamOutcome &outcome);
    bool waitFor(Milliseconds time);
    bool goOn() const;
    bool isTimeUp() const;
    bool isStopped() const;

    const StreamSource m_source;
    StreamConsumer &m_consumer;
    const Times m_times;
    HttpStream m_http;
    Clock::time_point m_start; ///< set by run()

    // Reader's thread only.
    BackOff m_backOff;
    Clock::time_point m_opened; ///< when the connection was
    QUrl m_current; ///< what was heard last
    QSet<QUrl> m_finished; ///< what was played to its end

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    /// Guarded by m_mutex.
    bool m_stop = false;
    bool m_tryNow = false;
};
