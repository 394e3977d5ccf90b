// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/Places.h"
#include "ctl/RowText.h"
#include "ctl/TimeText.h"

#include "api/values/VeskPlayLogicData.h"

#include <QVector>

#include <algorithm>
#include <optional>

namespace {

constexpr int MaxVolume = 100;
constexpr int MaxFade = 600;
constexpr int MaxSnooze = 120;
constexpr int Presets = 12;

struct Alarm {
    QVariant id;
    /// What users name it by: the id if that is a number, else its number in the list, from 1.
    int number = 0;
    /// "07:30", and ISO days.
    QString time;
    QList<int> days;
    bool enabled = false;
    /// Null for the volume that there is.
    QVariant volume;
    QVariant fade;
    QString title;
    QString path;
    /// ISO 8601; empty when it does not go off.
    QString next;
    bool rings = false;

    /// Before it is known what it plays.
    QString when() const { return QStringLiteral("%1 %2").arg(time, daysText(days)); }
};

QList<int> daysIn(const QVariantList &list)
{
    constexpr int Sunday = 7;
    QList<int> days;
    for (int day = 1; day <= Sunday; ++day) {
        if (list.contains(day))
            days.append(day);
    }
    return days;
}

QVector<Alarm> alarmsIn(const QVariantHash &result)
{
    QVector<Alarm> alarms;
    const QString ringing = result.value(QStringLiteral("ringing")).toString();
    const QVariantList list = result.value(QStringLiteral("alarms")).toList();
    for (const QVariant &value : list) {
        const QVariantHash json = value.toHash();
        const auto text
            = [&](const char *name) { return json.value(QLatin1String(name)).toString(); };
        Alarm alarm;
        alarm.id = json.value(QStringLiteral("id"));
        alarm.number = parseNumber(alarm.id.toString()).value_or(alarms.size() + 1);
        alarm.time = text("time");
        alarm.days = daysIn(json.value(QStringLiteral("days")).toList());
        alarm.enabled = json.value(QStringLiteral("enabled")).toBool();
        alarm.volume = json.value(QStringLiteral("volume"));
        alarm.fade = json.value(QStringLiteral("fade"));
        alarm.title = text("title");
        alarm.path = text("path");
        alarm.next = text("next");
        alarm.rings = !ringing.isEmpty() && alarm.id.toString() == ringing;
        alarms.append(alarm);
    }
    return alarms;
}

class Alarms {
public:
    explicit Alarms(HostSession &session)
        : m_session(session)
    {
    }

    CtlResult<> list();
    CtlResult<> add();
    CtlResult<> change();
    CtlResult<> remove();
    CtlResult<> turn(bool on);
    CtlResult<> stop();
    CtlResult<> snooze();
    CtlResult<> dismiss();

private:
    void print(const QVector<Alarm> &alarms);
    void printMissed(const QVariantList &missed, const QVector<Alarm> &alarms);
    CtlResult<Alarm> named();
    CtlResult<QVariantHash> wanted(QVariantHash params);
    CtlResult<> set(const QVariantHash &params);

