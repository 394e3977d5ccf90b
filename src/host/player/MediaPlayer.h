// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "host/player/PlayPlace.h"
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
    /// A file is held; so is a station, for as long as what it sends meanwhile is kept.
    virtual void pause() = 0;
    /// A file continues, and so does a station where it was; one that is no longer held is rejoined
    /// live.
    virtual void resume() = 0;
    virtual void stop() = 0;
    /// Another source is about to be played: what is heard may go on until that one has sound, or
    /// until stop(). No signal refers to it any more.
    virtual void leave() { stop(); }
    /// The network is back: a delay before a retry ends now.
    virtual void networkIsBack() = 0;
    /// Goes to another place in a file. sought() tells the outcome; until then, and after a
    /// failure, the play goes on where it was.
    virtual void seek(std::chrono::milliseconds position);
    /// Rejoins a station live that is behind; sought() as after seek().
    virtual void rejoinLive();
    /// Where the play is now.
    virtual PlayPlace place() const { return {}; }

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
    /// place() has changed, other than by the time that passes.
    void placeChanged();
    /// The last seek() or rejoinLive() is done, or impossible: then \a problem is a text for the
    /// user.
    void sought(const TrString &problem);
};
