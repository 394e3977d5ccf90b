// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/CMPath.h"

#include "api/core/log.h"

#include <gtest/gtest.h>

#include <QHash>

#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Params = CMPath::Params;

CMPath path(const char *base, const Params &params = {})
{
    return CMPath(QStringLiteral("TuneIn"), QString::fromUtf8(base), params);
}

CMPath decoded(const QString &text)
{
    return CMPath::fromEncoded(text);
}

std::string print(const CMPath &value)
{
    std::ostringstream out;
    out << value;
    return out.str();
}

/// Random paths over an alphabet in which a path's separators are frequent.
class RandomPaths {
public:
    CMPath next()
    {
        QString prefix = text();
        if (prefix.isEmpty())
            prefix = QStringLiteral("x");
        Params params;
        for (unsigned n = m_random() % 4; n > 0; --n)
            params.insert(text(), text());
        return CMPath(prefix, text(), params);
    }

    QString text()
    {
        static const QVector<QString> letters = {QStringLiteral(":"), QStringLiteral("?"),
            QStringLiteral("&"), QStringLiteral("="), QStringLiteral("+"), QStringLiteral("%"),
            QStringLiteral("%41"), QStringLiteral("/"), QStringLiteral("#"), QStringLiteral(" "),
            QString(QChar(0)), QStringLiteral("\n"), QStringLiteral("a"), QStringLiteral("Z9"),
            QStringLiteral("-._~"), QStringLiteral("\u00e9"), QStringLiteral("\u20ac"),
            QStringLiteral("\uffff"), QStringLiteral("\U0001F600"), QStringLiteral("\U0010FFFF")};
        QString text;
        for (unsigned n = m_random() % 6; n > 0; --n)
            text += letters.at(int(m_random() % uint(letters.size())));
        return text;
    }

    unsigned number() { return m_random(); }

private:
    std::mt19937 m_random {7};
};

} // namespace

TEST(CMPath, IsEmptyWithoutAPrefix)
{
    for (const CMPath &empty : {CMPath(), CMPath(QString(), QStringLiteral("browse")),
             CMPath(QString(), QString(), {{QStringLiteral("a"), QStringLiteral("b")}})}) {
        EXPECT_TRUE(empty.isEmpty());
        EXPECT_EQ(empty, CMPath());
        EXPECT_EQ(empty.toEncoded(), QString());
        EXPECT_EQ(empty.base(), QString());
        EXPECT_FALSE(empty.hasParams());
    }
}

TEST(CMPath, StaysEmptyWhateverIsAddedToIt)
{
    CMPath empty;
    empty.addParam(QStringLiteral("a"), QStringLiteral("b"));
    EXPECT_EQ(empty, CMPath());
    EXPECT_EQ(empty + QStringLiteral("/uri"), CMPath());
}

TEST(CMPath, ReadsAndWritesItsParts)
{
    CMPath p = path("browse", {{QStringLiteral("c"), QStringLiteral("music")}});
    EXPECT_FALSE(p.isEmpty());
    EXPECT_EQ(p.prefix(), QStringLiteral("TuneIn"));
    EXPECT_EQ(p.base(), QStringLiteral("browse"));
    EXPECT_EQ(p.param(QStringLiteral("c")), QStringLiteral("music"));
    EXPECT_EQ(p.param(QStringLiteral("d")), QString());
    EXPECT_FALSE(p.hasParam(QStringLiteral("d")));
    p.addParam(QStringLiteral("d"), QString());
    EXPECT_TRUE(p.hasParam(QStringLiteral("d")));
    p.addParam(QStringLiteral("c"), QStringLiteral("talk"));
    EXPECT_EQ(p.param(QStringLiteral("c")), QStringLiteral("talk"));
    p.removeParam(QStringLiteral("c"));
    p.removeParam(QStringLiteral("d"));
    p.removeParam(QStringLiteral("e"));
    EXPECT_FALSE(p.hasParams());
}

