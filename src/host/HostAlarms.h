// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/alarm/AlarmRing.h"
#include "host/alarm/Alarms.h"
#include "host/alarm/PlayerFade.h"
#include "host/alarm/SleepTimer.h"
#include "host/alarm/SystemAlarmClock.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class AddressGate;
class AlarmMethods;
class Database;
class HttpServer;
class JsonRpcDispatcher;
class Library;
class PlayLogic;
class PlayerVolume;
class SleepMethods;

/// Alarms and the sleep timer, by the machine's clock, wired to the rest of the host. Main thread;
/// what it is given outlives it, or leave() comes before.
class HostAlarms : public QObject {
    Q_OBJECT

public:
    /// Begins to read them; an alarm that is due rings.
    HostAlarms(
        Database *database, PlayLogic *player, PlayerVolume *volume, QObject *parent = nullptr);
    ~HostAlarms() override;

    /// The methods.
    void addTo(JsonRpcDispatcher *dispatcher, AddressGate *gate, Library *library,
        std::function<void(const QString &icon)> iconSeen);
    /// Who is notified of changes.
    void addTo(HttpServer *server);

    /// The host is about to stop what plays: an alarm that rings, and the sleep timer, go on after
    /// the next start.
    void endCleanly();
    /// Before the dispatcher goes.
    void leave();

private:
    PlayLogic *const m_player;
    SystemAlarmClock m_clock;
    PlayerFade m_fade;
    AlarmRing m_ring;
    Alarms m_alarms;
    SleepTimer m_sleep;
    std::unique_ptr<AlarmMethods> m_alarmMethods;
    std::unique_ptr<SleepMethods> m_sleepMethods;
};
