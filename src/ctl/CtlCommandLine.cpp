// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"

#include "api/web/VeskUrl.h"
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
        if (word.startsWith(QLatin1Char('-')) && word.size() > 1) {
            const QString name = word.section(QLatin1Char('='), 0, 0);
            const std::optional<bool> hasValue = at.takesValue(name);
            if (!hasValue)
                return failure(BadWord {complaint(name, "option", at.options())});
            if (*hasValue && !word.contains(QLatin1Char('=')))
                ++i;
            continue;
        }
        const QStringList names = at.commands();
        if (names.isEmpty())
            continue;
        const std::optional<Command> command = at.command(word);
        if (!command)
            return failure(BadWord {complaint(word, "command", names), isFirst ? i : -1});
        at = *command;
        isFirst = false;
    }
    return {};
}

Result<QString, QString> hostAddress(const QString &host)
{
    const QString address
        = host.contains(QLatin1String("://")) ? host : QStringLiteral("http://") + host;
    const VeskUrl url(address);
    const bool isHttp
        = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (!isHttp || url.host().isEmpty() || host.contains(QLatin1Char(' ')))
        return failure(QStringLiteral("\"%1\" is no address of a host (127.0.0.1:8765)").arg(host));
    return address.endsWith(QLatin1Char('/')) ? address : address + QLatin1Char('/');
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
    CtlCommandLine line;
    std::optional<std::string> host;
    std::optional<std::string> service;
    CommandLine app("Browses and plays what a vesk-host offers.", "veskctl");
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
    addMenuCommands(app, line);
    addAccountCommands(app, line);
    addFileCommands(app, line);

    // CLI11 would only name the first word that is left over.
    if (const auto checked = checkWords(app, arguments); !checked)
        return ofService(arguments, environmentHost, checked.error());
    if (const auto end = app.read(arguments))
        return ended(end->status, end->text, arguments);
    if (service) {
        line.options.service = QString::fromStdString(*service);
        if (line.options.service.isEmpty())
            return ended(2, QStringLiteral("\"\" is no service"), arguments);
    }
    if (host || !environmentHost.isEmpty()) {
        const auto address = hostAddress(host ? QString::fromStdString(*host) : environmentHost);
        if (!address)
            return ended(2, address.error(), arguments);
        line.options.host = *address;
    }
    return line;
}
