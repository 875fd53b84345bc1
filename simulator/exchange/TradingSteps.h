#pragma once

#include "exchange/TradingCalendar.h"

namespace sim {

/// What the exchange does at a step.
enum class Phase {
    DayBegins,    ///< 09:00: the day's limits hold, nothing is traded yet
    OpeningCall,  ///< 09:15 to 09:25: orders are collected for the opening
    OpeningMatch, ///< 09:25: the collected orders trade at one price, the day's open
    Continuous,   ///< 09:30 to 11:30 and 13:00 to 15:00
    AfterHours,   ///< 15:05 to 15:30: trading at the closing price, where a security has it
    Settlement,   ///< 16:00: the broker closes its books for the day
};

/// The steps in which the market moves: every three seconds while it is open, and one each at the beginning of the day
/// and at the settlement. Steps are numbered, and all securities share them.
namespace steps {

constexpr int kSeconds = 3;
constexpr int kPerMinute = 60 / kSeconds;
constexpr int kContinuous = kPerMinute * TradingCalendar::kMinutesPerDay; ///< of a day

/// Where a step lies in its day.
struct Moment {
    explicit Moment(qint64 step);

    qint64 day;
    Phase phase;
    int ofPhase;    ///< from 1; the two parts of the continuous trading count as one
    int continuous; ///< steps of continuous trading that the day has had by then

    /// The minute of all trading in which the last price was made. At the opening match the first of the day.
    qint64 minute() const;
    int stepsOfMinute() const; ///< 0 at the opening match

    /// The number of the step among those of continuous trading alone.
    qint64 continuousNumber() const { return day * kContinuous + continuous; }
};

/// The latest step at or before that time.
qint64 at(const TradingCalendar &calendar, const QDateTime &time);
QDateTime timeOf(const TradingCalendar &calendar, qint64 step);

qint64 first(qint64 day, Phase phase); ///< of that phase
qint64 last(qint64 day, Phase phase);
qint64 ofMinute(qint64 minute); ///< the first one of a minute of all trading

/// The next step at which the books change whatever trades: the beginning of a day or a settlement.
qint64 nextOfBooks(qint64 step);

/// The latest step at or before that one at which quotes change: after the close they do not.
qint64 ofQuote(qint64 step);

} // namespace steps

} // namespace sim
