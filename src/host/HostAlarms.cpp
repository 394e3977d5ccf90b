// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/HostAlarms.h"

#include "api/core/log.h"
#include "host/alarm/AlarmMethods.h"
#include "host/alarm/SleepMethods.h"
#include "host/http/HttpServer.h"
#include "host/library/Library.h"
#include "host/rpc/JsonRpc.h"
#include "host/sound/PlayerVolume.h"

VESK_LOGGER("Alarms")

namespace {

VolumeControl controlOf(PlayerVolume *volume)
{
    return {[volume] { return volume->volume(); }, [volume] { return volume->isMuted(); },
        [volume](int to) { volume->setVolume(to); },
        [volume](bool isMuted) { volume->setMuted(isMuted); }};
}

PlayerFade::Fade fadeOf(PlayerVolume *volume)
{
    return [volume](double from, double to, std::chrono::milliseconds time) {
        volume->fade(from, to, time);
    };
}

} // namespace

HostAlarms::HostAlarms(Database *database, PlayLogic *player, PlayerVolume *volume, QObject *parent)
    : QObject(parent)
    , m_player(player)
    , m_fade(player, fadeOf(volume))
    , m_ring(player, controlOf(volume), &m_fade, &m_clock)
    , m_alarms(database, &m_clock, &m_ring)
    , m_sleep(player, &m_fade, database, &m_clock)
{
    connect(&m_alarms, &Alarms::aboutToRing, &m_sleep, [this] {
        m_sleep.stop([](const Result<void, QString> &stopped) {
            if (!stopped)
                VESK_ERROR("The sleep timer cannot be saved: " << stopped.error());
        });
    });
    m_alarms.load();
    m_sleep.load();
}

HostAlarms::~HostAlarms() = default;

void HostAlarms::addTo(JsonRpcDispatcher *dispatcher, AddressGate *gate, Library *library,
    std::function<void(const QString &)> iconSeen)
{
    m_alarmMethods = std::make_unique<AlarmMethods>(dispatcher, &m_alarms, &m_clock, m_player);
    m_alarmMethods->setGate(gate);
    m_alarmMethods->setIconSeen(std::move(iconSeen));
    m_alarmMethods->setPresets([library](int number, const AlarmMethods::PresetAnswer &answer) {
        library->preset(number, answer);
    });
    m_sleepMethods = std::make_unique<SleepMethods>(dispatcher, &m_sleep, &m_clock);
}

void HostAlarms::addTo(HttpServer *server)
{
    const auto tell = [server](const QString &method, const QVariant &params) {
        server->sendToAll(jsonRpcNotification(method, params));
    };
    connect(m_alarmMethods.get(), &AlarmMethods::notification, server, tell);
    connect(m_sleepMethods.get(), &SleepMethods::notification, server, tell);
}

void HostAlarms::endCleanly()
{
    m_alarms.leave();
    m_sleep.leave();
}

void HostAlarms::leave()
{
    m_alarmMethods.reset();
    m_sleepMethods.reset();
}