TEST(CMPathEncoded, IsPrefixBaseAndParametersInOrderOfTheirKeys)
{
    EXPECT_EQ(path("").toEncoded(), QStringLiteral("TuneIn:"));
    EXPECT_EQ(path("browse").toEncoded(), QStringLiteral("TuneIn:browse"));
    EXPECT_EQ(path("browse/uri/Browse.ashx", {{QStringLiteral("c"), QStringLiteral("music")}})
                  .toEncoded(),
        QStringLiteral("TuneIn:browse/uri/Browse.ashx?c=music"));
    EXPECT_EQ(
        path("browse",
            {{QStringLiteral("veskTitle"), QString()}, {QStringLiteral("id"), QStringLiteral("s1")},
                {QStringLiteral("c"), QStringLiteral("ebrowse")}})
            .toEncoded(),
        QStringLiteral("TuneIn:browse?c=ebrowse&id=s1&veskTitle="));
}

TEST(CMPathEncoded, KeepsUnreservedCharactersAndTheSlashesOfTheBase)
{
    const QString unreserved = QStringLiteral("AZaz09-._~");
    EXPECT_EQ(CMPath(unreserved, unreserved, {{unreserved, unreserved}}).toEncoded(),
        unreserved + QStringLiteral(":") + unreserved + QStringLiteral("?") + unreserved
            + QStringLiteral("=") + unreserved);
    EXPECT_EQ(CMPath(QStringLiteral("a/b"), QStringLiteral("/c//d/"),
                  {{QStringLiteral("e/f"), QStringLiteral("g/h")}})
                  .toEncoded(),
        QStringLiteral("a%2Fb:/c//d/?e%2Ff=g%2Fh"));
}

TEST(CMPathEncoded, EncodesWhatWouldDivideThePath)
{
    EXPECT_EQ(CMPath(QStringLiteral("a:b"), QStringLiteral("c:d?e&f=g"),
                  {{QStringLiteral("h=i&j"), QStringLiteral("k=l&m?n:o")}})
                  .toEncoded(),
        QStringLiteral("a%3Ab:c%3Ad%3Fe%26f%3Dg?h%3Di%26j=k%3Dl%26m%3Fn%3Ao"));
}

TEST(CMPathEncoded, NestsPathsAsParameters)
{
    const CMPath inner = path("browse/uri/Tune.ashx",
        {{QStringLiteral("id"), QStringLiteral("s1")},
            {QStringLiteral("q"), QStringLiteral("%1 %2 %3A")}});
    CMPath menu = path("player_context");
    menu.addParam(QStringLiteral("veskMatchingPath"), inner.toEncoded());
    CMPath deeper = path("more");
    deeper.addParam(QStringLiteral("veskMatchingPath"), menu.toEncoded());
    const CMPath read = decoded(deeper.toEncoded());
    EXPECT_EQ(read, deeper);
    const CMPath middle = decoded(read.param(QStringLiteral("veskMatchingPath")));
    EXPECT_EQ(middle, menu);
    EXPECT_EQ(decoded(middle.param(QStringLiteral("veskMatchingPath"))), inner);
}

TEST(CMPathEncoded, ReadsBackAsTheSamePath)
{
    RandomPaths random;
    for (int i = 0; i < 20000; ++i) {
        const CMPath p = random.next();
        const QString text = p.toEncoded();
        const CMPath read = decoded(text);
        ASSERT_EQ(read, p) << text.toStdString();
        ASSERT_EQ(read.toEncoded(), text);
    }
}

TEST(CMPathEncoded, TellsDifferentPathsApart)
{
    RandomPaths random;
    QHash<QString, CMPath> seen;
    for (int i = 0; i < 20000; ++i) {
        const CMPath p = random.next();
        const QString text = p.toEncoded();
        ASSERT_TRUE(!seen.contains(text) || seen.value(text) == p) << text.toStdString();
        seen.insert(text, p);
    }
}

