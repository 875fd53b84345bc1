// The cost of making and deleting a view, and of the registry with many views.

#include "BenchHost.h"

#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"
#include "msgcenter/WebMsgCenter.h"

#include <QFile>

#include <memory>
#include <vector>

#include <unistd.h>

#include <benchmark/benchmark.h>

namespace {

double residentBytes()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    return statm.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE));
}

void makeDispatchers(benchmark::State &state)
{
    VarnelCefView view;
    while (state.KeepRunning()) {
        const DataThread data(&view);
        const TradeThread trade(&view);
    }
}
BENCHMARK(makeDispatchers)->Name("two dispatchers/made and destroyed");

/// Memory is counted, not time.
void keepDispatchers(benchmark::State &state)
{
    constexpr int count = 200;
    std::vector<std::unique_ptr<VarnelCefView>> views(count);
    for (auto &view : views)
        view = std::make_unique<VarnelCefView>();
    while (state.KeepRunning()) {
        const double before = residentBytes();
        std::vector<QObject *> dispatchers;
        for (const auto &view : views) {
            dispatchers.push_back(new DataThread(view.get()));
            dispatchers.push_back(new TradeThread(view.get()));
        }
        state.counters["resident bytes for each view"] = (residentBytes() - before) / count;
        qDeleteAll(dispatchers);
    }
}
BENCHMARK(keepDispatchers)->Name("two dispatchers/kept by 200 views")->Iterations(1);

/// A view that comes and goes while N are registered.
void registerView(benchmark::State &state)
{
    std::vector<std::unique_ptr<VarnelCefView>> views(size_t(state.range(0)));
    for (auto &view : views) {
        view = std::make_unique<VarnelCefView>();
        WebMsgCenter::instance()->reg(view.get());
    }
    VarnelCefView another;
    while (state.KeepRunning()) {
        WebMsgCenter::instance()->reg(&another);
        WebMsgCenter::instance()->unReg(&another);
    }
    for (const auto &view : views)
        WebMsgCenter::instance()->unReg(view.get());
}
BENCHMARK(registerView)->Name("registry/a view comes and goes")->ArgName("views")->Arg(1)->Arg(100)->Arg(1000);

} // namespace
