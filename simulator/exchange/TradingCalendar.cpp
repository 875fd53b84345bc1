#include "exchange/TradingCalendar.h"

#include <algorithm>

namespace sim {

namespace {

constexpr int kHalfDay = TradingCalendar::kMinutesPerDay / 2;
constexpr int kMorningOpen = 9 * 60 + 30; // minutes after midnight
constexpr int kAfternoonOpen = 13 * 60;
constexpr int kDaysPerWeek = 7;
constexpr int kWeekdays = 5;

/// Minutes of trading that have ended at that time of a trading day.
int minutesToday(const QTime &time)
{
    const auto since = [&](int openingMinute) {
        return qBound(0, time.msecsSinceStartOfDay() / 60000 - openingMinute, kHalfDay);
    };
    return since(kMorningOpen) + since(kAfternoonOpen);
}

bool isWeekday(const QDate &date)
{
    return date.dayOfWeek() <= kWeekdays;
}

/// The number of weekdays before the date.
qint64 weekdaysBefore(const QDate &date)
{
    const qint64 day = date.toJulianDay(); // day 0 was a Monday
    return day / kDaysPerWeek * kWeekdays + qMin<qint64>(day % kDaysPerWeek, kWeekdays);
}

QDate dateOfWeekday(qint64 number)
{
    return QDate::fromJulianDay(number / kWeekdays * kDaysPerWeek + number % kWeekdays);
}

} // namespace

TradingCalendar::TradingCalendar(const QVector<QDate> &holidays)
{
    for (const QDate &date : holidays) {
        if (isWeekday(date))
            m_holidays.push_back(weekdaysBefore(date));
    }
    std::sort(m_holidays.begin(), m_holidays.end());
    m_holidays.erase(std::unique(m_holidays.begin(), m_holidays.end()), m_holidays.end());
}

bool TradingCalendar::trades(const QDate &date) const
{
    return isWeekday(date) && !std::binary_search(m_holidays.begin(), m_holidays.end(), weekdaysBefore(date));
}

qint64 TradingCalendar::tradingDaysBefore(const QDate &date) const
{
    const qint64 weekdays = weekdaysBefore(date);
    return weekdays - (std::lower_bound(m_holidays.begin(), m_holidays.end(), weekdays) - m_holidays.begin());
}

QDate TradingCalendar::dateOf(qint64 tradingDay) const
{
    // Before holiday i there are m_holidays[i] - i trading days, a number that never falls with i.
    size_t before = 0;
    for (size_t left = m_holidays.size(); left > 0;) {
        const size_t half = left / 2;
        const bool isBefore = m_holidays[before + half] - qint64(before + half) <= tradingDay;
        before += isBefore ? half + 1 : 0;
        left = isBefore ? left - half - 1 : half;
    }
    return dateOfWeekday(tradingDay + qint64(before));
}

QDateTime TradingCalendar::endOfMinute(qint64 minute) const
{
    const int ended = int(minute % kMinutesPerDay) + 1;
    const int ofDay = ended <= kHalfDay ? kMorningOpen + ended : kAfternoonOpen + ended - kHalfDay;
    return QDateTime(dateOf(minute / kMinutesPerDay), QTime(ofDay / 60, ofDay % 60), Qt::UTC);
}

QDateTime TradingCalendar::endOfDay(qint64 tradingDay) const
{
    return endOfMinute(tradingDay * kMinutesPerDay + kMinutesPerDay - 1);
}

qint64 TradingCalendar::minutesEndedBy(const QDateTime &time) const
{
    const int today = trades(time.date()) ? minutesToday(time.time()) : 0;
    return tradingDaysBefore(time.date()) * kMinutesPerDay + today;
}

qint64 TradingCalendar::daysEndedBy(const QDateTime &time) const
{
    return minutesEndedBy(time) / kMinutesPerDay;
}

} // namespace sim
