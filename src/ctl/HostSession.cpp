// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/HostSession.h"

#include "api/core/Language.h"
#include "api/values/VeskRoles.h"
#include "api/values/VeskValue.h"
#include "api/values/VeskValuePaths.h"
#include "api/web/VeskJson.h"

#include <QCoreApplication>

QString ctlText(const char *source)
{
    return QCoreApplication::translate("Ctl", source);
}

QVariantHash pathParams(const CMPath &path)
{
    return {{QStringLiteral("path"), path.toEncoded()}};
}

bool isNotLinked(const RpcAnswer &answer)
{
    return answer.kind == RpcAnswer::Error && answer.name.endsWith(QLatin1String(":7"));
}

QVariantHash errorJson(const QString &message, int code, const QString &name, const QString &title,
    const QString &problem)
{
    QVariantHash error {{QStringLiteral("message"), message}};
    if (code != 0)
        error.insert(QStringLiteral("code"), code);
    if (!name.isEmpty())
        error.insert(QStringLiteral("name"), name);
    if (!title.isEmpty())
        error.insert(QStringLiteral("title"), title);
    if (!problem.isEmpty())
        error.insert(QStringLiteral("problem"), problem);
    return {{QStringLiteral("error"), error}};
}

HostSession::HostSession(const CtlOptions &options, const CtlTerminal &terminal)
    : m_options(options)
    , m_terminal(terminal)
    , m_style(terminal.colours)
    , m_client(options.host)
    , m_shown(terminal.memory, terminal.name, options.host)
{
    m_client.setSlow([this, told = false]() mutable {
        if (!told)
            note(ctlText("The service is slow; waiting for its answer."));
        told = true;
    });
}

/// Its texts and ours stand side by side.
void HostSession::speakTheHostsLanguage()
{
    m_begun = true;
    QVariantHash params = pathParams(VeskUILanguagePath());
    params.insert(QStringLiteral("roles"), QStringList {VeskRoles::Value()});
    const QVariantHash result = m_client.call(QStringLiteral("getData"), params).result.toHash();
    const QVariantList values = result.value(QStringLiteral("values")).toList();
    const QString language = VeskValue(values.value(0).toHash()).string_();
    if (!language.isEmpty())
        Language::setCurrent(language, m_terminal.catalogues);
}

RpcAnswer HostSession::answer(const QString &method, const QVariantHash &params)
{
    if (!m_begun)
        speakTheHostsLanguage();
    RpcAnswer answer = m_client.call(method, params);
    // A list without rows because they could not be had is no list.
    const QString problem = method == QLatin1String("getRows")
        ? answer.result.toHash().value(QStringLiteral("problem")).toString()
        : QString();
    if (answer.kind == RpcAnswer::Result && !problem.isEmpty()) {
        answer.kind = RpcAnswer::Error;
        answer.message = answer.problem = problem;
    }
    return answer;
}

CtlStatus HostSession::call(const QString &method, const QVariantHash &params, const Take &take)
{
    const RpcAnswer got = answer(method, params);
    return got.kind == RpcAnswer::Result ? take(got.result.toHash()) : report(got);
}

CtlStatus HostSession::report(const RpcAnswer &answer)
{
    if (answer.kind == RpcAnswer::NoHost) {
        return fail(CtlStatus::NoHost,
            ctlText("no host at %1: %2. Start one with \"vesk-host\", or say with --host or "
                    "VESK_HOST where it is.")
                .arg(m_options.host, answer.message));
    }
    if (m_options.json) {
        printJson(
            errorJson(answer.message, answer.code, answer.name, answer.title, answer.problem));
        return CtlStatus::Failed;
    }
    if (!answer.problem.isEmpty())
        return fail(CtlStatus::Failed, answer.problem);
    // Some say all there is to say by themselves.
    const bool isWhole = answer.title.isEmpty() || answer.code == RpcAnswer::EntryGone
        || answer.code == RpcAnswer::NotOffered;
    return fail(CtlStatus::Failed,
        isWhole ? answer.message : QStringLiteral("%1: %2").arg(answer.title, answer.message));
}

CtlStatus HostSession::fail(CtlStatus status, const QString &message)
{
    if (m_options.json)
        printJson(errorJson(message));
    else
        note(message);
    return status;
}

void HostSession::note(const QString &message)
{
    m_terminal.out.flush();
    m_terminal.errors << "veskctl: " << printableText(message).toStdString() << std::endl;
}

void HostSession::printJson(const QVariant &value)
{
    m_terminal.out << printableJson(VeskJson::write(value)).toStdString() << '\n';
}

void HostSession::printText(const QString &text)
{
    m_terminal.out << printableText(text).toStdString() << '\n';
}

CtlStatus HostSession::tell(const QString &text, const QVariantHash &json)
{
    if (m_options.json)
        printJson(json);
    else
        printText(text);
    return CtlStatus::Success;
}