TEST(CMPathEncoded, ReadsBackEveryCharacter)
{
    for (char32_t c = 0; c < 0x3000; ++c) {
        const QString text = QString::fromUcs4(&c, 1);
        const CMPath p(text, text, {{text, text}});
        ASSERT_EQ(decoded(p.toEncoded()), p) << c;
    }
}

TEST(CMPathEncoded, AcceptsAnEmptyParameterKey)
{
    const CMPath p = path("browse", {{QString(), QStringLiteral("value")}});
    EXPECT_EQ(p.toEncoded(), QStringLiteral("TuneIn:browse?=value"));
    EXPECT_EQ(decoded(p.toEncoded()), p);
    EXPECT_EQ(decoded(QStringLiteral("TuneIn:?=")), path("", {{QString(), QString()}}));
}

TEST(CMPathEncoded, WritesALoneSurrogateAsReplacementCharacter)
{
    const CMPath p(QStringLiteral("x"), QString(QChar(0xD800)));
    EXPECT_EQ(decoded(p.toEncoded()), CMPath(QStringLiteral("x"), QStringLiteral("\ufffd")));
}

TEST(CMPathDecode, TakesParametersInAnyOrder)
{
    EXPECT_EQ(decoded(QStringLiteral("TuneIn:browse?b=2&a=1")),
        path("browse",
            {{QStringLiteral("a"), QStringLiteral("1")},
                {QStringLiteral("b"), QStringLiteral("2")}}));
}

TEST(CMPathDecode, TakesAPlusForAPlus)
{
    EXPECT_EQ(decoded(QStringLiteral("TuneIn:a+b?c+d=e+f")),
        path("a+b", {{QStringLiteral("c+d"), QStringLiteral("e+f")}}));
}

TEST(CMPathDecode, TakesCharactersThatDivideNothingAsTheyAre)
{
    EXPECT_EQ(decoded(QStringLiteral("TuneIn:browse/uri/Search.ashx?query=caf\u00e9 noir")),
        path("browse/uri/Search.ashx",
            {{QStringLiteral("query"), QStringLiteral("caf\u00e9 noir")}}));
    EXPECT_EQ(decoded(QStringLiteral("TuneIn:a:b=c&d?e=f=g?h:i/j")),
        path("a:b=c&d", {{QStringLiteral("e"), QStringLiteral("f=g?h:i/j")}}));
}

class NoPath : public testing::TestWithParam<std::string> { };

TEST_P(NoPath, DecodesToTheEmptyPath)
{
    EXPECT_EQ(decoded(QString::fromStdString(GetParam())), CMPath());
}

INSTANTIATE_TEST_SUITE_P(CMPathDecode, NoPath,
    testing::Values("", ":", "browse", ":browse", ":browse?a=b", "browse?a=b", "browse/uri",
        // a later colon does not end a prefix
        "browse?a=b:c", "/TuneIn:browse", "a/b:c", "a=b:c", "a&b:c", "?:",
        // entries without "="
        "TuneIn:browse?", "TuneIn:browse?a", "TuneIn:browse?a=b&", "TuneIn:browse?&a=b",
        "TuneIn:browse?a=b&&c=d", "TuneIn:browse?a=b&c",
        // duplicate keys, with and without escapes
        "TuneIn:browse?a=1&a=2", "TuneIn:browse?a=1&a=1", "TuneIn:browse?a=1&%61=2",
        "TuneIn:browse?=1&=2",
        // damaged escapes in every part
        "%:browse", "Tune%4:browse", "TuneIn:browse%", "TuneIn:brow%zzse", "TuneIn:browse?%=a",
        "TuneIn:browse?a=%f", "TuneIn:browse?a=b&c=%C3%28", "%C3:%A9",
        // invalid UTF-8
        "TuneIn:%FF", "TuneIn:%C0%80", "TuneIn:%ED%A0%80", "TuneIn:a?b=%F4%90%80%80"));

