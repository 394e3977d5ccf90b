// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/alarm/AlarmClock.h"

#include <QFileSystemWatcher>

class TimerDescriptor;

/// The machine's clock and its time zone, TZ or /etc/localtime. Wakes up once for each moment that
/// is waited for, when somebody sets the clock, and when /etc/localtime may have been replaced;
/// never while nothing is waited for.
class SystemAlarmClock : public AlarmClock {
public:
    /// \a zoneFile: where the zone stands that holds without TZ; its changes are watched.
    explicit SystemAlarmClock(
        const QString &zoneFile = QStringLiteral("/etc/localtime"), QObject *parent = nullptr);
    ~SystemAlarmClock() override;

    Moment now() const override;
    UtcOffset zone() const override;
    void wakeAt(std::optional<Moment> moment) override;
    std::unique_ptr<AlarmTimer> makeTimer() override;

private:
    void watchZone(bool on);

    const QString m_zoneFile;
    std::unique_ptr<TimerDescriptor> m_timer;
    QFileSystemWatcher m_zoneWatch;
};
