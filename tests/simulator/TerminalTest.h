#pragma once

#include "platform/Terminal.h"

#include <gtest/gtest.h>

/// A test with a terminal that plays the built-in scenario, with nearly no latency.
class TerminalTest : public testing::Test {
protected:
    static constexpr double kSpeed = 1000;

    explicit TerminalTest(double speed = kSpeed) : terminal(scenario, scenario.logins.first(), speed) {}

    static sim::Scenario defaultScenario()
    {
        sim::Scenario scenario;
        QString error;
        EXPECT_TRUE(sim::Scenario::read(sim::Scenario::defaultFile(), scenario, error)) << qPrintable(error);
        return scenario;
    }

    const sim::Scenario scenario = defaultScenario();
    sim::Terminal terminal;
};

/// The same at a moment that does not pass: prices stay, and the bus answers nothing.
class StandingTerminalTest : public TerminalTest {
protected:
    StandingTerminalTest() : TerminalTest(1e-6) {}
};
