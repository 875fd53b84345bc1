#include "platform/SimulatedClock.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <thread>

using namespace sim;

namespace {

const QDateTime kStart(QDate(2025, 3, 3), QTime(10, 0), Qt::UTC);
constexpr double kStanding = 1e-6; // hardly a microsecond passes in a second

} // namespace

TEST(SimulatedClock, StartsAtTheGivenTimeAndRunsAtTheGivenSpeed)
{
    const QDateTime start(QDate(2025, 3, 3), QTime(10, 0), Qt::UTC);
    constexpr int kSpeed = 1000;
    QElapsedTimer outer; // runs longer than the clock
    outer.start();
    const SimulatedClock clock(start, kSpeed);
    QElapsedTimer inner; // runs shorter
    inner.start();
    while (clock.now() < start.addSecs(5)) { // 5 ms of real time
    }
    const qint64 least = inner.elapsed();
    const qint64 passed = start.msecsTo(clock.now());
    const qint64 most = outer.elapsed() + 1;
    EXPECT_GE(passed, least * kSpeed);
    EXPECT_LE(passed, most * kSpeed);
}

TEST(SimulatedClock, KnowsHowLongToWaitInRealTime)
{
    const QDateTime start(QDate(2025, 3, 3), QTime(10, 0), Qt::UTC);
    const SimulatedClock clock(start, 0.01);
    const auto wait = clock.realTimeUntil(start.addSecs(3));
    EXPECT_GT(wait, std::chrono::seconds(0));
    EXPECT_LE(wait, std::chrono::seconds(300));
    EXPECT_EQ(std::chrono::hours(1), clock.realTimeUntil(start.addDays(365)));
    EXPECT_EQ(std::chrono::seconds(0), clock.realTimeUntil(start.addSecs(-1)));
}

TEST(SimulatedClock, StandsStillForAllThreadsWhileItIsHeld)
{
    SimulatedClock clock(kStart, 1000);
    QDateTime held;
    {
        const SimulatedClock::Hold hold(clock);
        held = clock.now();
        clock.skipTo(held.addSecs(60));
        const SimulatedClock::Hold inner(clock);
        EXPECT_EQ(held, clock.now());
        QDateTime elsewhere;
        std::thread([&] { elsewhere = clock.now(); }).join();
        EXPECT_EQ(held, elsewhere);
        // Nobody who waits for a time that has not come yet may do so without a pause.
        EXPECT_EQ(std::chrono::milliseconds(1), clock.realTimeUntil(held.addSecs(1)));
    }
    EXPECT_LE(held.addSecs(60), clock.now());
}

TEST(SimulatedClock, SkipsToATimeAndNeverGoesBack)
{
    SimulatedClock clock(kStart, kStanding);
    clock.skipTo(kStart.addSecs(5));
    EXPECT_EQ(kStart.addSecs(5), clock.now());
    clock.skipTo(kStart);
    EXPECT_EQ(kStart.addSecs(5), clock.now());
}

TEST(SimulatedClock, GoesNoFurtherThanItsLimit)
{
    SimulatedClock clock(kStart, kStanding);
    clock.setLimit(kStart.addSecs(5));
    EXPECT_EQ(std::chrono::hours(1), clock.realTimeUntil(kStart.addSecs(6)));
    clock.skipTo(kStart.addSecs(10)); // moves the limit
    EXPECT_EQ(kStart.addSecs(10), clock.now());
    clock.setLimit(kStart); // has passed: time stands
    EXPECT_EQ(kStart.addSecs(10), clock.now());

    SimulatedClock fast(kStart, 1e6);
    QDateTime limit;
    {
        const SimulatedClock::Hold hold(fast); // so that the limit has not passed
        limit = fast.now().addSecs(3);
        fast.setLimit(limit);
    }
    while (fast.now() < limit) {
    }
    EXPECT_EQ(limit, fast.now());
    fast.setLimit(limit.addDays(1));
    while (fast.now() == limit) {
    }
}

TEST(SimulatedClock, AThreadCanHaveATimeOfItsOwn)
{
    const SimulatedClock clock(kStart, kStanding);
    const QDateTime outer = kStart.addSecs(-7);
    const FrozenTime frozen(outer);
    {
        const FrozenTime inner(kStart.addSecs(7));
        EXPECT_EQ(kStart.addSecs(7), clock.now());
    }
    EXPECT_EQ(outer, clock.now());
    QDateTime elsewhere;
    std::thread([&] { elsewhere = clock.now(); }).join();
    EXPECT_EQ(kStart, elsewhere);
}

TEST(SimulatedClock, RunsOnInAReleaseAndStandsBehindIt)
{
    SimulatedClock clock(kStart, kStanding);
    const SimulatedClock::Hold outer(clock);
    const SimulatedClock::Hold inner(clock);
    {
        const SimulatedClock::Release release(clock);
        clock.skipTo(kStart.addSecs(60));
        EXPECT_EQ(kStart.addSecs(60), clock.now());
    }
    clock.skipTo(kStart.addSecs(120));
    EXPECT_EQ(kStart.addSecs(60), clock.now());
}
