// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/AlarmRing.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/player/AlarmSound.h"
#include "host/player/PlayLogic.h"
#include "host/player/PlayerText.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

VESK_LOGGER("Alarms")

namespace {

constexpr std::chrono::milliseconds AtOnce {0};
/// A device's own volume may come back rounded.
constexpr int VolumeRounding = 1;

/// A row as it stands in no screen.
VeskRoles ownSound()
{
    VeskResource resource;
    resource.setUri(AlarmSound::address());
    VeskList<VeskResource> resources;
    resources.append(resource);
    VeskMetaData meta;
    meta.setLive(true);
    VeskMediaData media;
    media.setMetaData(meta);
    media.setResources(resources);
    VeskRoles row;
    row.setType(VeskRolesType::Audio());
    row.setTitle(playerText(QT_TRANSLATE_NOOP("Player", "Alarm")));
    row.setMediaData(media);
    return row;
}

} // namespace

AlarmRing::AlarmRing(
    PlayLogic *logic, VolumeControl volume, PlayerFade *fade, AlarmClock *clock, QObject *parent)
    : QObject(parent)
    , m_logic(logic)
    , m_volume(std::move(volume))
    , m_fade(fade)
    , m_patience(clock->makeTimer())
    , m_retry(clock->makeTimer())
    , m_longest(clock->makeTimer())
{
    veskConnect(logic, &PlayLogic::changed, this, &AlarmRing::lookLater);
    connect(logic, &PlayLogic::stopRequested, this, [this] { m_isStopRequested = true; });
}

AlarmRing::~AlarmRing() = default;

void AlarmRing::start(const Alarm &alarm)
{
    VESK_ASSERT_OWN_THREAD();
    VESK_INFO("alarm " << alarm.id << " rings");
    m_phase = Phase::Ringing;
    m_alarm = alarm;
    if (!m_before) {
        m_before = Loudness {m_volume.volume(), m_volume.isMuted()};
        Q_EMIT beforeChanged();
    }
    m_set = alarm.volume.value_or(std::max(m_before->volume, LeastVolume));
    m_volume.setVolume(m_set);
    m_volume.setMuted(false);
    m_longest->start(Longest, [this] { onLongest(); });
    if (alarm.row.isEmpty())
        return playOwnSound();
    m_fade->start(0, 1, std::chrono::seconds(alarm.fade));
    m_patience->start(Patience, [this] { playOwnSound(); });
    playRow();
}

void AlarmRing::playRow()
{
    m_isOwnSound = false;
    play(m_alarm.row);
}

void AlarmRing::playOwnSound()
{
    if (!m_isOwnSound && !m_alarm.row.isEmpty())
        VESK_WARN("alarm " << m_alarm.id << " cannot be heard; the host rings by itself");
    m_patience->stop();
    m_isOwnSound = true;
    // It rises by itself.
    m_fade->end();
    play(ownSound());
}

void AlarmRing::play(const VeskRoles &row)
{
    m_retry->stop();
    m_isSounding = false;
    // A wish from before this play.
    m_isStopRequested = false;
    bool isRefused = false;
    m_logic->playRow(row, [&](const CMError &error, const VeskHash &playId) {
        isRefused = !error.isEmpty();
        m_playId = playId;
    });
    if (isRefused && !m_isOwnSound)
        playOwnSound();
}

/// States may follow each other within one call of the player's, so only the last one counts.
void AlarmRing::lookLater()
{
    if (m_phase == Phase::Idle || std::exchange(m_isLookPosted, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isLookPosted = false;
            look();
        },
        Qt::QueuedConnection);
}

void AlarmRing::look()
{
    if (m_phase == Phase::Idle)
        return;
    const VeskPlayLogicData data = m_logic->currentData();
    if (data.playId() != m_playId)
        return finish(false);
    switch (data.state()) {
    case VeskPlayLogicState::playing:
        m_patience->stop();
        if (!std::exchange(m_isSounding, true) && !m_isOwnSound && m_phase == Phase::Ringing)
            m_fade->start(0, 1, std::chrono::seconds(m_alarm.fade));
        break;
    case VeskPlayLogicState::paused:
        if (m_phase == Phase::Ringing)
            finish(true);
        break;
    case VeskPlayLogicState::stopped:
        if (m_isStopRequested || m_phase == Phase::PlayingOn)
            finish(true);
        else
            lookAtEnd(!data.error().isEmpty());
        break;
    default:
        if (std::exchange(m_isSounding, false) && m_phase == Phase::Ringing && !m_isOwnSound)
            m_patience->start(Patience, [this] { playOwnSound(); });
        break;
    }
}

/// The play of the alarm is over, and nobody has stopped it.
void AlarmRing::lookAtEnd(bool hasFailed)
{
    const bool wasSounding = std::exchange(m_isSounding, false);
    if (m_isOwnSound)
        return m_retry->start(OutputRetryTime, [this] { playOwnSound(); });
    if (wasSounding && !hasFailed) {
        // An episode was over before anybody had woken up.
        m_patience->start(Patience, [this] { playOwnSound(); });
        return playRow();
    }
    // There may be no network yet, or no plug-in.
    if (m_patience->left() > RetryTime)
        return m_retry->start(RetryTime, [this] { playRow(); });
    if (m_patience->left() <= AtOnce)
        playOwnSound();
}

void AlarmRing::onLongest()
{
    VESK_INFO("alarm " << m_alarm.id << " was not stopped for an hour");
    if (m_isOwnSound) {
        stop();
    } else {
        m_phase = Phase::PlayingOn;
        m_patience->stop();
        m_retry->stop();
    }
    Q_EMIT ended();
}

void AlarmRing::stop()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_phase != Phase::Ringing)
        return;
    leave();
    if (m_logic->currentData().playId() == m_playId)
        m_logic->stop();
    restore(true);
}

void AlarmRing::leave()
{
    m_phase = Phase::Idle;
    m_patience->stop();
    m_retry->stop();
    m_longest->stop();
}

void AlarmRing::finish(bool isSoundOver)
{
    const bool wasRinging = m_phase == Phase::Ringing;
    leave();
    restore(isSoundOver);
    if (wasRinging)
        Q_EMIT ended();
}

void AlarmRing::restore(bool isSoundOver)
{
    if (isSoundOver)
        m_fade->endLater();
    else
        m_fade->end();
    if (!m_before)
        return;
    if (std::abs(m_volume.volume() - m_set) <= VolumeRounding)
        m_volume.setVolume(m_before->volume);
    if (isSoundOver && m_before->isMuted)
        m_volume.setMuted(true);
    m_before.reset();
    Q_EMIT beforeChanged();
}

void AlarmRing::bringBack(const Loudness &before)
{
    VESK_ASSERT_OWN_THREAD();
    m_volume.setVolume(before.volume);
    m_volume.setMuted(before.isMuted);
}
