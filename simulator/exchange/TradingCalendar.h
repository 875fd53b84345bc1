#pragma once

#include <QDateTime>

/// The exchange's calendar: it trades on weekdays from 09:30 to 11:30 and from 13:00 to 15:00. Trading days and minutes
/// are numbered, so that every function costs the same for any range of dates.
namespace sim::calendar {

constexpr int kMinutesPerDay = 240;
constexpr int kSecondsPerDay = kMinutesPerDay * 60;

/// The number of trading days before the date, counted from a fixed day in the far past.
qint64 tradingDaysBefore(const QDate &date);

/// The date of trading day n, which has n trading days before it.
QDate dateOf(qint64 tradingDay);

/// When minute n of all trading ends. Minute n belongs to trading day n / kMinutesPerDay.
QDateTime endOfMinute(qint64 minute);

/// When trading day n closes.
QDateTime endOfDay(qint64 tradingDay);

/// How many seconds of trading have passed at that time.
qint64 secondsTradedBy(const QDateTime &time);

/// How many minutes of trading have ended at that time or at its second.
qint64 minutesEndedBy(const QDateTime &time);

/// How many trading days have closed at that time or at its second.
qint64 daysEndedBy(const QDateTime &time);

} // namespace sim::calendar