    HostSession &m_session;
};

CtlResult<> Alarms::list()
{
    const auto result = m_session.call(QStringLiteral("alarms.list"));
    if (!result)
        return failure(result.error());
    if (m_session.options().json) {
        m_session.printJson(*result);
        return {};
    }
    const QVector<Alarm> alarms = alarmsIn(*result);
    print(alarms);
    printMissed(result->value(QStringLiteral("missed")).toList(), alarms);
    return {};
}

QString rowDescription(const Alarm &alarm)
{
    QStringList parts {
        alarm.title.isEmpty() ? ctlText("a sound of the host's own") : printableText(alarm.title)};
    if (!alarm.volume.isNull())
        parts.append(ctlText("volume %1").arg(QString::number(alarm.volume.toInt())));
    if (!alarm.enabled)
        parts.append(ctlText("off"));
    return parts.join(QLatin1String(", "));
}

void Alarms::print(const QVector<Alarm> &alarms)
{
    QList<RowText> rows;
    for (const Alarm &alarm : alarms) {
        RowText row {alarm.number, 0, printableText(alarm.when()), rowDescription(alarm), {}};
        row.played = alarm.rings ? VeskPlayLogicState::playing : 0;
        rows.append(row);
        if (m_session.isForTerminal())
            continue;
        QStringList days;
        for (const int day : alarm.days)
            days.append(QString::number(day));
        m_session.printFields({alarm.id.toString(), alarm.time, days.join(QLatin1Char(',')),
            alarm.enabled ? QStringLiteral("on") : QStringLiteral("off"), alarm.volume.toString(),
            alarm.fade.toString(), alarm.title, alarm.path, alarm.next,
            alarm.rings ? QStringLiteral("ringing") : QString()});
    }
    if (rows.isEmpty())
        m_session.note(ctlText("no alarm is set"));
    else if (m_session.isForTerminal())
        m_session.terminal().out << numberedLines(m_session, rows);
}

void Alarms::printMissed(const QVariantList &missed, const QVector<Alarm> &alarms)
{
    for (const QVariant &value : missed) {
        const QVariantHash json = value.toHash();
        const QString id = json.value(QStringLiteral("id")).toString();
        const auto alarm = std::find_if(alarms.begin(), alarms.end(),
            [&](const Alarm &candidate) { return candidate.id.toString() == id; });
        QString text = clockText(json.value(QStringLiteral("at")).toString(), true);
        if (alarm != alarms.end() && !alarm->title.isEmpty())
            text = QStringLiteral("%1 (%2)").arg(text, alarm->title);
        m_session.note(ctlText("missed alarm: %1").arg(text));
    }
    if (!missed.isEmpty())
        m_session.note(ctlText("\"veskctl alarm dismiss\" forgets the missed ones"));
}

/// The alarm that is named by its number or id, or by its time where only one has it.
CtlResult<Alarm> Alarms::named()
{
    const auto result = m_session.call(QStringLiteral("alarms.list"));
    if (!result)
        return failure(result.error());
    const QString &wanted = m_session.options().alarm;
    const auto time = parseTimeOfDay(wanted);
    const QVector<Alarm> alarms = alarmsIn(*result);
    QVector<Alarm> found;
    for (const Alarm &alarm : alarms) {
        if (parseNumber(wanted) == alarm.number || alarm.id.toString() == wanted)
            return alarm;
        if (time && alarm.time == *time)
            found.append(alarm);
    }
    if (found.size() == 1)
        return found.first();
    if (found.size() > 1) {
        return m_session.fail(CtlStatus::BadUsage,
            ctlText("several alarms are at %1: name one by its number").arg(*time));
    }
    return m_session.fail(CtlStatus::Failed, ctlText("there is no alarm \"%1\"").arg(wanted));
}

/// Adds what the options say to the parameters of alarms.set.
CtlResult<QVariantHash> Alarms::wanted(QVariantHash params)
{
    const CtlOptions &options = m_session.options();
    if (!options.time.isEmpty()) {
        const auto time = parseTimeOfDay(options.time);
        if (!time) {
            return m_session.fail(CtlStatus::BadUsage,
                ctlText("\"%1\" is no time: that is 7:30 or 19:30").arg(options.time));
        }
        params.insert(QStringLiteral("time"), *time);
    }
    if (!options.days.isEmpty()) {
        const auto days = parseDays(options.days);
        if (!days) {
            return m_session.fail(CtlStatus::BadUsage,
                ctlText("\"%1\" are no days: those are mon-fri, sat,sun, daily or once")
                    .arg(options.days));
        }
        QVariantList list;
        for (const int day : *days)
            list.append(day);
        params.insert(QStringLiteral("days"), list);
    }
    if (options.volume >= 0)
        params.insert(QStringLiteral("volume"), options.volume);
    if (options.fade >= 0)
        params.insert(QStringLiteral("fade"), options.fade);
    if (options.number >= 1)
        params.insert(QStringLiteral("preset"), options.number);
    if (options.words.isEmpty())
        return params;
    const auto item = Places(m_session).itemToKeep(options.words);
    if (!item)
        return failure(item.error());
    for (auto it = item->params.begin(); it != item->params.end(); ++it)
        params.insert(it.key(), it.value());
    return params;
}

CtlResult<> Alarms::set(const QVariantHash &params)
{
    const auto result = m_session.call(QStringLiteral("alarms.set"), params);
    if (!result)
        return failure(result.error());
    Alarm alarm;
    alarm.time = params.value(QStringLiteral("time")).toString();
    alarm.days = daysIn(params.value(QStringLiteral("days")).toList());
    const QString next = clockText(result->value(QStringLiteral("next")).toString(), true);
    m_session.tell(next.isEmpty() ? ctlText("%1: off").arg(alarm.when())
                                  : ctlText("%1: next %2").arg(alarm.when(), next),
        *result);
    return {};
}

CtlResult<> Alarms::add()
{
    const auto params
        = wanted({{QStringLiteral("days"), QVariantList()}, {QStringLiteral("enabled"), true}});
    if (!params)
        return failure(params.error());
    return set(*params);
}

/// What alarms.set takes to leave an alarm as it is; what it plays is left out.
QVariantHash paramsOf(const Alarm &alarm)
{
    QVariantList days;
    for (const int day : alarm.days)
        days.append(day);
    return {{QStringLiteral("id"), alarm.id}, {QStringLiteral("time"), alarm.time},
        {QStringLiteral("days"), days}, {QStringLiteral("enabled"), alarm.enabled},
        {QStringLiteral("volume"), alarm.volume}, {QStringLiteral("fade"), alarm.fade}};
}

CtlResult<> Alarms::change()
{
    const auto alarm = named();
    if (!alarm)
        return failure(alarm.error());
    const auto params = wanted(paramsOf(*alarm));
    if (!params)
        return failure(params.error());
    return set(*params);
}

CtlResult<> Alarms::turn(bool on)
{
    const auto alarm = named();
    if (!alarm)
        return failure(alarm.error());
    QVariantHash params = paramsOf(*alarm);
    params.insert(QStringLiteral("enabled"), on);
    return set(params);
}

CtlResult<> Alarms::remove()
{
    const auto alarm = named();
    if (!alarm)
        return failure(alarm.error());
    const QVariantHash params {{QStringLiteral("id"), alarm->id}};
    if (const auto removed = m_session.call(QStringLiteral("alarms.remove"), params); !removed)
        return failure(removed.error());
    m_session.tell(ctlText("%1: removed").arg(alarm->when()), params);
    return {};
}

CtlResult<> Alarms::stop()
{
    const auto stopped = m_session.call(QStringLiteral("alarms.stop"));
    if (!stopped)
        return failure(stopped.error());
    if (m_session.options().json)
        m_session.printJson(*stopped);
    return {};
}

CtlResult<> Alarms::snooze()
{
    QVariantHash params;
    if (m_session.options().minutes >= 1)
        params.insert(QStringLiteral("minutes"), m_session.options().minutes);
    const auto result = m_session.call(QStringLiteral("alarms.snooze"), params);
    if (!result)
        return failure(result.error());
    const QString until = clockText(result->value(QStringLiteral("until")).toString(), false);
    m_session.tell(ctlText("quiet until %1").arg(until), *result);
    return {};
}

CtlResult<> Alarms::dismiss()
{
    const auto dismissed = m_session.call(QStringLiteral("alarms.dismissMissed"));
    if (!dismissed)
        return failure(dismissed.error());
    if (m_session.options().json)
        m_session.printJson(*dismissed);
    return {};
}

void addAlarmOptions(Command command, CtlOptions &options)
{
    command.addOption("--days", options.days, "mon-fri, sat,sun, daily or once").valueName("DAYS");
    command.addOption("--volume", options.volume, "How loud, 0 to 100; without it, as it is then")
        .valueName("LEVEL")
        .between(0, MaxVolume);
    command.addOption("--fade", options.fade, "How long it fades in, in seconds")
        .valueName("SECONDS")
        .between(0, MaxFade);
    command.addOption("--preset", options.number, "A preset to play, instead of a row")
        .valueName("N")
        .between(1, Presets);
}

} // namespace

