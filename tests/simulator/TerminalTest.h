#pragma once

#include "terminal/Terminal.h"

#include <gtest/gtest.h>

/// A test with a terminal that plays the built-in scenario, with nearly no latency.
class TerminalTest : public testing::Test {
protected:
    static constexpr double kSpeed = 1000;

    explicit TerminalTest(double speed = kSpeed, const QTime &start = QTime())
        : scenario(defaultScenario(start)), terminal(scenario, scenario.logins.first(), speed)
    {
    }

    /// The built-in scenario, from another time of its day on if one is given.
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

/// The same in the evening: the terminal does all that it is asked for, and nothing happens on the market.
class QuietTerminalTest : public TerminalTest {
protected:
    QuietTerminalTest() : TerminalTest(kSpeed, QTime(16, 0)) {}
};

/// The same at a moment that does not pass: prices stay, and the bus answers nothing.
class StandingTerminalTest : public TerminalTest {
protected:
    StandingTerminalTest() : TerminalTest(1e-6) {}
};
