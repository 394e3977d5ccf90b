// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/ReadSettings.h"

#include "api/core/ThreadCheck.h"
#include "api/core/vesk.h"

#include <algorithm>

using std::chrono::milliseconds;

ReadSettings::ReadSettings(QObject *parent)
    : QObject(parent)
{
    m_settle.setSingleShot(true);
    veskConnect(&m_settle, &QTimer::timeout, this, &ReadSettings::settled);
}

void ReadSettings::restartFor(const CMPath &setting, const VeskValue &value)
{
    VESK_ASSERT_OWN_THREAD();
    m_restarting.insert(setting, value);
    m_kept.insert(setting, value);
}

void ReadSettings::begin()
{
    VESK_ASSERT_OWN_THREAD();
    m_kept = m_restarting;
    m_changed.clear();
    m_isOutdated = false;
    m_settle.stop();
}

void ReadSettings::noteKept(const CMPath &setting, const VeskValue &value)
{
    VESK_ASSERT_OWN_THREAD();
    if (m_kept.size() < MaxKept || m_kept.contains(setting))
        m_kept.insert(setting, value);
    update(false);
}

void ReadSettings::noteFollowed(const CMPath &setting)
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_restarting.contains(setting))
        m_kept.remove(setting);
    update(false);
}

void ReadSettings::noteChanged(const CMPath &setting, const VeskValue &value)
{
    VESK_ASSERT_OWN_THREAD();
    m_changed.insert(setting, value);
    if (m_restarting.contains(setting))
        m_restarting.insert(setting, value);
    update(m_kept.contains(setting));
}

void ReadSettings::settleAgain()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_isOutdated)
        m_settle.start(m_times.settle);
}

void ReadSettings::update(bool hasChanged)
{
    bool isOutdated = false;
    for (auto it = m_changed.constBegin(); it != m_changed.constEnd(); ++it) {
        const auto kept = m_kept.constFind(it.key());
        isOutdated |= kept != m_kept.constEnd() && !(*kept == *it);
    }
    const bool turns = isOutdated != m_isOutdated;
    m_isOutdated = isOutdated;
    if (!isOutdated) {
        m_settle.stop();
    } else if (turns || hasChanged) {
        if (turns)
            m_since.start();
        const milliseconds left = m_times.longest - milliseconds(m_since.elapsed());
        m_settle.start(std::max(milliseconds(0), std::min(m_times.settle, left)));
    }
    if (turns && isOutdated)
        Q_EMIT outdated();
    else if (turns)
        Q_EMIT upToDate();
}
