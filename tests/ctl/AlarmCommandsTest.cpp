// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/ctl/FakeHost.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

const QString ListCall = QStringLiteral("alarms.list");
const QString SetCall = QStringLiteral("alarms.set");
const QString RemoveCall = QStringLiteral("alarms.remove");
const QString SnoozeCall = QStringLiteral("alarms.snooze");
const QByteArray Done = R"("result":{})";

constexpr char Alarms[] = R"("result":{"alarms":[
    {"id":3,"time":"07:30","days":[1,2,3,4,5],"enabled":true,"volume":40,"fade":30,
     "title":"Jazz FM","icon":"","path":"a:1","next":"2026-11-23T07:30:00+01:00"},
    {"id":5,"time":"09:00","days":[6,7],"enabled":false,"volume":null,"fade":0,
     "title":"Night\u001b","icon":"","path":"a:2","next":null},
    {"id":8,"time":"07:30","days":[],"enabled":true,"volume":null,"fade":30,
     "title":"","icon":"","path":"","next":"2026-11-23T07:30:00+01:00"}],
    "missed":[],"ringing":null})";

/// The alarms with ids that are no numbers.
QByteArray withNames(QByteArray alarms)
{
    return alarms.replace("\"id\":3", "\"id\":\"x1\"")
        .replace("\"id\":5", "\"id\":\"x2\"")
        .replace("\"id\":8", "\"id\":\"x3\"");
}

class AlarmCommandsTest : public testing::Test {
protected:
    Outcome alarm(const char *arguments, int width = 0)
    {
        Surroundings around;
        around.width = width;
        return run(m_host.url(), QStringList {QStringLiteral("alarm")} + words(arguments), around);
    }

    QVariant sent(const char *name) const
    {
        return m_host.paramsOf(SetCall).value(QLatin1String(name));
    }

    std::string sentDays() const
    {
        std::string days;
        const QVariantList list = sent("days").toList();
        for (const QVariant &day : list)
            days += day.toString().toStdString();
        return days;
    }

    FakeHost m_host {{{ListCall, Alarms}, {RemoveCall, Done},
        {SetCall, R"("result":{"id":9,"next":"2026-11-23T07:30:00+01:00"})"},
        {QStringLiteral("alarms.stop"), Done}, {QStringLiteral("alarms.dismissMissed"), Done},
        {SnoozeCall, R"("result":{"until":"2026-11-23T07:39:00+01:00"})"}}};
};

TEST_F(AlarmCommandsTest, ListsThem)
{
    const char fields[]
        = "3\t07:30\t1,2,3,4,5\ton\t40\t30\tJazz FM\ta:1\t2026-11-23T07:30:00+01:00\t\n"
          "5\t09:00\t6,7\toff\t\t0\tNight\ufffd\ta:2\t\t\n"
          "8\t07:30\t\ton\t\t30\t\t\t2026-11-23T07:30:00+01:00\t\n";
    EXPECT_EQ(alarm("").out, fields);
    EXPECT_EQ(alarm("list").out, fields);
    EXPECT_EQ(run(m_host.url(), words("alarms")).out, fields);
    EXPECT_THAT(alarm("list --json").out, testing::StartsWith(R"({"alarms":[{"days":[1,)"));
}

TEST_F(AlarmCommandsTest, ListsThemOnATerminal)
{
    EXPECT_EQ(alarm("", 80).out,
        "   3   07:30 Mon-Fri   Jazz FM, volume 40\n"
        "   5   09:00 Sat, Sun  Night\ufffd, off\n"
        "   8   07:30 once      a sound of the host's own\n");
    QByteArray ringing = Alarms;
    m_host.setResult(ListCall, ringing.replace("\"ringing\":null", "\"ringing\":5"));
    EXPECT_THAT(alarm("", 80).out, HasSubstr("   5 ▶ 09:00"));
}

