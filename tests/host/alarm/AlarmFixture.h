// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/alarm/AlarmClock.h"
#include "host/alarm/AlarmRing.h"
#include "host/alarm/Alarms.h"
#include "host/alarm/PlayerFade.h"
#include "host/alarm/SleepTimer.h"
#include "host/library/Database.h"
#include "tests/host/player/PlayLogicFixture.h"

#include <QCoreApplication>

#include <algorithm>
#include <vector>

/// A clock that stands still until the test moves it.
class MovedClock : public AlarmClock {
public:
    Moment now() const override { return m_now; }
    UtcOffset zone() const override
    {
        return [offset = m_offset](Moment) { return offset; };
    }
    void wakeAt(std::optional<Moment> moment) override { m_wake = moment; }
    std::unique_ptr<AlarmTimer> makeTimer() override;

    /// Lets time pass; what is due on the way happens in its order.
    void pass(std::chrono::milliseconds time)
    {
        const auto end = m_up + time;
        const auto settle = [] { QCoreApplication::processEvents(); };
        for (settle(); const auto next = nextUp(); settle()) {
            if (*next > end)
                break;
            moveTo(*next);
            fire();
        }
        moveTo(end);
        settle();
    }
    /// The machine sleeps: what is due happens when it wakes.
    void sleep(std::chrono::seconds time)
    {
        moveTo(m_up + time);
        Q_EMIT changed();
        pass(std::chrono::milliseconds(0));
    }
    /// Somebody sets the clock.
    void set(Moment now)
    {
        m_now = now;
        m_part = {};
        if (m_wake)
            Q_EMIT changed();
        pass(std::chrono::milliseconds(0));
    }
    void setOffset(int offset)
    {
        m_offset = offset;
        if (m_wake)
            Q_EMIT changed();
        pass(std::chrono::milliseconds(0));
    }
    bool isWaiting() const { return m_wake.has_value(); }

private:
    class Timer;

    /// When the next thing is due, by the time that passes.
    std::optional<std::chrono::milliseconds> nextUp() const;
    void moveTo(std::chrono::milliseconds up)
    {
        m_part += up - m_up;
        m_up = up;
        const auto whole = std::chrono::duration_cast<std::chrono::seconds>(m_part);
        m_now += whole.count();
        m_part -= whole;
    }
    void fire();

    Moment m_now = 1763942400; // a Monday, 00:00 UTC
    std::chrono::milliseconds m_part {0};
    std::chrono::milliseconds m_up {0};
    int m_offset = 0;
    std::optional<Moment> m_wake;
    std::vector<Timer *> m_timers;
};

class MovedClock::Timer : public AlarmTimer {
public:
    explicit Timer(MovedClock *clock)
        : m_clock(clock)
    {
        m_clock->m_timers.push_back(this);
    }
    ~Timer() override
    {
        auto &all = m_clock->m_timers;
        all.erase(std::remove(all.begin(), all.end(), this), all.end());
    }
    void start(std::chrono::milliseconds time, std::function<void()> action) override
    {
        due = m_clock->m_up + time;
        m_action = std::move(action);
    }
    void stop() override { due.reset(); }
    std::chrono::milliseconds left() const override
    {
        return due ? *due - m_clock->m_up : std::chrono::milliseconds(0);
    }
    void fire()
    {
        due.reset();
        const auto action = m_action;
        action();
    }

    std::optional<std::chrono::milliseconds> due;

private:
    MovedClock *const m_clock;
    std::function<void()> m_action;
};

inline std::unique_ptr<AlarmTimer> MovedClock::makeTimer()
{
    return std::make_unique<Timer>(this);
}

inline std::optional<std::chrono::milliseconds> MovedClock::nextUp() const
{
    std::optional<std::chrono::milliseconds> next;
    const auto consider = [&](std::chrono::milliseconds up) {
        if (!next || up < *next)
            next = up;
    };
    if (m_wake)
        consider(std::max(m_up, m_up + std::chrono::seconds(*m_wake - m_now) - m_part));
    for (const Timer *timer : m_timers) {
        if (timer->due)
            consider(std::max(m_up, *timer->due));
    }
    return next;
}

inline void MovedClock::fire()
{
    if (m_wake && *m_wake <= m_now) {
        m_wake.reset();
        Q_EMIT reached();
        return;
    }
    for (Timer *timer : m_timers) {
        if (timer->due && *timer->due <= m_up)
            return timer->fire();
    }
}

