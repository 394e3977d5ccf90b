// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/AlarmMethods.h"

#include "api/core/vesk.h"
#include "host/alarm/AlarmClock.h"
#include "host/alarm/AlarmParams.h"
#include "host/alarm/Alarms.h"
#include "host/library/KeptRow.h"
#include "host/player/PlayLogic.h"
#include "host/player/PlayerText.h"
#include "host/player/RowSearch.h"
#include "host/rpc/AddressGate.h"
#include "host/rpc/RpcParams.h"

#include <QPointer>

#include <algorithm>

namespace {

constexpr int Presets = 12;

JsonRpcError failureOf(const char *text)
{
    return RpcMethods::toRpcError(CMError(playerText(text)));
}

Alarms::Answer answerTo(const JsonRpcCallPtr &call)
{
    return [call](const Result<void, QString> &result) {
        if (result)
            call->finish(QVariantHash());
        else
            call->fail(notSaved(result.error()));
    };
}

/// 1 to 7, each at most once, in order.
std::optional<QVector<int>> daysOf(const QVariant &value)
{
    if (value.userType() != QMetaType::QVariantList)
        return {};
    QVector<int> days;
    const QVariantList list = value.toList();
    for (const QVariant &entry : list) {
        const auto day = wholeNumber(entry, 1, 7);
        if (!day || days.contains(*day))
            return {};
        days.append(*day);
    }
    std::sort(days.begin(), days.end());
    return days;
}

QString textOf(const QVariant &value)
{
    return value.userType() == QMetaType::QString ? value.toString() : QString();
}

/// Takes the members of alarms.set into \a alarm, but for what it plays. Returns what is wrong
/// with them; empty: nothing.
QString takeParams(Alarm &alarm, bool isNew, const QVariantHash &params)
{
    const auto given = [&](const char *name) { return params.value(QString::fromLatin1(name)); };
    if (isNew || !given("time").isNull()) {
        const auto time = WeeklyTime::parse(textOf(given("time")));
        if (!time)
            return QStringLiteral("\"time\" is a time of the day, as in \"07:30\".");
        alarm.time.hour = time->hour;
        alarm.time.minute = time->minute;
    }
    if (!given("days").isNull()) {
        const auto days = daysOf(given("days"));
        if (!days)
            return QStringLiteral("\"days\" is a list of days from 1 (Monday) to 7.");
        alarm.time.days = *days;
    }
    if (const QVariant enabled = given("enabled"); !enabled.isNull()) {
        if (enabled.userType() != QMetaType::Bool)
            return QStringLiteral("\"enabled\" is true or false.");
        alarm.enabled = enabled.toBool();
    }
    if (params.contains(QStringLiteral("volume"))) {
        const QVariant volume = given("volume");
        alarm.volume = wholeNumber(volume, 0, 100);
        if (!alarm.volume && !volume.isNull())
            return QStringLiteral("\"volume\" is a whole number from 0 to 100, or null.");
    }
    if (!given("fade").isNull()) {
        const auto fade = wholeNumber(given("fade"), 0, Alarm::MaxFade);
        if (!fade) {
            return QStringLiteral("\"fade\" is a whole number of seconds from 0 to %1.")
                .arg(Alarm::MaxFade);
        }
        alarm.fade = *fade;
    }
    return {};
}

bool isPlayable(const VeskRoles &row)
{
    return row.type() == VeskRolesType::Audio()
        && !row.mediaData().activeResource().uri().isEmpty();
}

} // namespace

AlarmMethods::AlarmMethods(JsonRpcDispatcher *dispatcher, Alarms *alarms, AlarmClock *clock,
    PlayLogic *logic, QObject *parent)
    : QObject(parent)
    , m_alarms(alarms)
    , m_clock(clock)
    , m_logic(logic)
{
    add(dispatcher, "alarms.list", &AlarmMethods::list);
    add(dispatcher, "alarms.set", &AlarmMethods::set);
    add(dispatcher, "alarms.remove", &AlarmMethods::remove);
    add(dispatcher, "alarms.stop", &AlarmMethods::stop);
    add(dispatcher, "alarms.snooze", &AlarmMethods::snooze);
    add(dispatcher, "alarms.dismissMissed", &AlarmMethods::dismissMissed);
    connect(alarms, &Alarms::changed, this,
        [this] { Q_EMIT notification(QStringLiteral("alarms.changed"), QVariantHash()); });
}

