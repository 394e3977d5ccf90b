// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "host/player/StreamSource.h"

#include <QObject>
#include <QString>

/// Plays one source at a time; knows nothing of rows or plug-ins. Main thread. Signals refer to the
/// current source only.
class MediaPlayer : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Replaces the current source.
    virtual void play(const StreamSource &source) = 0;
    /// A station is disconnected, a file is held.
    virtual void pause() = 0;
    /// A station is rejoined live, a file continues.
    virtual void resume() = 0;
    virtual void stop() = 0;
    /// The network is back: a delay before a retry ends now.
    virtual void networkIsBack() = 0;

Q_SIGNALS:
    /// Whether sound is playing.
    void audibleChanged(bool audible);
    void titleChanged(const QString &title);
    /// In bit/s.
    void bitRateChanged(int bitRate);
    /// A text for the user about a fault and the retry, while there is no sound; empty once there
    /// is, and when the play is over.
    void problemChanged(const TrString &problem);
    /// Everything was heard.
    void ended();
    /// The source cannot be played any more; see StreamReader for when that is.
    void gaveUp(const TrString &problem);
    /// The sound output does not work.
    void outputFailed(const TrString &problem);
};