TEST_F(AlarmCommandsTest, CountsThoseWithoutANumberOfTheirOwn)
{
    m_host.setResult(ListCall, withNames(Alarms));
    EXPECT_THAT(alarm("", 80).out, testing::StartsWith("   1   07:30"));
    EXPECT_EQ(alarm("remove 2").out, "09:00 Sat, Sun: removed\n");
    EXPECT_EQ(m_host.paramsOf(RemoveCall).value(QStringLiteral("id")), QStringLiteral("x2"));
    EXPECT_EQ(alarm("remove x3").status, 0);
    EXPECT_EQ(m_host.paramsOf(RemoveCall).value(QStringLiteral("id")), QStringLiteral("x3"));
    EXPECT_EQ(alarm("remove 5").status, 1);
}

TEST_F(AlarmCommandsTest, TellsTheMissedOnes)
{
    m_host.setResult(ListCall, R"("result":{"alarms":[{"id":3,"time":"07:30","days":[],
        "enabled":false,"title":"Jazz FM"}],"missed":[{"id":3,"at":"2026-11-23T07:30:00+01:00"},
        {"id":4,"at":"2026-11-22T07:30:00+01:00"}],"ringing":null})");
    EXPECT_EQ(alarm("").errors,
        "veskctl: missed alarm: Mon 07:30 (Jazz FM)\n"
        "veskctl: missed alarm: Sun 07:30\n"
        "veskctl: \"veskctl alarm dismiss\" forgets the missed ones\n");
    EXPECT_EQ(alarm("dismiss").status, 0);
    EXPECT_EQ(m_host.timesAsked(QStringLiteral("alarms.dismissMissed")), 1);
}

TEST_F(AlarmCommandsTest, NoAlarmIsNoFailure)
{
    m_host.setResult(ListCall, R"("result":{"alarms":[],"missed":[],"ringing":null})");
    const Outcome outcome = alarm("");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "veskctl: no alarm is set\n");
}

TEST_F(AlarmCommandsTest, SetsOne)
{
    const Outcome outcome = alarm("add 7:30 --days mon-fri --preset 3 --volume 40 --fade 60");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "07:30 Mon-Fri: next Mon 07:30\n");
    EXPECT_EQ(sent("time"), QStringLiteral("07:30"));
    EXPECT_EQ(sentDays(), "12345");
    EXPECT_EQ(sent("enabled"), true);
    EXPECT_EQ(sent("preset"), 3);
    EXPECT_EQ(sent("volume"), 40);
    EXPECT_EQ(sent("fade"), 60);
    EXPECT_FALSE(sent("id").isValid());
}

TEST_F(AlarmCommandsTest, WhatIsNotSaidIsLeftToTheHost)
{
    EXPECT_EQ(alarm("add 19:30").out, "19:30 once: next Mon 07:30\n");
    EXPECT_EQ(m_host.paramsOf(SetCall),
        (QVariantHash {{QStringLiteral("time"), QStringLiteral("19:30")},
            {QStringLiteral("days"), QVariantList()}, {QStringLiteral("enabled"), true}}));
}

TEST_F(AlarmCommandsTest, SetsOneForARow)
{
    m_host.setScreen(QStringLiteral("Good:music"), {row(3, "One", "a:1")});
    EXPECT_EQ(alarm("add 7:30 Good:music 0").status, 0);
    EXPECT_EQ(sent("screen"), QStringLiteral("Good:music"));
    EXPECT_EQ(sent("row"), 0);
    EXPECT_EQ(sent("path"), QStringLiteral("a:1"));
}

