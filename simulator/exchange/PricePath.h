#pragma once

#include "exchange/Instrument.h"

#include <array>

namespace sim {

/// The price of one security over time: a pure function of seed, symbol and time. It keeps no state, so the order of
/// the calls does not matter. A copyable value; constant after construction.
class PricePath {
public:
    /// startDay: the first trading day of the scenario; the day before it closed at instrument.price.
    PricePath(const Instrument &instrument, quint64 seed, qint64 startDay);

    /// The price in ticks at the opening of a trading day (0) or at the end of its nth minute. At least one tick.
    qint64 ticks(qint64 tradingDay, int minutesEnded) const;

    /// Deterministic random number in [0, 1) for (seed, symbol, purpose, index).
    double chance(qint64 index, quint64 purpose) const;

private:
    double logPrice(qint64 tradingDay, int minutesEnded) const;

    // Layers of noise; each changes half as fast as the one before and is the square root of 2 times as strong. Their
    // sum moves like a random walk over periods up to about two years, and stays around one level over longer ones, so
    // that no price drifts away.
    static constexpr int kLayers = 18;

    quint64 m_key; ///< mixes seed and symbol
    quint64 m_nightKey;
    std::array<quint64, kLayers> m_layerKeys;
    double m_volatility;
    double m_ticksAtStart;
    double m_logAtStart;
};

} // namespace sim
