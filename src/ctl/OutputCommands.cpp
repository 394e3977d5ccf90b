// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/RowText.h"
#include "ctl/TimeText.h"

#include "api/values/VeskPlayLogicData.h"

#include <QVector>

namespace {

/// Where sound can go.
struct Output {
    /// As the host's option --audio takes it.
    QString id;
    QString name;
    bool current = false;
    bool available = false;

    QString shownName() const { return name.isEmpty() ? id : name; }
};

class Outputs {
public:
    explicit Outputs(HostSession &session)
        : m_session(session)
    {
    }

    CtlResult<> list();
    CtlResult<> choose(const QString &wanted);

private:
    void print(const QVector<Output> &outputs);
    CtlResult<Output> named(const QString &wanted, const QVector<Output> &outputs);

    HostSession &m_session;
};

QVector<Output> outputsIn(const QVariantHash &result)
{
    QVector<Output> outputs;
    const QVariantList list = result.value(QStringLiteral("outputs")).toList();
    for (const QVariant &value : list) {
        const QVariantHash json = value.toHash();
        outputs.append({json.value(QStringLiteral("output")).toString(),
            json.value(QStringLiteral("name")).toString(),
            json.value(QStringLiteral("current")).toBool(),
            json.value(QStringLiteral("available")).toBool()});
    }
    return outputs;
}

CtlResult<> Outputs::list()
{
    const auto result = m_session.call(QStringLiteral("outputs.list"));
    if (!result)
        return failure(result.error());
    if (m_session.options().json)
        m_session.printJson(*result);
    else
        print(outputsIn(*result));
    return {};
}

void Outputs::print(const QVector<Output> &outputs)
{
    if (outputs.isEmpty())
        m_session.note(ctlText("there is no output"));
    QList<RowText> rows;
    for (const Output &output : outputs) {
        const int number = rows.size();
        RowText row {number, 0, printableText(output.shownName()), printableText(output.id), {}};
        row.played = output.current ? VeskPlayLogicState::playing : 0;
        if (output.name.isEmpty())
            row.description.clear();
        if (!output.available)
            row.title = ctlText("%1 (not there)").arg(row.title);
        rows.append(row);
        if (!m_session.isForTerminal()) {
            m_session.printFields({QString::number(number), output.id, output.name,
                output.current ? QStringLiteral("current") : QString(),
                output.available ? QString() : QStringLiteral("unavailable")});
        }
    }
    if (m_session.isForTerminal())
        m_session.terminal().out << numberedLines(m_session, rows);
}

/// By number, by its spelling, by its name or a part of it that no other has. What is spelt like an
/// output may be one that no list has, as a file.
CtlResult<Output> Outputs::named(const QString &wanted, const QVector<Output> &outputs)
{
    const auto number = parseNumber(wanted);
    if (number && *number < outputs.size())
        return outputs.at(*number);
    QVector<Output> found;
    for (const Output &output : outputs) {
        if (output.id == wanted || output.name.compare(wanted, Qt::CaseInsensitive) == 0)
            return output;
        if (output.name.contains(wanted, Qt::CaseInsensitive))
            found.append(output);
    }
    if (found.size() == 1 && !number)
        return found.first();
    if (found.size() > 1 && !number) {
        QStringList names;
        for (const Output &output : found)
            names.append(output.name);
        return m_session.fail(CtlStatus::BadUsage,
            ctlText("several outputs are called \"%1\": %2")
                .arg(wanted, names.join(QLatin1String(", "))));
    }
    if (wanted.contains(QLatin1Char(':')))
        return Output {wanted, wanted, false, true};
    return m_session.fail(CtlStatus::Failed, ctlText("there is no output \"%1\"").arg(wanted));
}

CtlResult<> Outputs::choose(const QString &wanted)
{
    const auto list = m_session.call(QStringLiteral("outputs.list"));
    if (!list)
        return failure(list.error());
    const auto output = named(wanted, outputsIn(*list));
    if (!output)
        return failure(output.error());
    const auto chosen = m_session.call(
        QStringLiteral("outputs.choose"), {{QStringLiteral("output"), output->id}});
    if (!chosen)
        return failure(chosen.error());
    m_session.tell(ctlText("the sound goes to: %1").arg(output->shownName()),
        {{QStringLiteral("output"), output->id}, {QStringLiteral("name"), output->shownName()}});
    return {};
}

} // namespace

void addOutputCommands(Command app, CtlCommandLine &line)
{
    CtlOptions &options = line.options;
    addCommand(app, "outputs", "Show where the sound can go, or choose", line,
        [](HostSession &session) {
            const QString &wanted = session.options().output;
            return wanted.isEmpty() ? Outputs(session).list() : Outputs(session).choose(wanted);
        })
        .addOption("--choose", options.output, "Its number, its name or a part of it")
        .valueName("OUTPUT");
}