TEST_F(AlarmCommandsTest, RefusesNonsense)
{
    const struct {
        const char *line;
        const char *complaint;
    } cases[] {{"add 25:00", "\"25:00\" is no time"}, {"add noon", "\"noon\" is no time"},
        {"add 7", "\"7\" is no time"}, {"add 7:30 --days someday", "\"someday\" are no days"},
        {"add 7:30 --days mon,", "\"mon,\" are no days"}, {"change 3 --time 7", "is no time"}};
    for (const auto &[line, complaint] : cases) {
        const Outcome outcome = alarm(line);
        EXPECT_EQ(outcome.status, 2) << line;
        EXPECT_THAT(outcome.errors, HasSubstr(complaint));
    }
    for (const char *line : {"add", "add 7:30 --volume 101", "add 7:30 --fade -1",
             "add 7:30 --preset 13", "add 7:30 --preset 0", "remove", "snooze 0", "7:30"})
        EXPECT_EQ(alarm(line).status, 2) << line;
    EXPECT_EQ(m_host.timesAsked(SetCall), 0);
}

TEST_F(AlarmCommandsTest, ChangesOneAndLeavesTheRest)
{
    EXPECT_EQ(alarm("change 3 --time 8:00").out, "08:00 Mon-Fri: next Mon 07:30\n");
    EXPECT_EQ(sent("id"), 3);
    EXPECT_EQ(sent("time"), QStringLiteral("08:00"));
    EXPECT_EQ(sentDays(), "12345");
    EXPECT_EQ(sent("volume"), 40);
    EXPECT_EQ(sent("fade"), 30);
    EXPECT_EQ(sent("enabled"), true);
    EXPECT_FALSE(sent("path").isValid());
    EXPECT_EQ(alarm("change 5 --days once --preset 2").status, 0);
    EXPECT_EQ(sentDays(), "");
    EXPECT_TRUE(sent("volume").isNull());
    EXPECT_EQ(sent("enabled"), false);
    EXPECT_EQ(sent("preset"), 2);
}

TEST_F(AlarmCommandsTest, TurnsOneOffAndOn)
{
    m_host.setResult(SetCall, R"("result":{"id":3,"next":null})");
    EXPECT_EQ(alarm("off 3").out, "07:30 Mon-Fri: off\n");
    EXPECT_EQ(sent("enabled"), false);
    EXPECT_EQ(sent("id"), 3);
    m_host.setResult(SetCall, R"("result":{"id":5,"next":"2026-11-28T09:00:00+01:00"})");
    EXPECT_EQ(alarm("on 9:00").out, "09:00 Sat, Sun: next Sat 09:00\n");
    EXPECT_EQ(sent("id"), 5);
}

TEST_F(AlarmCommandsTest, NamesOneByItsTimeOnlyWhereNoOtherHasIt)
{
    const Outcome several = alarm("off 7:30");
    EXPECT_EQ(several.status, 2);
    EXPECT_EQ(several.errors, "veskctl: several alarms are at 07:30: name one by its number\n");
    EXPECT_EQ(alarm("off 4").errors, "veskctl: there is no alarm \"4\"\n");
    EXPECT_EQ(alarm("off 7:31").status, 1);
    EXPECT_EQ(m_host.timesAsked(SetCall), 0);
}

TEST_F(AlarmCommandsTest, RemovesOne)
{
    const Outcome outcome = alarm("remove 3");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, "07:30 Mon-Fri: removed\n");
    EXPECT_EQ(m_host.paramsOf(RemoveCall), (QVariantHash {{QStringLiteral("id"), 3}}));
}

TEST_F(AlarmCommandsTest, SilencesTheOneThatRings)
{
    EXPECT_EQ(alarm("stop").status, 0);
    EXPECT_EQ(alarm("snooze").out, "quiet until 07:39\n");
    EXPECT_EQ(m_host.paramsOf(SnoozeCall), QVariantHash());
    EXPECT_EQ(alarm("snooze 20").status, 0);
    EXPECT_EQ(m_host.paramsOf(SnoozeCall), (QVariantHash {{QStringLiteral("minutes"), 20}}));
    m_host.setResult(SnoozeCall, R"("error":{"code":-32000,"message":"No alarm rings."})");
    EXPECT_EQ(alarm("snooze").errors, "veskctl: No alarm rings.\n");
}

} // namespace
