// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "host/alarm/AlarmBook.h"
#include "host/alarm/AlarmTable.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

class AlarmClock;
class AlarmRing;
class AlarmTimer;
class Database;

/// The alarms of the host: keeps them in the database, waits for them by the clock, and lets them
/// ring. Changes that a listener makes count once they are on the disk; when they cannot be saved,
/// everything stays as it was. That an alarm rang is written when it ends, so that one during which
/// the host is killed rings on after the next start. Main thread.
class Alarms : public QObject {
    Q_OBJECT

public:
    /// Called once, on the main thread: done, or why not, in words.
    using Answer = std::function<void(const Result<void, QString> &)>;
    using Saved = std::function<void(const Result<Alarm, QString> &)>;

    /// All of them must outlive it.
    Alarms(Database *database, AlarmClock *clock, AlarmRing *ring, QObject *parent = nullptr);
    ~Alarms() override;

    /// Reads them; alarms that are due ring. What follows below is empty until loaded().
    void load();
    bool isLoaded() const { return m_isLoaded; }
    /// The host ends: nothing rings any more, and an alarm that rings does so again after a start.
    void leave();
    /// Calls \a then once they are loaded, or with the reason why they cannot be.
    void whenLoaded(Answer then);

    const AlarmBook &book() const { return m_book; }
    /// When it rings, snoozes included; nothing while it does not.
    std::optional<Moment> next(const Alarm &alarm) const;
    /// The id of the alarm that rings; empty: none.
    QString ringing() const;

    /// Adds an alarm, if it has no id, or replaces the one with its id, from now on.
    void set(const Alarm &alarm, const Saved &done);
    void remove(const QString &id, const Answer &done);
    void dismissMissed(const Answer &done);
    /// Ends the alarm that rings and all that were snoozed.
    void stop();
    /// Lets the alarm that rings do so again later. Returns when; nothing if none rings.
    std::optional<Moment> snooze(std::chrono::minutes time);
    /// Calls \a then once what stop() or snooze() has changed is on the disk, or cannot be saved.
    void whenSaved(std::function<void()> then);

Q_SIGNALS:
    /// Something that clients see is not as it was. Changes that come together are one.
    void changed();
    /// Before an alarm rings.
    void aboutToRing();

private:
    /// When an alarm rings again that was snoozed, whatever the clock is set to.
    struct Snooze {
        QString id;
        std::unique_ptr<AlarmTimer> timer;
    };

    void take(const AlarmTable::Content &content);
    void goOnSnoozing();
    void lookAtClock();
    void clockWasSet();
    void ring(const QString &id);
    void ringEnded();
    void snoozeAlarm(const QString &id, std::chrono::milliseconds time);
    void endSnooze(const QString &id);
    void rearm();
    void save(const QString &id);
    void saveMissed();
    void saveBefore();
    void announce();

    Database *const m_database;
    AlarmClock *const m_clock;
    AlarmRing *const m_ring;
    AlarmBook m_book;
    bool m_isLoaded = false;
    bool m_isLoading = false;
    bool m_isAnnounced = false;
    std::vector<Answer> m_waiting; ///< for load()
    qint64 m_lastId = 0;
    int m_adding = 0; ///< alarms on their way to the disk
    QString m_rung; ///< the alarm that rings, as long as that is not on the disk
    std::vector<Snooze> m_snoozes;
};
