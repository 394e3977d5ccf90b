// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/Files.h"
#include "ctl/Services.h"

#include "api/values/VeskRoles.h"

#include <QFileInfo>
#include <QUuid>

namespace {

/// Bytes of a file that a service takes at once.
constexpr int PartSize = 45000;

/// Sends a file in parts; returns the answer to the last of them.
CtlResult<QVariantHash> sendFile(
    HostSession &session, const Service &service, const QString &name, const QByteArray &bytes)
{
    const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const int parts = qMax(1, (bytes.size() + PartSize - 1) / PartSize);
    CtlResult<QVariantHash> answer = QVariantHash();
    for (int part = 0; part < parts && answer; ++part) {
        QVariantHash params = pathParams(service.imports);
        params.insert(QStringLiteral("role"), VeskRoles::Value());
        params.insert(QStringLiteral("value"),
            QVariantHash {{QStringLiteral("name"), QFileInfo(name).fileName()},
                {QStringLiteral("id"), id}, {QStringLiteral("part"), part},
                {QStringLiteral("parts"), parts},
                {QStringLiteral("data"),
                    QString::fromLatin1(bytes.mid(part * PartSize, PartSize).toBase64())}});
        answer = session.call(QStringLiteral("setData"), params);
    }
    return answer;
}

void tellImport(HostSession &session, const QString &name, const QVariantHash &result)
{
    const auto number = [&](const char *key) {
        return QString::number(result.value(QLatin1String(key)).toInt());
    };
    const QString counts = ctlText("%1: %2 added, %3 known already, %4 skipped")
                               .arg(name, number("added"), number("known"), number("skipped"));
    const QString message = result.value(QStringLiteral("message")).toString();
    session.tell(
        message.isEmpty() ? counts : QStringLiteral("%1. %2").arg(counts, message), result);
}

CtlResult<> importFiles(HostSession &session)
{
    const auto service
        = Services(session).only(&Service::imports, ctlText("this service takes no files"));
    if (!service)
        return failure(service.error());
    CtlResult<> outcome;
    // One that cannot be imported does not keep the others out.
    for (const QString &name : session.options().files) {
        const auto bytes = readFile(name);
        if (!bytes) {
            outcome = session.fail(CtlStatus::Failed, bytes.error());
            continue;
        }
        const auto answer = sendFile(session, *service, name, *bytes);
        if (answer)
            tellImport(session, name, answer->value(QStringLiteral("value")).toHash());
        else
            outcome = failure(answer.error());
    }
    return outcome;
}

const QStringList &formats()
{
    static const QStringList names {QStringLiteral("m3u"), QStringLiteral("pls"),
        QStringLiteral("xspf"), QStringLiteral("opml")};
    return names;
}

/// The one that was asked for, else the one that the file's name ends with, else the first.
CtlResult<QString> formatOf(HostSession &session)
{
    const CtlOptions &options = session.options();
    const QString ending = QFileInfo(options.file).suffix().toLower();
    if (options.format.isEmpty())
        return formats().contains(ending) ? ending : formats().first();
    if (formats().contains(options.format))
        return options.format;
    return session.fail(CtlStatus::BadUsage,
        ctlText("\"%1\" is no format; there are: %2")
            .arg(options.format, formats().join(QLatin1String(", "))));
}

CtlResult<> exportFile(HostSession &session)
{
    const auto format = formatOf(session);
    if (!format)
        return failure(format.error());
    const auto service
        = Services(session).only(&Service::exports, ctlText("this service gives no files"));
    if (!service)
        return failure(service.error());
    CMPath path = service->exports;
    path.addParam(QStringLiteral("format"), *format);
    QVariantHash params = pathParams(path);
    params.insert(QStringLiteral("roles"), QStringList {VeskRoles::Value()});
    const auto result = session.call(QStringLiteral("getData"), params);
    if (!result)
        return failure(result.error());
    const QVariantHash file = result->value(QStringLiteral("values")).toList().value(0).toHash();
    const QString text = file.value(QStringLiteral("data")).toString();
    if (!session.options().file.isEmpty())
        return saveFile(session, session.options().file, text.toUtf8());
    if (session.options().json) {
        session.printJson(file);
    } else if (session.isForTerminal()) {
        const QStringList lines = text.split(QLatin1Char('\n'));
        for (const QString &line : lines)
            session.printText(line);
    } else {
        session.terminal().out << text.toStdString();
    }
    return {};
}

} // namespace

void addFileCommands(Command app, CtlCommandLine &line)
{
    CtlOptions &options = line.options;
    addCommand(app, "import", "Add the stations of a file to a service", line, &importFiles)
        .addOption("FILE", options.files, "A playlist, or an OPML file")
        .required();
    Command write = addCommand(app, "export", "Write the stations of a service", line, &exportFile);
    write.addOption("FILE", options.file, "The file; without it, standard output");
    write.addOption("--format", options.format, "The file's format (what its ending says)")
        .valueName("m3u|pls|xspf|opml");
}
