// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/HostSession.h"

#include "api/core/Language.h"
#include "api/values/VeskRoles.h"
#include "api/values/VeskValue.h"
#include "api/values/VeskValuePaths.h"
#include "api/web/VeskJson.h"

#include <QCoreApplication>

namespace {

/// The host answers with an empty list and a problem when the service could not be asked.
RpcAnswer withProblem(const QString &method, RpcAnswer answer)
{
    const QString problem = method == QLatin1String("getRows")
        ? answer.result.toHash().value(QStringLiteral("problem")).toString()
        : QString();
    if (answer.kind == RpcAnswer::Result && !problem.isEmpty()) {
        answer.kind = RpcAnswer::Error;
        answer.message = answer.problem = problem;
    }
    return answer;
}

} // namespace

QVariantHash errorJson(const RpcAnswer &answer)
{
    QVariantHash error {{QStringLiteral("message"), answer.message}};
    if (answer.code != 0)
        error.insert(QStringLiteral("code"), answer.code);
    if (!answer.name.isEmpty())
        error.insert(QStringLiteral("name"), answer.name);
    if (!answer.title.isEmpty())
        error.insert(QStringLiteral("title"), answer.title);
    if (!answer.problem.isEmpty())
        error.insert(QStringLiteral("problem"), answer.problem);
    return {{QStringLiteral("error"), error}};
}

QString ctlText(const char *source)
{
    return QCoreApplication::translate("Ctl", source);
}

QString slowText()
{
    return ctlText("The service is slow; waiting for its answer.");
}

QVariantHash pathParams(const CMPath &path)
{
    return {{QStringLiteral("path"), path.toEncoded()}};
}

bool isNotLinked(const RpcAnswer &answer)
{
    return answer.kind == RpcAnswer::Error && answer.name.endsWith(QLatin1String(":7"));
}

HostSession::HostSession(const CtlOptions &options, const CtlTerminal &terminal)
    : m_options(options)
    , m_terminal(terminal)
    , m_style(terminal.colours)
    , m_client(options.host)
    , m_shown(terminal.memory, terminal.name, options.host)
{
    setSlowNote(&slowText);
}

/// The host's texts stand next to veskctl's own, so both are in one language.
void HostSession::adoptHostLanguage()
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
        adoptHostLanguage();
    return withProblem(method, m_client.call(method, params));
}

void HostSession::send(
    const QString &method, const QVariantHash &params, RpcClient::Answered answered)
{
    if (!m_begun)
        adoptHostLanguage();
    m_client.send(method, params, [method, answered = std::move(answered)](const RpcAnswer &got) {
        answered(withProblem(method, got));
    });
}

void HostSession::setSlowNote(std::function<QString()> slow)
{
    m_client.setSlow([this, slow = std::move(slow), told = false]() mutable {
        if (!told)
            note(slow());
        told = true;
    });
}

CtlResult<QVariantHash> HostSession::call(const QString &method, const QVariantHash &params)
{
    const RpcAnswer got = answer(method, params);
    if (got.kind != RpcAnswer::Result)
        return report(got);
    return got.result.toHash();
}

Failure<CtlStatus> HostSession::report(const RpcAnswer &answer)
{
    if (answer.kind == RpcAnswer::NoHost)
        return fail(CtlStatus::NoHost, textOf(answer));
    if (m_options.json) {
        printJson(errorJson(answer));
        return failure(CtlStatus::Failed);
    }
    return fail(CtlStatus::Failed, textOf(answer));
}

QString HostSession::textOf(const RpcAnswer &answer) const
{
    if (answer.kind == RpcAnswer::NoHost) {
        return ctlText("no host at %1: %2. Start one with \"vesk-host\", or say with --host or "
                       "VESK_HOST where it is.")
            .arg(m_options.host, answer.message);
    }
    if (!answer.problem.isEmpty())
        return answer.problem;
    // These messages are whole sentences for users, to which the title adds nothing.
    const bool isWhole = answer.title.isEmpty() || answer.code == RpcAnswer::EntryGone
        || answer.code == RpcAnswer::NotOffered;
    return isWhole ? answer.message : QStringLiteral("%1: %2").arg(answer.title, answer.message);
}

Failure<CtlStatus> HostSession::fail(CtlStatus status, const QString &message)
{
    if (m_options.json) {
        RpcAnswer answer;
        answer.message = message;
        printJson(errorJson(answer));
    } else {
        note(message);
    }
    return failure(status);
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

void HostSession::tell(const QString &text, const QVariantHash &json)
{
    if (m_options.json)
        printJson(json);
    else
        printText(text);
}
