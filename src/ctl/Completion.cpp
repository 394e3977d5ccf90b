// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Completion.h"

#include "api/values/VeskValue.h"
#include "base/cli/CommandLine.h"
#include "ctl/CtlPlace.h"
#include "ctl/Places.h"
#include "ctl/RowText.h"
#include "ctl/TerminalText.h"

#include <csignal>
#include <cstdlib>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <optional>

namespace {

QString fileValue()
{
    return QStringLiteral("FILE");
}

bool isOption(const QString &word)
{
    return word.startsWith(QLatin1Char('-')) && word.size() > 1;
}

/// The option \a name of \a command or of \a program.
std::optional<OptionDescription> optionOf(
    const Command &program, const Command &command, const QString &name)
{
    const QVector<OptionDescription> all = command.describedOptions() + program.describedOptions();
    for (const OptionDescription &option : all) {
        if (!option.isArgument && option.names.contains(name))
            return option;
    }
    return std::nullopt;
}

void addOptions(Completion &completion, const Command &program, const Command &command)
{
    QVector<OptionDescription> all = command.describedOptions();
    if (command.name() != program.name())
        all += program.describedOptions();
    for (const OptionDescription &option : std::as_const(all)) {
        if (!option.isArgument)
            completion.known.append({option.names.last(), option.description});
    }
    completion.known.append({QStringLiteral("--help"), QStringLiteral("Print the options")});
}

void addCommands(Completion &completion, const Command &command)
{
    const QStringList names = command.commands();
    for (const QString &name : names)
        completion.known.append({name, command.command(name)->description()});
}

void addValue(Completion &completion, const QString &value)
{
    if (!value.contains(QLatin1Char('|'))) {
        completion.value = value;
        return;
    }
    const QStringList choices = value.split(QLatin1Char('|'));
    for (const QString &choice : choices)
        completion.known.append({choice, QString()});
}

/// The argument that comes after \a count others.
void addArgument(Completion &completion, const Command &command, int count)
{
    const QVector<OptionDescription> all = command.describedOptions();
    for (const OptionDescription &option : all) {
        if (!option.isArgument)
            continue;
        if (option.isRepeated || count == 0)
            return addValue(completion, option.names.first());
        --count;
    }
}

bool isNumber(const QString &text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
}

/// Candidates that only the host knows. Each function returns nothing where it cannot be asked.
class Offers {
public:
    Offers(HostSession &session, const Completion &completion)
        : m_session(session)
        , m_completion(completion)
    {
    }

    QList<Candidate> all();

private:
    QList<Candidate> places();
    QList<Candidate> rows(const CtlPlace &place, const QString &before);
    QList<Candidate> settings(const CMPath &screen, int depth);
    QList<Candidate> values();
    QList<Candidate> services();
    QList<Candidate> listed(
        const char *method, const char *list, const char *text, const char *description);
    QVariantHash call(const char *method, const QVariantHash &params = {});

