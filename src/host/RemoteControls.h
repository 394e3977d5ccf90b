// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/mpris/MprisPlayer.h"

#include "api/values/VeskRoles.h"

#include <QVariant>
#include <QVector>

#include <memory>

class Library;
class Mpris;
class PlayLogic;
class PlayerVolume;

/// The player for the remote controls of a desktop (see Mpris). Main thread.
///
/// A play counts as playing from when it begins to connect; a pause in which nothing was heard yet
/// ends it. What a stream says of itself is split as stations do, "artist - title"; the station is
/// the album then.
class RemoteControls : public MprisPlayer {
    Q_OBJECT

public:
    /// \a logic must outlive this object.
    explicit RemoteControls(PlayLogic *logic, QObject *parent = nullptr);
    ~RemoteControls() override;

    /// The presets in their order: next and previous go through them, from one end to the other,
    /// from the one that plays or played last. They play in any state, as the keys of a radio do.
    void setPresets(const QVector<VeskRoles> &rows);
    /// Takes them from \a library, also when they change.
    void followPresets(Library *library);
    /// Must outlive this object; without it the volume is 1. A muted player has the volume 0, and
    /// is heard again when another one is set.
    void useVolume(PlayerVolume *volume);

    /// Begins to be found on the session bus, if there is one.
    void offer();

    MprisState state() const override;
    std::chrono::microseconds position() const override;
    void play() override;
    void pause() override;
    void stop() override;
    void goNext() override;
    void goPrevious() override;
    void seekTo(std::chrono::microseconds position) override;
    void seekBy(std::chrono::microseconds offset) override;
    void setVolume(double volume) override;

private:
    MprisTrack track(const QVariantHash &state) const;
    void follow();
    void goBy(int step);

    PlayLogic *const m_logic;
    PlayerVolume *m_volume = nullptr;
    QVector<VeskRoles> m_presets;
    QVariant m_playId;
    quint64 m_number = 0; ///< of the play with that id
    std::unique_ptr<Mpris> m_mpris;
};
