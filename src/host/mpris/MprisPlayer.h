// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>
#include <QString>

#include <chrono>

/// What plays, in words. Texts of any length and content; Mpris bounds them.
struct MprisTrack {
    /// Another one for each play; 0: there is none.
    quint64 number = 0;
    QString title;
    QString artist;
    QString album;
    /// Where the picture is; what is neither http nor https is left out.
    QString artUrl;
    /// Zero: unknown, or without an end.
    std::chrono::microseconds length {0};

    bool operator==(const MprisTrack &other) const
    {
        return number == other.number && title == other.title && artist == other.artist
            && album == other.album && artUrl == other.artUrl && length == other.length;
    }
};

struct MprisState {
    enum Status { Stopped, Paused, Playing };
    Status status = Stopped;
    MprisTrack track;
    /// From 0 to 1.
    double volume = 1;
    bool canPlay = false;
    bool canPause = false;
    bool canSeek = false;
    bool canGoNext = false;
    bool canGoPrevious = false;
};

/// The player as Mpris sees it. Mpris calls what cannot be done too, for it may have become
/// impossible meanwhile; nothing happens then. Main thread.
class MprisPlayer : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual MprisState state() const = 0;
    /// Of what is heard; zero for what has no position.
    virtual std::chrono::microseconds position() const = 0;

    /// Goes on after a pause, or plays again what played last.
    virtual void play() = 0;
    virtual void pause() = 0;
    virtual void stop() = 0;
    virtual void goNext() = 0;
    virtual void goPrevious() = 0;
    /// Both only while state().canSeek.
    virtual void seekTo(std::chrono::microseconds position) = 0;
    virtual void seekBy(std::chrono::microseconds offset) = 0;
    /// From 0 to 1.
    virtual void setVolume(double volume) = 0;

Q_SIGNALS:
    /// state() may be another one.
    void changed();
    /// position() has jumped within a track.
    void moved();
};
