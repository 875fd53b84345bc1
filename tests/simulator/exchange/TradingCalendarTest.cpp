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
    return TradingCalendar().tradingDaysBefore(at(text).date());
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
        const QDate date = TradingCalendar().dateOf(number);
        EXPECT_LE(date.dayOfWeek(), 5);
        EXPECT_EQ(number, TradingCalendar().tradingDaysBefore(date));
    }
}

TEST(TradingCalendar, MinutesEndWithinTheSessions)
{
    const qint64 first = day("2025-03-03 00:00:00") * TradingCalendar::kMinutesPerDay;
    EXPECT_EQ(at("2025-03-03 09:31:00"), TradingCalendar().endOfMinute(first));
    EXPECT_EQ(at("2025-03-03 11:30:00"), TradingCalendar().endOfMinute(first + 119));
    EXPECT_EQ(at("2025-03-03 13:01:00"), TradingCalendar().endOfMinute(first + 120));
    EXPECT_EQ(at("2025-03-03 15:00:00"), TradingCalendar().endOfMinute(first + 239));
    EXPECT_EQ(at("2025-03-04 09:31:00"), TradingCalendar().endOfMinute(first + 240));
}

TEST(TradingCalendar, AMinuteHasEndedAtItsLastSecond)
{
    const qint64 before = TradingCalendar().minutesEndedBy(at("2025-03-03 09:30:59"));
    EXPECT_EQ(before, TradingCalendar().minutesEndedBy(at("2025-02-28 15:00:00"))); // nothing since Friday's close
    EXPECT_EQ(before + 1, TradingCalendar().minutesEndedBy(at("2025-03-03 09:31:00")));
    EXPECT_EQ(before + 120, TradingCalendar().minutesEndedBy(at("2025-03-03 12:34:56")));
    EXPECT_EQ(before + 240, TradingCalendar().minutesEndedBy(at("2025-03-03 15:00:00")));
    EXPECT_EQ(before + 240, TradingCalendar().minutesEndedBy(at("2025-03-03 23:59:59")));
}

TEST(TradingCalendar, ADayHasEndedAtItsClose)
{
    const qint64 monday = day("2025-03-03 00:00:00");
    EXPECT_EQ(monday, TradingCalendar().daysEndedBy(at("2025-03-03 14:59:59")));
    EXPECT_EQ(monday + 1, TradingCalendar().daysEndedBy(at("2025-03-03 15:00:00")));
    EXPECT_EQ(at("2025-03-03 15:00:00"), TradingCalendar().endOfDay(monday));
}

TEST(TradingCalendar, DoesNotTradeOnHolidays)
{
    const TradingCalendar calendar({QDate(2025, 5, 1), QDate(2025, 5, 2), QDate(2025, 5, 3), QDate(2025, 5, 5),
                                    QDate(2025, 1, 1), QDate(2025, 5, 1)}); // a Saturday among them, and one twice
    const TradingCalendar usual;
    EXPECT_TRUE(calendar.trades(QDate(2025, 4, 30)));
    EXPECT_FALSE(calendar.trades(QDate(2025, 5, 1)));
    EXPECT_FALSE(calendar.trades(QDate(2025, 5, 4)));
    EXPECT_FALSE(calendar.trades(QDate(2025, 5, 5)));
    EXPECT_EQ(1, calendar.tradingDaysBefore(QDate(2025, 5, 6)) - calendar.tradingDaysBefore(QDate(2025, 4, 30)));
    EXPECT_EQ(usual.tradingDaysBefore(QDate(2025, 1, 1)), calendar.tradingDaysBefore(QDate(2025, 1, 1)));
    EXPECT_EQ(usual.tradingDaysBefore(QDate(2026, 1, 1)) - 4, calendar.tradingDaysBefore(QDate(2026, 1, 1)));
    EXPECT_EQ(calendar.daysEndedBy(at("2025-04-30 15:00:00")), calendar.daysEndedBy(at("2025-05-05 18:00:00")));
}

TEST(TradingCalendar, HolidaysKeepDatesAndDayNumbersInverse)
{
    QVector<QDate> holidays;
    for (int i = 0; i < 60; ++i)
        holidays.append(QDate(2025, 1, 1).addDays(i * i % 700)); // some of them in a row
    const TradingCalendar calendar(holidays);
    qint64 number = calendar.tradingDaysBefore(QDate(2024, 12, 1));
    for (QDate date(2024, 12, 1); date < QDate(2027, 2, 1); date = date.addDays(1)) {
        EXPECT_EQ(number, calendar.tradingDaysBefore(date));
        const bool trades = date.dayOfWeek() <= 5 && !holidays.contains(date);
        EXPECT_EQ(trades, calendar.trades(date));
        if (trades) {
            EXPECT_EQ(date, calendar.dateOf(number));
            ++number;
        }
    }
}
