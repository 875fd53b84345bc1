#include "CheckProcess.h"

#include <gtest/gtest.h>

TEST(Simulator, PassesEveryCheck)
{
    const CheckRun run = runProgram(SIMULATOR_CHECK, "--with login --with orders --time-limit 40");
    EXPECT_EQ(run.checksThat({"ok"}), run.checks()) << run.output;
    EXPECT_GT(run.checks().size(), 100u);
    EXPECT_EQ(run.exitStatus, 0);
}
