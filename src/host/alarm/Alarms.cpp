// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/Alarms.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/alarm/AlarmClock.h"
#include "host/alarm/AlarmRing.h"
#include "host/library/Database.h"
#include "host/player/PlayerText.h"

#include <QPointer>

#include <algorithm>
#include <utility>

VESK_LOGGER("Alarms")

namespace {

/// Runs \a work, which has no result of its own.
void run(Database *database, std::function<Result<void, QString>(sqlite3 *)> work,
    const std::function<void(const Result<void, QString> &)> &done)
{
    database->run(
        [work = std::move(work)](sqlite3 *sql) -> Result<QVariant, QString> {
            if (const auto result = work(sql); !result)
                return failure(result.error());
            return QVariant();
        },
        [done](const Result<QVariant, QString> &result) {
            if (result)
                done({});
            else
                done(failure(result.error()));
        });
}

void logFailure(const Result<void, QString> &result)
{
    if (!result)
        VESK_ERROR("An alarm's state cannot be saved: " << result.error());
}

} // namespace

Alarms::Alarms(Database *database, AlarmClock *clock, AlarmRing *ring, QObject *parent)
    : QObject(parent)
    , m_database(database)
    , m_clock(clock)
    , m_ring(ring)
{
    veskConnect(clock, &AlarmClock::reached, this, &Alarms::lookAtClock);
    veskConnect(clock, &AlarmClock::changed, this, &Alarms::clockWasSet);
    veskConnect(ring, &AlarmRing::ended, this, &Alarms::ringEnded);
    veskConnect(ring, &AlarmRing::beforeChanged, this, &Alarms::saveBefore);
}

Alarms::~Alarms() = default;

void Alarms::load()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_isLoaded || std::exchange(m_isLoading, true))
        return;
    const auto content = std::make_shared<AlarmTable::Content>();
    run(
        m_database,
        [content](sqlite3 *sql) -> Result<void, QString> {
            auto read = AlarmTable::read(sql);
            if (!read)
                return failure(read.error());
            *content = std::move(*read);
            return {};
        },
        [self = QPointer<Alarms>(this), content](const Result<void, QString> &result) {
            if (!self)
                return;
            self->m_isLoading = false;
            if (result)
                self->take(*content);
            else
                VESK_ERROR("The alarms cannot be read: " << result.error());
            for (const Answer &answer : std::exchange(self->m_waiting, {}))
                answer(result);
        });
}

void Alarms::whenLoaded(Answer then)
{
    VESK_ASSERT_OWN_THREAD();
    if (m_isLoaded)
        return then({});
    m_waiting.push_back(std::move(then));
    load();
}

void Alarms::take(const AlarmTable::Content &content)
{
    m_isLoaded = true;
    m_lastId = content.lastId;
    for (const Alarm &alarm : content.alarms)
        m_book.put(alarm);
    m_book.setMissed(content.missed);
    if (content.notes.contains(AlarmTable::volumeBefore())) {
        m_ring->bringBack({static_cast<int>(content.notes.value(AlarmTable::volumeBefore())),
            content.notes.value(AlarmTable::muteBefore()) != 0});
        saveBefore();
    }
    goOnSnoozing();
    lookAtClock();
    if (!content.alarms.isEmpty() || !content.missed.isEmpty())
        announce();
}

/// Of alarms that were snoozed before the host was started.
void Alarms::goOnSnoozing()
{
    const Moment now = m_clock->now();
    const QVector<Alarm> alarms = m_book.alarms();
    for (const Alarm &alarm : alarms) {
        const Moment until = alarm.snoozedUntil;
        if (until == 0)
            continue;
        const Moment late = now - until;
        if (late > AlarmBook::Lateness) {
            QVector<MissedAlarm> missed = m_book.missed();
            missed.append({alarm.id, until});
            m_book.setMissed(missed);
            endSnooze(alarm.id);
            save(alarm.id);
            saveMissed();
        } else {
            // A clock that was set back since cannot make it longer than any snooze.
            const Moment wait = std::clamp<Moment>(-late, 0, 24 * 3600);
            snoozeAlarm(alarm.id, std::chrono::seconds(wait));
        }
    }
}

