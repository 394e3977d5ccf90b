// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/SleepTimer.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "host/alarm/AlarmTable.h"
#include "host/alarm/PlayerFade.h"
#include "host/library/Database.h"
#include "host/player/PlayLogic.h"

#include <QPointer>

#include <algorithm>
#include <utility>

VESK_LOGGER("Alarms")

namespace {

void logFailure(const Result<void, QString> &result)
{
    if (!result)
        VESK_ERROR("The sleep timer cannot be saved: " << result.error());
}

} // namespace

SleepTimer::SleepTimer(
    PlayLogic *logic, PlayerFade *fade, Database *database, AlarmClock *clock, QObject *parent)
    : QObject(parent)
    , m_logic(logic)
    , m_playerFade(fade)
    , m_database(database)
    , m_clock(clock)
    , m_timer(clock->makeTimer())
{
    connect(logic, &PlayLogic::stopRequested, this, [this] {
        if (!m_isRunning)
            return;
        ++m_number;
        end(true);
        save(logFailure);
    });
}

SleepTimer::~SleepTimer() = default;

void SleepTimer::load()
{
    VESK_ASSERT_OWN_THREAD();
    const auto notes = std::make_shared<QHash<QString, qint64>>();
    m_database->run(
        [notes](sqlite3 *sql) -> Result<QVariant, QString> {
            const auto content = AlarmTable::read(sql);
            if (!content)
                return failure(content.error());
            *notes = content->notes;
            return QVariant();
        },
        [self = QPointer<SleepTimer>(this), notes](const Result<QVariant, QString> &) {
            const Moment ends = notes->value(AlarmTable::sleepEnds());
            if (!self || self->m_number != 0 || ends == 0)
                return;
            const Moment left = ends - self->m_clock->now();
            if (left <= 0)
                return self->save(logFailure);
            const std::chrono::seconds longest = Longest;
            const Moment fade = notes->value(AlarmTable::sleepFade());
            self->run(std::min(std::chrono::seconds(left), longest),
                std::clamp(std::chrono::seconds(fade), std::chrono::seconds(0), LongestFade));
        });
}

void SleepTimer::leave()
{
    VESK_ASSERT_OWN_THREAD();
    disconnect(m_logic, nullptr, this, nullptr);
    m_timer->stop();
}

void SleepTimer::start(std::chrono::minutes time, std::chrono::seconds fade, const Answer &done)
{
    VESK_ASSERT_OWN_THREAD();
    const int number = ++m_number;
    run(time, fade);
    save([self = QPointer<SleepTimer>(this), number, done](const Result<void, QString> &result) {
        if (self && !result && self->m_number == number)
            self->end();
        done(result);
    });
}

void SleepTimer::run(std::chrono::seconds time, std::chrono::seconds fade)
{
    end();
    m_isRunning = true;
    m_fade = std::min(fade, time);
    m_timer->start(time - m_fade, [this] { fadeOut(); });
    Q_EMIT changed();
}

void SleepTimer::fadeOut()
{
    m_isFading = true;
    m_playerFade->start(1, 0, m_fade);
    m_timer->start(m_fade, [this] { fallAsleep(); });
}

void SleepTimer::fallAsleep()
{
    VESK_INFO("the sleep timer stops the player");
    // Which ends this timer.
    m_logic->stop();
}

void SleepTimer::stop(const Answer &done)
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_isRunning)
        return done({});
    ++m_number;
    end();
    save(done);
}

/// \a isSoundOver: the player is being stopped.
void SleepTimer::end(bool isSoundOver)
{
    m_timer->stop();
    if (!std::exchange(m_isRunning, false))
        return;
    if (std::exchange(m_isFading, false)) {
        if (isSoundOver)
            m_playerFade->endLater();
        else
            m_playerFade->end();
    }
    Q_EMIT changed();
}

std::optional<Moment> SleepTimer::ends() const
{
    if (!m_isRunning)
        return {};
    return m_clock->now() + left().count();
}

std::chrono::seconds SleepTimer::left() const
{
    if (!m_isRunning)
        return std::chrono::seconds(0);
    return std::chrono::ceil<std::chrono::seconds>(m_timer->left())
        + (m_isFading ? std::chrono::seconds(0) : m_fade);
}

/// What runs now.
void SleepTimer::save(const Answer &done)
{
    const auto sleepEnds = ends();
    const auto fade = m_isRunning ? std::optional<qint64>(m_fade.count()) : std::nullopt;
    m_database->run(
        [sleepEnds, fade](sqlite3 *sql) -> Result<QVariant, QString> {
            const auto ends = AlarmTable::note(sql, AlarmTable::sleepEnds(), sleepEnds);
            if (!ends)
                return failure(ends.error());
            if (const auto noted = AlarmTable::note(sql, AlarmTable::sleepFade(), fade); !noted)
                return failure(noted.error());
            return QVariant();
        },
        [done](const Result<QVariant, QString> &result) {
            if (result)
                done({});
            else
                done(failure(result.error()));
        });
}
