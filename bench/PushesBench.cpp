// What a push costs on the terminal's user-interface thread. Quotes and events are handed in on the measuring thread.

#include "CheapHost.h"
#include "Texts.h"
#include "WebChannelPeer.h"

#include "msgcenter/WebMsgCenter.h"

#include "CommonQuotaHandler.h"

#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

const QString symbol = QStringLiteral("609801.SH");
constexpr int orderEvent = 0x30003;

/// Registered views, each subscribed to a hundred symbols.
class Views {
public:
    Views(int count, const QString &wanted)
    {
        QStringList symbols{wanted};
        for (int i = 1; i < 100; ++i)
            symbols.append(QStringLiteral("%1.SH").arg(600000 + i));
        for (int i = 0; i < count; ++i) {
            m_views.push_back(std::make_unique<VarnelCefView>());
            WebMsgCenter::instance()->reg(m_views.back().get());
            WebMsgCenter::instance()->subscribe(m_views.back().get(), uuid, symbols);
        }
    }

    ~Views()
    {
        for (const auto &view : m_views) {
            WebMsgCenter::instance()->unsubscribeAll(view.get());
            WebMsgCenter::instance()->unReg(view.get());
        }
    }

private:
    std::vector<std::unique_ptr<VarnelCefView>> m_views;
};

void pushTicks(benchmark::State &state, const QString &wanted)
{
    const Views views(int(state.range(0)), wanted);
    const QVariantMap quote = CheapHost::quote();
    while (state.KeepRunning())
        emit CommonQuotaHandler::instance()->sigTickDataUpdate(symbol, quote);
}

void tickForAll(benchmark::State &state)
{
    pushTicks(state, symbol);
}
BENCHMARK(tickForAll)->Name("tick/library")->ArgName("views")->Arg(1)->Arg(10)->Arg(50)->Arg(500);

void tickForNobody(benchmark::State &state)
{
    pushTicks(state, QStringLiteral("another"));
}
BENCHMARK(tickForNobody)->Name("tick/library, nobody wants it")->ArgName("views")->Arg(1)->Arg(50)->Arg(500);

void tickByWebChannel(benchmark::State &state)
{
    WebChannelPeer peer(int(state.range(0)));
    const QVariantMap quote = CheapHost::quote();
    while (state.KeepRunning())
        emit peer.host.tick(quote);
}
BENCHMARK(tickByWebChannel)->Name("tick/QWebChannel")->ArgName("views")->Arg(1)->Arg(10)->Arg(50)->Arg(500);

const bool tickTexts = (addTexts("tick", CheapHost::quote), true);

/// The user-interface thread's part of an event: what the bus thread hands over.
void takeInOrder(int number)
{
    emit WebMsgCenter::instance()->signalParseEventMsg(orderEvent, CheapHost::order(number));
}

/// As when the timer fires; no event loop runs here that would fire it.
void flush()
{
    QMetaObject::invokeMethod(WebMsgCenter::instance(), "slotEntrustTimeout");
}

void takeInOrders(benchmark::State &state)
{
    const int pending = int(state.range(0));
    for (int i = 0; i < pending; ++i)
        takeInOrder(i);
    int number = 0;
    while (state.KeepRunning())
        takeInOrder(++number % pending);
    flush();
}
BENCHMARK(takeInOrders)->Name("order event/library")->ArgName("pending")->Arg(10)->Arg(1000)->Arg(100000);

QVariantList orderRecords(int count)
{
    QVariantList records;
    for (int i = 0; i < count; ++i)
        records.append(CheapHost::orderRecord());
    return records;
}

void flushOrders(benchmark::State &state)
{
    const Views views(1, symbol);
    while (state.KeepRunning()) {
        state.PauseTiming();
        for (int i = 0; i < state.range(0); ++i)
            takeInOrder(i);
        state.ResumeTiming();
        flush();
    }
}
BENCHMARK(flushOrders)->Name("flush/library")->ArgName("orders")->RangeMultiplier(8)->Range(8, 4096)->Arg(1000);

/// All that a batch costs the thread: its orders taken in, and the flush.
void takeInAndFlush(benchmark::State &state)
{
    const Views views(1, symbol);
    while (state.KeepRunning()) {
        for (int i = 0; i < state.range(0); ++i)
            takeInOrder(i);
        flush();
    }
}
BENCHMARK(takeInAndFlush)->Name("intake and flush/library")->ArgName("orders")->Arg(1000);

const bool flushTexts = (addTexts("flush of 1000 orders", [] { return orderRecords(1000); }), true);

} // namespace
