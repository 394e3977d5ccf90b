// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/PlayerVolume.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "api/nodes/CMReply.h"
#include "api/nodes/CMRequest.h"
#include "api/nodes/CMRootWorker.h"
#include "api/nodes/CMValuesWorker.h"
#include "api/values/VeskRoles.h"
#include "host/sound/SoundOutput.h"

#include <algorithm>

VESK_LOGGER("Player")

namespace {

constexpr std::chrono::milliseconds KeepInterval {1000};

} // namespace

PlayerVolume::PlayerVolume(
    std::shared_ptr<SoundOutput> sound, CMValuesWorker *values, QObject *parent)
    : QObject(parent)
    , m_sound(std::move(sound))
    , m_values(values)
{
    m_keepLater.setSingleShot(true);
    m_keepLater.setInterval(KeepInterval);
    connect(&m_keepLater, &QTimer::timeout, this, &PlayerVolume::keep);
    connect(m_values, &CMValuesWorker::valueChanged, this, &PlayerVolume::follow);
    // Whatever changes the device's volume, this is where it is kept.
    connect(m_sound.get(), &SoundOutput::volumeFollowed, this,
        [this](int volume, bool muted) { take(volume, muted); });
    m_volume = m_values->value(playerVolumePath()).int_();
    m_muted = m_values->value(playerMutePath()).bool_();
    m_sound->setVolume(m_volume, m_muted);
}

PlayerVolume::~PlayerVolume() = default;

void PlayerVolume::setVolume(int volume)
{
    VESK_ASSERT_OWN_THREAD();
    change(std::clamp(volume, 0, Loudest), m_muted);
}

void PlayerVolume::setMuted(bool muted)
{
    VESK_ASSERT_OWN_THREAD();
    change(m_volume, muted);
}

void PlayerVolume::change(int volume, bool muted)
{
    if (volume == m_volume && muted == m_muted)
        return;
    m_sound->setVolume(volume, muted);
    take(volume, muted);
}

void PlayerVolume::take(int volume, bool muted)
{
    if (volume == m_volume && muted == m_muted)
        return;
    m_volume = volume;
    m_muted = muted;
    m_isKept = false;
    if (!m_keepLater.isActive())
        keep();
    Q_EMIT changed();
}

void PlayerVolume::fade(double from, double to, std::chrono::milliseconds time)
{
    VESK_ASSERT_OWN_THREAD();
    m_sound->fade(std::clamp(from, 0., 1.), std::clamp(to, 0., 1.), time);
}

/// Another change within the interval waits for its end.
void PlayerVolume::keep()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_isKept)
        return;
    m_isKept = true;
    m_keepLater.start();
    write(playerVolumePath(), VeskValue::fromInt(m_volume));
    write(playerMutePath(), VeskValue::fromBool(m_muted));
}

/// By a request, because only what requests change is kept.
void PlayerVolume::write(const CMPath &path, const VeskValue &value)
{
    if (m_values->value(path) == value)
        return;
    ++m_writing;
    const auto reply = std::make_shared<CMReplyData<QVariant>>();
    reply->whenFinished(this, [this, reply] {
        --m_writing;
        if (!reply->error().isEmpty())
            VESK_WARN("The volume is not kept. " << reply->error().message());
    });
    m_values->request(
        CMSetDataRequest(path, VeskRoles::Value(), value.toHash(), CMReply<QVariant>(reply)));
}

/// Somebody has changed the setting itself.
void PlayerVolume::follow(const CMPath &path)
{
    const bool isVolume = path == playerVolumePath() || path == playerMutePath();
    if (!isVolume || m_writing > 0 || !m_isKept)
        return;
    change(m_values->value(playerVolumePath()).int_(), m_values->value(playerMutePath()).bool_());
}

const CMPath &playerVolumePath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("player/volume"));
    return path;
}

const CMPath &playerMutePath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("player/mute"));
    return path;
}

const CMPath &playerSeamlessPath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("player/seamless"));
    return path;
}

const CMPath &playerEvennessPath()
{
    static const CMPath path(QStringLiteral("settings"), QStringLiteral("player/evenness"));
    return path;
}
