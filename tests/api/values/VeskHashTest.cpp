// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskHash.h"

#include "api/core/TrString.h"
#include "api/values/VeskError.h"
#include "api/values/VeskList.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

namespace {

/// Makes the protected readers of typed classes public for the tests.
class Readers : public VeskHash {
public:
    using VeskHash::flag;
    using VeskHash::hash;
    using VeskHash::list;
    using VeskHash::number;
    using VeskHash::text;
    using VeskHash::VeskHash;
};

const QString key = QStringLiteral("key");

Readers with(const QVariant &value)
{
    return Readers(QVariantHash {{key, value}});
}

} // namespace

TEST(VeskHash, HoldsEntries)
{
    VeskHash hash;
    EXPECT_TRUE(hash.isEmpty());
    hash.insert(key, 1);
    EXPECT_EQ(hash[key], QVariant(1));
    EXPECT_EQ(hash.value(key), QVariant(1));
    EXPECT_TRUE(hash.contains(key));
    EXPECT_EQ(hash.size(), 1);
    hash.remove(key);
    EXPECT_EQ(hash, VeskHash());
    EXPECT_FALSE(hash[key].isValid());
}

TEST(VeskHash, BecomesAPlainHashInAVariant)
{
    VeskHash hash;
    hash.insert(key, 1);
    const QVariant variant = hash;
    EXPECT_EQ(variant.userType(), int(QMetaType::QVariantHash));
    EXPECT_EQ(VeskHash(variant.toHash()), hash);
}

TEST(VeskHash, ConvertsWhenAVariantHoldsTheTypeItself)
{
    VeskHash hash;
    hash.insert(key, 1);
    const QVariant variant = QVariant::fromValue(hash);
    EXPECT_EQ(variant.toHash(), hash.toHash());
    EXPECT_EQ(QVariant(hash.toHash()).value<VeskHash>(), hash);
    EXPECT_EQ(variant, QVariant::fromValue(VeskHash(hash.toHash())));
    EXPECT_NE(variant, QVariant::fromValue(VeskHash()));
}

TEST(VeskHash, KeepsToItselfWhatACopyChanges)
{
    VeskHash hash;
    hash.insert(key, 1);
    VeskHash copy = hash;
    copy.insert(key, 2);
    EXPECT_EQ(hash[key], QVariant(1));
    EXPECT_NE(copy, hash);
}

TEST(VeskHashText, IsAStringAsItIs)
{
    EXPECT_EQ(with(QStringLiteral(" a\n")).text(key), QStringLiteral(" a\n"));
    EXPECT_EQ(with(QString()).text(key), QString());
}

TEST(VeskHashText, IsTheTextOfANumberOrBoolean)
{
    EXPECT_EQ(with(128).text(key), QStringLiteral("128"));
    EXPECT_EQ(with(qlonglong(-9007199254740993)).text(key), QStringLiteral("-9007199254740993"));
    EXPECT_EQ(with(std::numeric_limits<qulonglong>::max()).text(key),
        QStringLiteral("18446744073709551615"));
    EXPECT_EQ(with(7u).text(key), QStringLiteral("7"));
    EXPECT_EQ(with(true).text(key), QStringLiteral("true"));
    EXPECT_EQ(with(false).text(key), QStringLiteral("false"));
}

TEST(VeskHashText, HasNoDecimalsForAWholeNumber)
{
    EXPECT_EQ(with(128.0).text(key), QStringLiteral("128"));
    EXPECT_EQ(with(128.0f).text(key), QStringLiteral("128"));
    EXPECT_EQ(with(-0.0).text(key), QStringLiteral("0"));
    EXPECT_EQ(with(1e15).text(key), QStringLiteral("1000000000000000"));
    EXPECT_EQ(with(64.5).text(key), QStringLiteral("64.5"));
    EXPECT_EQ(with(0.1).text(key), QStringLiteral("0.1"));
    EXPECT_EQ(with(1e300).text(key), QStringLiteral("1e+300"));
}

TEST(VeskHashText, IsEmptyForEverythingElse)
{
    EXPECT_EQ(with(QVariant()).text(key), QString());
    EXPECT_EQ(with(QVariant::fromValue(nullptr)).text(key), QString());
    EXPECT_EQ(with(QVariantList {QStringLiteral("a")}).text(key), QString());
    EXPECT_EQ(with(QStringList(QStringLiteral("a"))).text(key), QString());
    EXPECT_EQ(with(QVariantHash {{key, 1}}).text(key), QString());
    EXPECT_EQ(with(std::numeric_limits<double>::infinity()).text(key), QString());
    EXPECT_EQ(with(std::numeric_limits<double>::quiet_NaN()).text(key), QString());
    EXPECT_EQ(Readers().text(key), QString());
}

