// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/rpc/JsonRpcDispatcher.h"

#include <QObject>

#include <functional>

class AddressGate;
class HttpServer;
class PlayLogic;

/// The player's methods: player.play, .pause, .resume, .stop and .state; and player.changed, which
/// goes to every client with a WebSocket whenever something that player.state tells has changed.
/// Main thread; what it is made with must outlive it.
class PlayerMethods : public QObject {
    Q_OBJECT

public:
    /// Is told of the icon in each state that clients are told of.
    using IconSeen = std::function<void(const QString &icon)>;

    PlayerMethods(JsonRpcDispatcher *dispatcher, PlayLogic *logic, QObject *parent = nullptr);
    ~PlayerMethods() override;

    void setIconSeen(IconSeen seen) { m_iconSeen = std::move(seen); }
    /// Which screens clients may play from; without one, all.
    void setGate(AddressGate *gate) { m_gate = gate; }

Q_SIGNALS:
    /// The new state, to be told to everybody. Changes that come together are told once.
    void changed(const QVariant &state);

private:
    void play(const JsonRpcCallPtr &call);
    void announce();
    QVariant state() const;

    PlayLogic *const m_logic;
    IconSeen m_iconSeen;
    AddressGate *m_gate = nullptr;
    bool m_announced = false;
    QVariant m_told; ///< the state that everybody knows
};
