#include "Faults.h"
#include "CheckProcess.h"

#include <gtest/gtest.h>

namespace {

const QString kEverything = QStringLiteral("--with login --with orders");

QStringList sorted(const std::vector<const char *> &checks)
{
    QStringList names;
    for (const char *check : checks)
        names.append(QString::fromLatin1(check));
    names.sort();
    return names;
}

class Fault : public testing::TestWithParam<PlantedFault> {};

} // namespace

void PrintTo(const PlantedFault &fault, std::ostream *out)
{
    *out << fault.fault;
}

TEST_P(Fault, IsFoundByTheCheckForItAndByNoOther)
{
    const CheckRun run = runSample(kEverything + QStringLiteral(" --time-limit 2"), GetParam().fault);
    EXPECT_EQ(run.broken(), sorted(GetParam().checks)) << qPrintable(run.output) << qPrintable(run.errors);
    EXPECT_EQ(run.exitStatus, 1);
}

INSTANTIATE_TEST_SUITE_P(Planted, Fault, testing::ValuesIn(plantedFaults),
                         [](const auto &info) { return std::string(info.param.fault); });

TEST(Faults, ThereIsOneForEachCheck)
{
    QStringList found;
    for (const PlantedFault &fault : plantedFaults)
        found += sorted(fault.checks);
    QStringList withoutFault;
    const QStringList all = runSample(kEverything).words().keys();
    for (const QString &check : all) {
        if (!found.contains(check))
            withoutFault.append(check);
    }
    EXPECT_EQ(withoutFault, QStringList());
}

TEST(SampleHost, IsSound)
{
    const CheckRun run = runSample(kEverything);
    EXPECT_EQ(run.checksThat({"ok"}), run.words().keys()) << qPrintable(run.output);
    EXPECT_EQ(run.exitStatus, 0);
}
