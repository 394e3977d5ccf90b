// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "base/cli/CommandLine.h"
#include "ctl/CtlCommandLine.h"
#include "directory/Options.h"
#include "host/HostCommandLine.h"
#include "manual/CompletionScript.h"
#include "manual/ManualPage.h"

#include <QFile>
#include <QSaveFile>

#include <log4cplus/initializer.h>

#include <cstdio>

/// Writes a manual page, or a script for completion, of one of the project's programs. Runs while
/// the project is built.

namespace {

int fail(const QString &problem)
{
    std::fprintf(stderr, "vesk-manual: %s\n", qPrintable(problem));
    return 1;
}

/// Calls \a visit with the command line of \a program; false when there is no such program.
bool visitProgram(const QString &program, const std::function<void(const Command &)> &visit)
{
    if (program == QLatin1String("veskctl"))
        visitCtlCommands(visit);
    else if (program == QLatin1String("vesk-host"))
        visitHostCommandLine(visit);
    else if (program == QLatin1String("tunein-directory"))
        directory::visitOptions([&](CLI::App &app) { visit(Command(&app)); });
    else
        return false;
    return true;
}

int write(const QString &name, const QByteArray &content)
{
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        return fail(QStringLiteral("%1: %2").arg(name, file.errorString()));
    return 0;
}

int writePage(const QString &program, const QString &part, const QString &output)
{
    QFile file(part);
    if (!file.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("%1: %2").arg(part, file.errorString()));
    const QString text = QString::fromUtf8(file.readAll());
    Result<QString, QString> page = failure(QStringLiteral("there is no program ") + program);
    visitProgram(
        program, [&](const Command &commandLine) { page = manualPage(text, commandLine); });
    return page ? write(output, page->toUtf8()) : fail(page.error());
}

int writeCompletion(const QString &program, const QString &shell, const QString &output)
{
    Result<QString, QString> script = failure(QStringLiteral("there is no program ") + program);
    visitProgram(program,
        [&](const Command &commandLine) { script = completionScript(commandLine, shell); });
    return script ? write(output, script->toUtf8()) : fail(script.error());
}

} // namespace

int main(int argc, char **argv)
{
    const log4cplus::Initializer logging;
    const QStringList arguments = commandLineArguments(argc, argv);
    if (arguments.size() == 4 && arguments.first() == QLatin1String("page"))
        return writePage(arguments.at(1), arguments.at(2), arguments.at(3));
    if (arguments.size() == 4 && arguments.first() == QLatin1String("completion"))
        return writeCompletion(arguments.at(1), arguments.at(2), arguments.at(3));
    return fail(QStringLiteral(
        "usage: vesk-manual page PROGRAM PART OUTPUT | completion PROGRAM SHELL OUTPUT"));
}