/// The alarms and the sleep timer of a host with a player that the test drives, a clock that it
/// moves, and a database in memory, which outlives the host's restarts.
class AlarmTest : public PlayLogicTest {
protected:
    AlarmTest() { startHost(); }

    void startHost()
    {
        const VolumeControl control {[this] { return volume; }, [this] { return isMuted; },
            [this](int to) { volume = to; }, [this](bool to) { isMuted = to; }};
        fade = std::make_unique<PlayerFade>(
            &logic, [this](double from, double to, std::chrono::milliseconds time) {
                factor = to;
                fades.append(
                    QStringLiteral("%1-%2 %3")
                        .arg(from)
                        .arg(to)
                        .arg(std::chrono::duration_cast<std::chrono::seconds>(time).count()));
            });
        ring = std::make_unique<AlarmRing>(&logic, control, fade.get(), &clock);
        alarms = std::make_unique<Alarms>(&database, &clock, ring.get());
        sleep = std::make_unique<SleepTimer>(&logic, fade.get(), &database, &clock);
        QObject::connect(
            alarms.get(), &Alarms::aboutToRing, sleep.get(), [this] { sleep->stop([](auto) {}); });
        QObject::connect(alarms.get(), &Alarms::changed, [this] { ++announced; });
        QObject::connect(sleep.get(), &SleepTimer::changed, [this] { ++sleepAnnounced; });
        alarms->load();
        sleep->load();
        settle();
    }
    /// Without a word to the listener's alarms, as when the power fails.
    void killHost()
    {
        settle();
        sleep->leave();
        sleep.reset();
        alarms->leave();
        alarms.reset();
        ring.reset();
        fade.reset();
        logic.stop();
        player.calls.clear();
    }
    /// Waits for the database.
    void settle()
    {
        bool isDone = false;
        database.run([](sqlite3 *) -> Result<QVariant, QString> { return QVariant(); },
            [&](const auto &) { isDone = true; });
        EXPECT_TRUE(spinUntil([&] { return isDone; }));
        QCoreApplication::processEvents();
    }
    void pass(std::chrono::seconds time)
    {
        clock.pass(time);
        settle();
    }

    /// A station that needs no step before playing.
    VeskRoles station(const char *uri = "http://stream/station")
    {
        VeskRoles roles = row("Station", uri, true);
        VeskMediaData media = roles.mediaData();
        VeskMetaData meta = media.metaData();
        meta.setPrePlayPath(CMPath());
        media.setMetaData(meta);
        roles.setMediaData(media);
        return roles;
    }
    Alarm alarm(const char *time, const QVector<int> &days = {1, 2, 3, 4, 5, 6, 7})
    {
        Alarm alarm;
        alarm.time = *WeeklyTime::parse(text(time));
        alarm.time.days = days;
        alarm.fade = 30;
        alarm.row = station();
        return alarm;
    }
    /// Returns its id, or what is wrong.
    QString set(const Alarm &alarm)
    {
        QString answer;
        alarms->set(alarm, [&](const Result<Alarm, QString> &result) {
            answer = result ? result->id : result.error();
        });
        settle();
        return answer;
    }
    void sound(bool audible = true)
    {
        Q_EMIT player.audibleChanged(audible);
        QCoreApplication::processEvents();
    }
    /// What was played since the last time.
    QString played()
    {
        QCoreApplication::processEvents();
        const QString list = player.calls.join(QLatin1Char(','));
        player.calls.clear();
        return list;
    }
    QString missed() const
    {
        QStringList list;
        for (const MissedAlarm &one : alarms->book().missed())
            list.append(one.id + QLatin1Char('@') + QString::number((one.at - Monday) / 60));
        return list.join(QLatin1Char(' '));
    }

    static constexpr Moment Monday = 1763942400;
    const QString OwnSound = text("play vesk-alarm:bell live");
    const QString Station = text("play http://stream/station live");

    int volume = 50;
    bool isMuted = false;
    double factor = 1;
    QStringList fades;
    int announced = 0;
    int sleepAnnounced = 0;
    MovedClock clock;
    Database database {QString(), {}};
    std::unique_ptr<PlayerFade> fade;
    std::unique_ptr<AlarmRing> ring;
    std::unique_ptr<Alarms> alarms;
    std::unique_ptr<SleepTimer> sleep;
};
