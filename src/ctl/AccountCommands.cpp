// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/Commands.h"
#include "ctl/PasswordInput.h"
#include "ctl/Places.h"

#include "api/values/VeskRoles.h"
#include "api/values/VeskTuneInAccount.h"
#include "api/values/VeskValue.h"

#include <memory>
#include <string>
#include <unistd.h>

namespace {

using Operation = VeskTuneInAccountOperation;

/// What goes with an operation, but the password.
struct AccountArguments {
    std::string userName;
    std::string email;
    std::string postalCode;
    std::string city;
    std::string countryId;
};

/// The link between this device and a service's account.
class Account {
public:
    explicit Account(HostSession &session)
        : m_session(session)
    {
    }

    CtlStatus run(VeskTuneInAccount account);

private:
    CtlStatus query(const CMPath &path);
    CtlStatus write(const CMPath &path, const VeskTuneInAccount &account);
    CtlStatus askPassword(VeskTuneInAccount &account);
    CtlStatus tell(const VeskTuneInAccount &sent, const VeskTuneInAccount &result);
    CtlStatus tellLink(const QString &userName);

    HostSession &m_session;
};

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

CtlStatus Account::run(VeskTuneInAccount account)
{
    CMPath service;
    const CtlStatus status = Places(m_session).service(service);
    if (status != CtlStatus::Success)
        return status;
    const CMPath path(service.prefix(), QStringLiteral("account"));
    if (account.operation() == Operation::query)
        return query(path);
    if (needsPassword(account.operation())) {
        const CtlStatus asked = askPassword(account);
        if (asked != CtlStatus::Success)
            return asked;
    }
    return write(path, account);
}

CtlStatus Account::query(const CMPath &path)
{
    QVariantHash params = pathParams(path);
    params.insert(QStringLiteral("roles"), QStringList {VeskRoles::Value()});
    const RpcAnswer answer = m_session.answer(QStringLiteral("getData"), params);
    // To have no account is an answer here.
    if (isNotLinked(answer))
        return tellLink({});
    if (answer.kind != RpcAnswer::Result)
        return m_session.report(answer);
    const QVariantList values = answer.result.toHash().value(QStringLiteral("values")).toList();
    return tellLink(VeskValue(values.value(0).toHash()).tuneInAccount().userName());
}

CtlStatus Account::tellLink(const QString &userName)
{
    QVariantHash json {{QStringLiteral("linked"), !userName.isEmpty()}};
    if (userName.isEmpty())
        return m_session.tell(ctlText("not linked"), json);
    json.insert(QStringLiteral("userName"), userName);
    return m_session.tell(userName, json);
}

CtlStatus Account::askPassword(VeskTuneInAccount &account)
{
    const int input = m_session.terminal().input;
    const auto password = readPassword(input, ctlText("Password: "));
    if (!password)
        return m_session.fail(CtlStatus::BadUsage, password.error());
    // A slip of the finger would lock its owner out of the new account.
    if (account.operation() == Operation::create && ::isatty(input)) {
        const auto again = readPassword(input, ctlText("Once more: "));
        if (!again)
            return m_session.fail(CtlStatus::BadUsage, again.error());
        if (*again != *password) {
            return m_session.fail(
                CtlStatus::BadUsage, ctlText("these are two different passwords"));
        }
    }
    account.setPassword(*password);
    return CtlStatus::Success;
}

CtlStatus Account::write(const CMPath &path, const VeskTuneInAccount &account)
{
    VeskValue value;
    value.setTuneInAccount(account);
    QVariantHash params = pathParams(path);
    params.insert(QStringLiteral("role"), VeskRoles::Value());
    params.insert(QStringLiteral("value"), value.toHash());
    return m_session.call(QStringLiteral("setData"), params, [&](const QVariantHash &result) {
        return tell(
            account, VeskValue(result.value(QStringLiteral("value")).toHash()).tuneInAccount());
    });
}

CtlStatus Account::tell(const VeskTuneInAccount &sent, const VeskTuneInAccount &result)
{
    const QString user = sent.userName();
    const QVariantHash linked {{QStringLiteral("userName"), user},
        {QStringLiteral("linked"), sent.operation() == Operation::join}};
    switch (sent.operation()) {
    case Operation::claim:
        if (!m_session.options().json) {
            m_session.printText(result.claimMessage());
            m_session.terminal().out
                << "\n    " << m_session.style().bold(printableText(spaced(result.claimKey())))
                << "\n\n";
            return CtlStatus::Success;
        }
        m_session.printJson(QVariantHash {{QStringLiteral("claimKey"), result.claimKey()},
            {QStringLiteral("claimMessage"), result.claimMessage()}});
        return CtlStatus::Success;
    case Operation::create:
        return m_session.tell(ctlText("%1: made").arg(user), {{QStringLiteral("userName"), user}});
    case Operation::join:
        return m_session.tell(ctlText("%1: linked").arg(user), linked);
    case Operation::drop:
        return m_session.tell(ctlText("%1: not linked any more").arg(user), linked);
    default:
        return m_session.tell(
            ctlText("asked for; it comes by e-mail"), {{QStringLiteral("email"), sent.email()}});
    }
}

Command addOperation(Command account, Commands &commands, const char *name, const char *description,
    Operation::Enum operation, const std::shared_ptr<AccountArguments> &arguments)
{
    return commands.add(account, name, description, [operation, arguments](HostSession &session) {
        VeskTuneInAccount sent;
        sent.setOperation(operation);
        sent.setUserName(QString::fromStdString(arguments->userName));
        sent.setEmail(QString::fromStdString(arguments->email));
        sent.setPostalCode(QString::fromStdString(arguments->postalCode));
        sent.setCity(QString::fromStdString(arguments->city));
        sent.setCountryId(QString::fromStdString(arguments->countryId));
        return Account(session).run(sent);
    });
}

void addUser(Command command, AccountArguments &into)
{
    command.addOption("USER", into.userName, "The account's user name").required();
}

void addEmail(Command command, AccountArguments &into)
{
    command.addOption("EMAIL", into.email, "The account's e-mail address").required();
}

void addNewAccount(Command create, AccountArguments &into)
{
    addUser(create, into);
    create.addOption("--email", into.email, "Its e-mail address").required();
    CommandOption postalCode = create.addOption("--postal-code", into.postalCode, "Where you live");
    CommandOption city = create.addOption("--city", into.city, "Where you live");
    CommandOption country = create.addOption("--country-id", into.countryId, "The city's country");
    postalCode.excludes(city).excludes(country);
    city.needs(country);
    country.needs(city);
}

} // namespace

void addAccountCommands(Command app, Commands &commands)
{
    Command account = app.add("account", "Link this device to an account");
    account.requireCommand();
    const auto arguments = std::make_shared<AccountArguments>();
    const auto add = [&](const char *name, const char *description, Operation::Enum operation) {
        return addOperation(account, commands, name, description, operation, arguments);
    };
    add("status", "Tell the account of this device", Operation::query);
    add("claim", "Get a code to link this device with", Operation::claim);
    addUser(add("join", "Link this device", Operation::join), *arguments);
    addUser(add("drop", "Undo the link", Operation::drop), *arguments);
    addNewAccount(add("create", "Make an account", Operation::create), *arguments);
    addEmail(add("remind", "Have the user name sent", Operation::remind), *arguments);
    // A service may take a user name as well, but then only with its password.
    addEmail(add("reset", "Have a new password sent", Operation::reset), *arguments);
}
