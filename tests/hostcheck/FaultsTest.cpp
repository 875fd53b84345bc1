#include "Faults.h"
#include "CheckProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

const std::string kEverything = "--with login --with orders";

class Fault : public testing::TestWithParam<PlantedFault> {};

} // namespace

void PrintTo(const PlantedFault &fault, std::ostream *out)
{
    *out << fault.fault;
}

TEST_P(Fault, IsFoundByTheCheckForItAndByNoOther)
{
    const CheckRun run = runSample(kEverything + " --time-limit 3", GetParam().fault);
    EXPECT_EQ(run.broken(), GetParam().checks) << run.output << run.errors;
    EXPECT_EQ(run.exitStatus, 1);
}

INSTANTIATE_TEST_SUITE_P(Planted, Fault, testing::ValuesIn(plantedFaults),
                         [](const auto &info) { return info.param.fault; });

TEST(Faults, ThereIsOneForEachCheck)
{
    std::set<std::string> found;
    for (const PlantedFault &fault : plantedFaults)
        found.insert(fault.checks.begin(), fault.checks.end());
    CheckRun::Names withoutFault;
    for (const std::string &check : runSample(kEverything).checks()) {
        if (found.count(check) == 0)
            withoutFault.push_back(check);
    }
    EXPECT_EQ(withoutFault, CheckRun::Names());
}

TEST(SampleHost, IsSound)
{
    const CheckRun run = runSample(kEverything);
    EXPECT_EQ(run.checksThat({"ok"}), run.checks()) << run.output;
    EXPECT_EQ(run.exitStatus, 0);
}
