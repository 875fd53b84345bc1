// What a push costs on the terminal's user-interface thread, beside the least that the work itself needs. The host is
// the simulator's; quotes and events are handed in on the measuring thread.

#include "BenchHost.h"

#include "dataservice/DataProcess.h"
#include "msgcenter/WebMsgCenter.h"

#include "BusinessDataInterface.h"
#include "CPackMessageCommon.h"
#include "CommonQuotaHandler.h"
#include "Tessar_Fields.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

const QString symbol = QStringLiteral("609801.SH");

QString compact(const QJsonDocument &document)
{
    return QString::fromUtf8(document.toJson(QJsonDocument::Compact));
}

/// Registered pages, each subscribed to a hundred symbols.
class Pages {
public:
    Pages(int count, const QString &wanted)
    {
        QStringList symbols{wanted};
        for (int i = 1; i < 100; ++i)
            symbols.append(QStringLiteral("none%1").arg(i));
        for (int i = 0; i < count; ++i) {
            pages.push_back(std::make_unique<Page>());
            WebMsgCenter::instance()->reg(&pages.back()->view);
            WebMsgCenter::instance()->subscribe(&pages.back()->view, uuid, symbols);
        }
        takeEvents();
    }

    ~Pages()
    {
        for (const auto &page : pages) {
            WebMsgCenter::instance()->unsubscribeAll(&page->view);
            WebMsgCenter::instance()->unReg(&page->view);
        }
    }

    void takeEvents()
    {
        for (const auto &page : pages)
            page->takeEvents();
    }

    std::vector<std::unique_ptr<Page>> pages;
};

void tickBaseline(benchmark::State &state)
{
    const Pages none(0, symbol);
    std::vector<std::unique_ptr<Page>> pages(size_t(state.range(0)));
    std::generate(pages.begin(), pages.end(), std::make_unique<Page>);
    const QVariantMap quote = CommonQuotaHandler::instance()->GetQuotaSnapshot(symbol, 0);
    while (state.KeepRunning()) {
        const QString text = compact(QJsonDocument::fromVariant(quote));
        for (const auto &page : pages)
            page->send(QStringLiteral("on_tickUpdate"), text);
        for (const auto &page : pages)
            page->takeEvents();
    }
}
BENCHMARK(tickBaseline)->Name("tick/baseline: one text made and sent to N views")->RangeMultiplier(8)->Range(1, 64);

void tickForAll(benchmark::State &state)
{
    Pages pages(int(state.range(0)), symbol);
    const QVariantMap quote = CommonQuotaHandler::instance()->GetQuotaSnapshot(symbol, 0);
    while (state.KeepRunning()) {
        emit CommonQuotaHandler::instance()->sigTickDataUpdate(symbol, quote);
        pages.takeEvents();
    }
}
BENCHMARK(tickForAll)->Name("tick/update that all of N views subscribed to")->RangeMultiplier(8)->Range(1, 64);

void tickForNobody(benchmark::State &state)
{
    const Pages pages(int(state.range(0)), QStringLiteral("another"));
    const QVariantMap quote = CommonQuotaHandler::instance()->GetQuotaSnapshot(symbol, 0);
    while (state.KeepRunning())
        emit CommonQuotaHandler::instance()->sigTickDataUpdate(symbol, quote);
}
BENCHMARK(tickForNobody)->Name("tick/update that none of N views subscribed to")->RangeMultiplier(8)->Range(1, 64);

QVariantMap anyOrder()
{
    int total = 0;
    const QList<QVariantMap> orders = BusinessDataInterface::GetOrderListByCustomKey({}, total, 0, 1, {}, {});
    return orders.value(0);
}

QVariantMap orderNumbered(QVariantMap order, int number)
{
    order.insert(Tessar_Fields::Security::orderID, QStringLiteral("B%1").arg(number));
    return order;
}

void takeInOrder(const QVariantMap &order)
{
    CPackMessageCommon pack;
    for (auto it = order.cbegin(); it != order.cend(); ++it)
        pack.AddVaule(it.key(), it.value());
    WebMsgCenter::instance()->ProcEventMsg(QString(), 0x30003, pack.GetPackedMsg(0));
}

/// As when the timer fires; here no event loop runs that would fire it.
void flush()
{
    QMetaObject::invokeMethod(WebMsgCenter::instance(), "slotEntrustTimeout");
}

void batchBaseline(benchmark::State &state)
{
    const QVariantMap order = anyOrder();
    int number = 0;
    while (state.KeepRunning())
        benchmark::DoNotOptimize(DataProcess::instance()->packageEntrustOrderMsg(orderNumbered(order, ++number % 10)));
}
BENCHMARK(batchBaseline)->Name("batch/baseline: one record packaged");

void batchAdd(benchmark::State &state)
{
    Pages page(1, symbol);
    const QVariantMap order = anyOrder();
    const int pending = int(state.range(0));
    for (int i = 0; i < pending; ++i)
        takeInOrder(orderNumbered(order, i));
    int number = 0;
    while (state.KeepRunning())
        takeInOrder(orderNumbered(order, ++number % pending));
    flush();
    page.takeEvents();
}
BENCHMARK(batchAdd)->Name("batch/order taken in while N are pending")->Arg(10)->Arg(1000)->Arg(100000);

void flushBaseline(benchmark::State &state)
{
    Page page;
    const QVariantMap record = DataProcess::instance()->packageEntrustOrderMsg(anyOrder());
    while (state.KeepRunning()) {
        QVariantList records;
        for (int i = 0; i < state.range(0); ++i)
            records.append(record);
        page.send(QStringLiteral("on_entrustUpdate"), compact(QJsonDocument(QJsonArray::fromVariantList(records))));
        page.takeEvents();
    }
}
BENCHMARK(flushBaseline)
    ->Name("flush/baseline: the text of N records made and sent")
    ->RangeMultiplier(8)
    ->Range(8, 4096);

void flushBatch(benchmark::State &state)
{
    Pages page(1, symbol);
    const QVariantMap order = anyOrder();
    while (state.KeepRunning()) {
        state.PauseTiming();
        for (int i = 0; i < state.range(0); ++i)
            takeInOrder(orderNumbered(order, i));
        state.ResumeTiming();
        flush();
        page.takeEvents();
    }
}
BENCHMARK(flushBatch)->Name("flush/batch of N orders")->RangeMultiplier(8)->Range(8, 4096);

} // namespace
