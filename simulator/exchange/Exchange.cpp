#include "exchange/Exchange.h"

#include <limits>
#include <mutex>

namespace sim {

using steps::Moment;

namespace {

constexpr int kMinutesPerDay = TradingCalendar::kMinutesPerDay;

qint64 bounded(qint64 ticks, const Instrument &instrument, const PriceLimits &limits)
{
    return limits.areSet() ? qBound(instrument.ticksOf(limits.lower), ticks, instrument.ticksOf(limits.upper)) : ticks;
}

} // namespace

/// The sum of the finished minutes of one day.
struct Exchange::DaySoFar {
    std::mutex mutex;
    qint64 next = -1; ///< the first minute that is not in the sum; -1: there is no sum
    Ticks ticks{};
};

Exchange::Exchange(const QVector<Instrument> &instruments, quint64 seed, const QDate &start, const Clock &clock,
                   const MarketRules &rules, const QVector<Halt> &halts)
    : m_instruments(instruments)
    , m_rules(rules)
    , m_clock(clock)
    , m_daysSoFar(std::make_unique<DaySoFar[]>(size_t(instruments.size())))
{
    const qint64 startDay = calendar().tradingDaysBefore(start);
    m_bySymbol.reserve(m_instruments.size());
    m_bySecurityId.reserve(m_instruments.size());
    for (int i = 0; i < m_instruments.size(); ++i) {
        const Instrument &instrument = m_instruments[i];
        m_bySymbol.insert(instrument.symbol,
                          {i, PricePath(instrument, seed, startDay), calendar().tradingDaysBefore(instrument.listed)});
        m_bySecurityId.insert({instrument.securityId, instrument.exchange}, i);
    }
    for (const Halt &halt : halts) {
        const auto found = m_bySymbol.constFind(halt.symbol);
        if (found != m_bySymbol.constEnd())
            addHalt(*found, stepAt(halt.from) + 1, halt.until);
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

const Exchange::Listed *Exchange::find(const QString &symbol, qint64 step) const
{
    const auto found = m_bySymbol.constFind(symbol);
    return found == m_bySymbol.constEnd() || Moment(step).day < found->firstDay ? nullptr : &*found;
}

// Halts

qint64 Exchange::firstStepAfter(const QDateTime &time) const
{
    const qint64 step = stepAt(time) + 1;
    const Moment moment(step);
    switch (moment.phase) {
    case Phase::DayBegins:
        return step;
    case Phase::OpeningCall:
        return moment.ofPhase == 1 ? step : steps::first(moment.day, Phase::Continuous);
    case Phase::OpeningMatch:
        return steps::first(moment.day, Phase::Continuous);
    case Phase::Continuous: // a minute begins with its first step
        return moment.stepsOfMinute() == 1 ? step : step + steps::kPerMinute + 1 - moment.stepsOfMinute();
    case Phase::AfterHours:
    case Phase::Settlement:
        break;
    }
    return steps::first(moment.day + 1, Phase::DayBegins);
}

void Exchange::addHalt(const Listed &listed, qint64 first, const QDateTime &until)
{
    m_halts.add(listed.index, {first, until.isValid() ? firstStepAfter(until) : std::numeric_limits<qint64>::max()});
}

void Exchange::halt(const QString &symbol, const QDateTime &from, const QDateTime &until)
{
    const auto found = m_bySymbol.constFind(symbol);
    if (found == m_bySymbol.constEnd())
        return;
    DaySoFar &day = m_daysSoFar[size_t(found->index)];
    const std::lock_guard lock(day.mutex);
    addHalt(*found, stepAt(qMax(from, m_clock.now())) + 1, until);
    day.next = -1;
}

void Exchange::resume(const QString &symbol, const QDateTime &at)
{
    const auto found = m_bySymbol.constFind(symbol);
    if (found == m_bySymbol.constEnd())
        return;
    DaySoFar &day = m_daysSoFar[size_t(found->index)];
    const std::lock_guard lock(day.mutex);
    m_halts.cut(found->index, firstStepAfter(qMax(at, m_clock.now())));
    day.next = -1;
}

bool Exchange::isHalted(const QString &symbol, qint64 step) const
{
    const Listed *listed = find(symbol, step);
    return listed && m_halts.at(listed->index, step);
}

std::optional<int> Exchange::stepsTraded(const Listed &listed, qint64 minute) const
{
    const qint64 first = steps::ofMinute(minute);
    const auto halt = m_halts.begunBy(listed.index, first + steps::kPerMinute - 1);
    if (!halt || halt->end <= first)
        return steps::kPerMinute;
    if (halt->first > first)
        return int(halt->first - first);
    const bool isOpened = minute % kMinutesPerDay == 0 && halt->first == first; // after the opening match
    return isOpened ? std::make_optional(0) : std::nullopt;
}

// Prices

qint64 Exchange::pathAt(const Listed &listed, qint64 minute) const
{
    return listed.path.ticks(minute / kMinutesPerDay, int(minute % kMinutesPerDay));
}

qint64 Exchange::pathClose(const Listed &listed, qint64 day) const
{
    return listed.path.ticks(day, kMinutesPerDay);
}

/// The price at the beginning or the end of a minute. After a halt the path may be farther from the last close than the
/// day's limits: the price then stays at the limit.
qint64 Exchange::priceAt(const Listed &listed, qint64 minute, bool atEnd) const
{
    const qint64 day = minute / kMinutesPerDay;
    const qint64 ticks = atEnd ? listed.path.ticks(day, int(minute % kMinutesPerDay) + 1) : pathAt(listed, minute);
    if (m_halts.isEmpty() || closeOf(listed, day - 1) == pathClose(listed, day - 1))
        return ticks;
    return bounded(ticks, m_instruments[listed.index], limitsOf(listed, day));
}

qint64 Exchange::closeOf(const Listed &listed, qint64 day) const
{
    const qint64 closeStep = steps::last(day, Phase::Continuous);
    const auto halt = m_halts.begunBy(listed.index, closeStep);
    if (!halt)
        return pathClose(listed, day);
    if (halt->end > closeStep)
        return lastAt(listed, halt->first - 1);
    qint64 before = Moment(halt->end).day - 1;
    for (qint64 close = closeOf(listed, before); close != pathClose(listed, before);) { // not back at the path yet
        if (++before > day)
            return close;
        const Instrument &instrument = m_instruments[listed.index];
        close = bounded(pathClose(listed, before), instrument, m_rules.limits(instrument, close));
    }
    return pathClose(listed, day);
}

qint64 Exchange::lastAt(const Listed &listed, qint64 step) const
{
    if (const auto halt = m_halts.at(listed.index, step))
        return lastAt(listed, halt->first - 1);
    const Moment moment(step);
    switch (moment.phase) {
    case Phase::DayBegins:
    case Phase::OpeningCall:
        return closeOf(listed, moment.day - 1);
    case Phase::OpeningMatch:
    case Phase::Continuous:
        return minuteTicks(listed, moment.minute(), moment.stepsOfMinute()).close;
    case Phase::AfterHours:
    case Phase::Settlement:
        break;
    }
    return closeOf(listed, moment.day);
}

std::optional<double> Exchange::lastPrice(const QString &symbol, qint64 step) const
{
    const Listed *listed = find(symbol, step);
    if (!listed)
        return std::nullopt;
    return m_instruments[listed->index].priceOf(lastAt(*listed, step));
}

PriceLimits Exchange::limitsOf(const Listed &listed, qint64 day) const
{
    return m_rules.limits(m_instruments[listed.index], closeOf(listed, day - 1));
}

PriceLimits Exchange::limits(const QString &symbol, qint64 step) const
{
    const auto found = m_bySymbol.constFind(symbol);
    const Moment moment(step);
    const bool isOver = step >= steps::last(moment.day, Phase::AfterHours);
    return found == m_bySymbol.constEnd() ? PriceLimits() : limitsOf(*found, moment.day + (isOver ? 1 : 0));
}

// What is traded

Ticks Exchange::minuteTicks(const Listed &listed, qint64 minute, int steps, const Ticks *before) const
{
    const MinuteTicks ticks(m_instruments[listed.index], listed.path);
    const std::optional<int> traded = m_halts.isEmpty() ? steps::kPerMinute : stepsTraded(listed, minute);
    if (!traded)
        return Ticks::standing(lastAt(listed, steps::ofMinute(minute)));
    const qint64 open = before && m_halts.isEmpty() ? before->close : priceAt(listed, minute, false);
    return ticks.begin(minute, ticks.whole(minute, open, priceAt(listed, minute, true)), qMin(steps, *traded));
}

Ticks Exchange::dayTicks(const Listed &listed, qint64 day) const
{
    const qint64 first = day * kMinutesPerDay;
    Ticks sum = minuteTicks(listed, first);
    for (qint64 minute = first + 1; minute < first + kMinutesPerDay; ++minute)
        sum.append(minuteTicks(listed, minute, steps::kPerMinute, &sum));
    return sum;
}

Ticks Exchange::dayTicksAt(const Listed &listed, const Moment &moment) const
{
    const qint64 first = moment.day * kMinutesPerDay;
    DaySoFar &day = m_daysSoFar[size_t(listed.index)];
    const std::lock_guard lock(day.mutex);
    if (day.next <= first || day.next > moment.minute()) { // there is none, or it is of another day or a later minute
        day.next = first;
        day.ticks = Ticks::standing(0);
    }
    // The minutes are always added one after the other, so that the same quote has the same amount every time.
    const auto before = [&](qint64 minute) { return minute == first ? nullptr : &day.ticks; };
    for (; day.next < moment.minute(); ++day.next)
        day.ticks.append(minuteTicks(listed, day.next, steps::kPerMinute, before(day.next)));
    Ticks ticks = day.ticks;
    ticks.append(minuteTicks(listed, moment.minute(), moment.stepsOfMinute(), before(moment.minute())));
    return ticks;
}

std::optional<StepTrades> Exchange::trades(const QString &symbol, qint64 step) const
{
    const Listed *listed = find(symbol, step);
    if (!listed || m_halts.at(listed->index, step))
        return std::nullopt;
    const Moment moment(step);
    const Instrument &instrument = m_instruments[listed->index];
    const MinuteTicks minutes(instrument, listed->path);
    StepTrades trades;
    switch (moment.phase) {
    case Phase::OpeningMatch: {
        const Ticks opening = minuteTicks(*listed, moment.minute(), 0);
        trades.last = instrument.priceOf(opening.close);
        trades.volume = opening.volume;
        return trades;
    }
    case Phase::Continuous: {
        const Ticks so = minuteTicks(*listed, moment.minute(), moment.stepsOfMinute());
        const Ticks before = minuteTicks(*listed, moment.minute(), moment.stepsOfMinute() - 1);
        trades.last = instrument.priceOf(so.close);
        trades.volume = so.volume - before.volume;
        minutes.addDepth(moment.continuousNumber(), so.close, limitsOf(*listed, moment.day), trades.bids, trades.asks);
        return trades;
    }
    case Phase::AfterHours:
        if (!instrument.afterHours)
            return std::nullopt;
        trades.last = instrument.priceOf(closeOf(*listed, moment.day));
        trades.volume = minutes.volumeAfterHours(step);
        return trades;
    case Phase::DayBegins:
    case Phase::OpeningCall:
    case Phase::Settlement:
        break;
    }
    return std::nullopt;
}

std::optional<Quote> Exchange::quote(const QString &symbol) const
{
    return quote(symbol, m_clock.now());
}

std::optional<Quote> Exchange::quote(const QString &symbol, const QDateTime &time) const
{
    qint64 step = steps::ofQuote(stepAt(time));
    const Listed *listed = find(symbol, step);
    if (!listed)
        return std::nullopt;
    if (const auto halt = m_halts.at(listed->index, step))
        step = qMax(steps::ofQuote(halt->first - 1), steps::first(Moment(step).day, Phase::DayBegins));
    const Moment moment(step);

    const Instrument &instrument = m_instruments[listed->index];
    const MinuteTicks minutes(instrument, listed->path);
    Quote quote;
    quote.symbol = symbol;
    quote.time = timeOfStep(step);
    const qint64 previousClose = closeOf(*listed, moment.day - 1);
    quote.previousClose = instrument.priceOf(previousClose);
    const PriceLimits limits = m_rules.limits(instrument, previousClose);
    quote.upperLimit = limits.upper;
    quote.lowerLimit = limits.lower;
    if (moment.phase == Phase::DayBegins || moment.phase == Phase::OpeningCall) {
        quote.last = quote.previousClose;
        quote.bids.resize(Quote::kLevels);
        quote.asks.resize(Quote::kLevels);
        if (moment.phase == Phase::OpeningCall) {
            const double part = double(moment.ofPhase) / (10 * steps::kPerMinute);
            quote.bids[0] = minutes.indication(step, part, minuteTicks(*listed, moment.minute()), limits);
            quote.asks[0] = quote.bids[0];
        }
        return quote;
    }
    const Ticks ticks = dayTicksAt(*listed, moment);
    quote.open = instrument.priceOf(ticks.open);
    quote.high = instrument.priceOf(ticks.high);
    quote.low = instrument.priceOf(ticks.low);
    quote.last = instrument.priceOf(ticks.close);
    quote.volume = ticks.volume;
    quote.amount = ticks.amount(instrument);
    minutes.addDepth(moment.continuousNumber(), ticks.close, limits, quote.bids, quote.asks);
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
    const auto endedBy = [&](const QDateTime &time) {
        return minutes ? calendar().minutesEndedBy(time) : calendar().daysEndedBy(time);
    };

    // Candles are numbered; the range is [first, last).
    const QDateTime now = m_clock.now();
    const qint64 last = endedBy(stop.isValid() ? qMin(stop, now) : now);
    qint64 first = minutes ? found->firstDay * kMinutesPerDay : found->firstDay;
    if (start.isValid())
        first = qMax(first, endedBy(start.addSecs(-1)));
    first = qMax(first, last - kMaxCandles);

    QVector<Candle> candles;
    candles.reserve(int(qMax<qint64>(0, last - first)));
    for (qint64 number = first; number < last; ++number) {
        const Ticks ticks = minutes ? minuteTicks(*found, number) : dayTicks(*found, number);
        const auto price = [&](qint64 n) { return instrument.priceOf(n); };
        candles.append({minutes ? calendar().endOfMinute(number) : calendar().endOfDay(number), price(ticks.open),
                        price(ticks.high), price(ticks.low), price(ticks.close), ticks.volume,
                        ticks.amount(instrument)});
    }
    return candles;
}

} // namespace sim
