#include "exchange/TradingSteps.h"
#include "exchange/TestClock.h"

#include <gtest/gtest.h>

using namespace sim;

namespace {

const TradingCalendar kCalendar({QDate(2025, 3, 4)});

qint64 stepAt(const char *time)
{
    return steps::at(kCalendar, at(time));
}

} // namespace

TEST(TradingSteps, ADayHasThesePhases)
{
    const struct {
        Phase phase;
        const char *first;
        const char *last;
    } table[] = {
        {Phase::DayBegins, "2025-03-03 09:00:00", "2025-03-03 09:00:00"},
        {Phase::OpeningCall, "2025-03-03 09:15:03", "2025-03-03 09:24:57"},
        {Phase::OpeningMatch, "2025-03-03 09:25:00", "2025-03-03 09:25:00"},
        {Phase::Continuous, "2025-03-03 09:30:03", "2025-03-03 15:00:00"},
        {Phase::AfterHours, "2025-03-03 15:05:03", "2025-03-03 15:30:00"},
        {Phase::Settlement, "2025-03-03 16:00:00", "2025-03-03 16:00:00"},
    };
    const qint64 day = kCalendar.tradingDaysBefore(QDate(2025, 3, 3));
    qint64 next = stepAt("2025-02-28 23:00:00") + 1;
    for (const auto &row : table) {
        EXPECT_EQ(next, steps::first(day, row.phase));
        EXPECT_EQ(next, stepAt(row.first));
        const qint64 last = stepAt(row.last);
        EXPECT_EQ(last, steps::last(day, row.phase));
        for (qint64 step = next; step <= last; ++step) {
            EXPECT_EQ(row.phase, steps::Moment(step).phase);
            EXPECT_EQ(step - next + 1, steps::Moment(step).ofPhase);
            EXPECT_EQ(day, steps::Moment(step).day);
        }
        next = last + 1;
    }
    EXPECT_EQ(next, stepAt("2025-03-05 09:00:00")); // the 4th is a holiday
}

TEST(TradingSteps, EveryStepIsTheOneAtItsTime)
{
    const qint64 last = stepAt("2025-03-05 23:00:00");
    QDateTime before = at("2025-02-28 23:00:00");
    for (qint64 step = stepAt("2025-02-28 23:00:00") + 1; step <= last; ++step) {
        const QDateTime time = steps::timeOf(kCalendar, step);
        EXPECT_EQ(step, steps::at(kCalendar, time));
        EXPECT_EQ(step - 1, steps::at(kCalendar, time.addSecs(-1)));
        EXPECT_LT(before, time);
        before = time;
    }
}

TEST(TradingSteps, TheMinutesOfContinuousTradingAreThoseOfTheCalendar)
{
    const qint64 first = kCalendar.tradingDaysBefore(QDate(2025, 3, 3)) * TradingCalendar::kMinutesPerDay;
    for (qint64 minute = first; minute < first + qint64{2} * TradingCalendar::kMinutesPerDay; ++minute) {
        const qint64 step = steps::ofMinute(minute);
        EXPECT_EQ(kCalendar.endOfMinute(minute), steps::timeOf(kCalendar, step + steps::kPerMinute - 1));
        for (int i = 0; i < steps::kPerMinute; ++i) {
            EXPECT_EQ(minute, steps::Moment(step + i).minute());
            EXPECT_EQ(i + 1, steps::Moment(step + i).stepsOfMinute());
        }
    }
    const steps::Moment opening(stepAt("2025-03-03 09:25:00"));
    EXPECT_EQ(first, opening.minute());
    EXPECT_EQ(0, opening.stepsOfMinute());
}

TEST(TradingSteps, AfterTheCloseNoStepChangesTheQuotes)
{
    EXPECT_EQ(stepAt("2025-03-03 09:00:00"), steps::ofQuote(stepAt("2025-03-03 09:00:00")));
    EXPECT_EQ(stepAt("2025-03-03 14:10:00"), steps::ofQuote(stepAt("2025-03-03 14:10:00")));
    EXPECT_EQ(stepAt("2025-03-03 15:00:00"), steps::ofQuote(stepAt("2025-03-03 15:10:00")));
    EXPECT_EQ(stepAt("2025-03-03 15:00:00"), steps::ofQuote(stepAt("2025-03-04 12:00:00")));
}