void addAlarmCommands(Command app, CtlCommandLine &line)
{
    CtlOptions &options = line.options;
    const auto list = [](HostSession &session) { return Alarms(session).list(); };
    addCommand(app, "alarms", "Show the alarms", line, list);
    Command alarm = app.add("alarm", "Show the alarms, or change them");
    // CLI11 chooses a command below this one first.
    alarm.onChosen([&line, list] {
        if (!line.run)
            line.run = list;
    });
    const auto add = [&](const char *name, const char *description, CtlResult<> (Alarms::*run)()) {
        return addCommand(alarm, name, description, line,
            [run](HostSession &session) { return (Alarms(session).*run)(); });
    };
    const auto addNamed = [&](const char *name, const char *description, auto run) {
        Command command = addCommand(alarm, name, description, line,
            [run](HostSession &session) { return run(Alarms(session)); });
        command.addOption("ALARM", options.alarm, "Its number, or its time").required();
        return command;
    };
    add("list", "Show the alarms", &Alarms::list);

    Command set = add("add", "Set an alarm", &Alarms::add);
    set.addOption("TIME", options.time, "When it goes off: 7:30").required();
    set.addOption("PLACE", options.words, "The row to play; without it, what plays now");
    addAlarmOptions(set, options);

    Command change
        = addNamed("change", "Change an alarm", [](Alarms alarms) { return alarms.change(); });
    change.addOption("PLACE", options.words, "The row to play; without it, the same as before");
    change.addOption("--time", options.time, "Another time").valueName("TIME");
    addAlarmOptions(change, options);

    addNamed("remove", "Remove an alarm", [](Alarms alarms) { return alarms.remove(); });
    addNamed("on", "Let an alarm go off again", [](Alarms alarms) { return alarms.turn(true); });
    addNamed("off", "Keep an alarm, but silent", [](Alarms alarms) { return alarms.turn(false); });
    add("stop", "Silence the alarm that rings", &Alarms::stop);
    add("snooze", "Have the alarm ring again later", &Alarms::snooze)
        .addOption("MINUTES", options.minutes, "How much later (9)")
        .between(1, MaxSnooze);
    add("dismiss", "Forget the alarms that were missed", &Alarms::dismiss);
}
