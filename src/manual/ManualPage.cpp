// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "manual/ManualPage.h"

#include "base/cli/CommandLine.h"
#include "host/HostOptions.h"

#include <QStringList>
#include <QVector>

#include <algorithm>

namespace {

/// \a text for a line of roff: nothing in it is a request or an escape.
QString roff(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\e"))
        .replace(QLatin1Char('-'), QLatin1String("\\-"));
    const bool isRequest = text.startsWith(QLatin1Char('.')) || text.startsWith(QLatin1Char('\''));
    return isRequest ? QStringLiteral("\\&") + text : text;
}

/// \a text as one argument of a macro.
QString argument(const QString &text)
{
    QString word = roff(text).replace(QLatin1Char('"'), QLatin1String("\\(dq"));
    if (word.contains(QLatin1Char(' ')))
        word = QLatin1Char('"') + word + QLatin1Char('"');
    // Short ones could be macros, or punctuation to them.
    return text.size() <= 3 ? QStringLiteral("\\&") + word : word;
}

/// A description as a sentence, without markup.
QString sentence(const QString &description)
{
    QString text = description.simplified();
    if (text.isEmpty())
        return text;
    // What begins with an example of a value stays as it is.
    const QString first = text.section(QLatin1Char(' '), 0, 0);
    if (std::all_of(first.begin(), first.end(), [](QChar c) { return c.isLetter(); }))
        text[0] = text.at(0).toUpper();
    const bool isSentence = text.endsWith(QLatin1Char('.')) || text.endsWith(QLatin1Char('?'));
    // Each sentence is a line of its own.
    return roff(isSentence ? text : text + QLatin1Char('.'))
        .replace(QLatin1String(". "), QLatin1String(".\n"));
}

QString value(const OptionDescription &option)
{
    return option.valueName.isEmpty() ? QString()
                                      : QStringLiteral(" Ar ") + argument(option.valueName);
}

QString flag(const QString &name)
{
    return QStringLiteral("Fl ") + roff(name.mid(1));
}

QString call(const OptionDescription &option)
{
    if (option.isArgument) {
        return QStringLiteral("Ar ") + argument(option.names.first())
            + (option.isRepeated ? QStringLiteral(" ...") : QString());
    }
    return flag(option.names.last()) + value(option);
}

/// How a command is called, without its name, in one line.
QString usage(const Command &command)
{
    QStringList options;
    QStringList arguments;
    const QVector<OptionDescription> all = command.describedOptions();
    for (const OptionDescription &option : all) {
        QStringList &list = option.isArgument ? arguments : options;
        const QString text = call(option);
        const bool repeats = option.isRepeated && !option.isArgument;
        if (option.isRequired)
            list.append(text);
        else
            list.append(QStringLiteral("Oo %1 Oc%2")
                            .arg(text, repeats ? QStringLiteral(" Ns ...") : QString()));
    }
    return (options + arguments).join(QLatin1Char(' '));
}

/// The same with a line for each option.
QString synopsis(const Command &program)
{
    QStringList lines {QStringLiteral(".Nm")};
    const QVector<OptionDescription> all = program.describedOptions();
    for (const OptionDescription &option : all) {
        if (option.names.contains(QStringLiteral("--version")))
            continue;
        lines.append(QStringLiteral(".Oo ") + call(option)
            + (option.isRepeated ? QStringLiteral(" Oc Ns ...") : QStringLiteral(" Oc")));
    }
    if (program.requiresCommand())
        lines.append({QStringLiteral(".Ar COMMAND"), QStringLiteral(".Op Ar argument ...")});
    return lines.join(QLatin1Char('\n'));
}

QString list(const QStringList &items)
{
    QStringList lines {QStringLiteral(".Bl -tag -width Ds")};
    lines += items;
    lines.append(QStringLiteral(".El"));
    return lines.join(QLatin1Char('\n'));
}

QString item(const OptionDescription &option)
{
    QStringList names;
    for (const QString &name : option.names)
        names.append(option.isArgument ? QStringLiteral("Ar ") + argument(name) : flag(name));
    return QStringLiteral(".It %1%2\n%3")
        .arg(names.join(QLatin1String(" , ")), value(option), sentence(option.description));
}

QStringList items(const Command &command)
{
    QStringList items;
    const QVector<OptionDescription> all = command.describedOptions();
    for (const OptionDescription &option : all)
        items.append(item(option));
    return items;
}

QString options(const Command &program)
{
    return list(items(program)
        + QStringList {QStringLiteral(".It Fl h , Fl \\-help\nPrint the options, and end.")});
}

/// \a command, unless it is only a name for those below it, and those below it. \a names are those
/// of the commands above it.
QStringList commands(const Command &command, const QStringList &names)
{
    QStringList all;
    if (!command.requiresCommand()) {
        QString text = QStringLiteral(".It Ic %1 %2\n%3")
                           .arg(roff(names.join(QLatin1Char(' '))), usage(command),
                               sentence(command.description()))
                           .replace(QLatin1String(" \n"), QLatin1String("\n"));
        const QStringList options = items(command);
        if (!options.isEmpty())
            text += QLatin1Char('\n')
                + list(options).replace(
                    QLatin1String("-width Ds"), QLatin1String("-width Ds -compact"));
        all.append(text);
    }
    const QStringList below = command.commands();
    for (const QString &name : below)
        all += commands(*command.command(name), names + QStringList {name});
    return all;
}

QString formOf(const HostOption &option)
{
    const QString value = option.valueName
        ? QStringLiteral("Ar ") + argument(QString::fromLatin1(option.valueName))
        : QString();
    switch (option.kind) {
    case HostOption::Flag:
        return QStringLiteral("Cm true | Cm false");
    case HostOption::Repeated:
        return QStringLiteral("Bo %1 , ... Bc").arg(value);
    case HostOption::OneOrMore:
        return QStringLiteral("%1 | Bo %1 , ... Bc").arg(value);
    case HostOption::Assignment:
        return QStringLiteral("Bro Ar PATH : VALUE , ... Brc");
    case HostOption::Single:
        break;
    }
    return value;
}

QString keys()
{
    QStringList items;
    for (const HostOption &option : hostOptions()) {
        QStringList lines {
            QStringLiteral(".It Cm %1 : %2").arg(QLatin1String(option.key), formOf(option)),
            sentence(QLatin1String(option.description))};
        if (option.fallback) {
            lines.append(QStringLiteral("The default is\n.Cm %1 .")
                             .arg(argument(QString::fromLatin1(option.fallback))));
        }
        if (option.isLive)
            lines.append(QStringLiteral("It can change while the host runs."));
        lines.append(QStringLiteral("The option\n.Fl %1\nof\n.Xr vesk-host 8 .")
                         .arg(roff(QString::fromLatin1(option.name).mid(1))));
        items.append(lines.join(QLatin1Char('\n')));
    }
    return list(items);
}

QString values()
{
    QStringList items;
    const HostValues values;
    for (const HostValueDefinition &definition : values.definitions()) {
        const bool isText = definition.initial.type() == VeskValueType::string_;
        const QString initial = plainValue(definition.initial).toString();
        QStringList lines {QStringLiteral(".It Cm ") + roff(definition.path.toEncoded()),
            sentence(definition.title.toSourceString())};
        if (!definition.description.isEmpty())
            lines.append(sentence(definition.description.toSourceString()));
        if (!definition.rule.what.isEmpty()) {
            lines.append(
                sentence(QStringLiteral("It is ") + definition.rule.what.toSourceString()));
        }
        if (definition.access != CMValuesWorker::Writable)
            lines.append(QStringLiteral("The host finds it out by itself."));
        else if (!isText || !initial.isEmpty())
            lines.append(
                QStringLiteral("The default is\n.Cm ") + argument(initial) + QStringLiteral(" ."));
        items.append(lines.join(QLatin1Char('\n')));
    }
    return list(items);
}

/// \a page with lines of text that an editor shows whole.
QString wrapped(const QString &page)
{
    constexpr int Width = 79;
    QStringList lines;
    bool isLiteral = false;
    const QStringList all = page.split(QLatin1Char('\n'));
    for (QString line : all) {
        if (line.startsWith(QLatin1String(".Bd")) || line == QLatin1String(".Ed"))
            isLiteral = line != QLatin1String(".Ed");
        while (!isLiteral && !line.startsWith(QLatin1Char('.')) && line.size() > Width) {
            const int blank = line.lastIndexOf(QLatin1Char(' '), Width);
            if (blank <= 0)
                break;
            lines.append(line.left(blank));
            line = line.mid(blank + 1);
            if (line.startsWith(QLatin1Char('.')) || line.startsWith(QLatin1Char('\'')))
                line.prepend(QLatin1String("\\&"));
        }
        lines.append(line);
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

Result<QString, QString> manualPage(const QString &part, const Command &program)
{
    QStringList lines;
    const QStringList given = part.split(QLatin1Char('\n'));
    for (const QString &line : given) {
        if (line == QLatin1String("@synopsis@"))
            lines.append(synopsis(program));
        else if (line == QLatin1String("@options@"))
            lines.append(options(program));
        else if (line == QLatin1String("@commands@"))
            lines.append(list(commands(program, {})));
        else if (line == QLatin1String("@keys@"))
            lines.append(keys());
        else if (line == QLatin1String("@values@"))
            lines.append(values());
        else if (line.startsWith(QLatin1Char('@')))
            return failure(QStringLiteral("there is no %1").arg(line));
        else
            lines.append(line);
    }
    return wrapped(lines.join(QLatin1Char('\n')));
}