AlarmMethods::~AlarmMethods() = default;

/// Each method waits until the alarms were read.
void AlarmMethods::add(JsonRpcDispatcher *dispatcher, const char *name, Method method)
{
    dispatcher->addMethod(QString::fromLatin1(name), [this, method](const JsonRpcCallPtr &call) {
        m_alarms->whenLoaded([self = QPointer<AlarmMethods>(this), method, call](
                                 const Result<void, QString> &result) {
            if (!result)
                call->fail(notSaved(result.error()));
            else if (self)
                (self->*method)(call);
        });
    });
}

QVariant AlarmMethods::shown(std::optional<Moment> moment) const
{
    return moment ? isoText(*moment, m_clock->zone()) : QVariant();
}

QVariantHash AlarmMethods::shown(const Alarm &alarm) const
{
    QVariantList days;
    for (const int day : alarm.time.days)
        days.append(day);
    const QString icon = alarm.row.icon();
    if (m_iconSeen)
        m_iconSeen(icon);
    return {{QStringLiteral("id"), alarm.id}, {QStringLiteral("time"), alarm.time.text()},
        {QStringLiteral("days"), days}, {QStringLiteral("enabled"), alarm.enabled},
        {QStringLiteral("volume"), alarm.volume ? *alarm.volume : QVariant()},
        {QStringLiteral("fade"), alarm.fade},
        {QStringLiteral("title"), alarm.row.title().toString()}, {QStringLiteral("icon"), icon},
        {QStringLiteral("path"), alarm.row.path().toEncoded()},
        {QStringLiteral("next"), shown(m_alarms->next(alarm))}};
}

void AlarmMethods::list(const JsonRpcCallPtr &call)
{
    QVariantList alarms;
    for (const Alarm &alarm : m_alarms->book().alarms())
        alarms.append(shown(alarm));
    QVariantList missed;
    for (const MissedAlarm &one : m_alarms->book().missed()) {
        missed.append(
            QVariantHash {{QStringLiteral("id"), one.id}, {QStringLiteral("at"), shown(one.at)}});
    }
    const QString ringing = m_alarms->ringing();
    call->finish(
        QVariantHash {{QStringLiteral("alarms"), alarms}, {QStringLiteral("missed"), missed},
            {QStringLiteral("ringing"), ringing.isEmpty() ? QVariant() : ringing}});
}

void AlarmMethods::set(const JsonRpcCallPtr &call)
{
    Alarm alarm;
    alarm.fade = DefaultFade;
    const QVariant id = call->params().value(QStringLiteral("id"));
    if (!id.isNull()) {
        const Alarm *present = m_alarms->book().find(textOf(id));
        if (!present)
            return call->fail(failureOf(QT_TRANSLATE_NOOP("Player", "There is no such alarm.")));
        alarm = *present;
    }
    if (const QString wrong = takeParams(alarm, id.isNull(), call->params()); !wrong.isEmpty())
        return call->fail(wrongParams(wrong));
    setRow(call, alarm);
}

/// Finds out what \a alarm is to play.
void AlarmMethods::setRow(const JsonRpcCallPtr &call, const Alarm &alarm)
{
    if (!call->params().value(QStringLiteral("preset")).isNull())
        return setPreset(call, alarm);
    if (!call->params().value(QStringLiteral("screen")).isNull())
        return setFromScreen(call, alarm);
    Alarm wanted = alarm;
    const bool isPlaying = m_logic->currentData().state() != VeskPlayLogicState::stopped;
    if (alarm.id.isEmpty() && isPlaying)
        wanted.row = m_logic->row();
    setAs(call, wanted);
}

