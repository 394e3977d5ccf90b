// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/rpc/RpcParams.h"

#include "api/values/VeskRoles.h"

#include <gmock/gmock.h>

namespace {

QVariantHash params(const char *name, const QVariant &value)
{
    return {{QString::fromLatin1(name), value}};
}

bool rangeFails(const QVariantHash &hash)
{
    RpcParams reader(hash);
    int first = 0;
    int last = 0;
    reader.range(first, last);
    return reader.failed();
}

std::pair<int, int> rangeOf(const QVariantHash &hash)
{
    RpcParams reader(hash);
    int first = -1;
    int last = -1;
    reader.range(first, last);
    EXPECT_FALSE(reader.failed());
    return {first, last};
}

TEST(RpcParamsTest, ReadsAPath)
{
    RpcParams reader(params("path", QStringLiteral("TuneIn:browse?a=b")));
    EXPECT_EQ(reader.path().toEncoded(), QStringLiteral("TuneIn:browse?a=b"));
    EXPECT_FALSE(reader.failed());
}

TEST(RpcParamsTest, RefusesInvalidPaths)
{
    for (const QVariant &value : {QVariant(), QVariant(1LL), QVariant(QString()),
             QVariant(QStringLiteral("nothing")), QVariant(QStringLiteral("a:%zz")),
             QVariant(QVariantList()), QVariant(QString(70000, QLatin1Char('a')))}) {
        RpcParams reader(params("path", value));
        EXPECT_TRUE(reader.path().isEmpty());
        EXPECT_TRUE(reader.failed());
        EXPECT_EQ(reader.error().code, -32602);
    }
}

TEST(RpcParamsTest, MissingRolesMeanAllRoles)
{
    EXPECT_EQ(RpcParams({}).roles(), VeskRoles::all());
    EXPECT_EQ(RpcParams(params("roles", QVariant())).roles(), VeskRoles::all());
    EXPECT_EQ(RpcParams(params("roles", QVariantList())).roles(), QStringList());
}

TEST(RpcParamsTest, RefusesRolesOtherThanAListOfNames)
{
    QVariantList many;
    for (int i = 0; i < 101; ++i)
        many.append(QStringLiteral("title"));
    for (const QVariant &value :
        {QVariant(QStringLiteral("title")), QVariant(1LL), QVariant(QVariantList {1LL}),
            QVariant(many), QVariant(QVariantList {QString(101, QLatin1Char('a'))})}) {
        RpcParams reader(params("roles", value));
        reader.roles();
        EXPECT_TRUE(reader.failed());
    }
}

TEST(RpcParamsTest, TheDefaultRangeIsTheFirstHundredRows)
{
    EXPECT_EQ(rangeOf({}), std::make_pair(0, 99));
    EXPECT_EQ(rangeOf(params("first", 50LL)), std::make_pair(50, 149));
    EXPECT_EQ(rangeOf(params("last", 5LL)), std::make_pair(0, 5));
    EXPECT_EQ(rangeOf({{QStringLiteral("first"), 7LL}, {QStringLiteral("last"), 7LL}}),
        std::make_pair(7, 7));
    EXPECT_EQ(rangeOf(params("first", 2147483647LL)), std::make_pair(2147483647, 2147483647));
}

TEST(RpcParamsTest, RefusesInvalidAndTooLongRanges)
{
    EXPECT_TRUE(rangeFails(params("first", -1LL)));
    EXPECT_TRUE(rangeFails(params("first", 1.5)));
    EXPECT_TRUE(rangeFails(params("first", QStringLiteral("1"))));
    EXPECT_TRUE(rangeFails(params("last", 2147483648LL)));
    EXPECT_TRUE(rangeFails({{QStringLiteral("first"), 2LL}, {QStringLiteral("last"), 1LL}}));
    EXPECT_TRUE(rangeFails(params("last", 10000LL)));
    EXPECT_FALSE(rangeFails(params("last", 9999LL)));
}

TEST(RpcParamsTest, AValueMayBeNullButMustBeThere)
{
    RpcParams null(params("value", QVariant()));
    EXPECT_TRUE(null.value().isNull());
    EXPECT_FALSE(null.failed());
    RpcParams missing({});
    missing.value();
    EXPECT_TRUE(missing.failed());
}

TEST(RpcParamsTest, ARoleIsAName)
{
    EXPECT_EQ(RpcParams(params("role", QStringLiteral("value"))).role(), QStringLiteral("value"));
    for (const QVariant &value : {QVariant(), QVariant(1LL), QVariant(QString()),
             QVariant(QString(101, QLatin1Char('x')))}) {
        RpcParams reader(params("role", value));
        reader.role();
        EXPECT_TRUE(reader.failed());
    }
}

} // namespace
