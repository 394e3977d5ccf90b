// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/StreamChoice.h"

#include <QTimer>

#include <optional>

/// Decides which of a station's streams is tried, in which order and for how long. First the one
/// picked by the user or the service; if it stays silent, the others, highest bit rate first; if
/// all do, once more the first one that was left before it had failed, for as long as the player
/// keeps trying. A station that was audible is retried through all of its streams until end().
/// Fetches the list of streams only when needed, because services may count the requests. Main
/// thread.
class StreamTrials : public QObject {
    Q_OBJECT

public:
    /// All in milliseconds.
    struct Times {
        int trouble = 1500; ///< time for the player to recover from a stream's first fault
        int patience = 8000; ///< time for a stream to become audible
        /// Silence after which a station that was audible is switched to another stream.
        int lost = 15000;
        int rest = 1000; ///< pause between two rounds; doubles up to sixteen times as long
    };

    explicit StreamTrials(QObject *parent = nullptr);

    void setTimes(const Times &times) { m_times = times; }

    /// Starts with \a row, or with its stream that has the path \a preferred if there is one. Emits
    /// next() before it returns, or later if the list of streams has to be fetched first.
    void begin(const VeskRoles &row, const CMPath &preferred);
    /// The play is over: no signals are emitted any more.
    void end();
    /// The player starts the stream of the last next(); \a stream has the resource that it plays.
    void noteStarted(const VeskRoles &stream);
    /// The stream became audible or silent.
    void noteAudible(bool audible);
    /// The stream has a fault from which the player tries to recover.
    void noteTrouble();
    /// The stream cannot be played: next() or exhausted() follows, possibly later.
    void noteFailure();
    /// During a pause no stream is left or tried.
    void pause();
    void resume();

    /// Whether another stream is being looked for or tried and there is no sound yet.
    bool isGoingOn() const { return m_leaving || m_tryingOther; }

Q_SIGNALS:
    /// Play \a stream instead of the current one: the row itself or the row of one of its streams.
    void next(const VeskRoles &stream);
    /// No stream can be played.
    void exhausted();
    /// isGoingOn() changed.
    void goingOnChanged();

private:
    bool mayGoOn() const;
    void look();
    void leave(bool failed);
    void goOn();
    void tryLastChance();
    void tryNext(const VeskRoles &stream, bool other);
    void restBeforeNextRound();
    QList<VeskRoles> others() const;

    Times m_times;
    StreamChoice m_choice;
    QTimer m_timer;

    VeskRoles m_row;
    bool m_choosable = false; ///< the row may have several streams
    bool m_byHand = false; ///< the row is one of a station's streams, picked by the user
    VeskRoles m_current;
    VeskResource m_started; ///< resource of the first stream that was started
    std::optional<VeskRoles> m_interrupted; ///< the first stream that was left before it had failed
    QList<VeskRoles> m_streams;
    QList<VeskRoles> m_queue; ///< still to be tried in this round
    int m_round = 0;
    /// The list of streams is being fetched.
    bool m_looking = false;
    bool m_known = false; ///< m_streams was fetched
    bool m_leaving = false; ///< switching as soon as another stream is known
    bool m_failed = false; ///< the current stream has failed
    /// The current stream is not the first one and was not audible yet.
    bool m_tryingOther = false;
    /// The last try, of m_interrupted, is under way.
    bool m_lastChance = false;
    /// Waiting between two rounds.
    bool m_resting = false;
    /// The current stream had a fault before it was audible.
    bool m_troubled = false;
    bool m_heard = false; ///< any stream was audible
    bool m_audible = false;
};
