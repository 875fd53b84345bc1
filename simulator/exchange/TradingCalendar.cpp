#include "exchange/TradingCalendar.h"

#include <QtGlobal>

namespace sim::calendar {

namespace {

constexpr int kHalfDay = kMinutesPerDay / 2;
constexpr int kMorningOpen = 9 * 60 + 30; // minutes after midnight
constexpr int kAfternoonOpen = 13 * 60;
constexpr int kDaysPerWeek = 7;
constexpr int kTradingDaysPerWeek = 5;

/// Seconds of trading that have passed at that time of a trading day.
int tradedToday(const QTime &time)
{
    const auto since = [&](int openingMinute) {
        return qBound(0, time.msecsSinceStartOfDay() / 1000 - openingMinute * 60, kHalfDay * 60);
    };
    return since(kMorningOpen) + since(kAfternoonOpen);
}

bool trades(const QDate &date)
{
    return date.dayOfWeek() <= kTradingDaysPerWeek;
}

} // namespace

qint64 tradingDaysBefore(const QDate &date)
{
    const qint64 day = date.toJulianDay(); // day 0 was a Monday
    const qint64 week = day / kDaysPerWeek;
    return week * kTradingDaysPerWeek + qMin<qint64>(day % kDaysPerWeek, kTradingDaysPerWeek);
}

QDate dateOf(qint64 tradingDay)
{
    const qint64 week = tradingDay / kTradingDaysPerWeek;
    return QDate::fromJulianDay(week * kDaysPerWeek + tradingDay % kTradingDaysPerWeek);
}

QDateTime endOfMinute(qint64 minute)
{
    const int ended = int(minute % kMinutesPerDay) + 1;
    const int ofDay = ended <= kHalfDay ? kMorningOpen + ended : kAfternoonOpen + ended - kHalfDay;
    return QDateTime(dateOf(minute / kMinutesPerDay), QTime(ofDay / 60, ofDay % 60), Qt::UTC);
}

QDateTime endOfDay(qint64 tradingDay)
{
    return endOfMinute(tradingDay * kMinutesPerDay + kMinutesPerDay - 1);
}

qint64 secondsTradedBy(const QDateTime &time)
{
    const int today = trades(time.date()) ? tradedToday(time.time()) : 0;
    return tradingDaysBefore(time.date()) * kSecondsPerDay + today;
}

qint64 minutesEndedBy(const QDateTime &time)
{
    return secondsTradedBy(time) / 60;
}

qint64 daysEndedBy(const QDateTime &time)
{
    return minutesEndedBy(time) / kMinutesPerDay;
}

} // namespace sim::calendar