TEST(CMPathDecode, BoundsTheTextItReads)
{
    const QString start = QStringLiteral("TuneIn:");
    const QString fits = start + QString(64 * 1024 - start.size(), QLatin1Char('a'));
    EXPECT_EQ(decoded(fits).base().size(), 64 * 1024 - start.size());
    EXPECT_EQ(decoded(fits + QLatin1Char('a')), CMPath());
}

TEST(CMPathDecode, SurvivesAnyNoise)
{
    RandomPaths random;
    int paths = 0;
    for (int i = 0; i < 20000; ++i) {
        // A valid path with one character changed, removed or added.
        QString text = random.next().toEncoded();
        const int at = int(random.number() % uint(text.size()));
        static const QString noise = QStringLiteral("%:?&=\U0010FFFF a0");
        const QChar c = noise.at(int(random.number() % uint(noise.size())));
        switch (random.number() % 3) {
        case 0:
            text[at] = c;
            break;
        case 1:
            text.remove(at, 1);
            break;
        default:
            text.insert(at, c);
        }
        const CMPath read = decoded(text);
        paths += read.isEmpty() ? 0 : 1;
        ASSERT_EQ(decoded(read.toEncoded()), read) << text.toStdString();
    }
    EXPECT_GT(paths, 1000);
    EXPECT_LT(paths, 19000);
}

TEST(CMPathEquals, ComparesAllOfItOrAllButTheParameters)
{
    const CMPath p = path("account", {{QStringLiteral("a"), QStringLiteral("1")}});
    const CMPath other = path("account", {{QStringLiteral("a"), QStringLiteral("2")}});
    EXPECT_TRUE(p.equals(p));
    EXPECT_FALSE(p.equals(other));
    EXPECT_FALSE(p.equals(other, 0));
    EXPECT_TRUE(p.equals(other, 1));
    EXPECT_TRUE(p.equals(path("account"), CMPath::IgnoreParams));
    EXPECT_FALSE(p.equals(path("accounts"), 1));
    EXPECT_FALSE(path("a").equals(CMPath(QStringLiteral("tunein"), QStringLiteral("a")), 1));
}

TEST(CMPathStartsWith, TakesWholeStepsOfTheBase)
{
    EXPECT_TRUE(path("browse").startsWith(path("browse")));
    EXPECT_TRUE(path("browse/uri/Browse.ashx").startsWith(path("browse")));
    EXPECT_TRUE(path("browse/uri").startsWith(path("browse/uri")));
    EXPECT_FALSE(path("browser").startsWith(path("browse")));
    EXPECT_FALSE(path("browse").startsWith(path("browse/uri")));
    EXPECT_FALSE(path("brows").startsWith(path("browse")));
    EXPECT_TRUE(path("browse/uri").startsWith(path("browse/")));
    EXPECT_FALSE(path("browse").startsWith(path("browse/")));
}

TEST(CMPathStartsWith, PutsEverythingBelowTheRoot)
{
    EXPECT_TRUE(path("browse").startsWith(path("")));
    EXPECT_TRUE(path("").startsWith(path("")));
    const CMPath nullBase(QStringLiteral("TuneIn"), QString());
    EXPECT_TRUE(nullBase.startsWith(CMPath::fromEncoded(QStringLiteral("TuneIn:"))));
    EXPECT_FALSE(path("browse").startsWith(CMPath(QStringLiteral("settings"), QString())));
}

TEST(CMPathStartsWith, PutsNothingBelowTheEmptyPath)
{
    EXPECT_FALSE(path("browse").startsWith(CMPath()));
    EXPECT_FALSE(CMPath().startsWith(path("")));
    EXPECT_TRUE(CMPath().startsWith(CMPath()));
}

