#include "exchange/Exchange.h"

#include "exchange/TradingCalendar.h"

#include <cmath>
#include <cstdint>
#include <mutex>

namespace sim {

namespace {

// What a random number is for.
enum Chance : quint64 { UpperShadow, LowerShadow, Volume, Average, HighStep, LowStep, StepPrice, BestSide, Depth };

/// The high and the low of a minute lie at most this part of the price beyond its open and its close.
constexpr double kShadow = 0.0006;

// A minute is divided into steps; each step is one quote.
constexpr int kSecondsPerStep = 3;
constexpr int kStepsPerMinute = 60 / kSecondsPerStep;
constexpr int kStepsPerDay = kStepsPerMinute * calendar::kMinutesPerDay;

constexpr int kLevels = 5;

/// The volume of the first `steps` steps of a minute, in whole lots.
qint64 volumeBy(int steps, qint64 ofMinute, qint64 lot)
{
    return ofMinute / lot * steps / kStepsPerMinute * lot;
}

/// The volume of a minute relative to the average minute: high at the opening and at the close, low at noon.
double relativeVolume(int minuteOfDay)
{
    const double fromNoon = std::abs(2.0 * minuteOfDay / calendar::kMinutesPerDay - 1);
    return 0.55 + 1.35 * fromNoon * fromNoon;
}

} // namespace

struct Exchange::Ticks {
    qint64 open, high, low, close, volume;
    double value; ///< sum of ticks times volume

    double amount(const Instrument &instrument) const
    {
        return std::round(value * instrument.tick * instrument.multiplier * 100) / 100;
    }

    void append(const Ticks &later)
    {
        high = qMax(high, later.high);
        low = qMin(low, later.low);
        close = later.close;
        volume += later.volume;
        value += later.value;
    }
};

struct Exchange::Moment {
    explicit Moment(qint64 step)
        : day((step - 1) / kStepsPerDay)
        , minute((step - 1) / kStepsPerMinute)
        , stepsOfMinute(int(step - minute * kStepsPerMinute))
    {
    }

