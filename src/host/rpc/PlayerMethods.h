// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/rpc/JsonRpcDispatcher.h"

#include <QObject>

#include <functional>

class AddressGate;
class HttpServer;
class Outputs;
class PlayLogic;
class PlayerVolume;

/// The player's methods: player.play, .pause, .resume, .stop, .seek and .state; and the
/// notification player.changed, for every client with a WebSocket, when a member of player.state
/// has changed. Clients count the position on by themselves: it is news only after a seek. Main
/// thread; what it is made with must outlive it.
class PlayerMethods : public QObject {
    Q_OBJECT

public:
    /// Called with the icon of each state that is sent to clients.
    using IconSeen = std::function<void(const QString &icon)>;

    PlayerMethods(JsonRpcDispatcher *dispatcher, PlayLogic *logic, QObject *parent = nullptr);
    ~PlayerMethods() override;

    void setIconSeen(IconSeen seen) { m_iconSeen = std::move(seen); }
    /// Whose volume the state has; without it, the state has none.
    void setVolume(PlayerVolume *volume);
    /// Which screens clients may play from; without one, all.
    void setGate(AddressGate *gate) { m_gate = gate; }
    /// Whose state is told with the player's; without one, nothing is.
    void setOutputs(Outputs *outputs);

Q_SIGNALS:
    /// The new state, for all clients. Changes that come together are one.
    void changed(const QVariant &state);

private:
    void play(const JsonRpcCallPtr &call);
    void seek(const JsonRpcCallPtr &call);
    void announce();
    QVariantHash state() const;

    PlayLogic *const m_logic;
    IconSeen m_iconSeen;
    AddressGate *m_gate = nullptr;
    PlayerVolume *m_volume = nullptr;
    Outputs *m_outputs = nullptr;
    bool m_announced = false;
    QVariantHash m_sent; ///< the state that all clients know, without the position
};
