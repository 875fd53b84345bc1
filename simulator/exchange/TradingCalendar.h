#pragma once

#include <QDateTime>
#include <QVector>

#include <vector>

namespace sim {

/// The days and the minutes on which the exchange trades: weekdays other than holidays, from 09:30 to 11:30 and from
/// 13:00 to 15:00. Trading days and minutes are numbered, so that every function costs the same for any range of dates.
/// A plain value; without holidays by default.
class TradingCalendar {
public:
    static constexpr int kMinutesPerDay = 240;

    TradingCalendar() = default;

    /// In any order. Those at weekends change nothing.
    explicit TradingCalendar(const QVector<QDate> &holidays);

    bool trades(const QDate &date) const;

    /// The number of trading days before the date, counted from a fixed day in the far past.
    qint64 tradingDaysBefore(const QDate &date) const;

    /// The date of trading day n, which has n trading days before it.
    QDate dateOf(qint64 tradingDay) const;

    /// When minute n of all trading ends. Minute n belongs to trading day n / kMinutesPerDay.
    QDateTime endOfMinute(qint64 minute) const;

    /// When trading day n closes.
    QDateTime endOfDay(qint64 tradingDay) const;

    /// How many minutes of trading have ended at that time or at its second.
    qint64 minutesEndedBy(const QDateTime &time) const;

    /// How many trading days have closed at that time or at its second.
    qint64 daysEndedBy(const QDateTime &time) const;

private:
    std::vector<qint64> m_holidays; ///< as numbers of weekdays, sorted, each once
};

} // namespace sim
