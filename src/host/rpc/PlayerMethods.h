#pragma once

#include "host/rpc/JsonRpcDispatcher.h"

#include <QObject>

class HttpServer;
class PlayLogic;

/// The player's methods: player.play, .pause, .resume, .stop and .state; and player.changed, which
/// goes to every client with a WebSocket whenever something that player.state tells has changed.
/// Main thread; what it is made with must outlive it.
class PlayerMethods : public QObject {
    Q_OBJECT

public:
    PlayerMethods(JsonRpcDispatcher *dispatcher, PlayLogic *logic, QObject *parent = nullptr);
    ~PlayerMethods() override;

Q_SIGNALS:
    /// The new state, to be told to everybody. Changes that come together are told once.
    void changed(const QVariant &state);

private:
    void play(const JsonRpcCallPtr &call);
    void announce();

    PlayLogic *const m_logic;
    bool m_announced = false;
};
