// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>
#include <QString>

#include <memory>

class MprisPlayer;
class MprisPrivate;

/// Lets the programs of a desktop control the player for as long as this object lives: media keys,
/// panels, lock screens and playerctl, by MPRIS 2 on the session bus, with its interfaces
/// org.mpris.MediaPlayer2 and org.mpris.MediaPlayer2.Player. The session bus is the one in
/// DBUS_SESSION_BUS_ADDRESS, or else `bus` in XDG_RUNTIME_DIR; none is started.
///
/// Main thread, in the GLib main loop that Qt runs there. Nothing here waits for the bus. Without
/// one there is one line in the log at DEBUG. A bus that ends, or is not there yet, is noticed when
/// its socket appears: the socket's folder is watched meanwhile, if only its owner writes there.
/// Nothing wakes up but for calls and changes.
class Mpris : public QObject {
    Q_OBJECT

public:
    static constexpr char Name[] = "org.mpris.MediaPlayer2.vesk";
    /// Of each text. A stream's title has no bound of its own.
    static constexpr int MaxText = 500;
    /// Of a picture's address; a longer one is left out.
    static constexpr int MaxAddress = 2000;
    /// After the bus has ended or its socket appeared, with waits that double from a second on.
    static constexpr int MaxTries = 6;

    /// \a player must outlive this object.
    explicit Mpris(MprisPlayer *player, QObject *parent = nullptr);
    /// Leaves the bus.
    ~Mpris() override;

    /// By which the player is known on the bus: Name, or Name.instancePID if that one is taken;
    /// empty while it is not.
    QString name() const;

Q_SIGNALS:
    void nameChanged(const QString &name);

private:
    friend class MprisPrivate;
    std::unique_ptr<MprisPrivate> d;
};
