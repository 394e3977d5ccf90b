// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"

#include "api/web/VeskUrl.h"
#include "ctl/Completion.h"
#include "ctl/Services.h"

#include <QVector>

#include <algorithm>
#include <optional>
#include <string>

namespace {

constexpr char Help[]
    = "A PLACE is what lists show and take: the number of a row of what this terminal\n"
      "was shown last (3, or 3/0/12 for rows behind it), the same from the first list\n"
      "on (/3/0/12), favorites or favorites/2, search:WORDS or search:WORDS/2, a row's\n"
      "path (ls -l) or its id.\n"
      "\n"
      "\"veskctl SERVICE COMMAND\" is short for \"veskctl COMMAND --in SERVICE\".\n"
      "\n"
      "Examples:\n"
      "  veskctl ls                     what there is\n"
      "  veskctl search smooth jazz     then: veskctl play 2\n"
      "  veskctl play hafenlicht jazz   the best hit of a search\n"
      "  veskctl favorite add           what plays\n"
      "  veskctl preset save 3          the same; then: veskctl preset 3\n"
      "  veskctl volume +5              and: veskctl volume 40, veskctl mute\n"
      "  veskctl seek -1:30             in an episode; live: in a station that was paused\n"
      "  veskctl sleep 30               stops in half an hour, fading out\n"
      "  veskctl alarm add 7:30 --days mon-fri --preset 3\n"
      "  veskctl status --watch\n"
      "\n"
      "VESK_HOST in the environment says where the host is when --host does not.";

/// How many letters must be added, removed, changed or swapped with their neighbour.
int distance(const QString &a, const QString &b)
{
    QVector<QVector<int>> rows(a.size() + 1, QVector<int>(b.size() + 1, 0));
    for (int i = 0; i <= a.size(); ++i) {
        for (int j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                rows[i][j] = i + j;
                continue;
            }
            const int change = a.at(i - 1) == b.at(j - 1) ? 0 : 1;
            int least
                = std::min({rows[i - 1][j] + 1, rows[i][j - 1] + 1, rows[i - 1][j - 1] + change});
            if (i > 1 && j > 1 && a.at(i - 1) == b.at(j - 2) && a.at(i - 2) == b.at(j - 1))
                least = std::min(least, rows[i - 2][j - 2] + 1);
            rows[i][j] = least;
        }
    }
    return rows[a.size()][b.size()];
}

/// The candidate that \a word was probably meant to be; empty when none is similar.
QString nearest(const QString &word, const QStringList &candidates)
{
    constexpr int MaxWord = 100;
    if (word.size() > MaxWord)
        return {};
    QString best;
    int least = word.size() < 4 ? 2 : 3;
    for (const QString &candidate : candidates) {
        // A prefix counts as one typing error.
        const int far = word.size() > 1 && candidate.startsWith(word)
            ? 1
            : distance(word.toLower(), candidate);
        if (far < least) {
            least = far;
            best = candidate;
        }
    }
    return best;
}

QString complaint(const QString &word, const char *kind, const QStringList &known)
{
    const QString meant = nearest(word, known);
    const QString text = QStringLiteral("\"%1\" is no %2").arg(word.left(100), QLatin1String(kind));
    if (!meant.isEmpty())
        return QStringLiteral("%1; did you mean \"%2\"?").arg(text, meant);
    return QStringLiteral("%1; there are: %2").arg(text, known.join(QLatin1String(", ")));
}

/// Whether \a word is less of what the command \a name takes, and no option.
bool isNegative(const QString &word, const QString &name)
{
    static const QStringList commands {QStringLiteral("volume"), QStringLiteral("seek")};
    return commands.contains(name) && word.at(1).isDigit();
}

/// An argument that is no command or option where one is expected, and what to say about it: the
/// most similar one, if any is.
struct BadWord {
    QString complaint;
    /// Its index, when it is in the place of the first command; else -1.
    int first = -1;
};

Result<void, BadWord> checkWords(const Command &program, const QStringList &arguments)
{
    Command at = program;
    bool isFirst = true;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &word = arguments.at(i);
        if (word == QLatin1String("--"))
            break;
        if (word.startsWith(QLatin1Char('-')) && word.size() > 1 && !isNegative(word, at.name())) {
            const QString name = word.section(QLatin1Char('='), 0, 0);
            const std::optional<bool> hasValue = at.takesValue(name);
            if (!hasValue)
                return failure(BadWord {complaint(name, "option", at.options())});
            if (*hasValue && !word.contains(QLatin1Char('=')))
                ++i;
            continue;
        }
        const QStringList names = at.commands();
        // A command can take an argument instead of a command below it: a number.
        const bool isArgument = at.takesArguments() && !word.isEmpty() && word.at(0).isDigit();
        if (names.isEmpty() || isArgument)
            continue;
        const std::optional<Command> command = at.command(word);
        if (!command)
            return failure(BadWord {complaint(word, "command", names), isFirst ? i : -1});
        at = *command;
        isFirst = false;
    }
    return {};
}

