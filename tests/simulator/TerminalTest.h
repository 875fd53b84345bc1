#pragma once

#include "terminal/Terminal.h"

#include <gtest/gtest.h>

/// A test with a terminal that plays the built-in scenario a thousand times as fast as real time.
class TerminalTest : public testing::Test {
protected:
    static constexpr double kSpeed = 1000;

    explicit TerminalTest(double speed = kSpeed, const QTime &start = QTime(), bool stands = false)
        : scenario(defaultScenario(start)), terminal(scenario, scenario.logins.first(), speed, stands)
    {
    }

    /// The built-in scenario, starting at another time of its day if one is given.
    static sim::Scenario defaultScenario(const QTime &start = QTime())
    {
        sim::Scenario scenario;
        QString error;
        EXPECT_TRUE(sim::Scenario::read(sim::Scenario::defaultFile(), scenario, error)) << qPrintable(error);
        if (start.isValid())
            scenario.start.setTime(start);
        return scenario;
    }

    const sim::Scenario scenario;
    sim::Terminal terminal;
};

/// The same in the evening: the terminal works, and no quote changes.
class QuietTerminalTest : public TerminalTest {
protected:
    QuietTerminalTest() : TerminalTest(kSpeed, QTime(16, 0)) {}
};

/// The same with time nearly standing still: quotes do not change, and the bus delivers nothing.
class StandingTerminalTest : public TerminalTest {
protected:
    StandingTerminalTest() : TerminalTest(1e-6) {}
};
