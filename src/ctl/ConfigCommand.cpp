// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/TerminalText.h"

#include "api/web/VeskJson.h"

namespace {

QString valueText(const QVariant &value)
{
    const bool isPlain = value.userType() != QMetaType::QVariantList
        && value.userType() != QMetaType::QVariantHash;
    return isPlain ? value.toString() : QString::fromUtf8(VeskJson::write(value));
}

/// "default", "setting", "command line", or "/etc/vesk/vesk.conf:3".
QString originText(const QVariantHash &entry)
{
    const QString file = entry.value(QStringLiteral("file")).toString();
    const int line = entry.value(QStringLiteral("line")).toInt();
    if (file.isEmpty())
        return entry.value(QStringLiteral("origin")).toString();
    return line > 0 ? file + QLatin1Char(':') + QString::number(line) : file;
}

void print(HostSession &session, const QVariantHash &entry)
{
    const QString key = entry.value(QStringLiteral("key")).toString();
    const QString value = valueText(entry.value(QStringLiteral("value")));
    const QString origin = originText(entry);
    if (!session.isForTerminal())
        return session.printFields({key, value, origin});
    session.terminal().out << printableText(key) << ": " << printableText(value) << "  ("
                           << printableText(origin) << ")\n";
}

CtlResult<> showConfig(HostSession &session)
{
    const auto result = session.call(QStringLiteral("host.config"));
    if (!result)
        return failure(result.error());
    const QString &wanted = session.options().key;
    QVariantList entries;
    for (const QVariant &value : result->value(QStringLiteral("config")).toList()) {
        const QVariantHash entry = value.toHash();
        if (wanted.isEmpty() || entry.value(QStringLiteral("key")).toString() == wanted)
            entries.append(entry);
    }
    if (entries.isEmpty()) {
        return session.fail(
            CtlStatus::Failed, ctlText("there is no \"%1\" in the configuration").arg(wanted));
    }
    if (session.options().json) {
        QVariantHash shown = *result;
        shown.insert(QStringLiteral("config"), entries);
        session.printJson(shown);
        return {};
    }
    for (const QVariant &entry : std::as_const(entries))
        print(session, entry.toHash());
    return {};
}

} // namespace

void addConfigCommand(Command app, CtlCommandLine &line)
{
    addCommand(app, "config", "Show how the host is configured, and where that was said", line,
        &showConfig)
        .addOption("KEY", line.options.key, "A key of its configuration file, or a value's path");
}
