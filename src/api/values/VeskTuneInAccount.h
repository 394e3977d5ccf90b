// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskHash.h"

/// Operations on the association of the device with a TuneIn account. The codes appear in values,
/// so they are fixed.
struct VeskTuneInAccountOperation {
    enum Enum : int { none = 0, auth, create, join, drop, query, remind, reset, claim };
    /// The operation's name in the web API ("auth"); "none" for none, and for an unknown code its
    /// number.
    VESK_API static QString toString(Enum operation);
    /// The operation with that name; none for any other text.
    VESK_API static Enum fromString(const QString &name);
};

/// An account operation with its parameters or its results. Hash entries are named like the
/// accessors. Printed with the password and the session id as "***".
class VESK_API VeskTuneInAccount : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskTuneInAccount() = default;
    VeskTuneInAccount(const VeskHash &hash)
        : VeskHash(hash)
    {
    }

    /// Accepts an operation's name as well as its code.
    VeskTuneInAccountOperation::Enum operation() const;
    QString userName() const;
    QString password() const;
    QString email() const;
    QString postalCode() const;
    QString city() const;
    QString countryId() const;
    QString accountId() const;
    QString sessionId() const;
    QString firstName() const;
    QString lastName() const;
    QString claimMessage() const;
    QString claimKey() const;

    void setOperation(VeskTuneInAccountOperation::Enum operation);
    void setUserName(const QString &userName);
    void setPassword(const QString &password);
    void setEmail(const QString &email);
    void setPostalCode(const QString &postalCode);
    void setCity(const QString &city);
    void setCountryId(const QString &countryId);
    void setAccountId(const QString &accountId);
    void setSessionId(const QString &sessionId);
    void setFirstName(const QString &firstName);
    void setLastName(const QString &lastName);
    void setClaimMessage(const QString &message);
    void setClaimKey(const QString &key);
};
