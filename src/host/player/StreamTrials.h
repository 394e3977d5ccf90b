// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/StreamChoice.h"

#include <QTimer>

#include <optional>

/// Which of a station's streams is tried, in which order and for how long: first the one that was
/// chosen, by hand or by the service; when that is not heard, the others, best first; and when none
/// is, the one that was left without having failed once more, for as long as the player tries. A
/// station that was heard is tried for, through all of its streams, until it ends. Asks for the
/// streams no more often than it must: a service may count that. Main thread.
class StreamTrials : public QObject {
    Q_OBJECT

public:
    /// In milliseconds.
    struct Times {
        int trouble = 1500; ///< from the first fault on, for the player to try again by itself
        int patience = 8000; ///< for a stream to be heard
        int lost = 15000; ///< of silence after it was heard
        int rest = 1000; ///< between two rounds; doubles up to sixteen times as long
    };

    explicit StreamTrials(QObject *parent = nullptr);

    void setTimes(const Times &times) { m_times = times; }

    /// \a row is to be played, with the stream whose row has the path \a preferred if it has one.
    /// The first next() comes before this returns, or when the streams are there.
    void begin(const VeskRoles &row, const CMPath &preferred);
    /// Nothing comes any more.
    void end();
    /// The stream that next() named leads to the resource of \a stream.
    void noteStarted(const VeskRoles &stream);
    void noteAudible(bool audible);
    /// It has a fault that the player tries to mend.
    void noteTrouble();
    /// It cannot be played: next() or exhausted() follows.
    void noteFailure();
    void pause();
    void resume();

    /// Whether another stream than the first is looked for or tried, with nothing to hear yet.
    bool isGoingOn() const { return m_leaving || m_tryingOther; }

Q_SIGNALS:
    /// Play this one, in place of what plays: the row itself, or the row of one of its streams.
    void next(const VeskRoles &stream);
    /// None can be played.
    void exhausted();
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
    bool m_byHand = false; ///< the row is one of them
    VeskRoles m_current;
    VeskResource m_started; ///< what the first of them led to
    std::optional<VeskRoles> m_interrupted; ///< the first that was left without having failed
    QList<VeskRoles> m_streams;
    QList<VeskRoles> m_queue; ///< those to be tried in this round
    int m_round = 0;
    bool m_looking = false;
    bool m_known = false; ///< the streams are
    bool m_leaving = false; ///< the present one, once there is another
    bool m_failed = false; ///< it plays no more
    bool m_tryingOther = false;
    bool m_lastChance = false;
    bool m_resting = false;
    bool m_troubled = false;
    bool m_heard = false; ///< any of them
    bool m_audible = false;
};