    HostSession &m_session;
    const Completion &m_completion;
};

QList<Candidate> Offers::all()
{
    const QString &value = m_completion.value;
    const QString &command = m_completion.command;
    if (value == QLatin1String("PLACE")) {
        QList<Candidate> all;
        if (command == QLatin1String("get") || command == QLatin1String("set"))
            all = settings(CMPath(QStringLiteral("host"), QStringLiteral("settings")), 0);
        return all + places();
    }
    if (value == QLatin1String("VALUE"))
        return values();
    if (value == QLatin1String("NUMBER") || value == QLatin1String("N"))
        return command == QLatin1String("menu") || command == QLatin1String("streams")
            ? QList<Candidate>()
            : listed("presets.list", "presets", "number", "title");
    if (value == QLatin1String("OUTPUT"))
        return listed("outputs.list", "outputs", "output", "name");
    if (value == QLatin1String("DEVICE"))
        return listed("devices.list", "devices", "id", "name");
    if (value == QLatin1String("ALARM"))
        return listed("alarms.list", "alarms", "time", "title");
    if (value == QLatin1String("KEY"))
        return listed("host.config", "config", "key", "origin");
    if (value == QLatin1String("SERVICE"))
        return services();
    if (value == QLatin1String("ROLE") && command == QLatin1String("role"))
        return {{QStringLiteral("listener"), {}}, {QStringLiteral("owner"), {}}};
    QList<Candidate> roles;
    if (value == QLatin1String("ROLE")) {
        const QStringList names = VeskRoles::all();
        for (const QString &name : names)
            roles.append({name, {}});
    }
    return roles;
}

/// The first word names a place, or rows behind one ("/3/"); after a place come its rows.
QList<Candidate> Offers::places()
{
    const QString &typed = m_completion.typed;
    if (!m_completion.arguments.isEmpty()) {
        const auto place = CtlPlace::parse(m_completion.arguments);
        return place ? rows(*place, QString()) : QList<Candidate>();
    }
    const int slash = typed.lastIndexOf(QLatin1Char('/'));
    const QString before = typed.left(slash + 1);
    if (slash >= 0) {
        const auto place = CtlPlace::parse(slash == 0 ? before : before.chopped(1));
        return place ? rows(*place, before) : QList<Candidate>();
    }
    QList<Candidate> all {{QStringLiteral("/"), QStringLiteral("The first list")},
        {QStringLiteral("favorites"), QStringLiteral("The favorites")},
        {QStringLiteral("search:"), QStringLiteral("What is found")}};
    return all + rows(CtlPlace(), QStringLiteral("/"));
}

QList<Candidate> Offers::rows(const CtlPlace &place, const QString &before)
{
    auto spot = Places(m_session).resolve(place);
    if (!spot || spot->path.isEmpty())
        return {};
    const QStringList roles {VeskRoles::Title(), VeskRoles::Type()};
    const auto rows = Screens(m_session).rows(spot->path, roles);
    if (!rows)
        return {};
    QList<Candidate> all;
    for (int i = 0; i < rows->size(); ++i) {
        const QString title = plainText(rows->at(i)[VeskRoles::Title()]);
        if (!title.isEmpty())
            all.append({before + QString::number(i), title});
    }
    return all;
}

/// The paths of what \a screen shows, and of what the screens of the host behind it do.
QList<Candidate> Offers::settings(const CMPath &screen, int depth)
{
    constexpr int MaxDepth = 2;
    const QStringList roles {VeskRoles::Title(), VeskRoles::Type(), VeskRoles::Path()};
    const auto rows = Screens(m_session).allRows(screen, roles);
    QList<Candidate> all;
    if (!rows)
        return all;
    for (const VeskRoles &row : *rows) {
        const CMPath path = row.path();
        if (path.prefix() == QLatin1String("settings"))
            all.append({path.toEncoded(), plainText(row[VeskRoles::Title()])});
        else if (path.prefix() == screen.prefix() && path != screen && depth < MaxDepth)
            all += settings(path, depth + 1);
    }
    return all;
}

/// What the value to change is now; of a switch, both.
QList<Candidate> Offers::values()
{
    const CMPath path = CMPath::fromEncoded(m_completion.arguments.value(0));
    if (path.isEmpty())
        return {};
    QVariantHash params = pathParams(path);
    params.insert(QStringLiteral("roles"), QStringList {VeskRoles::Value()});
    const QVariant now = call("getData", params).value(QStringLiteral("values")).toList().value(0);
    const VeskValue value {VeskHash(now.toHash())};
    if (value.type() == VeskValueType::bool_)
        return {{QStringLiteral("true"), {}}, {QStringLiteral("false"), {}}};
    return {{plainText(now), QStringLiteral("As it is now")}};
}

QList<Candidate> Offers::services()
{
    const QStringList roles {VeskRoles::Id(), VeskRoles::Title()};
    const auto rows = Screens(m_session).rows(
        CMPath(QStringLiteral("host"), QStringLiteral("services")), roles);
    QList<Candidate> all;
    if (!rows)
        return all;
    for (const VeskRoles &row : *rows)
        all.append({row[VeskRoles::Id()].toString(), plainText(row[VeskRoles::Title()])});
    return all;
}

QList<Candidate> Offers::listed(
    const char *method, const char *list, const char *text, const char *description)
{
    QList<Candidate> all;
    const QVariantList entries = call(method).value(QLatin1String(list)).toList();
    for (const QVariant &entry : entries) {
        const QVariantHash members = entry.toHash();
        all.append({members.value(QLatin1String(text)).toString(),
            members.value(QLatin1String(description)).toString()});
    }
    return all;
}

QVariantHash Offers::call(const char *method, const QVariantHash &params)
{
    return m_session.client().call(QLatin1String(method), params).result.toHash();
}

/// By what it begins with; the number of a row also by a part of its title.
bool fits(const Candidate &candidate, const QString &typed)
{
    if (candidate.text.startsWith(typed))
        return true;
    return !isNumber(typed) && isNumber(candidate.text)
        && candidate.description.contains(typed, Qt::CaseInsensitive);
}

void print(HostSession &session, const QList<Candidate> &candidates, const QString &typed)
{
    constexpr int Longest = 80;
    std::ostream &out = session.terminal().out;
    for (const Candidate &candidate : candidates) {
        // One with control characters cannot be typed.
        if (candidate.text.isEmpty() || printableText(candidate.text) != candidate.text
            || !fits(candidate, typed))
            continue;
        out << candidate.text.toStdString() << '\t'
            << elided(printableText(candidate.description), Longest).toStdString() << '\n';
    }
    out.flush();
}

/// Ends the process when its time is over.
class TimeLimit {
public:
    TimeLimit()
    {
        std::signal(SIGALRM, [](int) { ::_exit(EXIT_SUCCESS); });
        set(CompletionMs * 1000);
    }

