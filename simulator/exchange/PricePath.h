#pragma once

#include "exchange/Instrument.h"

#include <array>

namespace sim {

/// The road that one security's price takes: a pure function of seed, symbol and moment. Nothing is walked and
/// nothing is remembered, so whoever asks for whatever in whichever order sees the same price.
/// A copyable value; constant after construction.
class PricePath {
public:
    /// startDay: the trading day on which the scenario begins; the day before it closed at instrument.price.
    PricePath(const Instrument &instrument, quint64 seed, qint64 startDay);

    /// The price in ticks at the start (0) or after the given number of ended minutes of a trading day. Never
    /// below one tick.
    qint64 ticks(qint64 tradingDay, int minutesEnded) const;

    /// A number in [0, 1) that belongs to one purpose and, of what the caller numbers for it, one.
    double chance(qint64 number, quint64 purpose) const;

private:
    double logPrice(qint64 tradingDay, int minutesEnded) const;

    // Layers of noise, each twice as slow and half as much again as strong as the one before: together they move
    // like a random walk up to about two years, and stay around one level beyond that, so that no security drifts
    // away.
    static constexpr int kLayers = 18;

    quint64 m_key; ///< mixes seed and symbol
    quint64 m_nightKey;
    std::array<quint64, kLayers> m_layerKeys;
    double m_volatility;
    double m_ticksAtStart;
    double m_logAtStart;
};

} // namespace sim
