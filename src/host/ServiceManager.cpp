// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/ServiceManager.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"

#include <chrono>
#include <cstdint>
#include <cstring>
#include <systemd/sd-daemon.h>

VESK_LOGGER("Host")

namespace {

/// The service manager's own bound is the size of a datagram.
constexpr int MaxStatus = 300;

void tell(const QByteArray &message)
{
    const int result = sd_notify(0, message.constData());
    if (result < 0)
        VESK_WARN("The service manager cannot be told: " << std::strerror(-result));
}

} // namespace

ServiceManager::ServiceManager(QObject *parent)
    : QObject(parent)
{
    connect(&m_watchdog, &QTimer::timeout, this, [] { tell("WATCHDOG=1"); });
    std::uint64_t limit = 0; // microseconds
    if (sd_watchdog_enabled(0, &limit) <= 0)
        return;
    const std::chrono::microseconds half(limit / 2);
    m_watchdog.start(std::chrono::duration_cast<std::chrono::milliseconds>(half));
}

void ServiceManager::ready()
{
    VESK_ASSERT_OWN_THREAD();
    tell("READY=1");
}

void ServiceManager::setStatus(const QString &status)
{
    VESK_ASSERT_OWN_THREAD();
    const QString line = status.simplified().left(MaxStatus);
    if (line == m_status)
        return;
    m_status = line;
    tell("STATUS=" + line.toUtf8());
}

void ServiceManager::stopping()
{
    VESK_ASSERT_OWN_THREAD();
    tell("STOPPING=1");
}
