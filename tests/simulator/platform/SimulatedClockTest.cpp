#include "platform/SimulatedClock.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

using namespace sim;

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
