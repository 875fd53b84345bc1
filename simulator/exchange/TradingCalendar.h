#pragma once

#include <QDateTime>

/// The exchange's calendar: it trades on weekdays from 09:30 to 11:30 and from 13:00 to 15:00. Everything is
/// arithmetic on running numbers, so that no range of dates, however long, costs more than another.
namespace sim::calendar {

constexpr int kMinutesPerDay = 240;
constexpr int kSecondsPerDay = kMinutesPerDay * 60;

/// The number of trading days before the date, counted from a fixed day in the far past.
qint64 tradingDaysBefore(const QDate &date);

/// The date of trading day n: the one with n trading days before it.
QDate dateOf(qint64 tradingDay);

/// When minute n of all trading ends. Minute n belongs to trading day n / kMinutesPerDay.
QDateTime endOfMinute(qint64 minute);

/// When trading day n closes.
QDateTime endOfDay(qint64 tradingDay);

/// How many seconds of trading have passed at that time.
qint64 secondsTradedBy(const QDateTime &time);

/// How many minutes of trading have ended at that time, its very second included.
qint64 minutesEndedBy(const QDateTime &time);

/// How many trading days have closed at that time, its very second included.
qint64 daysEndedBy(const QDateTime &time);

} // namespace sim::calendar
