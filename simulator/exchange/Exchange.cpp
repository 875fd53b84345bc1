#include "exchange/Exchange.h"

#include "exchange/TradingCalendar.h"

#include <cmath>

namespace sim {

namespace {

// Purposes of the random numbers of one minute.
enum Chance : quint64 { UpperShadow, LowerShadow, Volume, Average };

/// Shadows reach up to this part of the price beyond open and close.
constexpr double kShadow = 0.0006;

/// How busy a minute of the day is: the opening and the close are busier than noon. Averages 1 over a day.
double busyness(int minuteOfDay)
{
    const double fromNoon = std::abs(2.0 * minuteOfDay / calendar::kMinutesPerDay - 1);
    return 0.55 + 1.35 * fromNoon * fromNoon;
}

} // namespace

struct Exchange::Ticks {
    qint64 open, high, low, close, volume;
    double value; ///< sum of ticks times volume

    void append(const Ticks &later)
    {
        high = qMax(high, later.high);
        low = qMin(low, later.low);
        close = later.close;
        volume += later.volume;
        value += later.value;
    }
};

Exchange::Exchange(const QVector<Instrument> &instruments, quint64 seed, const QDate &start, const Clock &clock)
    : m_instruments(instruments), m_clock(clock)
{
    const qint64 startDay = calendar::tradingDaysBefore(start);
    m_bySymbol.reserve(m_instruments.size());
    for (int i = 0; i < m_instruments.size(); ++i)
        m_bySymbol.insert(m_instruments[i].symbol, {i, PricePath(m_instruments[i], seed, startDay)});
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
    const double shares = usual * busyness(ofDay) * (0.4 + 1.2 * path.chance(minute, Volume));
    ticks.volume = std::llround(shares / instrument.lot) * instrument.lot;
    ticks.value =
        double(ticks.volume) * (double(ticks.low) + double(ticks.high - ticks.low) * path.chance(minute, Average));
    return ticks;
}

Exchange::Ticks Exchange::dayTicks(const Listed &listed, qint64 tradingDay) const
{
    const qint64 first = tradingDay * calendar::kMinutesPerDay;
    Ticks day = minuteTicks(listed, first, openTicks(listed, first));
    for (qint64 minute = first + 1; minute < first + calendar::kMinutesPerDay; ++minute)
        day.append(minuteTicks(listed, minute, day.close)); // within a day each minute opens where the last closed
    return day;
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
        // Dividing whole ticks gives the double nearest to the decimal price; multiplying by 0.01 would not.
        const auto price = [&](qint64 n) { return double(n) / instrument.ticksPerUnit; };
        const double amount = ticks.value / instrument.ticksPerUnit * instrument.multiplier;
        candles.append({endOf(number), price(ticks.open), price(ticks.high), price(ticks.low), price(ticks.close),
                        ticks.volume, std::round(amount * 100) / 100});
    }
    return candles;
}

} // namespace sim
