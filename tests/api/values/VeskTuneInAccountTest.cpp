// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskTuneInAccount.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Operation = VeskTuneInAccountOperation;

VeskTuneInAccount withOperation(const QVariant &operation)
{
    return VeskTuneInAccount(VeskHash(QVariantHash {{QStringLiteral("operation"), operation}}));
}

} // namespace

TEST(VeskTuneInAccountOperation, HasFixedCodesAndNames)
{
    const char *const names[]
        = {"none", "auth", "create", "join", "drop", "query", "remind", "reset", "claim"};
    for (int code = 0; code < 9; ++code) {
        const QString name = QString::fromLatin1(names[code]);
        EXPECT_EQ(Operation::toString(Operation::Enum(code)), name);
        EXPECT_EQ(int(Operation::fromString(name)), code);
    }
    EXPECT_EQ(int(Operation::auth), 1);
    EXPECT_EQ(int(Operation::claim), 8);
}

TEST(VeskTuneInAccountOperation, ShowsAnUnknownCodeAsItsNumber)
{
    EXPECT_EQ(Operation::toString(Operation::Enum(9)), QStringLiteral("9"));
    EXPECT_EQ(Operation::toString(Operation::Enum(-1)), QStringLiteral("-1"));
}

TEST(VeskTuneInAccountOperation, IsNoneForAnyOtherName)
{
    for (const char *name : {"", "Auth", "auth ", "1", "delete"})
        EXPECT_EQ(Operation::fromString(QString::fromLatin1(name)), Operation::none) << name;
}

TEST(VeskTuneInAccount, KeepsItsEntriesUnderTheirAccessorsNames)
{
    VeskTuneInAccount account;
    EXPECT_EQ(account.operation(), Operation::none);
    account.setOperation(Operation::create);
    account.setUserName(QStringLiteral("userName"));
    account.setPassword(QStringLiteral("password"));
    account.setEmail(QStringLiteral("email"));
    account.setPostalCode(QStringLiteral("postalCode"));
    account.setCity(QStringLiteral("city"));
    account.setCountryId(QStringLiteral("countryId"));
    account.setAccountId(QStringLiteral("accountId"));
    account.setSessionId(QStringLiteral("sessionId"));
    account.setFirstName(QStringLiteral("firstName"));
    account.setLastName(QStringLiteral("lastName"));
    account.setClaimMessage(QStringLiteral("claimMessage"));
    account.setClaimKey(QStringLiteral("claimKey"));

    EXPECT_EQ(account.size(), 13);
    EXPECT_EQ(account[QStringLiteral("operation")], QVariant(2));
    const QVariantHash hash = account.toHash();
    for (auto it = hash.begin(); it != hash.end(); ++it) {
        if (it.key() != QLatin1String("operation")) {
            EXPECT_EQ(it.value().toString(), it.key());
        }
    }

    EXPECT_EQ(account.operation(), Operation::create);
    EXPECT_EQ(account.userName(), QStringLiteral("userName"));
    EXPECT_EQ(account.password(), QStringLiteral("password"));
    EXPECT_EQ(account.email(), QStringLiteral("email"));
    EXPECT_EQ(account.postalCode(), QStringLiteral("postalCode"));
    EXPECT_EQ(account.city(), QStringLiteral("city"));
    EXPECT_EQ(account.countryId(), QStringLiteral("countryId"));
    EXPECT_EQ(account.accountId(), QStringLiteral("accountId"));
    EXPECT_EQ(account.sessionId(), QStringLiteral("sessionId"));
    EXPECT_EQ(account.firstName(), QStringLiteral("firstName"));
    EXPECT_EQ(account.lastName(), QStringLiteral("lastName"));
    EXPECT_EQ(account.claimMessage(), QStringLiteral("claimMessage"));
    EXPECT_EQ(account.claimKey(), QStringLiteral("claimKey"));
}

TEST(VeskTuneInAccount, ReadsItsOperationFromACodeOrAName)
{
    EXPECT_EQ(withOperation(3).operation(), Operation::join);
    EXPECT_EQ(withOperation(qlonglong(3)).operation(), Operation::join);
    EXPECT_EQ(withOperation(3.0).operation(), Operation::join);
    EXPECT_EQ(withOperation(QStringLiteral("join")).operation(), Operation::join);
    EXPECT_EQ(withOperation(77).operation(), Operation::Enum(77)) << "an unknown code is passed on";
    EXPECT_EQ(withOperation(QStringLiteral("jump")).operation(), Operation::none);
    EXPECT_EQ(withOperation(QVariantList {3}).operation(), Operation::none);
    EXPECT_EQ(withOperation(1e300).operation(), Operation::none);
}

TEST(VeskTuneInAccount, PrintsWithoutItsSecrets)
{
    VeskTuneInAccount account;
    account.setOperation(Operation::auth);
    account.setUserName(QStringLiteral("me"));
    account.setPassword(QStringLiteral("hidden"));
    account.setSessionId(QStringLiteral("hidden"));
    std::ostringstream out;
    out << account;
    EXPECT_EQ(out.str(), "{operation: 1, password: ***, sessionId: ***, userName: me}");
}
