// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/CMPathForm.h"

#include "api/values/CMPath.h"

#include <gtest/gtest.h>

#include <random>

namespace {

CMPath path(const QString &base, const CMPath::Params &params = {})
{
    return CMPath(QStringLiteral("TuneIn"), base, params);
}

CMPath with(CMPath path, const CMPath::Params &params)
{
    for (auto it = params.begin(); it != params.end(); ++it)
        path.addParam(it.key(), it.value());
    return path;
}

/// Random texts in which a path's separators and characters of several code units are frequent.
class RandomTexts {
public:
    QString next()
    {
        static const QString letters = QStringLiteral(":/?&=+%# az09-._~\u00e9\u20ac\uffff")
            + QChar(0) + QChar(0xD83D) + QChar(0xDE00);
        QString text;
        for (unsigned n = m_random() % 12; n > 0; --n)
            text += letters.at(int(m_random() % uint(letters.size())));
        return text;
    }

private:
    std::mt19937 m_random {11};
};

} // namespace

TEST(CMPathForm, FillsInValuesInTheOrderOfTheBlanks)
{
    const CMPathForm form(
        path(QStringLiteral("menu")), {{QStringLiteral("guideId")}, {QStringLiteral("veskTitle")}});
    EXPECT_EQ(form.toEncoded({QStringLiteral("s1"), QStringLiteral("A & B")}),
        QStringLiteral("TuneIn:menu?guideId=s1&veskTitle=A%20%26%20B"));
    EXPECT_EQ(form.toEncoded({QStringLiteral("s2"), QStringLiteral("\u00e9\U0001F600")}),
        QStringLiteral("TuneIn:menu?guideId=s2&veskTitle=%C3%A9%F0%9F%98%80"));
}

TEST(CMPathForm, KeepsEmptyValuesButForOptionalOnes)
{
    const CMPathForm form(path(QStringLiteral("menu")),
        {{QStringLiteral("a"), true}, {QStringLiteral("b")}, {QStringLiteral("c"), true}});
    const QString x = QStringLiteral("x");
    EXPECT_EQ(form.toEncoded({x, x, x}), QStringLiteral("TuneIn:menu?a=x&b=x&c=x"));
    EXPECT_EQ(form.toEncoded({QString(), x, x}), QStringLiteral("TuneIn:menu?b=x&c=x"));
    EXPECT_EQ(form.toEncoded({QString(), QString(), QString()}), QStringLiteral("TuneIn:menu?b="));
    EXPECT_EQ(form.toEncoded({x, x, QString()}), QStringLiteral("TuneIn:menu?a=x&b=x"));
}

TEST(CMPathForm, IsThePathItselfWithoutParameters)
{
    EXPECT_EQ(CMPathForm(path(QStringLiteral("a b/c")), {}).toEncoded({}),
        QStringLiteral("TuneIn:a%20b/c"));
    const CMPathForm form(path(QStringLiteral("menu")), {{QStringLiteral("a"), true}});
    EXPECT_EQ(form.toEncoded({QString()}), QStringLiteral("TuneIn:menu"));
}

TEST(CMPathForm, IsEmptyForTheEmptyPath)
{
    const CMPathForm form(CMPath(), {{QStringLiteral("a")}});
    EXPECT_EQ(form.toEncoded({QStringLiteral("x")}), QString());
}

TEST(CMPathForm, KeepsThePathsOwnParametersInTheirPlaces)
{
    const CMPath own = path(QStringLiteral("menu"),
        {{QStringLiteral("b"), QStringLiteral("1&2")}, {QStringLiteral("d"), QString()},
            {QStringLiteral("g h"), QStringLiteral("3")}});
    const CMPathForm form(own,
        {{QStringLiteral("a"), true}, {QStringLiteral("c"), true}, {QStringLiteral("e"), true},
            {QStringLiteral("f")}});
    const QString x = QStringLiteral("x");
    EXPECT_EQ(form.toEncoded({x, x, x, x}),
        QStringLiteral("TuneIn:menu?a=x&b=1%262&c=x&d=&e=x&f=x&g%20h=3"));
    EXPECT_EQ(form.toEncoded({QString(), QString(), QString(), x}),
        QStringLiteral("TuneIn:menu?b=1%262&d=&f=x&g%20h=3"));
}

TEST(CMPathForm, TakesValuesOfAnySize)
{
    const CMPathForm form(
        path(QStringLiteral("menu")), {{QStringLiteral("a")}, {QStringLiteral("b")}});
    const QString large = QStringLiteral("\u20ac/").repeated(5000);
    EXPECT_EQ(form.toEncoded({large, large}),
        path(QStringLiteral("menu"), {{QStringLiteral("a"), large}, {QStringLiteral("b"), large}})
            .toEncoded());
}

TEST(CMPathForm, GivesWhatThePathGivesForAnyTexts)
{
    RandomTexts texts;
    for (int i = 0; i < 5000; ++i) {
        const CMPath::Params own {{texts.next() + QLatin1Char('1'), texts.next()},
            {texts.next() + QLatin1Char('1'), texts.next()}};
        CMPath::Params filled {{texts.next() + QLatin1Char('2'), texts.next()},
            {texts.next() + QLatin1Char('2'), texts.next()}};
        const CMPath start = path(texts.next(), own);
        const QString first = filled.firstKey();
        const QString last = filled.lastKey();
        const bool optional = i % 2;
        QString text;
        if (filled.size() == 2) {
            const CMPathForm form(start, {{first, optional}, {last, optional}});
            text = form.toEncoded({filled.value(first), filled.value(last)});
        } else {
            text = CMPathForm(start, {{first, optional}}).toEncoded({filled.value(first)});
        }
        for (const QString &key : filled.keys()) {
            if (optional && filled.value(key).isEmpty())
                filled.remove(key);
        }
        ASSERT_EQ(text, with(start, filled).toEncoded());
    }
}

TEST(CMPathFormDeathTest, RefusesUnsortedBlanksAndMissingValues)
{
    const CMPath start = path(QStringLiteral("menu"), {{QStringLiteral("b"), QString()}});
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    const QString c = QStringLiteral("c");
    EXPECT_DEATH(CMPathForm(start, {{c}, {a}}), "last < blank.key");
    EXPECT_DEATH(CMPathForm(start, {{a}, {a}}), "last < blank.key");
    EXPECT_DEATH(CMPathForm(start, {{b}}), "own->first != blank.key");
    const CMPathForm form(start, {{a}, {c}});
    EXPECT_DEATH(form.toEncoded({a}), "values.size");
}