TEST(CMPathStartsWith, WantsAllParametersOfTheStart)
{
    const QString c = QStringLiteral("c");
    const CMPath presets = path("browse/uri", {{c, QStringLiteral("presets")}});
    EXPECT_TRUE(presets.startsWith(path("browse")));
    EXPECT_TRUE(presets.startsWith(path("browse", {{c, QStringLiteral("presets")}})));
    EXPECT_FALSE(presets.startsWith(path("browse", {{c, QStringLiteral("music")}})));
    EXPECT_FALSE(presets.startsWith(path("browse", {{QStringLiteral("d"), QString()}})));
    EXPECT_FALSE(path("browse").startsWith(path("browse", {{c, QString()}})));
}

TEST(CMPathOrder, IsStrictAndAgreesWithEquality)
{
    RandomPaths random;
    std::vector<CMPath> paths;
    for (int i = 0; i < 500; ++i)
        paths.push_back(random.next());
    std::sort(paths.begin(), paths.end());
    for (size_t i = 1; i < paths.size(); ++i) {
        EXPECT_FALSE(paths[i] < paths[i - 1]);
        EXPECT_EQ(paths[i - 1] < paths[i], paths[i - 1] != paths[i]);
    }
    EXPECT_LT(CMPath(), path(""));
    EXPECT_LT(path("a", {{QStringLiteral("z"), QStringLiteral("z")}}), path("b"));
    EXPECT_LT(path("a"), path("a", {{QString(), QString()}}));
}

TEST(CMPathHash, IsTheSameForEqualPaths)
{
    RandomPaths random;
    for (int i = 0; i < 200; ++i) {
        const CMPath p = random.next();
        EXPECT_EQ(qHash(p), qHash(decoded(p.toEncoded())));
    }
    QHash<CMPath, int> hash;
    hash.insert(path("a"), 1);
    hash.insert(path("b"), 2);
    EXPECT_EQ(hash.value(path("a")), 1);
    EXPECT_NE(qHash(path("a")), qHash(path("b")));
    EXPECT_NE(qHash(path("a", {{QStringLiteral("b"), QString()}})),
        qHash(path("a", {{QStringLiteral("c"), QString()}})));
}

TEST(CMPathPlus, AppendsToTheBaseAndKeepsTheParameters)
{
    const CMPath p = path("browse", {{QStringLiteral("c"), QStringLiteral("d")}});
    EXPECT_EQ((p + QStringLiteral("/uri")).toEncoded(), QStringLiteral("TuneIn:browse/uri?c=d"));
    EXPECT_EQ(p + QString(), p);
}

TEST(CMPathVariant, ComparesByContentAndReadsAsText)
{
    const CMPath p = path("browse", {{QStringLiteral("c"), QStringLiteral("d")}});
    const QVariant variant = QVariant::fromValue(p);
    EXPECT_EQ(variant, QVariant::fromValue(decoded(p.toEncoded())));
    EXPECT_NE(variant, QVariant::fromValue(path("browse")));
    EXPECT_EQ(variant.toString(), p.toEncoded());
    EXPECT_EQ(CMPath::fromVariant(variant), p);
    EXPECT_EQ(CMPath::fromVariant(p.toEncoded()), p);
    EXPECT_EQ(CMPath::fromVariant(12), CMPath());
    EXPECT_EQ(CMPath::fromVariant(QVariant()), CMPath());
}

TEST(CMPathPrint, IsTheTextFormWithoutSecrets)
{
    const CMPath p = path("account",
        {{QStringLiteral("password"), QStringLiteral("hidden")},
            {QStringLiteral("sessionId"), QStringLiteral("hidden")},
            {QStringLiteral("username"), QStringLiteral("me\nyou")}});
    EXPECT_EQ(print(p), "TuneIn:account?password=***&sessionId=***&username=me%0Ayou");
    EXPECT_EQ(print(CMPath()), "");
    std::ostringstream out;
    out << QVariant::fromValue(p);
    EXPECT_EQ(out.str(), print(p)) << "a path in a variant hides its secrets too";
}
