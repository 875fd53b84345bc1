#pragma once

#include "exchange/Clock.h"
#include "exchange/MarketRules.h"
#include "exchange/PricePath.h"
#include "exchange/Quote.h"

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
/// sums that it remembers. The clock that it is given is its only source of time.
class Exchange {
public:
    /// The most candles in one answer: the latest of the range.
    static constexpr int kMaxCandles = 2000;

    /// start: on the trading day before it every security closed at Instrument::price. The clock must outlive the
    /// exchange.
    Exchange(const QVector<Instrument> &instruments, quint64 seed, const QDate &start, const Clock &clock,
             const MarketRules &rules = {});
    ~Exchange();

    const MarketRules &rules() const { return m_rules; }

    const QVector<Instrument> &instruments() const { return m_instruments; }

    /// Null when it is not listed.
    const Instrument *instrument(const QString &symbol) const;
    const Instrument *instrumentOf(const QString &securityId, const QString &exchange) const;

    /// The quote now, or at the given time; nothing for an unknown symbol and before the first trading day. A day's
    /// quote stays until the first step of the next trading day. It changes every three seconds of trading and agrees
    /// with the candles: at the end of a minute it is the sum of the day's candles.
    std::optional<Quote> quote(const QString &symbol) const;
    std::optional<Quote> quote(const QString &symbol, const QDateTime &time) const;

    // Quotes change in steps of three seconds of trading. Steps are numbered, and all securities share them.

    /// The latest step at or before that time.
    static qint64 stepAt(const QDateTime &time);
    static QDateTime timeOfStep(qint64 step);
    static bool isClose(qint64 step); ///< the last one of a trading day

    /// The last price of the step's quote, computed without the rest of the quote.
    std::optional<double> lastPrice(const QString &symbol, qint64 step) const;

    /// What trades at that step, with the levels of its quote. At a step's price some of its volume trades on the side
    /// of the best level with that price.
    std::optional<StepTrades> trades(const QString &symbol, qint64 step) const;

    /// The price limits of the step's trading day, those that its quotes show. None for an unknown symbol.
    PriceLimits limits(const QString &symbol, qint64 step) const;

    /// The finished candles that end between start and stop, both included, oldest first. An invalid stop means now, an
    /// invalid start means the first trading day. Empty for an unknown symbol. The candle of a day is the sum of the
    /// candles of its 240 minutes.
    QVector<Candle> candles(const QString &symbol, const QDateTime &start, const QDateTime &stop,
                            CandlePeriod period) const;

private:
    struct Listed {
        int index; ///< in m_instruments
        PricePath path;
    };
    struct Ticks;  ///< a candle whose prices are in ticks
    struct Moment; ///< the day and the minute of a step
    struct DaySoFar;

    Ticks minuteTicks(const Listed &listed, qint64 minute, qint64 open) const;
    qint64 closeTicks(const Listed &listed, qint64 day) const;
    qint64 openTicks(const Listed &listed, qint64 minute) const;
    Ticks dayTicks(const Listed &listed, qint64 tradingDay) const;

    /// The sum of the day's steps up to that one. Costs the minutes since the last call for the security, not those of
    /// the day.
    Ticks dayTicksAt(const Listed &listed, const Moment &moment) const;

    bool isTraded(const Listed &listed, const Moment &moment) const;
    PriceLimits limitsOf(const Listed &listed, qint64 day) const;

    /// Aggregates the first `steps` steps of a minute; `whole` is its finished candle.
    Ticks beginOf(const Listed &listed, qint64 minute, const Ticks &whole, int steps) const;

    /// Adds five price levels on each side of the last price.
    template <typename Levels>
    void addDepth(const Listed &listed, qint64 step, qint64 last, const PriceLimits &limits, Levels &levels) const;

    const QVector<Instrument> m_instruments;
    const MarketRules m_rules;
    const Clock &m_clock;
    const std::unique_ptr<DaySoFar[]> m_daysSoFar; ///< one for each instrument
    QHash<QString, Listed> m_bySymbol;
    QHash<QPair<QString, QString>, int> m_bySecurityId; ///< with the exchange; indices in m_instruments
};

} // namespace sim
