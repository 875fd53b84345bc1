#include "exchange/PricePath.h"

#include "exchange/TradingCalendar.h"

#include <QtMath>

#include <cmath>

namespace sim {

namespace {

// Moments of one day: its opening and the end of each minute. The step from one day's last moment to the next
// day's first is the night.
constexpr int kMomentsPerDay = calendar::kMinutesPerDay + 1;

constexpr double kFastestLayer = 0.0007; // gives about 1.5 % a day
constexpr double kNightMove = 0.008;

// What random numbers are for; layers count from 0.
constexpr quint64 kNight = 1000;
constexpr quint64 kCallersPurposes = 2000;

/// Scrambles a number so that neighbours have nothing in common (the finaliser of SplitMix64).
quint64 scramble(quint64 x)
{
    x += Q_UINT64_C(0x9e3779b97f4a7c15);
    x = (x ^ (x >> 30)) * Q_UINT64_C(0xbf58476d1ce4e5b9);
    x = (x ^ (x >> 27)) * Q_UINT64_C(0x94d049bb133111eb);
    return x ^ (x >> 31);
}

/// FNV-1a over the text's characters; qHash is salted anew in every process.
quint64 hash(const QString &text)
{
    quint64 h = Q_UINT64_C(0xcbf29ce484222325);
    for (const QChar c : text)
        h = (h ^ c.unicode()) * Q_UINT64_C(0x100000001b3);
    return h;
}

quint64 subkey(quint64 key, quint64 purpose)
{
    return scramble(key ^ scramble(purpose));
}

double from0To1(quint64 key, qint64 index)
{
    return double(scramble(key ^ quint64(index)) >> 11) / double(Q_UINT64_C(1) << 53);
}

double around0(quint64 key, qint64 index)
{
    return 2 * from0To1(key, index) - 1;
}

} // namespace

PricePath::PricePath(const Instrument &instrument, quint64 seed, qint64 startDay)
    : m_key(scramble(seed) ^ hash(instrument.symbol))
    , m_nightKey(subkey(m_key, kNight))
    , m_ticksAtStart(instrument.price * instrument.ticksPerUnit)
{
    for (int layer = 0; layer < kLayers; ++layer)
        m_layerKeys[size_t(layer)] = subkey(m_key, quint64(layer));
    m_logAtStart = logPrice(startDay - 1, calendar::kMinutesPerDay);
}

double PricePath::logPrice(qint64 tradingDay, int minutesEnded) const
{
    const qint64 moment = tradingDay * kMomentsPerDay + minutesEnded;
    double sum = kNightMove * around0(m_nightKey, tradingDay);
    double strength = kFastestLayer;
    for (int layer = 0; layer < kLayers; ++layer, strength *= M_SQRT2) {
        const quint64 key = m_layerKeys[size_t(layer)];
        const qint64 before = moment >> layer;
        const double part = double(moment - (before << layer)) / double(Q_INT64_C(1) << layer);
        sum += strength * ((1 - part) * around0(key, before) + part * around0(key, before + 1));
    }
    return sum;
}

qint64 PricePath::ticks(qint64 tradingDay, int minutesEnded) const
{
    const double price = m_ticksAtStart * std::exp(logPrice(tradingDay, minutesEnded) - m_logAtStart);
    return qMax<qint64>(1, std::llround(price));
}

double PricePath::chance(qint64 minute, quint64 purpose) const
{
    return from0To1(subkey(m_key, kCallersPurposes + purpose), minute);
}

} // namespace sim
