// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "host/player/StreamSource.h"

#include <QObject>
#include <QString>

/// Plays one source at a time, without knowing what it is or who wants it. Main thread. Signals
/// come only for the source that plays.
class MediaPlayer : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// In place of what plays.
    virtual void play(const StreamSource &source) = 0;
    /// A station is left, a file waits.
    virtual void pause() = 0;
    /// A station is joined anew, as it is on the air then.
    virtual void resume() = 0;
    virtual void stop() = 0;
    /// The network is there again: what waits to try again tries now.
    virtual void networkIsBack() = 0;

Q_SIGNALS:
    /// Whether there is something to hear.
    void audibleChanged(bool audible);
    void titleChanged(const QString &title);
    /// In bit/s.
    void bitRateChanged(int bitRate);
    /// What is being done about a fault, in words, while there is nothing to hear; empty once there
    /// is, and when the play is over.
    void problemChanged(const TrString &problem);
    /// Everything was heard.
    void ended();
    /// It cannot be played, and was not heard.
    void gaveUp(const TrString &problem);
    /// Nothing can be played: the output broke.
    void outputFailed(const TrString &problem);
};
