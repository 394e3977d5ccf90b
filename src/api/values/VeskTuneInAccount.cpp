// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskTuneInAccount.h"

#include <array>

namespace {

/// Indexed by operation code.
const std::array<QString, 9> &operationNames()
{
    static const std::array<QString, 9> names = {
        QStringLiteral("none"),
        QStringLiteral("auth"),
        QStringLiteral("create"),
        QStringLiteral("join"),
        QStringLiteral("drop"),
        QStringLiteral("query"),
        QStringLiteral("remind"),
        QStringLiteral("reset"),
        QStringLiteral("claim"),
    };
    return names;
}

namespace keys {
VESK_KEY(operation, "operation")
VESK_KEY(userName, "userName")
VESK_KEY(password, "password")
VESK_KEY(email, "email")
VESK_KEY(postalCode, "postalCode")
VESK_KEY(city, "city")
VESK_KEY(countryId, "countryId")
VESK_KEY(accountId, "accountId")
VESK_KEY(sessionId, "sessionId")
VESK_KEY(firstName, "firstName")
VESK_KEY(lastName, "lastName")
VESK_KEY(claimMessage, "claimMessage")
VESK_KEY(claimKey, "claimKey")
} // namespace keys

} // namespace

QString VeskTuneInAccountOperation::toString(Enum operation)
{
    const auto index = static_cast<size_t>(operation);
    return index < operationNames().size() ? operationNames()[index]
                                           : QString::number(int(operation));
}

VeskTuneInAccountOperation::Enum VeskTuneInAccountOperation::fromString(const QString &name)
{
    for (size_t i = 0; i < operationNames().size(); ++i) {
        if (operationNames()[i] == name)
            return static_cast<Enum>(i);
    }
    return none;
}

VeskTuneInAccountOperation::Enum VeskTuneInAccount::operation() const
{
    const auto named = VeskTuneInAccountOperation::fromString(text(keys::operation()));
    return static_cast<VeskTuneInAccountOperation::Enum>(number(keys::operation(), named));
}

void VeskTuneInAccount::setOperation(VeskTuneInAccountOperation::Enum operation)
{
    insert(keys::operation(), int(operation));
}

QString VeskTuneInAccount::userName() const
{
    return text(keys::userName());
}

QString VeskTuneInAccount::password() const
{
    return text(keys::password());
}

QString VeskTuneInAccount::email() const
{
    return text(keys::email());
}

QString VeskTuneInAccount::postalCode() const
{
    return text(keys::postalCode());
}

QString VeskTuneInAccount::city() const
{
    return text(keys::city());
}

QString VeskTuneInAccount::countryId() const
{
    return text(keys::countryId());
}

QString VeskTuneInAccount::accountId() const
{
    return text(keys::accountId());
}

QString VeskTuneInAccount::sessionId() const
{
    return text(keys::sessionId());
}

QString VeskTuneInAccount::firstName() const
{
    return text(keys::firstName());
}

QString VeskTuneInAccount::lastName() const
{
    return text(keys::lastName());
}

QString VeskTuneInAccount::claimMessage() const
{
    return text(keys::claimMessage());
}

QString VeskTuneInAccount::claimKey() const
{
    return text(keys::claimKey());
}

void VeskTuneInAccount::setUserName(const QString &userName)
{
    insert(keys::userName(), userName);
}

void VeskTuneInAccount::setPassword(const QString &password)
{
    insert(keys::password(), password);
}

void VeskTuneInAccount::setEmail(const QString &email)
{
    insert(keys::email(), email);
}

void VeskTuneInAccount::setPostalCode(const QString &postalCode)
{
    insert(keys::postalCode(), postalCode);
}

void VeskTuneInAccount::setCity(const QString &city)
{
    insert(keys::city(), city);
}

void VeskTuneInAccount::setCountryId(const QString &countryId)
{
    insert(keys::countryId(), countryId);
}

void VeskTuneInAccount::setAccountId(const QString &accountId)
{
    insert(keys::accountId(), accountId);
}

void VeskTuneInAccount::setSessionId(const QString &sessionId)
{
    insert(keys::sessionId(), sessionId);
}

void VeskTuneInAccount::setFirstName(const QString &firstName)
{
    insert(keys::firstName(), firstName);
}

void VeskTuneInAccount::setLastName(const QString &lastName)
{
    insert(keys::lastName(), lastName);
}

void VeskTuneInAccount::setClaimMessage(const QString &message)
{
    insert(keys::claimMessage(), message);
}

void VeskTuneInAccount::setClaimKey(const QString &key)
{
    insert(keys::claimKey(), key);
}
