#include "exchange/TradingSteps.h"

#include <algorithm>

namespace sim::steps {

namespace {

struct Part {
    Phase phase;
    int from; ///< second of the day; its first step comes three seconds later
    int steps;
};

constexpr int at(int hour, int minute)
{
    return (hour * 60 + minute) * 60;
}

constexpr Part kParts[] = {
    {Phase::DayBegins, at(9, 0) - kSeconds, 1},      {Phase::OpeningCall, at(9, 15), 10 * kPerMinute - 1},
    {Phase::OpeningMatch, at(9, 25) - kSeconds, 1},  {Phase::Continuous, at(9, 30), kContinuous / 2},
    {Phase::Continuous, at(13, 0), kContinuous / 2}, {Phase::AfterHours, at(15, 5), 25 * kPerMinute},
    {Phase::Settlement, at(16, 0) - kSeconds, 1},
};

constexpr int countOfDay()
{
    int count = 0;
    for (const Part &part : kParts)
        count += part.steps;
    return count;
}

constexpr int kPerDay = countOfDay();

} // namespace

Moment::Moment(qint64 step) : day(step / kPerDay), phase(Phase::DayBegins), ofPhase(0), continuous(0)
{
    int left = int(step % kPerDay) + 1;
    for (const Part &part : kParts) {
        const int taken = qMin(left, part.steps);
        ofPhase = part.phase == phase ? ofPhase + taken : taken;
        phase = part.phase;
        if (phase == Phase::Continuous)
            continuous += taken;
        left -= taken;
        if (left == 0)
            return;
    }
}

qint64 Moment::minute() const
{
    return day * TradingCalendar::kMinutesPerDay + qMax(0, continuous - 1) / kPerMinute;
}

int Moment::stepsOfMinute() const
{
    return continuous == 0 ? 0 : (continuous - 1) % kPerMinute + 1;
}

qint64 at(const TradingCalendar &calendar, const QDateTime &time)
{
    const QDate date = time.date();
    qint64 step = calendar.tradingDaysBefore(date) * kPerDay - 1; // the last one of the day before
    if (!calendar.trades(date))
        return step;
    const int second = time.time().msecsSinceStartOfDay() / 1000;
    for (const Part &part : kParts)
        step += qBound(0, (second - part.from) / kSeconds, part.steps);
    return step;
}

QDateTime timeOf(const TradingCalendar &calendar, qint64 step)
{
    int left = int(step % kPerDay) + 1;
    const Part *part = std::begin(kParts);
    for (; left > part->steps; ++part)
        left -= part->steps;
    return QDateTime(calendar.dateOf(step / kPerDay),
                     QTime::fromMSecsSinceStartOfDay((part->from + left * kSeconds) * 1000), Qt::UTC);
}

qint64 first(qint64 day, Phase phase)
{
    qint64 step = day * kPerDay;
    for (const Part *part = std::begin(kParts); part->phase != phase; ++part)
        step += part->steps;
    return step;
}

qint64 last(qint64 day, Phase phase)
{
    qint64 end = day * kPerDay;
    qint64 step = end;
    for (const Part &part : kParts) {
        end += part.steps;
        if (part.phase == phase)
            step = end - 1;
    }
    return step;
}

qint64 ofMinute(qint64 minute)
{
    return first(minute / TradingCalendar::kMinutesPerDay, Phase::Continuous) +
           minute % TradingCalendar::kMinutesPerDay * kPerMinute;
}

qint64 nextOfBooks(qint64 step)
{
    const qint64 settlement = last(step / kPerDay, Phase::Settlement);
    return step < settlement ? settlement : settlement + 1; // a day begins after the settlement of the one before
}

qint64 ofQuote(qint64 step)
{
    return qMin(step, last(step / kPerDay, Phase::Continuous));
}

} // namespace sim::steps
