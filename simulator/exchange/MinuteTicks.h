#pragma once

#include "exchange/MarketRules.h"
#include "exchange/PricePath.h"
#include "exchange/Quote.h"

namespace sim {

/// What was traded in some time, with prices in ticks. A plain value.
struct Ticks {
    qint64 open, high, low, close, volume;
    double value;         ///< sum of ticks times volume
    bool isTraded = true; ///< false: nothing was traded, and the prices are those from before

    static Ticks standing(qint64 price) { return {price, price, price, price, 0, 0, false}; }

    double amount(const Instrument &instrument) const;

    /// Adds what came later.
    void append(const Ticks &later);
};

/// What one security trades in each minute and each step: a pure function of its path. A copyable value.
class MinuteTicks {
public:
    /// The instrument must outlive it.
    MinuteTicks(const Instrument &instrument, const PricePath &path) : m_instrument(instrument), m_path(path) {}

    /// A whole minute of all trading, which leads from one price to the other.
    Ticks whole(qint64 minute, qint64 open, qint64 close) const;

    /// The first `steps` steps of that minute. The first minute of a day begins with the opening match, which is all
    /// that there is of it at 0 steps.
    Ticks begin(qint64 minute, const Ticks &whole, int steps) const;

    /// Its volume, in whole lots.
    qint64 volumeBy(qint64 minute, const Ticks &whole, int steps) const;

    /// The volume of a step after hours.
    qint64 volumeAfterHours(qint64 step) const;

    /// Adds five price levels on each side of the last price, none beyond the limits. key: of the step.
    void addDepth(qint64 key, qint64 last, const PriceLimits &limits, QVector<QuoteLevel> &bids,
                  QVector<QuoteLevel> &asks) const;

    /// The price at which the opening would be now, and what would be traded. part: how much of the call is over.
    QuoteLevel indication(qint64 key, double part, const Ticks &firstMinute, const PriceLimits &limits) const;

private:
    const Instrument &m_instrument;
    const PricePath &m_path;
};

} // namespace sim
