#pragma once

#include "exchange/Clock.h"
#include "exchange/Instrument.h"
#include "exchange/PricePath.h"
#include "exchange/Quote.h"

#include <QHash>
#include <QVector>

#include <optional>

namespace sim {

/// One finished candle. It belongs to the moment at which it ends.
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

/// The market: what is listed and how it has traded.
/// Made once for a scenario; constant after construction and so safe to use from any thread at once. It takes the
/// time from the clock that it is given and from nowhere else.
class Exchange {
public:
    /// Longest answer to one request: the latest so many of the range.
    static constexpr int kMaxCandles = 2000;

    /// start: the day before which every security closed at its scenario price.
    Exchange(const QVector<Instrument> &instruments, quint64 seed, const QDate &start, const Clock &clock);

    const QVector<Instrument> &instruments() const { return m_instruments; }

    /// Null when it is not listed.
    const Instrument *instrument(const QString &symbol) const;
    const Instrument *instrumentOf(const QString &securityId, const QString &exchange) const;

    /// How the security stands now, or stood at that time. From a day's opening until the next trading day's it is
    /// that day's quote; it changes every three seconds of trading, and never contradicts a candle: after a candle's
    /// last second the quote has gone through exactly that candle.
    std::optional<Quote> quote(const QString &symbol) const;
    std::optional<Quote> quote(const QString &symbol, const QDateTime &time) const;

    // The changes of the quotes are numbered steps of all trading, the same ones for every security.

    /// The latest step at that time, its very second included.
    static qint64 stepAt(const QDateTime &time);
    static QDateTime timeOfStep(qint64 step);
    static bool isClose(qint64 step); ///< the last one of a trading day

    /// The last price of the quote that the step brings, for much less work.
    std::optional<double> lastPrice(const QString &symbol, qint64 step) const;

    /// The finished candles that end between start and stop, both included, oldest first. An invalid stop means
    /// now, an invalid start means as far back as there is anything. Empty for an unknown symbol. A day's candle
    /// is made of its 240 minutes' candles exactly.
    QVector<Candle> candles(const QString &symbol, const QDateTime &start, const QDateTime &stop,
                            CandlePeriod period) const;

private:
    struct Listed {
        int index; ///< in m_instruments
        PricePath path;
    };
    struct Ticks;  ///< a candle in whole ticks
    struct Moment; ///< a step as part of its minute

    Ticks minuteTicks(const Listed &listed, qint64 minute, qint64 open) const;
    qint64 openTicks(const Listed &listed, qint64 minute) const;
    Ticks dayTicks(const Listed &listed, qint64 tradingDay) const;

    bool isTraded(const Listed &listed, const Moment &moment) const;

    /// So many steps of the minute, of which the whole is given.
    Ticks beginOf(const Listed &listed, qint64 minute, const Ticks &whole, int steps) const;

    /// The five best prices on each side of the last one.
    void addDepth(const Listed &listed, qint64 step, qint64 last, Quote &quote) const;

    const QVector<Instrument> m_instruments;
    const Clock &m_clock;
    QHash<QString, Listed> m_bySymbol;
    QHash<QPair<QString, QString>, int> m_bySecurityId; ///< with the exchange; indices in m_instruments
};

} // namespace sim
