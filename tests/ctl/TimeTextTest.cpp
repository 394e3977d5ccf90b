// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/TimeText.h"

#include <gtest/gtest.h>

namespace {

TEST(TimeTextTest, ReadsDurations)
{
    const struct {
        const char *text;
        int seconds;
    } cases[] {{"0", 0}, {"30", 30}, {"90s", 90}, {"5m", 300}, {"1h", 3600}, {"1h20m", 4800},
        {"1h20m5s", 4805}, {"1h5s", 3605}, {"1m30", 90}, {"0:05", 5}, {"4:05", 245}, {"04:05", 245},
        {"90:00", 5400}, {"1:20:00", 4800}, {"01:02:03", 3723}, {"999:59:59", 3599999}};
    for (const auto &[text, seconds] : cases)
        EXPECT_EQ(parseDuration(QLatin1String(text)), seconds) << text;
}

TEST(TimeTextTest, RefusesWhatIsNoDuration)
{
    for (const char *text : {"", " ", "s", "h", ":", "1:", ":30", "1:5", "1:60", "1:60:00",
             "1:2:03", "1:20:0", "1:20:00:00", "+30", "-30", "3 0", "30 ", "1.5", "1,5", "1e3",
             "30x", "m5", "5m1h", "5s3m", "99999999", "1000h", "0x10", "\xd9\xa3", "live"})
        EXPECT_EQ(parseDuration(QString::fromUtf8(text)), std::nullopt) << text;
}

TEST(TimeTextTest, WritesDurations)
{
    const struct {
        int seconds;
        const char *text;
    } cases[] {{0, "0:00"}, {5, "0:05"}, {245, "4:05"}, {3599, "59:59"}, {3600, "1:00:00"},
        {4800, "1:20:00"}, {363723, "101:02:03"}};
    for (const auto &[seconds, text] : cases)
        EXPECT_EQ(durationText(seconds), QLatin1String(text));
}

TEST(TimeTextTest, ReadsTimesOfDay)
{
    EXPECT_EQ(parseTimeOfDay(QStringLiteral("7:30")), QStringLiteral("07:30"));
    EXPECT_EQ(parseTimeOfDay(QStringLiteral("07:30")), QStringLiteral("07:30"));
    EXPECT_EQ(parseTimeOfDay(QStringLiteral("0:00")), QStringLiteral("00:00"));
    EXPECT_EQ(parseTimeOfDay(QStringLiteral("23:59")), QStringLiteral("23:59"));
    for (const char *text :
        {"", "7", "24:00", "7:60", "7:3", "007:30", "-7:30", "7:30:00", "7.30", "7:30 ", "noon"})
        EXPECT_EQ(parseTimeOfDay(QLatin1String(text)), std::nullopt) << text;
}

TEST(TimeTextTest, ReadsDays)
{
    const struct {
        const char *text;
        QList<int> days;
    } cases[] {{"mon", {1}}, {"Sunday", {7}}, {"we", {3}}, {"mon-fri", {1, 2, 3, 4, 5}},
        {"1-5", {1, 2, 3, 4, 5}}, {"sat,sun", {6, 7}}, {"sun,sat,sun", {6, 7}},
        {"fri-mon", {1, 5, 6, 7}}, {"mon,wed-fri", {1, 3, 4, 5}}, {"daily", {1, 2, 3, 4, 5, 6, 7}},
        {"weekdays", {1, 2, 3, 4, 5}}, {"weekends", {6, 7}}, {"once", {}}};
    for (const auto &[text, days] : cases)
        EXPECT_EQ(parseDays(QLatin1String(text)), days) << text;
    for (const char *text : {"", "m", "t", "0", "8", "mon-", "-fri", "mon--fri", "mon-wed-fri",
             "mon,", "mon fri", "lunes", "mondays"})
        EXPECT_EQ(parseDays(QLatin1String(text)), std::nullopt) << text;
}

TEST(TimeTextTest, WritesDays)
{
    EXPECT_EQ(daysText({}), QStringLiteral("once"));
    EXPECT_EQ(daysText({1, 2, 3, 4, 5, 6, 7}), QStringLiteral("every day"));
    EXPECT_EQ(daysText({1, 2, 3, 4, 5}), QStringLiteral("Mon-Fri"));
    EXPECT_EQ(daysText({6, 7}), QStringLiteral("Sat, Sun"));
    EXPECT_EQ(daysText({1, 3, 4, 5, 7}), QStringLiteral("Mon, Wed-Fri, Sun"));
}

TEST(TimeTextTest, WritesTimesAsTheirOwnZoneHasThem)
{
    const QString time = QStringLiteral("2026-11-23T07:30:00+05:30");
    EXPECT_EQ(clockText(time, false), QStringLiteral("07:30"));
    EXPECT_EQ(clockText(time, true), QStringLiteral("Mon 07:30"));
    EXPECT_EQ(clockText(QStringLiteral("2026-11-23T23:05:10Z"), false), QStringLiteral("23:05"));
    for (const char *text : {"", "soon", "2026-13-01T00:00:00Z"})
        EXPECT_EQ(clockText(QLatin1String(text), true), QString()) << text;
}

} // namespace
