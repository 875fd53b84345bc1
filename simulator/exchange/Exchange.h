#pragma once

#include "exchange/Clock.h"
#include "exchange/Halts.h"
#include "exchange/MarketRules.h"
#include "exchange/MinuteTicks.h"
#include "exchange/PricePath.h"
#include "exchange/Quote.h"
#include "exchange/TradingSteps.h"

#include <QHash>
#include <QVector>

#include <memory>
#include <optional>

namespace sim {

/// One finished candle.
struct Candle {
    QDateTime end;
    double open = 0;
    double high = 0;
    double low = 0;
    double close = 0;
    qint64 volume = 0; ///< shares or contracts
    double amount = 0; ///< money
};

enum class CandlePeriod { Minute, Day };

/// The market: its instruments, rules, quotes and candles.
/// Made once for a scenario. All threads may use it at the same time: after construction it is constant, apart from
/// halts and from sums that it remembers. The clock that it is given is its only source of time.
class Exchange {
public:
    /// The most candles in one answer: the latest of the range.
    static constexpr int kMaxCandles = 2000;

    /// start: on the trading day before it every security closed at Instrument::price. The clock must outlive the
    /// exchange.
    Exchange(const QVector<Instrument> &instruments, quint64 seed, const QDate &start, const Clock &clock,
             const MarketRules &rules = {}, const QVector<Halt> &halts = {});
    ~Exchange();

    const MarketRules &rules() const { return m_rules; }
    const TradingCalendar &calendar() const { return m_rules.calendar; }

    const QVector<Instrument> &instruments() const { return m_instruments; }

    /// Null when it is not listed.
    const Instrument *instrument(const QString &symbol) const;
    const Instrument *instrumentOf(const QString &securityId, const QString &exchange) const;

    /// The quote now, or at the given time; nothing for an unknown symbol and before the first trading day. It changes
    /// at every step up to the close and agrees with the candles: at the end of a minute it is the sum of the day's
    /// candles. From the beginning of a day to its opening nothing has been traded: the last price is the previous
    /// close, and open, high and low are 0.
    std::optional<Quote> quote(const QString &symbol) const;
    std::optional<Quote> quote(const QString &symbol, const QDateTime &time) const;

    // Steps (see TradingSteps.h)

    /// The latest step at or before that time.
    qint64 stepAt(const QDateTime &time) const { return steps::at(calendar(), time); }
    QDateTime timeOfStep(qint64 step) const { return steps::timeOf(calendar(), step); }
    static Phase phase(qint64 step) { return steps::Moment(step).phase; }

    /// The last price of the step's quote, computed without the rest of the quote.
    std::optional<double> lastPrice(const QString &symbol, qint64 step) const;

    /// What trades at that step, with the levels of its quote while the trading is continuous. Nothing when the
    /// security is not traded then, also while it is halted. All opening matches and trades after hours have one price,
    /// the last.
    std::optional<StepTrades> trades(const QString &symbol, qint64 step) const;

    /// The price limits of orders that are entered at that step: of the step's trading day, and from the end of the
    /// trading after hours on of the next. None for an unknown symbol.
    PriceLimits limits(const QString &symbol, qint64 step) const;

    // Halts. A halted security is not traded, and its quote stays as it was. Afterwards its price may be another.

    bool isHalted(const QString &symbol, qint64 step) const;

    /// Halts the security from the first step after `from`, but not before now, until the whole minute at or after
    /// `until`, without which the halt does not end. Opening matches and the trading after hours take place if the
    /// security trades then. An unknown symbol is ignored.
    void halt(const QString &symbol, const QDateTime &from, const QDateTime &until = {});

    /// Ends a halt at the next whole minute.
    void resume(const QString &symbol, const QDateTime &at);

    /// The finished candles that end between start and stop, both included, oldest first. An invalid stop means now, an
    /// invalid start means the first trading day. Empty for an unknown symbol. The candle of a day is the sum of the
    /// candles of its 240 minutes.
    QVector<Candle> candles(const QString &symbol, const QDateTime &start, const QDateTime &stop,
                            CandlePeriod period) const;

private:
    struct Listed {
        int index; ///< in m_instruments
        PricePath path;
        qint64 firstDay;
    };
    struct DaySoFar;

    // Prices in ticks
    qint64 pathAt(const Listed &listed, qint64 minute) const; ///< at the beginning of that minute, without halts
    qint64 pathClose(const Listed &listed, qint64 day) const;
    qint64 priceAt(const Listed &listed, qint64 minute, bool atEnd) const;
    qint64 closeOf(const Listed &listed, qint64 day) const;
    qint64 lastAt(const Listed &listed, qint64 step) const;

    /// How many steps of the minute the security trades: 0 when only the opening match, nothing when not even that.
    std::optional<int> stepsTraded(const Listed &listed, qint64 minute) const;

    /// The first `steps` steps of a minute, less what is halted. before: the minutes of its day before it, which save
    /// some work.
    Ticks minuteTicks(const Listed &listed, qint64 minute, int steps = steps::kPerMinute,
                      const Ticks *before = nullptr) const;
    Ticks dayTicks(const Listed &listed, qint64 day) const;

    /// The sum of the day's steps up to that one. Costs the minutes since the last call for the security, not those of
    /// the day.
    Ticks dayTicksAt(const Listed &listed, const steps::Moment &moment) const;

    PriceLimits limitsOf(const Listed &listed, qint64 day) const;
    qint64 firstStepAfter(const QDateTime &time) const;
    void addHalt(const Listed &listed, qint64 first, const QDateTime &until);
    const Listed *find(const QString &symbol, qint64 step) const; ///< null when it is not listed by then

    const QVector<Instrument> m_instruments;
    const MarketRules m_rules;
    const Clock &m_clock;
    Halts m_halts;
    const std::unique_ptr<DaySoFar[]> m_daysSoFar; ///< one for each instrument
    QHash<QString, Listed> m_bySymbol;
    QHash<QPair<QString, QString>, int> m_bySecurityId; ///< with the exchange; indices in m_instruments
};

} // namespace sim
