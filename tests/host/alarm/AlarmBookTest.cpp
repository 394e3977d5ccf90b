// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/AlarmBook.h"

#include "tests/support/Text.h"

#include <QDateTime>
#include <QTimeZone>

#include <gmock/gmock.h>

namespace {

constexpr Moment Minute = 60;
constexpr Moment Hour = 3600;
constexpr Moment Day = 24 * Hour;
/// A Monday, 00:00 UTC.
constexpr Moment Monday = 1763942400;

int utc(Moment)
{
    return 0;
}

int tokyo(Moment)
{
    return 9 * 3600;
}

int newYork(Moment)
{
    return -5 * 3600;
}

Alarm alarm(const char *time, Moment setAt, const QVector<int> &days = {1, 2, 3, 4, 5, 6, 7})
{
    Alarm alarm;
    alarm.id = text("1");
    alarm.time = *WeeklyTime::parse(text(time));
    alarm.time.days = days;
    alarm.accounted = setAt;
    return alarm;
}

class AlarmBookTest : public testing::Test {
protected:
    /// What is due and what is missed, as minutes since Monday: "450" or "missed 450".
    QString look(Moment now, const UtcOffset &offset = utc)
    {
        QStringList seen;
        const auto advance = book.advance(now, offset);
        for (const AlarmBook::Due &due : advance.due)
            seen.append(due.id + QLatin1Char('@') + QString::number((due.at - Monday) / Minute));
        if (advance.isMissedChanged) {
            QStringList missed;
            for (const MissedAlarm &one : book.missed())
                missed.append(QString::number((one.at - Monday) / Minute));
            seen.append(text("missed:") + missed.join(QLatin1Char(',')));
        }
        return seen.join(QLatin1Char(' '));
    }
    Moment next(const UtcOffset &offset = utc) const { return book.next(offset).value_or(0); }

