#include "exchange/MinuteTicks.h"

#include "exchange/TradingSteps.h"

#include <cmath>
#include <cstdint>

namespace sim {

namespace {

// What a random number is for.
enum Chance : quint64 {
    UpperShadow,
    LowerShadow,
    Volume,
    Average,
    HighStep,
    LowStep,
    StepPrice,
    BestSide,
    Depth,
    Indication = Depth + 10, ///< there are ten levels
    VolumeAfterHours,
};

/// The high and the low of a minute lie at most this part of the price beyond its open and its close.
constexpr double kShadow = 0.0006;

/// The part of a day's first minute that is traded in the opening match.
constexpr double kOpeningPart = 0.4;

/// What is traded after hours, as a part of a usual day.
constexpr double kAfterHoursPart = 0.01;

/// How far an indicated price lies from the open at most, when the call begins.
constexpr double kIndicationReach = 0.004;

/// The volume of a minute relative to the average minute: high at the opening and at the close, low at noon.
double relativeVolume(int minuteOfDay)
{
    const double fromNoon = std::abs(2.0 * minuteOfDay / TradingCalendar::kMinutesPerDay - 1);
    return 0.55 + 1.35 * fromNoon * fromNoon;
}

} // namespace

double Ticks::amount(const Instrument &instrument) const
{
    return std::round(value * instrument.tick * instrument.multiplier * 100) / 100;
}

void Ticks::append(const Ticks &later)
{
    if (!later.isTraded)
        return;
    if (!isTraded) {
        *this = later;
        return;
    }
    high = qMax(high, later.high);
    low = qMin(low, later.low);
    close = later.close;
    volume += later.volume;
    value += later.value;
}

Ticks MinuteTicks::whole(qint64 minute, qint64 open, qint64 close) const
{
    Ticks ticks{};
    ticks.open = open;
    ticks.close = close;
    const double reach = kShadow * double(open);
    ticks.high = qMax(open, close) + std::llround(reach * m_path.chance(minute, UpperShadow));
    ticks.low = qMax<qint64>(1, qMin(open, close) - std::llround(reach * m_path.chance(minute, LowerShadow)));

    const double usual = double(m_instrument.dailyVolume) / TradingCalendar::kMinutesPerDay;
    const double shares = usual * relativeVolume(int(minute % TradingCalendar::kMinutesPerDay)) *
                          (0.4 + 1.2 * m_path.chance(minute, Volume));
    ticks.volume = std::llround(shares / double(m_instrument.lot)) * m_instrument.lot;
    ticks.value =
        double(ticks.volume) * (double(ticks.low) + double(ticks.high - ticks.low) * m_path.chance(minute, Average));
    return ticks;
}

Ticks MinuteTicks::begin(qint64 minute, const Ticks &whole, int steps) const
{
    if (steps == steps::kPerMinute)
        return whole;

    // One step reaches the high of the minute, a different one its low.
    const int highStep = 1 + int((steps::kPerMinute - 1) * m_path.chance(minute, HighStep));
    const int lowStep =
        1 + (highStep + int((steps::kPerMinute - 2) * m_path.chance(minute, LowStep))) % (steps::kPerMinute - 1);
    const auto priceOf = [&](int step) {
        if (step == highStep)
            return whole.high;
        if (step == lowStep)
            return whole.low;
        const double interpolated = double(whole.open) + double(whole.close - whole.open) * step / steps::kPerMinute;
        const double noise = m_path.chance(minute * steps::kPerMinute + step, StepPrice) - 0.5;
        return qBound(whole.low, std::llround(interpolated + noise * double(whole.high - whole.low)), whole.high);
    };

    Ticks begin{whole.open, whole.open, whole.open, whole.open, 0, 0};
    for (int step = 1; step <= steps; ++step)
        begin.append({0, priceOf(step), priceOf(step), priceOf(step), 0, 0});
    begin.volume = volumeBy(minute, whole, steps);
    if (begin.volume > 0) {
        const double average = qBound(double(begin.low), whole.value / double(whole.volume), double(begin.high));
        begin.value = average * double(begin.volume);
    }
    return begin;
}

qint64 MinuteTicks::volumeBy(qint64 minute, const Ticks &whole, int steps) const
{
    const qint64 lots = whole.volume / m_instrument.lot;
    const bool isFirst = minute % TradingCalendar::kMinutesPerDay == 0;
    const qint64 atOpening = isFirst ? qint64(double(lots) * kOpeningPart) : 0;
    return (atOpening + (lots - atOpening) * steps / steps::kPerMinute) * m_instrument.lot;
}

qint64 MinuteTicks::volumeAfterHours(qint64 step) const
{
    constexpr int kSteps = 25 * steps::kPerMinute;
    const double usual = double(m_instrument.dailyVolume) * kAfterHoursPart / kSteps;
    const double lots = usual * 2 * m_path.chance(step, VolumeAfterHours) / double(m_instrument.lot);
    return qint64(std::ceil(lots)) * m_instrument.lot;
}

void MinuteTicks::addDepth(qint64 key, qint64 last, const PriceLimits &limits, QVector<QuoteLevel> &bids,
                           QVector<QuoteLevel> &asks) const
{
    const double usualLots =
        double(m_instrument.dailyVolume) / TradingCalendar::kMinutesPerDay / double(m_instrument.lot) / 4;
    const qint64 lowest = qMax<qint64>(1, m_instrument.ticksOf(limits.lower));
    const qint64 highest = limits.areSet() ? m_instrument.ticksOf(limits.upper) : INT64_MAX;

    // The last price is the best bid or the best ask.
    const qint64 bestBid = m_path.chance(key, BestSide) < 0.5 ? last : last - 1;
    for (int level = 0; level < Quote::kLevels; ++level) {
        const auto levelAt = [&](qint64 ticks, quint64 purpose) {
            if (ticks < lowest || ticks > highest)
                return QuoteLevel();
            const double lots = usualLots * (0.2 + 1.6 * m_path.chance(key, Depth + purpose));
            return QuoteLevel{m_instrument.priceOf(ticks), (1 + std::llround(lots)) * m_instrument.lot};
        };
        bids.append(levelAt(bestBid - level, quint64(level)));
        asks.append(levelAt(bestBid + 1 + level, quint64(Quote::kLevels) + quint64(level)));
    }
}

QuoteLevel MinuteTicks::indication(qint64 key, double part, const Ticks &firstMinute, const PriceLimits &limits) const
{
    const qint64 lots = volumeBy(0, firstMinute, 0) / m_instrument.lot;
    const qint64 qty = qint64(double(lots) * part) * m_instrument.lot;
    if (qty == 0)
        return {};
    const double away = (1 - part) * kIndicationReach * (2 * m_path.chance(key, Indication) - 1);
    qint64 ticks = qMax<qint64>(1, firstMinute.open + std::llround(double(firstMinute.open) * away));
    if (limits.areSet())
        ticks = qBound(m_instrument.ticksOf(limits.lower), ticks, m_instrument.ticksOf(limits.upper));
    return {m_instrument.priceOf(ticks), qty};
}

} // namespace sim
