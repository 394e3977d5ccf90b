// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/CtlCommandLine.h"
#include "ctl/PasswordInput.h"
#include "ctl/Services.h"

#include "api/values/VeskAccount.h"
#include "api/values/VeskRoles.h"

#include <unistd.h>

namespace {

using Operation = VeskAccountOperation;

/// The link between this device and a service's account.
class Account {
public:
    explicit Account(HostSession &session)
        : m_session(session)
    {
    }

    CtlResult<> run(Operation::Enum operation);

private:
    CtlResult<> query(const Service &service);
    CtlResult<> write(const Service &service, const QVariantHash &account);
    CtlResult<QString> askPassword(Operation::Enum operation);
    void tell(const QVariantHash &sent, const QVariantHash &result);
    void tellLink(const QString &userName);

    HostSession &m_session;
};

bool needsPassword(Operation::Enum operation)
{
    return operation == Operation::create || operation == Operation::join
        || operation == Operation::drop;
}

/// Letters and digits with blanks between them are easier to read aloud and to copy.
QString spaced(const QString &code)
{
    QStringList characters;
    for (const QChar character : code)
        characters.append(character);
    return characters.join(QLatin1Char(' '));
}

CtlResult<> Account::run(Operation::Enum operation)
{
    const auto service
        = Services(m_session).only(&Service::account, ctlText("this service has no accounts"));
    if (!service)
        return failure(service.error());
    if (operation == Operation::query)
        return query(*service);
    const CtlOptions &options = m_session.options();
    QVariantHash account {{QStringLiteral("operation"), operation}};
    const auto add = [&](const char *name, const QString &value) {
        if (!value.isEmpty())
            account.insert(QLatin1String(name), value);
    };
    add("userName", options.userName);
    add("email", options.email);
    add("postalCode", options.postalCode);
    add("city", options.city);
    add("countryId", options.countryId);
    if (needsPassword(operation)) {
        const auto password = askPassword(operation);
        if (!password)
            return failure(password.error());
        account.insert(QStringLiteral("password"), *password);
    }
    return write(*service, account);
}

CtlResult<> Account::query(const Service &service)
{
    QVariantHash params = pathParams(service.account);
    params.insert(QStringLiteral("roles"), QStringList {VeskRoles::Value()});
    const RpcAnswer answer = m_session.answer(QStringLiteral("getData"), params);
    // A device without an account is no failure here.
    if (answer.kind != RpcAnswer::Result && !isNotLinked(answer))
        return m_session.report(answer);
    const QVariantList values = answer.result.toHash().value(QStringLiteral("values")).toList();
    const QVariantHash account = values.value(0).toHash().value(service.accountKey).toHash();
    tellLink(account.value(QStringLiteral("userName")).toString());
    return {};
}

void Account::tellLink(const QString &userName)
{
    QVariantHash json {{QStringLiteral("linked"), !userName.isEmpty()}};
    if (!userName.isEmpty())
        json.insert(QStringLiteral("userName"), userName);
    m_session.tell(userName.isEmpty() ? ctlText("not linked") : userName, json);
}

CtlResult<QString> Account::askPassword(Operation::Enum operation)
{
    const int input = m_session.terminal().input;
    const auto password = readPassword(input, ctlText("Password: "));
    if (!password)
        return m_session.fail(CtlStatus::BadUsage, password.error());
    // A typing error would lock its owner out of the new account.
    if (operation == Operation::create && ::isatty(input)) {
        const auto again = readPassword(input, ctlText("Once more: "));
        if (!again)
            return m_session.fail(CtlStatus::BadUsage, again.error());
        if (*again != *password) {
            return m_session.fail(
                CtlStatus::BadUsage, ctlText("these are two different passwords"));
        }
    }
    return *password;
}

CtlResult<> Account::write(const Service &service, const QVariantHash &account)
{
    QVariantHash params = pathParams(service.account);
    params.insert(QStringLiteral("role"), VeskRoles::Value());
    params.insert(QStringLiteral("value"),
        QVariantHash {
            {QStringLiteral("type"), service.accountType}, {service.accountKey, account}});
    const auto result = m_session.call(QStringLiteral("setData"), params);
    if (!result)
        return failure(result.error());
    tell(account,
        result->value(QStringLiteral("value")).toHash().value(service.accountKey).toHash());
    return {};
}

void Account::tell(const QVariantHash &sent, const QVariantHash &result)
{
    const QString user = sent.value(QStringLiteral("userName")).toString();
    const QString claimKey = result.value(QStringLiteral("claimKey")).toString();
    const QString claimMessage = result.value(QStringLiteral("claimMessage")).toString();
    const int operation = sent.value(QStringLiteral("operation")).toInt();
    const QVariantHash linked {{QStringLiteral("userName"), user},
        {QStringLiteral("linked"), operation == Operation::join}};
    switch (operation) {
    case Operation::claim:
        if (m_session.options().json) {
            m_session.printJson(QVariantHash {{QStringLiteral("claimKey"), claimKey},
                {QStringLiteral("claimMessage"), claimMessage}});
            return;
        }
        m_session.printText(claimMessage);
        m_session.terminal().out << "\n    "
                                 << m_session.style().bold(printableText(spaced(claimKey)))
                                 << "\n\n";
        return;
    case Operation::create:
        return m_session.tell(ctlText("%1: made").arg(user), {{QStringLiteral("userName"), user}});
    case Operation::join:
        return m_session.tell(ctlText("%1: linked").arg(user), linked);
    case Operation::drop:
        return m_session.tell(ctlText("%1: not linked any more").arg(user), linked);
    default:
        return m_session.tell(ctlText("asked for; it comes by e-mail"),
            {{QStringLiteral("email"), sent.value(QStringLiteral("email"))}});
    }
}

} // namespace

void addAccountCommands(Command app, CtlCommandLine &line)
{
    CtlOptions &options = line.options;
    Command account = app.add("account", "Link this device to an account");
    account.requireCommand();
    const auto add = [&](const char *name, const char *description, Operation::Enum operation) {
        return addCommand(account, name, description, line,
            [operation](HostSession &session) { return Account(session).run(operation); });
    };
    const auto addUser = [&](Command command) {
        command.addOption("USER", options.userName, "The account's user name").required();
    };
    const auto addEmail = [&](Command command) {
        command.addOption("EMAIL", options.email, "The account's e-mail address").required();
    };
    add("status", "Tell the account of this device", Operation::query);
    add("claim", "Get a code to link this device with", Operation::claim);
    addUser(add("join", "Link this device", Operation::join));
    addUser(add("drop", "Undo the link", Operation::drop));

    Command create = add("create", "Make an account", Operation::create);
    addUser(create);
    create.addOption("--email", options.email, "Its e-mail address").valueName("EMAIL").required();
    CommandOption postalCode
        = create.addOption("--postal-code", options.postalCode, "The postal code where you live")
              .valueName("CODE");
    CommandOption city
        = create.addOption("--city", options.city, "The city where you live, with --country-id")
              .valueName("CITY");
    CommandOption country
        = create.addOption("--country-id", options.countryId, "The city's country, by its id")
              .valueName("ID");
    postalCode.excludes(city).excludes(country);
    city.needs(country);
    country.needs(city);

    addEmail(add("remind", "Have the user name sent", Operation::remind));
    // Services may also accept a user name here, but only together with its password.
    addEmail(add("reset", "Have a new password sent", Operation::reset));
}