void Alarms::leave()
{
    VESK_ASSERT_OWN_THREAD();
    disconnect(m_clock, nullptr, this, nullptr);
    disconnect(m_ring, nullptr, this, nullptr);
    m_clock->wakeAt({});
    m_snoozes.clear();
    m_ring->leave();
    m_rung.clear();
}

std::optional<Moment> Alarms::next(const Alarm &alarm) const
{
    const auto next = AlarmBook::next(alarm, m_clock->zone());
    if (alarm.snoozedUntil == 0)
        return next;
    return next ? std::min(*next, alarm.snoozedUntil) : alarm.snoozedUntil;
}

QString Alarms::ringing() const
{
    return m_ring->ringing();
}

void Alarms::lookAtClock()
{
    if (!m_isLoaded)
        return;
    const AlarmBook::Advance advance = m_book.advance(m_clock->now(), m_clock->zone());
    // Of several that are due, the last one rings: it is what the listener wanted by now.
    const QString due = advance.due.isEmpty() ? QString() : advance.due.last().id;
    for (const QString &id : advance.changed) {
        if (id != due)
            save(id);
    }
    if (advance.isMissedChanged)
        saveMissed();
    if (!due.isEmpty())
        ring(due);
    rearm();
    if (!advance.changed.isEmpty() || advance.isMissedChanged)
        announce();
}

void Alarms::clockWasSet()
{
    VESK_INFO("the clock or the time zone has changed");
    for (const Snooze &snooze : m_snoozes) {
        const auto left = std::chrono::duration_cast<std::chrono::seconds>(snooze.timer->left());
        m_book.snooze(snooze.id, m_clock->now() + left.count());
        save(snooze.id);
    }
    lookAtClock();
    announce();
}

/// Until it has ended, the disk has that it began, and that this is still to be accounted for.
void Alarms::ring(const QString &id)
{
    const Alarm *found = m_book.find(id);
    if (!found)
        return;
    if (!m_rung.isEmpty() && m_rung != id)
        save(std::exchange(m_rung, QString()));
    m_rung = id;
    Alarm alarm = *found;
    endSnooze(id);
    Q_EMIT aboutToRing();
    m_ring->start(alarm);
    if (alarm.snoozedUntil == 0) {
        alarm.accounted = alarm.rung - 1;
        alarm.enabled = true;
    }
    run(
        m_database, [alarm](sqlite3 *sql) { return AlarmTable::save(sql, alarm); }, logFailure);
    announce();
}

void Alarms::ringEnded()
{
    if (!m_rung.isEmpty())
        save(std::exchange(m_rung, QString()));
    announce();
}

void Alarms::stop()
{
    VESK_ASSERT_OWN_THREAD();
    m_ring->stop();
    while (!m_snoozes.empty()) {
        const QString id = m_snoozes.back().id;
        endSnooze(id);
        save(id);
    }
    ringEnded();
}

std::optional<Moment> Alarms::snooze(std::chrono::minutes time)
{
    VESK_ASSERT_OWN_THREAD();
    const QString id = ringing();
    if (id.isEmpty())
        return {};
    m_ring->stop();
    snoozeAlarm(id, time);
    ringEnded();
    return m_book.find(id)->snoozedUntil;
}

void Alarms::whenSaved(std::function<void()> then)
{
    // The database does one piece of work after another.
    run(
        m_database, [](sqlite3 *) { return Result<void, QString>(); },
        [then = std::move(then)](const Result<void, QString> &) { then(); });
}

void Alarms::snoozeAlarm(const QString &id, std::chrono::milliseconds time)
{
    endSnooze(id);
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    m_book.snooze(id, m_clock->now() + seconds.count());
    m_snoozes.push_back({id, m_clock->makeTimer()});
    m_snoozes.back().timer->start(time, [this, id] { ring(id); });
}

