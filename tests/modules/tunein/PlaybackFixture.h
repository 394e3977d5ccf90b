// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/tunein/VeskTuneInPaths.h"
#include "tests/modules/tunein/TuneInFixture.h"

/// Posts states to the worker as the host's player does, and sorts the reports that the server
/// received.
class PlaybackFixture : public TuneInFixture {
protected:
    static constexpr VeskPlayLogicState::Enum Stopped = VeskPlayLogicState::stopped;
    static constexpr VeskPlayLogicState::Enum Transitioning = VeskPlayLogicState::transitioning;
    static constexpr VeskPlayLogicState::Enum Playing = VeskPlayLogicState::playing;
    static constexpr VeskPlayLogicState::Enum Paused = VeskPlayLogicState::paused;

    PlaybackFixture();

    /// Posts a state of a track whose row belongs to the item \a guideId, and waits for the reply.
    Answer play(VeskPlayLogicState::Enum state, int playId = 1, const QString &error = QString(),
        const QString &uri = "http://stream.example/live"_s, const QString &guideId = "s1"_s);
    Answer post(
        VeskPlayLogicState::Enum state, int playId, const QString &error, const VeskRoles &track);

    /// On the worker's thread.
    QTimer *timer() const;
    bool timerIsActive();
    void fireTimer();

    /// "METHOD TARGET" of the reports so far.
    QList<QByteArray> streamReports() { return reports("/Report.ashx?c=stream"); }
    QList<QByteArray> durationReports() { return reports("/Report.ashx?c=time"); }
    /// The expected report of the stream above, with the current listen id.
    static QByteArray streamReport(const QByteArray &guideId, const QByteArray &error = {});
    QByteArray durationReport(
        const QByteArray &guideId, qint64 seconds, bool stopped, const QByteArray &listenId = {});

private:
    QList<QByteArray> reports(const QByteArray &start);
};
