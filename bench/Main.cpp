// main() of the benchmarks that Google Benchmark runs.

#include "BenchHost.h"

#include <QApplication>
#include <QLoggingCategory>

#include <benchmark/benchmark.h>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*=false")); // as a terminal has them
    const auto terminal = makeTerminal();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