void Alarms::endSnooze(const QString &id)
{
    m_book.snooze(id, 0);
    m_snoozes.erase(std::remove_if(m_snoozes.begin(), m_snoozes.end(),
                        [&](const Snooze &snooze) { return snooze.id == id; }),
        m_snoozes.end());
}

void Alarms::set(const Alarm &alarm, const Saved &done)
{
    VESK_ASSERT_OWN_THREAD();
    const bool isNew = alarm.id.isEmpty();
    if (isNew && m_book.alarms().size() + m_adding >= AlarmBook::MaxAlarms) {
        return done(failure(playerText(QT_TRANSLATE_NOOP("Player",
                                           "There are as many alarms as there can be. Remove one "
                                           "first."))
                                .toString()));
    }
    Alarm wanted = alarm;
    if (isNew) {
        wanted.id = QString::number(++m_lastId);
        ++m_adding;
    }
    wanted.accounted = m_clock->now();
    wanted.rung = 0;
    wanted.skipped = 0;
    wanted.snoozedUntil = 0;
    run(
        m_database, [wanted](sqlite3 *sql) { return AlarmTable::save(sql, wanted); },
        [self = QPointer<Alarms>(this), wanted, isNew, done](const Result<void, QString> &result) {
            if (!self)
                return;
            self->m_adding -= int(isNew);
            if (!result)
                return done(failure(result.error()));
            self->endSnooze(wanted.id);
            if (self->ringing() == wanted.id) {
                self->m_rung.clear();
                if (!wanted.enabled)
                    self->m_ring->stop();
            }
            self->m_book.put(wanted);
            self->lookAtClock();
            self->announce();
            done(wanted);
        });
}

void Alarms::remove(const QString &id, const Answer &done)
{
    VESK_ASSERT_OWN_THREAD();
    run(
        m_database, [id](sqlite3 *sql) { return AlarmTable::remove(sql, id); },
        [self = QPointer<Alarms>(this), id, done](const Result<void, QString> &result) {
            if (self && result) {
                self->endSnooze(id);
                if (self->ringing() == id)
                    self->m_ring->stop();
                if (self->m_rung == id)
                    self->m_rung.clear();
                self->m_book.remove(id);
                self->rearm();
                self->announce();
            }
            done(result);
        });
}

void Alarms::dismissMissed(const Answer &done)
{
    VESK_ASSERT_OWN_THREAD();
    run(
        m_database, [](sqlite3 *sql) { return AlarmTable::saveMissed(sql, {}); },
        [self = QPointer<Alarms>(this), done](const Result<void, QString> &result) {
            if (self && result) {
                self->m_book.setMissed({});
                self->announce();
            }
            done(result);
        });
}

void Alarms::rearm()
{
    m_clock->wakeAt(m_book.next(m_clock->zone()));
}

void Alarms::save(const QString &id)
{
    const Alarm *alarm = m_book.find(id);
    if (!alarm)
        return;
    run(
        m_database, [alarm = *alarm](sqlite3 *sql) { return AlarmTable::save(sql, alarm); },
        logFailure);
}

void Alarms::saveMissed()
{
    run(
        m_database,
        [missed = m_book.missed()](sqlite3 *sql) { return AlarmTable::saveMissed(sql, missed); },
        logFailure);
}

void Alarms::saveBefore()
{
    run(
        m_database,
        [before = m_ring->before()](sqlite3 *sql) -> Result<void, QString> {
            const auto volume = before ? std::optional<qint64>(before->volume) : std::nullopt;
            const auto mute = before ? std::optional<qint64>(before->isMuted) : std::nullopt;
            if (const auto noted = AlarmTable::note(sql, AlarmTable::volumeBefore(), volume);
                !noted)
                return noted;
            return AlarmTable::note(sql, AlarmTable::muteBefore(), mute);
        },
        logFailure);
}

void Alarms::announce()
{
    if (std::exchange(m_isAnnounced, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isAnnounced = false;
            Q_EMIT changed();
        },
        Qt::QueuedConnection);
}