    ~TimeLimit()
    {
        set(0);
        std::signal(SIGALRM, SIG_DFL);
    }

    TimeLimit(const TimeLimit &) = delete;
    TimeLimit &operator=(const TimeLimit &) = delete;

private:
    static void set(suseconds_t microseconds)
    {
        itimerval time {};
        time.it_value.tv_usec = microseconds;
        ::setitimer(ITIMER_REAL, &time, nullptr);
    }
};

} // namespace

Completion completionOf(const Command &program, const QStringList &words)
{
    Completion completion;
    completion.typed = words.isEmpty() ? QString() : words.last();
    Command at = program;
    QString awaited; // the value of the option before
    bool hasOptions = true;
    for (int i = 0; i + 1 < words.size(); ++i) {
        const QString &word = words.at(i);
        const QString name = word.section(QLatin1Char('='), 0, 0);
        const auto option = hasOptions && isOption(word) ? optionOf(program, at, name)
                                                         : std::optional<OptionDescription>();
        if (hasOptions && word == QLatin1String("--")) {
            hasOptions = false;
        } else if (option) {
            QString value = word.contains(QLatin1Char('=')) ? word.mid(name.size() + 1) : QString();
            if (!option->valueName.isEmpty() && !word.contains(QLatin1Char('='))) {
                ++i;
                value = words.at(i);
                if (i + 1 == words.size())
                    awaited = option->valueName;
            }
            if (name == QLatin1String("--host"))
                completion.host = value;
            else if (name == QLatin1String("--in"))
                completion.service = value;
        } else if (completion.arguments.isEmpty() && at.command(word)) {
            at = *at.command(word);
        } else if (at.name() == program.name()) {
            completion.service = word;
        } else {
            completion.arguments.append(word);
        }
    }
    completion.command = at.name();
    if (!awaited.isEmpty()) {
        addValue(completion, awaited);
    } else if (hasOptions && completion.typed.startsWith(QLatin1Char('-'))) {
        addOptions(completion, program, at);
    } else {
        if (completion.arguments.isEmpty())
            addCommands(completion, at);
        addArgument(completion, at, completion.arguments.size());
    }
    return completion;
}

CtlResult<> complete(HostSession &session, const Completion &completion)
{
    if (completion.value.startsWith(fileValue())) {
        session.terminal().out << ":files" << std::endl;
        return {};
    }
    print(session, completion.known, completion.typed);
    if (completion.value.isEmpty() || session.options().host.isEmpty())
        return {};
    const TimeLimit limit;
    print(session, Offers(session, completion).all(), completion.typed);
    return {};
}
