// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/alarm/AlarmTimes.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

/// Calls back once, after a time that passes whatever the clock on the wall is set to, also while
/// the machine sleeps. Main thread.
class AlarmTimer {
public:
    virtual ~AlarmTimer() = default;

    /// Calls \a action after \a time, from the event loop. Replaces what was started before.
    virtual void start(std::chrono::milliseconds time, std::function<void()> action) = 0;
    virtual void stop() = 0;
    /// Until the action is called; zero when the timer is stopped.
    virtual std::chrono::milliseconds left() const = 0;
};

/// The time and the time zone by which alarms go off: those of the machine, or those of a test,
/// which moves them. Main thread.
class AlarmClock : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual Moment now() const = 0;
    /// The zone that holds at present: read anew with each call.
    virtual UtcOffset zone() const = 0;
    /// Emits reached() once it is \a moment by the clock on the wall; at once if it is in the past.
    /// Replaces what was asked for before; with nothing, neither signal is emitted any more.
    virtual void wakeAt(std::optional<Moment> moment) = 0;
    /// A timer, which must not outlive the clock.
    virtual std::unique_ptr<AlarmTimer> makeTimer() = 0;

Q_SIGNALS:
    void reached();
    /// Somebody set the clock, the machine woke from sleep, or the zone has changed. Emitted only
    /// while a moment is waited for; that one has to be asked for again.
    void changed();
};
