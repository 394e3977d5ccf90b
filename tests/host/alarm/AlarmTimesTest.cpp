// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/AlarmTimes.h"

#include "tests/support/Text.h"

#include <QDateTime>
#include <QTimeZone>

#include <gmock/gmock.h>

namespace {

UtcOffset zone(const char *name)
{
    const QTimeZone zone {QByteArray(name)};
    EXPECT_TRUE(zone.isValid()) << name;
    return [zone](Moment moment) {
        return zone.offsetFromUtc(QDateTime::fromSecsSinceEpoch(moment).toUTC());
    };
}

/// Of "2026-03-28T12:00:00Z".
Moment moment(const char *iso)
{
    const QDateTime time = QDateTime::fromString(text(iso), Qt::ISODate);
    EXPECT_TRUE(time.isValid()) << iso;
    return time.toSecsSinceEpoch();
}

struct Case {
    const char *zone;
    const char *time;
    QVector<int> days;
    const char *after;
    const char *next;
};

void PrintTo(const Case &row, std::ostream *out)
{
    *out << row.zone << ' ' << row.time << " after " << row.after;
}

class AlarmTimesTest : public testing::TestWithParam<Case> { };

TEST_P(AlarmTimesTest, NextMoment)
{
    const Case &row = GetParam();
    const UtcOffset offset = zone(row.zone);
    auto time = WeeklyTime::parse(text(row.time));
    ASSERT_TRUE(time);
    time->days = row.days;
    const auto next = nextMoment(*time, moment(row.after), offset);
    ASSERT_TRUE(next);
    EXPECT_EQ(isoText(*next, offset).toStdString(), row.next);
}

INSTANTIATE_TEST_SUITE_P(Days, AlarmTimesTest,
    testing::Values(
        Case {"Europe/Berlin", "07:30", {}, "2026-11-22T20:00:00Z", "2026-11-23T07:30:00+01:00"},
        // Not the moment itself, but the second before it is early enough.
        Case {"Europe/Berlin", "07:30", {}, "2026-11-23T06:29:59Z", "2026-11-23T07:30:00+01:00"},
        Case {"Europe/Berlin", "07:30", {}, "2026-11-23T06:30:00Z", "2026-11-24T07:30:00+01:00"},
        Case {"Europe/Berlin", "00:00", {}, "2026-11-22T22:59:59Z", "2026-11-23T00:00:00+01:00"},
        // A Friday, and the same weekday again.
        Case {"Europe/Berlin", "07:30", {1, 2, 3, 4, 5}, "2026-11-20T07:00:00Z",
            "2026-11-23T07:30:00+01:00"},
        Case {"Europe/Berlin", "07:30", {5}, "2026-11-20T06:30:00Z", "2026-11-27T07:30:00+01:00"},
        // The weekday is that of the zone: Monday there, Sunday in UTC.
        Case {"Pacific/Kiritimati", "01:00", {1}, "2026-11-21T00:00:00Z",
            "2026-11-23T01:00:00+14:00"},
        Case {"Pacific/Niue", "23:30", {7}, "2026-11-22T00:00:00Z", "2026-11-22T23:30:00-11:00"},
        Case {"Asia/Kathmandu", "06:15", {}, "2026-11-22T20:00:00Z", "2026-11-23T06:15:00+05:45"},
        // Leap day, and the rules beyond the tables of the zone.
        Case {"Europe/Berlin", "12:00", {}, "2028-02-28T12:00:00Z", "2028-02-29T12:00:00+01:00"},
        Case {"Europe/Berlin", "12:00", {}, "2045-07-01T12:00:00Z", "2045-07-02T12:00:00+02:00"}));

INSTANTIATE_TEST_SUITE_P(ForwardOverTheTime, AlarmTimesTest,
    testing::Values(
        Case {"Europe/Berlin", "02:30", {}, "2026-03-28T12:00:00Z", "2026-03-29T03:00:00+02:00"},
        Case {"Europe/Berlin", "02:00", {}, "2026-03-28T12:00:00Z", "2026-03-29T03:00:00+02:00"},
        Case {"Europe/Berlin", "01:59", {}, "2026-03-28T12:00:00Z", "2026-03-29T01:59:00+01:00"},
        Case {"Europe/Berlin", "03:00", {}, "2026-03-28T12:00:00Z", "2026-03-29T03:00:00+02:00"},
        // It has gone off: the next day.
        Case {"Europe/Berlin", "02:30", {}, "2026-03-29T01:00:00Z", "2026-03-30T02:30:00+02:00"},
        Case {"Europe/Berlin", "02:30", {7}, "2026-03-29T01:00:00Z", "2026-04-05T02:30:00+02:00"},
        Case {"America/St_Johns", "02:15", {}, "2026-03-07T12:00:00Z", "2026-03-08T03:00:00-02:30"},
        // One minute after midnight, until 2011.
        Case {"America/St_Johns", "00:30", {}, "2010-03-13T12:00:00Z", "2010-03-14T01:01:00-02:30"},
        Case {"America/St_Johns", "00:00", {}, "2010-03-13T12:00:00Z", "2010-03-14T00:00:00-03:30"},
        // By half an hour.
        Case {"Australia/Lord_Howe", "02:15", {}, "2026-10-03T12:00:00Z",
            "2026-10-04T02:30:00+11:00"},
        Case {"Australia/Lord_Howe", "02:30", {}, "2026-10-03T12:00:00Z",
            "2026-10-04T02:30:00+11:00"},
        // After Ramadan.
        Case {
            "Africa/Casablanca", "02:30", {}, "2025-04-05T12:00:00Z", "2025-04-06T03:00:00+01:00"},
        // At midnight.
        Case {"Asia/Tehran", "00:30", {}, "2022-03-21T12:00:00Z", "2022-03-22T01:00:00+04:30"},
        Case {"Asia/Tehran", "00:30", {2}, "2022-03-21T12:00:00Z", "2022-03-22T01:00:00+04:30"},
        Case {"Asia/Tehran", "00:30", {}, "2026-03-21T21:30:00Z", "2026-03-23T00:30:00+03:30"},
        // Over the end of the day, into the next one.
        Case {"America/Nuuk", "23:30", {6}, "2025-03-29T12:00:00Z", "2025-03-30T00:00:00-01:00"},
        Case {"America/Nuuk", "23:30", {}, "2025-03-30T01:00:00Z", "2025-03-30T23:30:00-01:00"}));

INSTANTIATE_TEST_SUITE_P(BackOverTheTime, AlarmTimesTest,
    testing::Values(
        Case {"Europe/Berlin", "02:30", {}, "2026-10-24T12:00:00Z", "2026-10-25T02:30:00+02:00"},
        Case {"Europe/Berlin", "02:00", {}, "2026-10-24T12:00:00Z", "2026-10-25T02:00:00+02:00"},
        Case {"Europe/Berlin", "03:00", {}, "2026-10-24T12:00:00Z", "2026-10-25T03:00:00+01:00"},
        // Not the second one, neither right after the first nor right before it.
        Case {"Europe/Berlin", "02:30", {}, "2026-10-25T00:30:00Z", "2026-10-26T02:30:00+01:00"},
        Case {"Europe/Berlin", "02:30", {}, "2026-10-25T01:29:59Z", "2026-10-26T02:30:00+01:00"},
        Case {"America/St_Johns", "01:30", {}, "2026-10-31T12:00:00Z", "2026-11-01T01:30:00-02:30"},
        // From one minute after midnight into the day before, until 2011.
        Case {"America/St_Johns", "23:30", {}, "2010-11-06T12:00:00Z", "2010-11-06T23:30:00-02:30"},
        Case {"America/St_Johns", "23:30", {}, "2010-11-07T02:00:00Z", "2010-11-07T23:30:00-03:30"},
        Case {
            "America/St_Johns", "00:00", {7}, "2010-11-06T12:00:00Z", "2010-11-07T00:00:00-02:30"},
        Case {"Australia/Lord_Howe", "01:45", {}, "2026-04-04T06:00:00Z",
            "2026-04-05T01:45:00+11:00"},
        Case {"Australia/Lord_Howe", "01:45", {}, "2026-04-04T14:46:00Z",
            "2026-04-06T01:45:00+10:30"},
        Case {
            "Africa/Casablanca", "02:30", {}, "2025-02-22T12:00:00Z", "2025-02-23T02:30:00+01:00"},
        Case {"Asia/Tehran", "23:30", {}, "2022-09-21T12:00:00Z", "2022-09-21T23:30:00+04:30"},
        Case {"Asia/Tehran", "23:30", {}, "2022-09-21T19:30:00Z", "2022-09-22T23:30:00+03:30"}));

// Samoa went from the 29th of December 2011 to the 31st.
INSTANTIATE_TEST_SUITE_P(DayThatDoesNotExist, AlarmTimesTest,
    testing::Values(
        Case {"Pacific/Apia", "07:30", {}, "2011-12-29T18:00:00Z", "2011-12-31T07:30:00+14:00"},
        Case {"Pacific/Apia", "00:00", {}, "2011-12-29T18:00:00Z", "2011-12-31T00:00:00+14:00"},
        Case {"Pacific/Apia", "07:30", {5}, "2011-12-29T18:00:00Z", "2012-01-06T07:30:00+14:00"},
        Case {"Pacific/Apia", "23:59", {4}, "2011-12-29T18:00:00Z", "2011-12-29T23:59:00-10:00"}));

TEST(AlarmTimesOfWeeksTest, OnceADayForAYearInEveryZone)
{
    for (const char *name : {"Europe/Berlin", "America/St_Johns", "Australia/Lord_Howe",
             "Africa/Casablanca", "Asia/Tehran", "America/Nuuk", "UTC"}) {
        const UtcOffset offset = zone(name);
        Moment after = moment("2025-12-31T12:00:00Z");
        for (int i = 0; i < 365; ++i) {
            const auto next = nextMoment(*WeeklyTime::parse(text("02:30")), after, offset);
            ASSERT_TRUE(next);
            ASSERT_GE(*next - after, i == 0 ? 0 : 22 * 3600) << name;
            ASSERT_LE(*next - after, 26 * 3600) << name;
            after = *next;
        }
    }
}

TEST(WeeklyTimeTest, ParsesTwoDigitsEach)
{
    for (const char *good : {"00:00", "07:30", "19:59", "23:59"}) {
        const auto time = WeeklyTime::parse(text(good));
        ASSERT_TRUE(time) << good;
        EXPECT_EQ(time->text(), text(good));
    }
    for (const char *bad : {"", "7:30", "24:00", "07:60", "07:30:00", "07:30\n", " 07:30", "0730",
             "-1:00", "07:3O", "\xD9\xA0\xD9\xA7:30"})
        EXPECT_FALSE(WeeklyTime::parse(text(bad))) << bad;
}

} // namespace
