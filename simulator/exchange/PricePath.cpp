#include "exchange/PricePath.h"

#include "exchange/Random.h"
#include "exchange/TradingCalendar.h"

#include <QtMath>

#include <cmath>

namespace sim {

using namespace random;

namespace {

// A day has one moment for its opening and one for the end of each minute. The night lies between the last moment of a
// day and the first of the next.
constexpr int kMomentsPerDay = TradingCalendar::kMinutesPerDay + 1;

constexpr double kFastestLayer = 0.0007; // gives about 1.5 % a day
constexpr double kNightMove = 0.008;

// What a random number is for; the layers are numbered from 0.
constexpr quint64 kNight = 1000;
constexpr quint64 kFirstPurposeOfCallers = 2000;

double fromMinus1To1(quint64 key, qint64 index)
{
    return 2 * from0To1(key, index) - 1;
}

} // namespace

PricePath::PricePath(const Instrument &instrument, quint64 seed, qint64 startDay)
    : m_key(scramble(seed) ^ hash(instrument.symbol))
    , m_nightKey(subkey(m_key, kNight))
    , m_volatility(instrument.volatility)
    , m_ticksAtStart(instrument.price / instrument.tick)
{
    for (int layer = 0; layer < kLayers; ++layer)
        m_layerKeys[size_t(layer)] = subkey(m_key, quint64(layer));
    m_logAtStart = logPrice(startDay - 1, TradingCalendar::kMinutesPerDay);
}

double PricePath::logPrice(qint64 tradingDay, int minutesEnded) const
{
    const qint64 moment = tradingDay * kMomentsPerDay + minutesEnded;
    double sum = kNightMove * fromMinus1To1(m_nightKey, tradingDay);
    double strength = kFastestLayer;
    for (int layer = 0; layer < kLayers; ++layer, strength *= M_SQRT2) {
        const quint64 key = m_layerKeys[size_t(layer)];
        const qint64 before = moment >> layer;
        const double part = double(moment - (before << layer)) / double(Q_INT64_C(1) << layer);
        sum += strength * ((1 - part) * fromMinus1To1(key, before) + part * fromMinus1To1(key, before + 1));
    }
    return sum;
}

qint64 PricePath::ticks(qint64 tradingDay, int minutesEnded) const
{
    const double price = m_ticksAtStart * std::exp(m_volatility * (logPrice(tradingDay, minutesEnded) - m_logAtStart));
    return qMax<qint64>(1, std::llround(price));
}

double PricePath::chance(qint64 index, quint64 purpose) const
{
    return from0To1(subkey(m_key, kFirstPurposeOfCallers + purpose), index);
}

} // namespace sim
