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

/// For programs.
QString nameOf(HostRefusal refusal)
{
    switch (refusal) {
    case HostRefusal::NotPaired:
        return QStringLiteral("notPaired");
    case HostRefusal::Revoked:
        return QStringLiteral("revoked");
    case HostRefusal::UnknownCertificate:
        return QStringLiteral("unknownCertificate");
    case HostRefusal::ChangedCertificate:
        return QStringLiteral("certificateChanged");
    case HostRefusal::WantsTls:
        return QStringLiteral("wantsTls");
    case HostRefusal::None:
        break;
    }
    return {};
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
    , m_access(knownAccess())
    , m_client(options.host, m_access)
    , m_shown(terminal.memory, terminal.name, options.host)
{
    setSlowNote(&slowText);
}

/// A host on this machine can be used without that file.
HostAccess HostSession::knownAccess()
{
    const auto access = KnownHosts(m_terminal.knownHosts).find(m_options.host);
    if (access)
        return *access;
    note(access.error());
    return {};
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
        RpcAnswer told = answer;
        if (answer.kind == RpcAnswer::Refused) {
            told.message = textOf(answer);
            told.name = nameOf(answer.refusal);
        }
        printJson(errorJson(told));
        return failure(CtlStatus::Failed);
    }
    return fail(CtlStatus::Failed, textOf(answer));
}

QString HostSession::refusalText(HostRefusal refusal, const QString &fingerprint) const
{
    const QString &host = m_options.host;
    switch (refusal) {
    case HostRefusal::NotPaired:
        return ctlText("this device is not paired with %1. Have a code shown there (\"veskctl "
                       "pair\"), then: veskctl --host %1 join CODE")
            .arg(host);
    case HostRefusal::Revoked:
        return ctlText("this device is not paired with %1 any more. Have a code shown there "
                       "(\"veskctl pair\"), then: veskctl --host %1 join CODE")
            .arg(host);
    case HostRefusal::UnknownCertificate:
        return ctlText("the certificate of %1 is of no authority that this system knows: it says "
                       "nothing about who answers there. If this is your host, pair with it: "
                       "veskctl --host %1 join CODE. The fingerprint is %2.")
            .arg(host, fingerprint);
    case HostRefusal::ChangedCertificate:
        return ctlText("the certificate of %1 has changed: somebody else may be answering there. "
                       "Nothing was sent. If the host has a new one, pair again: veskctl --host "
                       "%1 join CODE. The fingerprint was %2 and is %3.")
            .arg(host, m_access.fingerprint, fingerprint);
    case HostRefusal::WantsTls:
        return ctlText("the host wants an encrypted connection: veskctl --host %1")
            .arg(QStringLiteral("https") + host.mid(host.indexOf(QLatin1Char(':'))));
    case HostRefusal::None:
        break;
    }
    return {};
}

QString HostSession::textOf(const RpcAnswer &answer) const
{
    if (answer.kind == RpcAnswer::NoHost) {
        return ctlText("no host at %1: %2. Start one with \"vesk-host\", or say with --host or "
                       "VESK_HOST where it is.")
            .arg(m_options.host, answer.message);
    }
    if (answer.kind == RpcAnswer::Refused)
        return refusalText(answer.refusal, answer.fingerprint);
    if (!answer.problem.isEmpty())
        return answer.problem;
    constexpr int NoSuchMethod = -32601;
    if (answer.code == NoSuchMethod)
        return ctlText("this host does not know that: it is older than this veskctl");
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

void HostSession::printFields(const QStringList &fields)
{
    QStringList printable;
    for (const QString &field : fields)
        printable.append(printableText(field));
    m_terminal.out << printable.join(QLatin1Char('\t')).toStdString() << '\n';
}

void HostSession::tell(const QString &text, const QVariantHash &json)
{
    if (m_options.json)
        printJson(json);
    else
        printText(text);
}