/// Without a scheme, what is said beyond this machine is encrypted.
Result<QString, QString> hostAddress(const QString &host)
{
    const bool hasScheme = host.contains(QLatin1String("://"));
    VeskUrl url(hasScheme ? host : QStringLiteral("http://") + host);
    if (!hasScheme && !isThisMachine(url.host()))
        url = VeskUrl(QStringLiteral("https://") + host);
    const bool isHttp
        = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (!isHttp || url.host().isEmpty() || host.contains(QLatin1Char(' ')))
        return failure(QStringLiteral("\"%1\" is no address of a host (127.0.0.1:8765)").arg(host));
    QString address = url.toString();
    // What is kept for a host is found by its address, however its name is typed.
    const int authority = address.indexOf(QLatin1String("://")) + 3;
    address.replace(authority, url.authority().size(), url.authority().toLower());
    return address.endsWith(QLatin1Char('/')) ? address : address + QLatin1Char('/');
}

/// For the completion of shells: a command that helps do not mention.
const QStringList &completionWords()
{
    static const QStringList words {QStringLiteral("complete"), QStringLiteral("--")};
    return words;
}

/// \a words are those of the command line up to the one that is being typed.
CtlCommandLine completionLine(
    const Command &program, const QStringList &words, const QString &environmentHost)
{
    const Completion completion = completionOf(program, words);
    CtlCommandLine line;
    line.options.service = completion.service;
    const QString host = completion.host.isEmpty() ? environmentHost : completion.host;
    if (!host.isEmpty()) {
        const auto address = hostAddress(host);
        // Of a host that cannot be asked, nothing is offered but what is known anyway.
        line.options.host = address ? *address : QString();
        line.options.hostIsGiven = true;
    }
    line.run = [completion](HostSession &session) { return complete(session, completion); };
    return line;
}

CtlCommandLine ended(int status, const QString &text, const QStringList &arguments)
{
    CtlCommandLine line;
    line.status = status;
    line.text = text;
    // Also where the command line could not be read to its end.
    line.options.json = arguments.contains(QLatin1String("--json"));
    return line;
}

/// A first word that is no command may be the id of a service, which only the host knows.
CtlCommandLine ofService(QStringList arguments, const QString &environmentHost, const BadWord &bad)
{
    if (bad.first < 0)
        return ended(2, bad.complaint, arguments);
    const QString id = arguments.takeAt(bad.first);
    CtlCommandLine line = parseCtlCommandLine(arguments, environmentHost);
    // Of several such words, the first is the one to complain about.
    if (!line.run || !line.options.service.isEmpty())
        return ended(2, bad.complaint, arguments);
    line.options.service = id;
    line.run = [run = line.run, id, complaint = bad.complaint](HostSession &session) {
        if (const auto checked = Services(session).check(id, complaint); !checked)
            return checked;
        return run(session);
    };
    return line;
}

/// The commands, and what is read into.
struct CtlProgram {
    CtlProgram();

    CtlCommandLine line;
    std::optional<std::string> host;
    std::optional<std::string> service;
    CommandLine app {"Browses and plays what a vesk-host offers.", "veskctl"};
};

CtlProgram::CtlProgram()
{
    app.setVersion("veskctl " VESK_VERSION);
    app.addOption("--host", host, "Where the host is (127.0.0.1:8765)").valueName("ADDRESS");
    app.addFlag("--json", line.options.json, "Print JSON, errors as well");
    app.addOption("--in", service, "One service, by its id or path; without it, all that fit")
        .valueName("SERVICE");
    app.requireCommand();
    app.allowOptionsAnywhere();
    app.setFooter(Help);
    addScreenCommands(app, line);
    addPlayerCommands(app, line);
    addVolumeCommands(app, line);
    addSeekCommand(app, line);
    addOutputCommands(app, line);
    addPresetCommands(app, line);
    addLibraryCommands(app, line);
    addSleepCommand(app, line);
    addAlarmCommands(app, line);
    addConfigCommand(app, line);
    addMenuCommands(app, line);
    addAccountCommands(app, line);
    addFileCommands(app, line);
    addPairCommand(app, line);
    addJoinCommand(app, line);
    addDeviceCommands(app, line);
}

} // namespace

Command addCommand(Command parent, const char *name, const char *description, CtlCommandLine &line,
    CtlCommandLine::Run run)
{
    Command command = parent.add(name, description);
    command.onChosen([&line, run = std::move(run)] { line.run = run; });
    return command;
}

CtlCommandLine parseCtlCommandLine(const QStringList &arguments, const QString &environmentHost)
{
    CtlProgram program;
    CtlCommandLine &line = program.line;
    CommandLine &app = program.app;

    if (arguments.mid(0, 2) == completionWords())
        return completionLine(app, arguments.mid(2), environmentHost);
    // CLI11 would only name the first word that is left over.
    if (const auto checked = checkWords(app, arguments); !checked)
        return ofService(arguments, environmentHost, checked.error());
    if (const auto end = app.read(arguments))
        return ended(end->status, end->text, arguments);
    if (program.service) {
        line.options.service = QString::fromStdString(*program.service);
        if (line.options.service.isEmpty())
            return ended(2, QStringLiteral("\"\" is no service"), arguments);
    }
    if (program.host || !environmentHost.isEmpty()) {
        const auto address
            = hostAddress(program.host ? QString::fromStdString(*program.host) : environmentHost);
        if (!address)
            return ended(2, address.error(), arguments);
        line.options.host = *address;
        line.options.hostIsGiven = true;
    }
    return line;
}

void visitCtlCommands(const std::function<void(const Command &program)> &visit)
{
    const CtlProgram program;
    visit(program.app);
}