void AlarmMethods::setPreset(const JsonRpcCallPtr &call, const Alarm &alarm)
{
    const auto number = wholeNumber(call->params().value(QStringLiteral("preset")), 1, Presets);
    if (!number) {
        return call->fail(
            wrongParams(QStringLiteral("\"preset\" is a number from 1 to %1.").arg(Presets)));
    }
    if (!m_presetRow) {
        return call->fail(
            failureOf(QT_TRANSLATE_NOOP("Player", "There is nothing to play in this row.")));
    }
    m_presetRow(*number,
        [self = QPointer<AlarmMethods>(this), call, wanted = alarm](
            const Result<VeskRoles, QString> &row) mutable {
            if (!row)
                return call->fail(notSaved(row.error()));
            wanted.row = *row;
            if (self)
                self->setAs(call, wanted);
        });
}

void AlarmMethods::setFromScreen(const JsonRpcCallPtr &call, const Alarm &alarm)
{
    RpcParams params(call->params());
    const CMPath screen = params.screen();
    const int row = params.row();
    const CMPath path = params.rowPath();
    if (params.failed())
        return call->fail(params.error());
    if (m_gate && !m_gate->mayOpen(screen, call->peer()))
        return call->fail(AddressGate::refusal());
    auto *search = new RowSearch({}, this);
    search->start({screen, row, path},
        [this, search, call, wanted = alarm](const CMError &error, const VeskRoles &found) mutable {
            search->deleteLater();
            if (!error.isEmpty()) {
                JsonRpcError failure = RpcMethods::toRpcError(error);
                if (error.name() == RowSearch::goneName())
                    failure.code = JsonRpcError::RowGone;
                return call->fail(failure);
            }
            if (!isPlayable(found)) {
                return call->fail(failureOf(
                    QT_TRANSLATE_NOOP("Player", "There is nothing to play in this row.")));
            }
            wanted.row = found;
            setAs(call, wanted);
        });
}

void AlarmMethods::setAs(const JsonRpcCallPtr &call, const Alarm &alarm)
{
    if (!alarm.row.isEmpty() && !KeptRow::toText(alarm.row)) {
        return call->fail(failureOf(QT_TRANSLATE_NOOP("Player", "An alarm cannot keep this row.")));
    }
    m_alarms->set(alarm, [self = QPointer<AlarmMethods>(this), call](const auto &result) {
        if (!result)
            return call->fail(notSaved(result.error()));
        if (!self)
            return;
        call->finish(QVariantHash {{QStringLiteral("id"), result->id},
            {QStringLiteral("next"), self->shown(self->m_alarms->next(*result))}});
    });
}

void AlarmMethods::remove(const JsonRpcCallPtr &call)
{
    const QString id = textOf(call->params().value(QStringLiteral("id")));
    if (!m_alarms->book().find(id))
        return call->fail(failureOf(QT_TRANSLATE_NOOP("Player", "There is no such alarm.")));
    m_alarms->remove(id, answerTo(call));
}

void AlarmMethods::stop(const JsonRpcCallPtr &call)
{
    m_alarms->stop();
    m_alarms->whenSaved([call] { call->finish(QVariantHash()); });
}

void AlarmMethods::snooze(const JsonRpcCallPtr &call)
{
    const QVariant given = call->params().value(QStringLiteral("minutes"));
    const auto minutes
        = given.isNull() ? std::optional(DefaultSnooze) : wholeNumber(given, 1, LongestSnooze);
    if (!minutes) {
        return call->fail(wrongParams(
            QStringLiteral("\"minutes\" is a whole number from 1 to %1.").arg(LongestSnooze)));
    }
    const auto until = m_alarms->snooze(std::chrono::minutes(*minutes));
    if (!until)
        return call->fail(failureOf(QT_TRANSLATE_NOOP("Player", "No alarm rings.")));
    const QVariantHash result {{QStringLiteral("until"), shown(until)}};
    m_alarms->whenSaved([call, result] { call->finish(result); });
}

void AlarmMethods::dismissMissed(const JsonRpcCallPtr &call)
{
    m_alarms->dismissMissed(answerTo(call));
}
