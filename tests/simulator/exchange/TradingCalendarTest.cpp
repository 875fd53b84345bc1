#include "exchange/TradingCalendar.h"

#include <gtest/gtest.h>

using namespace sim;

namespace {

QDateTime at(const char *text)
{
    QDateTime time = QDateTime::fromString(QLatin1String(text), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    time.setTimeSpec(Qt::UTC);
    return time;
}

qint64 day(const char *text)
{
    return calendar::tradingDaysBefore(at(text).date());
}

} // namespace

TEST(TradingCalendar, CountsWeekdaysOnly)
{
    EXPECT_EQ(1, day("2025-03-04 00:00:00") - day("2025-03-03 00:00:00")); // Monday to Tuesday
    EXPECT_EQ(1, day("2025-03-10 00:00:00") - day("2025-03-07 00:00:00")); // Friday to Monday
    EXPECT_EQ(day("2025-03-10 00:00:00"), day("2025-03-08 00:00:00"));     // on Saturday the Friday is over
    EXPECT_EQ(day("2025-03-10 00:00:00"), day("2025-03-09 00:00:00"));
    EXPECT_EQ(5, day("2025-03-10 00:00:00") - day("2025-03-03 00:00:00"));
}

TEST(TradingCalendar, DatesAndDayNumbersAreInverse)
{
    const qint64 first = day("1999-12-27 00:00:00");
    for (qint64 number = first; number < first + 800; ++number) {
        const QDate date = calendar::dateOf(number);
        EXPECT_LE(date.dayOfWeek(), 5);
        EXPECT_EQ(number, calendar::tradingDaysBefore(date));
    }
}

TEST(TradingCalendar, MinutesEndWithinTheSessions)
{
    const qint64 first = day("2025-03-03 00:00:00") * calendar::kMinutesPerDay;
    EXPECT_EQ(at("2025-03-03 09:31:00"), calendar::endOfMinute(first));
    EXPECT_EQ(at("2025-03-03 11:30:00"), calendar::endOfMinute(first + 119));
    EXPECT_EQ(at("2025-03-03 13:01:00"), calendar::endOfMinute(first + 120));
    EXPECT_EQ(at("2025-03-03 15:00:00"), calendar::endOfMinute(first + 239));
    EXPECT_EQ(at("2025-03-04 09:31:00"), calendar::endOfMinute(first + 240));
}

TEST(TradingCalendar, AMinuteHasEndedAtItsLastSecond)
{
    const qint64 before = calendar::minutesEndedBy(at("2025-03-03 09:30:59"));
    EXPECT_EQ(before, calendar::minutesEndedBy(at("2025-02-28 15:00:00"))); // nothing since Friday's close
    EXPECT_EQ(before + 1, calendar::minutesEndedBy(at("2025-03-03 09:31:00")));
    EXPECT_EQ(before + 120, calendar::minutesEndedBy(at("2025-03-03 12:34:56")));
    EXPECT_EQ(before + 240, calendar::minutesEndedBy(at("2025-03-03 15:00:00")));
    EXPECT_EQ(before + 240, calendar::minutesEndedBy(at("2025-03-03 23:59:59")));
}

TEST(TradingCalendar, ADayHasEndedAtItsClose)
{
    const qint64 monday = day("2025-03-03 00:00:00");
    EXPECT_EQ(monday, calendar::daysEndedBy(at("2025-03-03 14:59:59")));
    EXPECT_EQ(monday + 1, calendar::daysEndedBy(at("2025-03-03 15:00:00")));
    EXPECT_EQ(at("2025-03-03 15:00:00"), calendar::endOfDay(monday));
}
