// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "manual/CompletionScript.h"

#include "base/cli/CommandLine.h"

#include <QStringList>
#include <QVector>

namespace {

enum class Value { None, File, Folder, Choice, Text };

Value valueOf(const OptionDescription &option)
{
    const QString &name = option.valueName;
    if (name.isEmpty())
        return Value::None;
    if (name.startsWith(QLatin1String("FILE")))
        return Value::File;
    if (name == QLatin1String("DIR"))
        return Value::Folder;
    return name.contains(QLatin1Char('|')) ? Value::Choice : Value::Text;
}

QString choices(const OptionDescription &option)
{
    return QString(option.valueName).replace(QLatin1Char('|'), QLatin1Char(' '));
}

/// \a text in single quotes, as bash and zsh read them.
QString quoted(QString text)
{
    return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QLatin1String("'\\''"))
        + QLatin1Char('\'');
}

QString functionName(const Command &program)
{
    return QLatin1Char('_') + program.name().replace(QLatin1Char('-'), QLatin1Char('_'));
}

QString bashValue(const OptionDescription &option)
{
    switch (valueOf(option)) {
    case Value::File:
        return QStringLiteral(
            "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$typed\")");
    case Value::Folder:
        return QStringLiteral(
            "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- \"$typed\")");
    case Value::Choice:
        return QStringLiteral("mapfile -t COMPREPLY < <(compgen -W %1 -- \"$typed\")")
            .arg(quoted(choices(option)));
    case Value::Text:
    case Value::None:
        break;
    }
    return QStringLiteral(":");
}

QString bashScript(const Command &program, const QVector<OptionDescription> &options)
{
    QStringList names;
    QStringList cases;
    for (const OptionDescription &option : options) {
        names += option.names;
        if (valueOf(option) != Value::None) {
            cases.append(QStringLiteral("        %1) %2; return ;;")
                             .arg(option.names.join(QLatin1Char('|')), bashValue(option)));
        }
    }
    return QStringLiteral("%1()\n"
                          "{\n"
                          "    COMPREPLY=()\n"
                          "    local typed=${COMP_WORDS[COMP_CWORD]}\n"
                          "    case ${COMP_WORDS[COMP_CWORD - 1]} in\n"
                          "%2\n"
                          "    esac\n"
                          "    mapfile -t COMPREPLY < <(compgen -W %3 -- \"$typed\")\n"
                          "}\n"
                          "complete -F %1 %4\n")
        .arg(functionName(program), cases.join(QLatin1Char('\n')),
            quoted(names.join(QLatin1Char(' '))), program.name());
}

/// For a specification of _arguments, which brackets and colons would end.
QString zshText(QString text)
{
    return text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('['), QLatin1String("\\["))
        .replace(QLatin1Char(']'), QLatin1String("\\]"))
        .replace(QLatin1Char(':'), QLatin1String("\\:"));
}

QString zshValue(const OptionDescription &option)
{
    const QString name = zshText(option.valueName);
    switch (valueOf(option)) {
    case Value::None:
        return {};
    case Value::File:
        return QStringLiteral(":%1:_files").arg(name);
    case Value::Folder:
        return QStringLiteral(":%1:_files -/").arg(name);
    case Value::Choice:
        return QStringLiteral(":%1:(%2)").arg(name, choices(option));
    case Value::Text:
        break;
    }
    return QStringLiteral(":%1: ").arg(name);
}

QString zshScript(const Command &program, const QVector<OptionDescription> &options)
{
    QStringList lines {
        QStringLiteral("#compdef ") + program.name(), QStringLiteral("_arguments \\")};
    for (const OptionDescription &option : options) {
        for (const QString &name : option.names) {
            lines.append(
                QStringLiteral("    %1 \\")
                    .arg(quoted(QStringLiteral("%1%2[%3]%4")
                                    .arg(option.isRepeated ? QStringLiteral("*") : QString(), name,
                                        zshText(option.description), zshValue(option)))));
        }
    }
    lines.last().chop(2);
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QString fishQuoted(QString text)
{
    return QLatin1Char('\'')
        + text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
              .replace(QLatin1Char('\''), QLatin1String("\\'"))
        + QLatin1Char('\'');
}

QString fishValue(const OptionDescription &option)
{
    switch (valueOf(option)) {
    case Value::None:
        return {};
    case Value::File:
        return QStringLiteral(" -r -F");
    case Value::Folder:
        return QStringLiteral(" -x -a '(__fish_complete_directories)'");
    case Value::Choice:
        return QStringLiteral(" -x -a ") + fishQuoted(choices(option));
    case Value::Text:
        break;
    }
    return QStringLiteral(" -x");
}

QString fishScript(const Command &program, const QVector<OptionDescription> &options)
{
    QString script = QStringLiteral("complete -c %1 -f\n").arg(program.name());
    for (const OptionDescription &option : options) {
        QString names;
        for (const QString &name : option.names) {
            names += name.startsWith(QLatin1String("--")) ? QStringLiteral(" -l ") + name.mid(2)
                                                          : QStringLiteral(" -s ") + name.mid(1);
        }
        script
            += QStringLiteral("complete -c %1%2%3 -d %4\n")
                   .arg(program.name(), names, fishValue(option), fishQuoted(option.description));
    }
    return script;
}

} // namespace

Result<QString, QString> completionScript(const Command &program, const QString &shell)
{
    QVector<OptionDescription> options = program.describedOptions();
    OptionDescription help;
    help.names = QStringList {QStringLiteral("-h"), QStringLiteral("--help")};
    help.description = QStringLiteral("Print the options, and end");
    options.append(help);
    if (shell == QLatin1String("bash"))
        return bashScript(program, options);
    if (shell == QLatin1String("zsh"))
        return zshScript(program, options);
    if (shell == QLatin1String("fish"))
        return fishScript(program, options);
    return failure(QStringLiteral("there is no shell ") + shell);
}
