// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskValue.h"

#include "api/values/VeskAccount.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

VeskValue value(const QVariantHash &hash)
{
    return VeskValue(VeskHash(hash));
}

const QString typeKey = QStringLiteral("type");

} // namespace

TEST(VeskValueType, HasFixedCodesAndNames)
{
    EXPECT_EQ(int(VeskValueType::bool_), 1);
    EXPECT_EQ(int(VeskValueType::string_), 4);
    EXPECT_EQ(int(VeskValueType::account), 6);
    EXPECT_EQ(int(VeskValueType::tuneInAccount), 115);
    for (const auto type :
        {VeskValueType::bool_, VeskValueType::int_, VeskValueType::double_, VeskValueType::string_,
            VeskValueType::hash, VeskValueType::account, VeskValueType::tuneInAccount}) {
        EXPECT_FALSE(VeskValueType::toString(type).isEmpty());
        EXPECT_EQ(VeskValueType::fromString(VeskValueType::toString(type)), type);
    }
    EXPECT_EQ(VeskValueType::toString(VeskValueType::string_), QStringLiteral("string_"));
    EXPECT_EQ(
        VeskValueType::toString(VeskValueType::tuneInAccount), QStringLiteral("tuneInAccount"));
    EXPECT_EQ(VeskValueType::toString(VeskValueType::none), QString());
    EXPECT_EQ(VeskValueType::toString(VeskValueType::Enum(99)), QString());
    EXPECT_EQ(VeskValueType::fromString(QString()), VeskValueType::none);
    EXPECT_EQ(VeskValueType::fromString(QStringLiteral("String_")), VeskValueType::none);
}

TEST(VeskValue, IsOfNoTypeWhenEmpty)
{
    const VeskValue empty;
    EXPECT_EQ(empty.type(), VeskValueType::none);
    EXPECT_FALSE(empty.bool_());
    EXPECT_EQ(empty.int_(), 0);
    EXPECT_EQ(empty.double_(), 0.0);
    EXPECT_EQ(empty.string_(), QString());
    EXPECT_TRUE(empty.tuneInAccount().isEmpty());
}

TEST(VeskValue, KeepsTheValueUnderItsTypesName)
{
    EXPECT_EQ(VeskValue::fromString(QStringLiteral("abc")).toHash(),
        QVariantHash({{typeKey, 4}, {QStringLiteral("string_"), QStringLiteral("abc")}}));
    EXPECT_EQ(VeskValue::fromBool(true).toHash(),
        QVariantHash({{typeKey, 1}, {QStringLiteral("bool_"), true}}));
    EXPECT_EQ(
        VeskValue::fromInt(7).toHash(), QVariantHash({{typeKey, 2}, {QStringLiteral("int_"), 7}}));
}

TEST(VeskValue, ReadsOnlyAsItsOwnType)
{
    const VeskValue string = VeskValue::fromString(QStringLiteral("1"));
    EXPECT_EQ(string.string_(), QStringLiteral("1"));
    EXPECT_FALSE(string.bool_());
    EXPECT_EQ(string.int_(), 0);
    EXPECT_EQ(string.double_(), 0.0);
    EXPECT_TRUE(VeskValue::fromBool(true).bool_());
    EXPECT_EQ(VeskValue::fromBool(true).int_(), 0);
    EXPECT_EQ(VeskValue::fromInt(7).int_(), 7);
    EXPECT_EQ(VeskValue::fromInt(7).string_(), QString());
    VeskValue real;
    real.setDouble(1.5);
    EXPECT_EQ(real.double_(), 1.5);
    EXPECT_EQ(real.type(), VeskValueType::double_);
    EXPECT_EQ(real.int_(), 0);
}

TEST(VeskValue, HoldsOneValueAtATime)
{
    VeskValue value = VeskValue::fromString(QStringLiteral("abc"));
    value.setBool(true);
    EXPECT_EQ(value, VeskValue::fromBool(true));
    value.setInt(2);
    EXPECT_EQ(value, VeskValue::fromInt(2));
}

TEST(VeskValue, HoldsAnAccount)
{
    VeskTuneInAccount account;
    account.setUserName(QStringLiteral("me"));
    VeskValue value;
    value.setTuneInAccount(account);
    EXPECT_EQ(value.type(), VeskValueType::tuneInAccount);
    EXPECT_EQ(value.tuneInAccount(), account);
    const QVariant variant = value;
    EXPECT_EQ(
        VeskValue(VeskHash(variant.toHash())).tuneInAccount().userName(), QStringLiteral("me"));
}

