// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/Player.h"
#include "ctl/RowText.h"
#include "ctl/TimeText.h"

namespace {

constexpr int Presets = 12;

CtlResult<int> presetNumber(HostSession &session)
{
    const CtlOptions &options = session.options();
    // What is too much for a command below "preset" is that one's argument to CLI11.
    const QString typed = QStringLiteral("%1 %2").arg(options.preset, options.value).trimmed();
    const int number = parseNumber(typed).value_or(0);
    if (number >= 1 && number <= Presets)
        return number;
    return session.fail(CtlStatus::BadUsage,
        ctlText("\"%1\" is no preset: they are numbered 1 to %2")
            .arg(typed, QString::number(Presets)));
}

QVariantHash presetParams(int number)
{
    return {{QStringLiteral("number"), number}};
}

CtlResult<> list(HostSession &session)
{
    const auto result = session.call(QStringLiteral("presets.list"));
    if (!result)
        return failure(result.error());
    if (session.options().json) {
        session.printJson(*result);
        return {};
    }
    const QVariantHash player = session.answer(QStringLiteral("player.state")).result.toHash();
    QList<RowText> rows;
    const QVariantList presets = result->value(QStringLiteral("presets")).toList();
    for (const QVariant &value : presets) {
        const QVariantHash preset = value.toHash();
        const CMPath path = CMPath::fromVariant(preset.value(QStringLiteral("path")));
        RowText row {preset.value(QStringLiteral("number")).toInt(), VeskRolesType::audio,
            printableText(preset.value(QStringLiteral("title")).toString()), {}, path.toEncoded()};
        row.played = playedState(path, row.type, player);
        rows.append(row);
        if (!session.isForTerminal())
            session.printFields({QString::number(row.index), row.title, row.path});
    }
    if (rows.isEmpty())
        session.note(ctlText("no preset is taken; \"veskctl preset save 1\" keeps what plays"));
    if (session.isForTerminal())
        session.terminal().out << numberedLines(session, rows);
    return {};
}

CtlResult<> play(HostSession &session)
{
    if (session.options().value.isEmpty())
        return list(session);
    const auto number = presetNumber(session);
    if (!number)
        return failure(number.error());
    return Player(session).play(QStringLiteral("presets.play"), presetParams(*number));
}

CtlResult<> save(HostSession &session)
{
    const auto number = presetNumber(session);
    if (!number)
        return failure(number.error());
    const auto item = Places(session).itemToKeep(session.options().words);
    if (!item)
        return failure(item.error());
    QVariantHash params = item->params;
    params.insert(QStringLiteral("number"), *number);
    if (const auto saved = session.call(QStringLiteral("presets.save"), params); !saved)
        return failure(saved.error());
    session.tell(ctlText("preset %1: %2").arg(QString::number(*number), item->title),
        {{QStringLiteral("number"), *number}, {QStringLiteral("title"), item->title}});
    return {};
}

CtlResult<> clear(HostSession &session)
{
    const auto number = presetNumber(session);
    if (!number)
        return failure(number.error());
    const auto cleared = session.call(QStringLiteral("presets.clear"), presetParams(*number));
    if (!cleared)
        return failure(cleared.error());
    session.tell(ctlText("preset %1: free").arg(QString::number(*number)), presetParams(*number));
    return {};
}

} // namespace

void addPresetCommands(Command app, CtlCommandLine &line)
{
    CtlOptions &options = line.options;
    addCommand(app, "presets", "Show the presets", line, &list);
    Command preset = app.add("preset", "Play a preset, or change one");
    // CLI11 chooses a command below this one first.
    preset.onChosen([&line] {
        if (!line.run)
            line.run = &play;
    });
    preset.addOption("NUMBER", options.value, "1 to 12; without it, all are shown");
    preset.addFlag("--wait", options.wait, "End when it is heard, or cannot be");

    Command keep = addCommand(preset, "save", "Keep a row under a number", line, &save);
    keep.addOption("NUMBER", options.preset, "1 to 12").required();
    keep.addOption("PLACE", options.words, "The row; without it, what plays");
    addCommand(preset, "clear", "Free a number", line, &clear)
        .addOption("NUMBER", options.preset, "1 to 12")
        .required();
}