    const qint64 day;
    const qint64 minute;
    const int stepsOfMinute;
};

/// The sum of the finished minutes of one day.
struct Exchange::DaySoFar {
    std::mutex mutex;
    qint64 next = -1; ///< the first minute that is not in the sum; -1: there is no sum
    Ticks ticks{};
};

Exchange::Exchange(const QVector<Instrument> &instruments, quint64 seed, const QDate &start, const Clock &clock,
                   const MarketRules &rules)
    : m_instruments(instruments)
    , m_rules(rules)
    , m_clock(clock)
    , m_daysSoFar(std::make_unique<DaySoFar[]>(size_t(instruments.size())))
{
    const qint64 startDay = calendar::tradingDaysBefore(start);
    m_bySymbol.reserve(m_instruments.size());
    m_bySecurityId.reserve(m_instruments.size());
    for (int i = 0; i < m_instruments.size(); ++i) {
        const Instrument &instrument = m_instruments[i];
        m_bySymbol.insert(instrument.symbol, {i, PricePath(instrument, seed, startDay)});
        m_bySecurityId.insert({instrument.securityId, instrument.exchange}, i);
    }
}

Exchange::~Exchange() = default;

const Instrument *Exchange::instrument(const QString &symbol) const
{
    const auto found = m_bySymbol.constFind(symbol);
    return found == m_bySymbol.constEnd() ? nullptr : &m_instruments[found->index];
}

const Instrument *Exchange::instrumentOf(const QString &securityId, const QString &exchange) const
{
    const auto found = m_bySecurityId.constFind({securityId, exchange});
    return found == m_bySecurityId.constEnd() ? nullptr : &m_instruments[*found];
}

qint64 Exchange::closeTicks(const Listed &listed, qint64 day) const
{
    return listed.path.ticks(day, calendar::kMinutesPerDay);
}

qint64 Exchange::openTicks(const Listed &listed, qint64 minute) const
{
    return listed.path.ticks(minute / calendar::kMinutesPerDay, int(minute % calendar::kMinutesPerDay));
}

Exchange::Ticks Exchange::minuteTicks(const Listed &listed, qint64 minute, qint64 open) const
{
    const PricePath &path = listed.path;
    const Instrument &instrument = m_instruments[listed.index];
    const qint64 day = minute / calendar::kMinutesPerDay;
    const int ofDay = int(minute % calendar::kMinutesPerDay);

    Ticks ticks{};
    ticks.open = open;
    ticks.close = path.ticks(day, ofDay + 1);
    const double reach = kShadow * double(ticks.open);
    ticks.high = qMax(ticks.open, ticks.close) + std::llround(reach * path.chance(minute, UpperShadow));
    ticks.low = qMax<qint64>(1, qMin(ticks.open, ticks.close) - std::llround(reach * path.chance(minute, LowerShadow)));

    const double usual = double(instrument.dailyVolume) / calendar::kMinutesPerDay;
    const double shares = usual * relativeVolume(ofDay) * (0.4 + 1.2 * path.chance(minute, Volume));
    ticks.volume = std::llround(shares / double(instrument.lot)) * instrument.lot;
    ticks.value =
        double(ticks.volume) * (double(ticks.low) + double(ticks.high - ticks.low) * path.chance(minute, Average));
    return ticks;
}

Exchange::Ticks Exchange::dayTicks(const Listed &listed, qint64 tradingDay) const
{
    const qint64 first = tradingDay * calendar::kMinutesPerDay;
    Ticks day = minuteTicks(listed, first, openTicks(listed, first));
    for (qint64 minute = first + 1; minute < first + calendar::kMinutesPerDay; ++minute)
        day.append(
            minuteTicks(listed, minute, day.close)); // within a day a minute opens at the close of the one before
    return day;
}

Exchange::Ticks Exchange::dayTicksAt(const Listed &listed, const Moment &moment) const
{
    const qint64 first = moment.day * calendar::kMinutesPerDay;
    DaySoFar &day = m_daysSoFar[size_t(listed.index)];
    const std::lock_guard lock(day.mutex);
    if (day.next <= first || day.next > moment.minute) { // there is none, or it is of another day or a later minute
        day.next = first;
        day.ticks = {};
    }
    // The minutes are always added one after the other, so that the same quote has the same amount every time.
    const auto add = [&](Ticks &sum, qint64 minute, int steps) {
        const bool isFirst = minute == first;
        const Ticks whole = minuteTicks(listed, minute, isFirst ? openTicks(listed, minute) : sum.close);
        const Ticks begin = beginOf(listed, minute, whole, steps);
        if (isFirst)
            sum = begin;
        else
            sum.append(begin);
    };
    for (; day.next < moment.minute; ++day.next)
        add(day.ticks, day.next, kStepsPerMinute);
    Ticks ticks = day.ticks;
    add(ticks, moment.minute, moment.stepsOfMinute);
    return ticks;
}

Exchange::Ticks Exchange::beginOf(const Listed &listed, qint64 minute, const Ticks &whole, int steps) const
{
    if (steps == kStepsPerMinute)
        return whole;

    // One step reaches the high of the minute, a different one its low.
    const PricePath &path = listed.path;
    const int highStep = 1 + int((kStepsPerMinute - 1) * path.chance(minute, HighStep));
    const int lowStep =
        1 + (highStep + int((kStepsPerMinute - 2) * path.chance(minute, LowStep))) % (kStepsPerMinute - 1);
    const auto priceOf = [&](int step) {
        if (step == highStep)
            return whole.high;
        if (step == lowStep)
            return whole.low;
        const double interpolated = double(whole.open) + double(whole.close - whole.open) * step / kStepsPerMinute;
        const double noise = path.chance(minute * kStepsPerMinute + step, StepPrice) - 0.5;
        return qBound(whole.low, std::llround(interpolated + noise * double(whole.high - whole.low)), whole.high);
    };

    Ticks begin{whole.open, whole.open, whole.open, whole.open, 0, 0};
    for (int step = 1; step <= steps; ++step)
        begin.append({0, priceOf(step), priceOf(step), priceOf(step), 0, 0});
    begin.volume = volumeBy(steps, whole.volume, m_instruments[listed.index].lot);
    if (begin.volume > 0) {
        const double average = qBound(double(begin.low), whole.value / double(whole.volume), double(begin.high));
        begin.value = average * double(begin.volume);
    }
    return begin;
}

template <typename Levels>
void Exchange::addDepth(const Listed &listed, qint64 step, qint64 last, const PriceLimits &limits, Levels &levels) const
{
    const PricePath &path = listed.path;
    const Instrument &instrument = m_instruments[listed.index];
    const double usualLots = double(instrument.dailyVolume) / calendar::kMinutesPerDay / double(instrument.lot) / 4;
    const qint64 lowest = qMax<qint64>(1, instrument.ticksOf(limits.lower));
    const qint64 highest = limits.areSet() ? instrument.ticksOf(limits.upper) : INT64_MAX;

    // The last price is the best bid or the best ask.
    const qint64 bestBid = path.chance(step, BestSide) < 0.5 ? last : last - 1;
    for (int level = 0; level < kLevels; ++level) {
        const auto levelAt = [&](qint64 ticks, quint64 purpose) {
            if (ticks < lowest || ticks > highest)
                return QuoteLevel();
            const double lots = usualLots * (0.2 + 1.6 * path.chance(step, Depth + purpose));
            return QuoteLevel{instrument.priceOf(ticks), (1 + std::llround(lots)) * instrument.lot};
        };
        levels.bids.append(levelAt(bestBid - level, quint64(level)));
        levels.asks.append(levelAt(bestBid + 1 + level, quint64(kLevels) + quint64(level)));
    }
}

qint64 Exchange::stepAt(const QDateTime &time)
{
    return calendar::secondsTradedBy(time) / kSecondsPerStep;
}

QDateTime Exchange::timeOfStep(qint64 step)
{
    const Moment moment(step);
    return calendar::endOfMinute(moment.minute)
        .addSecs(qint64{moment.stepsOfMinute - kStepsPerMinute} * kSecondsPerStep);
}

bool Exchange::isClose(qint64 step)
{
    return step % kStepsPerDay == 0;
}

bool Exchange::isTraded(const Listed &listed, const Moment &moment) const
{
    return calendar::dateOf(moment.day) >= m_instruments[listed.index].listed;
}

std::optional<double> Exchange::lastPrice(const QString &symbol, qint64 step) const
{
    const auto found = m_bySymbol.constFind(symbol);
    const Moment moment(step);
    if (found == m_bySymbol.constEnd() || !isTraded(*found, moment))
        return std::nullopt;
    const Ticks whole = minuteTicks(*found, moment.minute, openTicks(*found, moment.minute));
    const qint64 last = beginOf(*found, moment.minute, whole, moment.stepsOfMinute).close;
    return m_instruments[found->index].priceOf(last);
}

std::optional<StepTrades> Exchange::trades(const QString &symbol, qint64 step) const
{
    const auto found = m_bySymbol.constFind(symbol);
    const Moment moment(step);
    if (found == m_bySymbol.constEnd() || !isTraded(*found, moment))
        return std::nullopt;
    const Instrument &instrument = m_instruments[found->index];
    const Ticks whole = minuteTicks(*found, moment.minute, openTicks(*found, moment.minute));
    const qint64 last = beginOf(*found, moment.minute, whole, moment.stepsOfMinute).close;
    StepTrades trades;
    trades.last = instrument.priceOf(last);
    trades.volume = volumeBy(moment.stepsOfMinute, whole.volume, instrument.lot) -
                    volumeBy(moment.stepsOfMinute - 1, whole.volume, instrument.lot);
    addDepth(*found, step, last, limitsOf(*found, moment.day), trades);
    return trades;
}

PriceLimits Exchange::limitsOf(const Listed &listed, qint64 day) const
{
    return m_rules.limits(m_instruments[listed.index], closeTicks(listed, day - 1));
}

PriceLimits Exchange::limits(const QString &symbol, qint64 step) const
{
    const auto found = m_bySymbol.constFind(symbol);
    return found == m_bySymbol.constEnd() ? PriceLimits() : limitsOf(*found, Moment(step).day);
}

std::optional<Quote> Exchange::quote(const QString &symbol) const
{
    return quote(symbol, m_clock.now());
}

std::optional<Quote> Exchange::quote(const QString &symbol, const QDateTime &time) const
{
    // Before the first step of a day this is the last step of the trading day before.
    const qint64 step = stepAt(time);
    const Moment moment(step);
    const auto found = m_bySymbol.constFind(symbol);
    if (found == m_bySymbol.constEnd() || !isTraded(*found, moment))
        return std::nullopt;

    const Instrument &instrument = m_instruments[found->index];
    const Ticks ticks = dayTicksAt(*found, moment);
    Quote quote;
    quote.symbol = symbol;
    quote.time = timeOfStep(step);
    quote.previousClose = instrument.priceOf(closeTicks(*found, moment.day - 1));
    quote.open = instrument.priceOf(ticks.open);
    quote.high = instrument.priceOf(ticks.high);
    quote.low = instrument.priceOf(ticks.low);
    quote.last = instrument.priceOf(ticks.close);
    const PriceLimits limits = limitsOf(*found, moment.day);
    quote.upperLimit = limits.upper;
    quote.lowerLimit = limits.lower;
    quote.volume = ticks.volume;
    quote.amount = ticks.amount(instrument);
    addDepth(*found, step, ticks.close, limits, quote);
    return quote;
}

QVector<Candle> Exchange::candles(const QString &symbol, const QDateTime &start, const QDateTime &stop,
                                  CandlePeriod period) const
{
    const auto found = m_bySymbol.constFind(symbol);
    if (found == m_bySymbol.constEnd())
        return {};

    const Instrument &instrument = m_instruments[found->index];
    const bool minutes = period == CandlePeriod::Minute;
    const auto endedBy = minutes ? calendar::minutesEndedBy : calendar::daysEndedBy;
    const auto endOf = minutes ? calendar::endOfMinute : calendar::endOfDay;

    // Candles are numbered; the range is [first, last).
    const QDateTime now = m_clock.now();
    const qint64 last = endedBy(stop.isValid() ? qMin(stop, now) : now);
    qint64 first = endedBy(QDateTime(instrument.listed, QTime(0, 0), Qt::UTC));
    if (start.isValid())
        first = qMax(first, endedBy(start.addSecs(-1)));
    first = qMax(first, last - kMaxCandles);

    QVector<Candle> candles;
    candles.reserve(int(qMax<qint64>(0, last - first)));
    for (qint64 number = first; number < last; ++number) {
        const Ticks ticks = minutes ? minuteTicks(*found, number, openTicks(*found, number)) : dayTicks(*found, number);
        const auto price = [&](qint64 n) { return instrument.priceOf(n); };
        candles.append({endOf(number), price(ticks.open), price(ticks.high), price(ticks.low), price(ticks.close),
                        ticks.volume, ticks.amount(instrument)});
    }
    return candles;
}

} // namespace sim