TEST(VeskValue, HoldsAnAccountWithAnyService)
{
    VeskAccount account;
    account.setOperation(VeskAccountOperation::join);
    account.setUserName(QStringLiteral("me"));
    account.setPassword(QStringLiteral("hidden"));
    VeskValue value;
    value.setAccount(account);
    EXPECT_EQ(value.type(), VeskValueType::account);
    EXPECT_EQ(value.account(), account);
    EXPECT_EQ(value.account().operation(), VeskAccountOperation::join);
    EXPECT_TRUE(value.tuneInAccount().isEmpty()) << "the two types are not one";
    EXPECT_EQ(
        VeskValue(VeskHash(QVariant(value).toHash())).account().userName(), QStringLiteral("me"));
    std::ostringstream out;
    out << value;
    EXPECT_EQ(out.str(), "{account: {operation: 3, password: ***, userName: me}, type: 6}");
    value.setTuneInAccount(account);
    EXPECT_TRUE(value.account().isEmpty());
    EXPECT_EQ(value.size(), 2) << "the other account is gone";
}

TEST(VeskValue, PrintsAnAccountWithoutItsSecrets)
{
    VeskTuneInAccount account;
    account.setUserName(QStringLiteral("me"));
    account.setPassword(QStringLiteral("hidden"));
    account.setSessionId(QStringLiteral("hidden"));
    VeskValue value;
    value.setTuneInAccount(account);
    const std::string text
        = "{tuneInAccount: {password: ***, sessionId: ***, userName: me}, type: 115}";
    std::ostringstream out;
    out << value;
    EXPECT_EQ(out.str(), text);
    for (const QVariant &variant : {QVariant(value), QVariant::fromValue(value)}) {
        std::ostringstream variantOut;
        variantOut << variant;
        EXPECT_EQ(variantOut.str(), text);
    }
}

TEST(VeskValue, ReadsItsTypeFromACodeOrAName)
{
    const QString abc = QStringLiteral("abc");
    for (const QVariant &type : {QVariant(4), QVariant(qlonglong(4)), QVariant(4.0),
             QVariant(QStringLiteral("4")), QVariant(QStringLiteral("string_"))}) {
        const VeskValue read = value({{typeKey, type}, {QStringLiteral("string_"), abc}});
        EXPECT_EQ(read.type(), VeskValueType::string_);
        EXPECT_EQ(read.string_(), abc);
    }
}

TEST(VeskValue, IsOfNoTypeWhenTheTypeIsUnknown)
{
    for (const QVariant &type : {QVariant(0), QVariant(99), QVariant(QStringLiteral("text")),
             QVariant(1e300), QVariant(QVariantHash()), QVariant()}) {
        const VeskValue read
            = value({{typeKey, type}, {QStringLiteral("string_"), QStringLiteral("abc")}});
        EXPECT_EQ(read.type(), VeskValueType::none);
        EXPECT_EQ(read.string_(), QString());
    }
}

TEST(VeskValue, IsOfNoTypeWhenNoneIsGiven)
{
    const VeskValue string = value({{QStringLiteral("string_"), QStringLiteral("abc")}});
    EXPECT_EQ(string.type(), VeskValueType::none);
    EXPECT_EQ(string.string_(), QString());
    const VeskValue account = value({{QStringLiteral("tuneInAccount"),
        QVariantHash {{QStringLiteral("userName"), QStringLiteral("me")}}}});
    EXPECT_EQ(account.type(), VeskValueType::none);
    EXPECT_TRUE(account.tuneInAccount().isEmpty());
}

TEST(VeskValue, ReadsMistypedContentAsEmpty)
{
    EXPECT_EQ(value({{QStringLiteral("string_"), QVariantList {1}}}).string_(), QString());
    EXPECT_FALSE(value({{QStringLiteral("bool_"), QVariantHash()}}).bool_());
    EXPECT_EQ(value({{QStringLiteral("int_"), 1e300}}).int_(), 0);
    EXPECT_EQ(value({{QStringLiteral("double_"), QStringLiteral("x")}}).double_(), 0.0);
    EXPECT_TRUE(value({{QStringLiteral("tuneInAccount"), 1}}).tuneInAccount().isEmpty());
    EXPECT_TRUE(value({{typeKey, 6}, {QStringLiteral("account"), 1}}).account().isEmpty());
}

TEST(VeskValue, SurvivesAVariantOfItsOwnType)
{
    const VeskValue seven = VeskValue::fromInt(7);
    const QVariant variant = QVariant::fromValue(seven);
    EXPECT_EQ(variant.value<VeskValue>(), seven);
    EXPECT_EQ(variant.toHash(), seven.toHash());
    EXPECT_EQ(variant, QVariant::fromValue(VeskValue::fromInt(7)));
    EXPECT_NE(variant, QVariant::fromValue(VeskValue::fromInt(8)));
}