    AlarmBook book;
};

TEST_F(AlarmBookTest, RingsOnceAtItsTimeAndAgainTheNextDay)
{
    book.put(alarm("07:30", Monday));
    EXPECT_EQ(look(Monday + 450 * Minute - 1), QString());
    EXPECT_EQ(look(Monday + 450 * Minute), text("1@450"));
    EXPECT_EQ(look(Monday + 450 * Minute), QString());
    EXPECT_EQ(look(Monday + 451 * Minute), QString());
    EXPECT_EQ(next(), Monday + Day + 450 * Minute);
    EXPECT_EQ(look(Monday + Day + 450 * Minute), text("1@1890"));
}

TEST_F(AlarmBookTest, OneForOnceIsOffAfterwards)
{
    book.put(alarm("07:30", Monday, {}));
    EXPECT_EQ(look(Monday + 450 * Minute), text("1@450"));
    EXPECT_FALSE(book.alarms().first().enabled);
    EXPECT_EQ(next(), 0);
    EXPECT_EQ(look(Monday + 3 * Day), QString());
}

TEST_F(AlarmBookTest, OneThatIsOffIsNeitherDueNorMissed)
{
    Alarm off = alarm("07:30", Monday);
    off.enabled = false;
    book.put(off);
    EXPECT_EQ(look(Monday + 450 * Minute), QString());
    EXPECT_EQ(look(Monday + 3 * Day), QString());
}

TEST_F(AlarmBookTest, LateOnesRingUpToTheLatenessAndAreMissedBeyond)
{
    const Moment due = Monday + 450 * Minute;
    book.put(alarm("07:30", Monday));
    EXPECT_EQ(look(due + AlarmBook::Lateness), text("1@450"));
    book = {};
    book.put(alarm("07:30", Monday));
    EXPECT_EQ(look(due + AlarmBook::Lateness + 1), text("missed:450"));
    EXPECT_EQ(next(), due + Day);
}

TEST_F(AlarmBookTest, AMissedOneForOnceIsOff)
{
    book.put(alarm("07:30", Monday, {}));
    EXPECT_EQ(look(Monday + Day), text("missed:450"));
    EXPECT_FALSE(book.alarms().first().enabled);
}

TEST_F(AlarmBookTest, EachMorningOfALongPauseIsTold)
{
    book.put(alarm("07:30", Monday));
    EXPECT_EQ(look(Monday + 2 * Day + 451 * Minute), text("1@3330 missed:450,1890"));
}

TEST_F(AlarmBookTest, OfAPauseOfYearsTheLastTwoWeeksAreTold)
{
    book.put(alarm("07:30", Monday));
    look(Monday + 4000 * Day);
    // The first one of all, and then one a day.
    EXPECT_EQ(book.missed().size(), 15);
    EXPECT_EQ(book.missed().first().at, Monday + 450 * Minute);
    EXPECT_EQ(book.missed().last().at, Monday + 3999 * Day + 450 * Minute);
    EXPECT_EQ(next(), Monday + 4000 * Day + 450 * Minute);
}

TEST_F(AlarmBookTest, NoMoreThanTheLatestAreToldAsMissed)
{
    for (int i = 1; i <= AlarmBook::MaxAlarms + 1; ++i) {
        Alarm one = alarm("07:30", Monday);
        one.id = QString::number(i);
        book.put(one);
    }
    EXPECT_EQ(book.alarms().size(), AlarmBook::MaxAlarms);
    look(Monday + 5 * Day);
    EXPECT_EQ(book.missed().size(), AlarmBook::MaxMissed);
    EXPECT_EQ(book.missed().last().at, Monday + 4 * Day + 450 * Minute);
}

TEST_F(AlarmBookTest, ClockSetForwardOverATimeALittleLetsItRing)
{
    book.put(alarm("07:30", Monday));
    EXPECT_EQ(look(Monday + 440 * Minute), QString());
    EXPECT_EQ(look(Monday + 460 * Minute), text("1@450"));
}

TEST_F(AlarmBookTest, ClockSetForwardAndBackTakesBackWhatWasMissed)
{
    book.put(alarm("07:30", Monday));
    EXPECT_EQ(look(Monday + 600 * Minute), text("missed:450"));
    EXPECT_EQ(look(Monday + 420 * Minute), text("missed:"));
    EXPECT_EQ(next(), Monday + 450 * Minute);
    EXPECT_EQ(look(Monday + 450 * Minute), text("1@450"));
}

TEST_F(AlarmBookTest, ThatHoldsForOneForOnceToo)
{
    book.put(alarm("07:30", Monday, {}));
    EXPECT_EQ(look(Monday + 600 * Minute), text("missed:450"));
    EXPECT_EQ(look(Monday + 420 * Minute), text("missed:"));
    EXPECT_EQ(look(Monday + 450 * Minute), text("1@450"));
    EXPECT_FALSE(book.alarms().first().enabled);
}

TEST_F(AlarmBookTest, AMissedOneThatTheListenerSwitchedOffStaysOff)
{
    book.put(alarm("07:30", Monday, {}));
    EXPECT_EQ(look(Monday + 600 * Minute), text("missed:450"));
    Alarm off = book.alarms().first();
    off.accounted = Monday + 601 * Minute;
    book.put(off);
    look(Monday + 420 * Minute);
    EXPECT_EQ(look(Monday + 450 * Minute), QString());
}

TEST_F(AlarmBookTest, ClockSetBackDoesNotLetItRingTwice)
{
    book.put(alarm("07:30", Monday));
    EXPECT_EQ(look(Monday + 450 * Minute), text("1@450"));
    EXPECT_EQ(look(Monday + 420 * Minute), QString());
    EXPECT_EQ(next(), Monday + Day + 450 * Minute);
    EXPECT_EQ(look(Monday + 450 * Minute), QString());
    // Nor after it was set back once more.
    EXPECT_EQ(look(Monday + 400 * Minute), QString());
    EXPECT_EQ(look(Monday + 455 * Minute), QString());
    EXPECT_EQ(look(Monday + Day + 450 * Minute), text("1@1890"));
}

TEST_F(AlarmBookTest, AClockThatWasDaysAheadDoesNotSilenceTheDays)
{
    book.put(alarm("07:30", Monday));
    // It rings by a clock that is ten years ahead, and is then set right.
    const Moment wrong = Monday + 3650 * Day + 450 * Minute;
    EXPECT_FALSE(look(wrong).isEmpty());
    look(Monday + 300 * Minute);
    EXPECT_TRUE(book.missed().isEmpty());
    EXPECT_EQ(look(Monday + 450 * Minute), text("1@450"));
    // One day ahead.
    EXPECT_EQ(look(Monday + Day + 450 * Minute), text("1@1890"));
    EXPECT_EQ(look(Monday + 451 * Minute), QString());
    EXPECT_EQ(look(Monday + Day + 450 * Minute), text("1@1890"));
}

TEST_F(AlarmBookTest, InAnotherZoneItRingsByTheClocksThere)
{
    book.put(alarm("07:30", Monday));
    EXPECT_EQ(look(Monday + 450 * Minute), text("1@450"));
    EXPECT_EQ(next(newYork), Monday + (450 + 300) * Minute);
    EXPECT_EQ(look(Monday + 750 * Minute, newYork), text("1@750"));
}

TEST_F(AlarmBookTest, ATimeThatTheNewZoneHasBehindItIsTold)
{
    book.put(alarm("07:30", Monday));
    // 10:00 in UTC and 19:00 in Tokyo, where 16:30 was at 07:30 in UTC.
    book.put(alarm("16:30", Monday + 6 * Hour));
    EXPECT_EQ(look(Monday + 10 * Hour, tokyo), text("missed:450"));
    EXPECT_EQ(next(tokyo), Monday + Day + 450 * Minute);
}

TEST_F(AlarmBookTest, AfterARestartWhileItRangItRingsOnOrIsNotTold)
{
    Alarm ringing = alarm("07:30", Monday + 449 * Minute);
    ringing.rung = Monday + 450 * Minute;
    book.put(ringing);
    EXPECT_EQ(look(Monday + 455 * Minute), text("1@450"));
    book = {};
    book.put(ringing);
    EXPECT_EQ(look(Monday + 500 * Minute), QString());
    EXPECT_EQ(next(), Monday + Day + 450 * Minute);
}

TEST_F(AlarmBookTest, SeveralAreDueInTheOrderOfTheirTimes)
{
    Alarm late = alarm("07:31", Monday);
    Alarm early = alarm("07:30", Monday);
    early.id = text("2");
    book.put(early);
    book.put(late);
    EXPECT_EQ(look(Monday + 455 * Minute), text("2@450 1@451"));
}

TEST_F(AlarmBookTest, NumbersAreInOrder)
{
    for (const char *id : {"10", "9", "100"}) {
        Alarm one = alarm("07:30", Monday);
        one.id = text(id);
        book.put(one);
    }
    QStringList ids;
    for (const Alarm &one : book.alarms())
        ids.append(one.id);
    EXPECT_EQ(ids.join(QLatin1Char(' ')), text("9 10 100"));
    book.remove(text("10"));
    EXPECT_EQ(book.find(text("10")), nullptr);
    ASSERT_NE(book.find(text("100")), nullptr);
}

TEST_F(AlarmBookTest, OverSummerTimeEachDayHasOne)
{
    const QTimeZone berlin("Europe/Berlin");
    const UtcOffset offset = [berlin](Moment moment) {
        return berlin.offsetFromUtc(QDateTime::fromSecsSinceEpoch(moment).toUTC());
    };
    // Five days around the last Sundays of March and of October.
    for (const Moment start : {Moment(1774612800), Moment(1792756800)}) {
        for (const char *time : {"02:00", "02:30", "03:00"}) {
            book = {};
            book.put(alarm(time, start));
            int rings = 0;
            for (Moment now = start; now < start + 5 * Day; now += 5 * Minute)
                rings += book.advance(now, offset).due.size();
            EXPECT_EQ(rings, 5) << time;
            EXPECT_TRUE(book.missed().isEmpty()) << time;
        }
    }
}

} // namespace
