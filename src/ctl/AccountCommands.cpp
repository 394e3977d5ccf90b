#include "ctl/AccountCommands.h"

#include "api/values/VeskRoles.h"
#include "api/values/VeskTuneInAccount.h"
#include "api/values/VeskValue.h"
#include "ctl/PasswordInput.h"

#include <unistd.h>

namespace {

using Operation = VeskTuneInAccountOperation;

bool needsPassword(Operation::Enum operation)
{
    return operation == Operation::create || operation == Operation::join
        || operation == Operation::drop;
}

/// Apart from each other, letters and digits are read aloud and typed elsewhere without mistakes.
QString spaced(const QString &code)
{
    QStringList characters;
    for (const QChar character : code)
        characters.append(character);
    return characters.join(QLatin1Char(' '));
}

} // namespace

CtlStatus AccountCommands::run()
{
    CMPath service;
    const CtlStatus status = m_places.service(service);
    if (status != CtlStatus::Success)
        return status;
    const CMPath path(service.prefix(), QStringLiteral("account"));
    VeskTuneInAccount account = m_session.options().account;
    if (account.operation() == Operation::query)
        return query(path);
    if (needsPassword(account.operation())) {
        const CtlStatus asked = askPassword(account);
        if (asked != CtlStatus::Success)
            return asked;
    }
    return write(path, account);
}

CtlStatus AccountCommands::query(const CMPath &path)
{
    QVariantHash params = pathParams(path);
    params.insert(QStringLiteral("roles"), QStringList {VeskRoles::Value()});
    return m_session.ask(params, [&](const QVariantHash &result) {
        if (m_session.options().json) {
            m_session.printJson(result);
            return CtlStatus::Success;
        }
        const QVariantList values = result.value(QStringLiteral("values")).toList();
        const QString name = VeskValue(values.value(0).toHash()).tuneInAccount().userName();
        m_session.printText(name.isEmpty() ? QStringLiteral("not linked") : name);
        return CtlStatus::Success;
    });
}

CtlStatus AccountCommands::askPassword(VeskTuneInAccount &account)
{
    const CtlTerminal &terminal = m_session.terminal();
    QString password;
    QString problem
        = readPassword(terminal.input, terminal.errors, QStringLiteral("Password: "), password);
    // A slip of the finger would lock its owner out of the new account.
    if (problem.isEmpty() && account.operation() == Operation::create && ::isatty(terminal.input)) {
        QString again;
        problem
            = readPassword(terminal.input, terminal.errors, QStringLiteral("Once more: "), again);
        if (problem.isEmpty() && again != password)
            problem = QStringLiteral("these are two different passwords");
    }
    if (!problem.isEmpty())
        return m_session.fail(CtlStatus::BadUsage, problem);
    account.setPassword(password);
    return CtlStatus::Success;
}

CtlStatus AccountCommands::write(const CMPath &path, VeskTuneInAccount account)
{
    VeskValue value;
    value.setTuneInAccount(account);
    QVariantHash params = pathParams(path);
    params.insert(QStringLiteral("role"), VeskRoles::Value());
    params.insert(QStringLiteral("value"), value.toHash());
    return m_session.call(QStringLiteral("setData"), params, [&](const QVariantHash &result) {
        if (m_session.options().json)
            m_session.printJson(result);
        else
            tell(
                account, VeskValue(result.value(QStringLiteral("value")).toHash()).tuneInAccount());
        return CtlStatus::Success;
    });
}

void AccountCommands::tell(const VeskTuneInAccount &sent, const VeskTuneInAccount &result)
{
    std::ostream &out = m_session.terminal().out;
    switch (sent.operation()) {
    case Operation::claim:
        m_session.printText(result.claimMessage());
        out << "\n    " << m_session.style().bold(printableText(spaced(result.claimKey())))
            << "\n\n";
        return;
    case Operation::create:
        return m_session.printText(QStringLiteral("%1: made").arg(sent.userName()));
    case Operation::join:
        return m_session.printText(QStringLiteral("%1: linked").arg(sent.userName()));
    case Operation::drop:
        return m_session.printText(QStringLiteral("%1: not linked any more").arg(sent.userName()));
    default:
        return m_session.printText(QStringLiteral("asked for; it comes by e-mail"));
    }
}
