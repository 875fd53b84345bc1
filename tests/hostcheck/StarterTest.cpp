#include "CheckProcess.h"

#include <gtest/gtest.h>

// The starter is sound as far as it goes: it has no bus that delivers anything.
TEST(Starter, FailsOnlyForWantOfABus)
{
    const CheckRun run = runProgram(STARTER_CHECK, "--time-limit 2");
    EXPECT_EQ(run.broken(), CheckRun::Names{"bus.events-arrive"}) << run.output;
}
