#include "ctl/ScreenText.h"

#include "api/values/VeskValue.h"
#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

namespace {

std::string line(const VeskRoles &row)
{
    QVariantList values;
    for (const QString &role : rowLineRoles())
        values.append(row[role]);
    return rowLine(3, values, TerminalStyle(false));
}

TEST(ScreenTextTest, ARowIsNumberMarkTitleDescriptionAndPath)
{
    VeskRoles folder = row(VeskRolesType::Container(), "Music", "TuneIn:browse");
    EXPECT_EQ(line(folder), "   3 > Music  TuneIn:browse");
    folder.insert(VeskRoles::Description(), QStringLiteral("All of it"));
    EXPECT_EQ(line(folder), "   3 > Music  All of it  TuneIn:browse");
}

TEST(ScreenTextTest, EachKindHasItsMark)
{
    EXPECT_EQ(line(row(VeskRolesType::Audio(), "Jazz", "a:b")), "   3 \u266a Jazz  a:b");
    EXPECT_EQ(line(row(VeskRolesType::Header(), "Stations", "a:b")), "   3 # Stations");
    EXPECT_EQ(line(row(VeskRolesType::Activate(), "Add", "a:b")), "   3 ! Add  a:b");
    EXPECT_EQ(line(row(99, "Odd", "a:b")), "   3   Odd  a:b");
}

TEST(ScreenTextTest, AValueShowsItsValue)
{
    VeskRoles value = row(VeskRolesType::Value(), "Language", "settings:ui/language");
    value.insert(VeskRoles::Value(), VeskValue::fromString(QStringLiteral("de")));
    EXPECT_EQ(line(value), "   3 = Language: de  settings:ui/language");
}

TEST(ScreenTextTest, AQueryShowsThePathThatSearches)
{
    VeskRoles query = row(VeskRolesType::Query(), "Search", "a:query");
    query.insert(VeskRoles::Query(), QStringLiteral("q"));
    query.insert(VeskRoles::QueryPath(), QStringLiteral("a:found?m=1"));
    EXPECT_EQ(line(query), "   3 ? Search  'a:found?m=1&q=TEXT'");
}

TEST(ScreenTextTest, APathIsQuotedWhereAShellWouldReadMoreIntoIt)
{
    EXPECT_EQ(line(row(1, "A", "a:b?c=d&e=f")), "   3 > A  'a:b?c=d&e=f'");
}

TEST(ScreenTextTest, ARowOfNullsIsALineToo)
{
    EXPECT_EQ(rowLine(0, {}, TerminalStyle(false)), "   0   ");
    EXPECT_EQ(rowLine(0, QVariantList {QVariant(), QVariantList {}, 5, true}, TerminalStyle(false)),
        "   0   []  5");
}

TEST(ScreenTextTest, ColoursAreForTerminals)
{
    const VeskRoles roles = row(VeskRolesType::Container(), "Music", "a:b");
    QVariantList values;
    for (const QString &role : rowLineRoles())
        values.append(roles[role]);
    EXPECT_THAT(rowLine(3, values, TerminalStyle(true)), testing::HasSubstr("\033[2ma:b\033[0m"));
    EXPECT_THAT(line(roles), testing::Not(testing::HasSubstr("\033")));
}

TEST(ScreenTextTest, PlainTextIsTheBareValue)
{
    EXPECT_EQ(plainText({}), QString());
    EXPECT_EQ(plainText(5), QStringLiteral("5"));
    EXPECT_EQ(plainText(true), QStringLiteral("true"));
    EXPECT_EQ(plainText(QStringLiteral("x")), QStringLiteral("x"));
    EXPECT_EQ(plainText(VeskValue::fromBool(true)), QStringLiteral("true"));
    EXPECT_EQ(plainText(VeskValue::fromString({})), QString());
    EXPECT_EQ(plainText(QVariantHash {{QStringLiteral("a"), 1}}), QStringLiteral("{\"a\":1}"));
    EXPECT_EQ(plainText(QVariantList {1, 2}), QStringLiteral("[1,2]"));
}

TEST(TerminalTextTest, TakesTheTeethOutOfControlCharacters)
{
    EXPECT_EQ(printableText(QStringLiteral("a\x1b[31mb")), QStringLiteral("a\ufffd[31mb"));
    EXPECT_EQ(printableText(QStringLiteral("a\nb\tc\rd")), QStringLiteral("a b c d"));
    EXPECT_EQ(printableText(QString(QChar(0x9b)) + QChar(0x7f) + QChar(0)),
        QStringLiteral("\ufffd\ufffd\ufffd"));
    for (const ushort code : {0x202a, 0x202e, 0x2066, 0x2069, 0x200e, 0x200f, 0x061c, 0x2028})
        EXPECT_EQ(printableText(QString(QChar(code))), QStringLiteral("\ufffd")) << code;
    EXPECT_EQ(printableText(QStringLiteral("Grüße, 日本 🎵")), QStringLiteral("Grüße, 日本 🎵"));
}

TEST(TerminalTextTest, JsonSaysTheSameWithEscapes)
{
    EXPECT_EQ(printableJson(QStringLiteral("{\"a\":\"\u009bx\u202e\"}").toUtf8()),
        "{\"a\":\"\\u009bx\\u202e\"}");
    EXPECT_EQ(printableJson("[1]"), "[1]");
}

} // namespace
