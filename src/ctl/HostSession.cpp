#include "ctl/HostSession.h"

#include "api/web/VeskJson.h"

namespace {

/// TuneIn says with fault code 7 that a device has no account.
bool saysNotLinked(const RpcAnswer &answer)
{
    return answer.name.endsWith(QLatin1String(":7"));
}

} // namespace

QVariantHash pathParams(const CMPath &path)
{
    return {{QStringLiteral("path"), path.toEncoded()}};
}

HostSession::HostSession(const CtlOptions &options, const CtlTerminal &terminal)
    : m_options(options)
    , m_terminal(terminal)
    , m_style(terminal.colours)
    , m_client(options.host)
{
}

CtlStatus HostSession::call(const QString &method, const QVariantHash &params, const Take &take)
{
    const RpcAnswer answer = m_client.call(method, params);
    if (answer.kind == RpcAnswer::Result)
        return take(answer.result.toHash());
    return report(answer);
}

CtlStatus HostSession::ask(const QVariantHash &params, const Take &take)
{
    const RpcAnswer answer = m_client.call(QStringLiteral("getData"), params);
    if (answer.kind == RpcAnswer::Result)
        return take(answer.result.toHash());
    if (!saysNotLinked(answer))
        return report(answer);
    if (m_options.json)
        printJson(answer.error);
    else
        printText(QStringLiteral("not linked"));
    return CtlStatus::Success;
}

CtlStatus HostSession::act(const QString &method, const QVariantHash &params, const QString &done)
{
    return call(method, params, [&](const QVariantHash &result) {
        if (m_options.json)
            printJson(result);
        else if (!done.isEmpty())
            printText(done);
        return CtlStatus::Success;
    });
}

CtlStatus HostSession::report(const RpcAnswer &answer)
{
    if (answer.kind == RpcAnswer::NoHost)
        return noHost(answer.message);
    return fail(CtlStatus::Failed,
        answer.title.isEmpty() ? answer.message
                               : QStringLiteral("%1: %2").arg(answer.title, answer.message));
}

CtlStatus HostSession::fail(CtlStatus status, const QString &message)
{
    m_terminal.errors << "veskctl: " << printableText(message).toStdString() << '\n';
    return status;
}

CtlStatus HostSession::noHost(const QString &why)
{
    return fail(CtlStatus::NoHost, QStringLiteral("no host at %1: %2").arg(m_options.host, why));
}

void HostSession::printJson(const QVariant &value)
{
    m_terminal.out << printableJson(VeskJson::write(value)).toStdString() << '\n';
}

void HostSession::printText(const QString &text)
{
    m_terminal.out << printableText(text).toStdString() << '\n';
}