TEST(VeskHashNumber, ReadsWholeNumbersThatFit)
{
    EXPECT_EQ(with(-5).number(key), -5);
    EXPECT_EQ(with(qlonglong(128)).number(key), 128);
    EXPECT_EQ(with(128.0).number(key), 128);
    EXPECT_EQ(with(QStringLiteral("128")).number(key), 128);
    EXPECT_EQ(with(std::numeric_limits<int>::max()).number(key), std::numeric_limits<int>::max());
}

TEST(VeskHashNumber, IsTheOtherwiseForEverythingElse)
{
    EXPECT_EQ(with(qlonglong(1) << 31).number(key, 3), 3);
    EXPECT_EQ(with(1e300).number(key, 3), 3);
    EXPECT_EQ(with(-1e300).number(key, 3), 3);
    EXPECT_EQ(with(1.5).number(key, 3), 3);
    EXPECT_EQ(with(std::numeric_limits<double>::quiet_NaN()).number(key, 3), 3);
    EXPECT_EQ(with(QStringLiteral("12x")).number(key, 3), 3);
    EXPECT_EQ(with(true).number(key, 3), 3);
    EXPECT_EQ(with(QVariantList {1}).number(key, 3), 3);
    EXPECT_EQ(Readers().number(key), 0);
}

TEST(VeskHashFlag, ReadsBooleansNumbersAndTheirTexts)
{
    EXPECT_TRUE(with(true).flag(key));
    EXPECT_TRUE(with(1).flag(key));
    EXPECT_TRUE(with(QStringLiteral("true")).flag(key));
    EXPECT_FALSE(with(false).flag(key));
    EXPECT_FALSE(with(0).flag(key));
    EXPECT_FALSE(with(QStringLiteral("false")).flag(key));
    EXPECT_FALSE(with(QStringLiteral("0")).flag(key));
    EXPECT_FALSE(with(QVariantHash {{key, true}}).flag(key));
    EXPECT_FALSE(Readers().flag(key));
}

TEST(VeskHashHash, ReadsHashesOnly)
{
    const QVariantHash inner {{QStringLiteral("a"), 1}};
    EXPECT_EQ(with(inner).hash(key), inner);
    EXPECT_EQ(with(QVariant::fromValue(VeskHash(inner))).hash(key), inner);
    EXPECT_TRUE(with(QStringLiteral("a")).hash(key).isEmpty());
    EXPECT_TRUE(with(QVariantList {inner}).hash(key).isEmpty());
    EXPECT_TRUE(Readers().hash(key).isEmpty());
}

TEST(VeskHashList, ReadsAHashAsAListOfOne)
{
    const QVariantHash inner {{QStringLiteral("a"), 1}};
    EXPECT_EQ(with(QVariantList({1, 2})).list(key), QVariantList({1, 2}));
    EXPECT_EQ(with(inner).list(key), QVariantList({inner}));
    EXPECT_TRUE(with(QStringLiteral("a")).list(key).isEmpty());
    EXPECT_TRUE(with(1).list(key).isEmpty());
    EXPECT_TRUE(Readers().list(key).isEmpty());
}

TEST(VeskHashPrint, IsInKeyOrderAndWithoutSecrets)
{
    VeskHash hash;
    hash.insert(QStringLiteral("userName"), QStringLiteral("me"));
    hash.insert(QStringLiteral("password"), QStringLiteral("hidden"));
    hash.insert(QStringLiteral("body"),
        QVariantList {VeskHash(QVariantHash {{QStringLiteral("session_id"), 5}})});
    std::ostringstream out;
    out << hash;
    EXPECT_EQ(out.str(), "{body: [{session_id: ***}], password: ***, userName: me}");
    std::ostringstream inVariant;
    inVariant << QVariant::fromValue(hash);
    EXPECT_EQ(inVariant.str(), out.str());
}

TEST(VeskList, ReadsWhatIsNoHashAsAnEmptyElement)
{
    const VeskList<VeskHash> list(
        QVariantList {QStringLiteral("a"), QVariantHash {{key, 1}}, QVariant()});
    ASSERT_EQ(list.size(), 3);
    EXPECT_TRUE(list.first().isEmpty());
    EXPECT_EQ(list.at(1)[key], QVariant(1));
    EXPECT_TRUE(list.at(2).isEmpty());
}

TEST(VeskList, AppendsAndInserts)
{
    VeskList<VeskHash> list;
    EXPECT_TRUE(list.isEmpty());
    list.append(VeskHash(QVariantHash {{key, 1}}));
    list.insert(0, VeskHash(QVariantHash {{key, 2}}));
    const QVariant variant = list;
    EXPECT_EQ(variant.toList(), QVariantList({QVariantHash {{key, 2}}, QVariantHash {{key, 1}}}));
}

TEST(VeskError, TellsWhatAndWhere)
{
    EXPECT_TRUE(VeskError().isEmpty());
    const VeskError error(QStringLiteral("unexpected end"), 12);
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(error.message(), QStringLiteral("unexpected end"));
    EXPECT_EQ(error.offset(), 12);
    std::ostringstream out;
    out << error;
    EXPECT_EQ(out.str(), "{message: unexpected end, offset: 12}");
}
