// What a page's call costs on the user-interface thread with a whole host behind it: the simulator answers. Each case
// has its baseline: the host's work and the text by QJsonDocument, without the library.

#include "BenchHost.h"

#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"
#include "dataservice/DataProcess.h"
#include "msgcenter/WebMsgCenter.h"

#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "CPackMessageCommon.h"
#include "OrderRequestList.h"
#include "QvCore.h"
#include "Tessar_Fields.h"
#include "VarnelCefView.h"
#include "VarnelTradeLogic.h"

#include <QCoreApplication>

#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

/// A view whose page drops what it gets; both sides of a comparison pay for it alike.
class Page {
public:
    ~Page() { takeEvents(); }

    void send(const QString &event, const QString &text)
    {
        QCefEvent reply(event);
        reply.arguments().append(text);
        view.broadcastEvent(reply);
    }

    void takeEvents() { QCoreApplication::sendPostedEvents(&view); }

    VarnelCefView view;
};

QString bareReply(const QVariant &resultData)
{
    return qtText(envelope(resultData));
}

QVariantList candles(const QString &requestId, int count)
{
    QVariantList list;
    for (int i = 0; i < count; ++i) {
        list.append(QVariantMap{{Tessar_Fields::System::clientMsgID, requestId},
                                {QStringLiteral("time"), QStringLiteral("20240102093100")},
                                {QStringLiteral("open"), 10.01 + i},
                                {QStringLiteral("high"), 10.21 + i},
                                {QStringLiteral("low"), 9.98 + i},
                                {QStringLiteral("close"), 10.11 + i},
                                {QStringLiteral("volume"), qlonglong(123400 + i)},
                                {QStringLiteral("amount"), 1234567.89 + i}});
    }
    return list;
}

void tokenBaseline(benchmark::State &state)
{
    Page page;
    while (state.KeepRunning()) {
        page.send(QStringLiteral("Data_getToken_RES"), bareReply(QvCore::instance()->getCurrentToken()));
        page.takeEvents();
    }
}
BENCHMARK(tokenBaseline)->Name("trivial call, whole/host and QJsonDocument text");

void tokenCall(benchmark::State &state)
{
    Page page;
    auto *dispatcher = new DataThread(&page.view);
    const QVariantList args{uuid};
    while (state.KeepRunning()) {
        dispatcher->onInvokeMethod(0, 0, QStringLiteral("Data_getToken_REQ"), args);
        page.takeEvents();
    }
}
BENCHMARK(tokenCall)->Name("trivial call, whole/library");

void candlesBaseline(benchmark::State &state)
{
    Page page;
    const QVariantList answer = candles(QStringLiteral("1"), int(state.range(0)));
    while (state.KeepRunning()) {
        page.send(QStringLiteral("Data_getKLineData_RES"), bareReply(answer));
        page.takeEvents();
    }
}
BENCHMARK(candlesBaseline)
    ->Name("candles, whole/QJsonDocument text")
    ->ArgName("candles")
    ->RangeMultiplier(8)
    ->Range(8, 4096);

void ordersBaseline(benchmark::State &state)
{
    const int count = int(state.range(0));
    Page page;
    while (state.KeepRunning()) {
        QVariantList records;
        int total = 0;
        const QList<QVariantMap> orders = BusinessDataInterface::GetOrderListByCustomKey({}, total, 0, count, {}, {});
        for (const QVariantMap &order : orders)
            records.append(DataProcess::instance()->packageEntrustOrderMsg(order));
        page.send(QStringLiteral("Data_getEntrustList_RES"), bareReply(records));
        page.takeEvents();
    }
}
BENCHMARK(ordersBaseline)->Name("order list, whole/host and QJsonDocument text")->ArgName("orders")->Arg(100);

void ordersCall(benchmark::State &state)
{
    Page page;
    auto *dispatcher = new DataThread(&page.view);
    const QVariantList args{uuid, QStringLiteral("{}"), 0, int(state.range(0))};
    while (state.KeepRunning()) {
        dispatcher->onInvokeMethod(0, 0, QStringLiteral("Data_getEntrustList_REQ"), args);
        page.takeEvents();
    }
}
BENCHMARK(ordersCall)->Name("order list, whole/library")->ArgName("orders")->Arg(100);

/// The id that the simulator's packer gives out next.
QString nextRequestId()
{
    const CPackMessageCommon probe;
    return QString::number(probe.GetValue(Tessar_Fields::System::clientMsgID).toLongLong() + 1);
}

/// Leaves a request of the dispatcher that the bus never answers, and gives its id.
QString leaveRequest(DataThread *dispatcher)
{
    const QString id = nextRequestId();
    dispatcher->onInvokeMethod(0, 0, QStringLiteral("Data_getKLineData_REQ"),
                               {uuid, QStringLiteral("no such symbol"), QString(), QString(), QStringLiteral("1")});
    return id;
}

void candlesAnswer(benchmark::State &state)
{
    Page page;
    auto *dispatcher = new DataThread(&page.view);
    while (state.KeepRunning()) {
        state.PauseTiming();
        const QVariantList answer = candles(leaveRequest(dispatcher), int(state.range(0)));
        state.ResumeTiming();
        WebMsgCenter::instance()->ProcQuotationMsg(QString(), QStringLiteral("KLineResponse"), answer);
        page.takeEvents();
    }
}
BENCHMARK(candlesAnswer)->Name("candles, whole/library")->ArgName("candles")->RangeMultiplier(8)->Range(8, 4096);

/// An answer is signalled to every dispatcher; all but one find that it is not theirs.
void candlesForOneOfManyViews(benchmark::State &state)
{
    std::vector<std::unique_ptr<Page>> pages;
    std::vector<DataThread *> dispatchers;
    for (int i = 0; i < state.range(0); ++i) {
        pages.push_back(std::make_unique<Page>());
        dispatchers.push_back(new DataThread(&pages.back()->view));
        leaveRequest(dispatchers.back());
    }
    const QVariantList answer = candles(QStringLiteral("nobody's"), 240);
    while (state.KeepRunning())
        WebMsgCenter::instance()->ProcQuotationMsg(QString(), QStringLiteral("KLineResponse"), answer);
}
BENCHMARK(candlesForOneOfManyViews)
    ->Name("candles, whole/library, none of the views asked")
    ->ArgName("views")
    ->RangeMultiplier(4)
    ->Range(1, 64);

/// An order that the host refuses at once: what is left is the library's own work.
const QString noSuchSymbol = QStringLiteral("no such symbol");

void orderBaseline(benchmark::State &state)
{
    Page page;
    while (state.KeepRunning()) {
        VarnelLogic::OrderRequest request;
        request.symbol = noSuchSymbol;
        request.clOrdID = CBusinessDataBase::GetInstance()->getClientOrderID();
        OrderRequestList orders(QStringLiteral("A880010001"), QString());
        orders.AddSymbol(request);
        QVariant response;
        QList<VarnelLogic::ResponseInfo> errors;
        VarnelTradeLogic::instance()->orders(orders, response, 319, errors, true);
        page.send(QStringLiteral("Trade_insertOrder_RES"),
                  bareReply(QVariantMap{{QStringLiteral("symbol"), noSuchSymbol}}));
        page.takeEvents();
    }
}
BENCHMARK(orderBaseline)->Name("order refused, whole/host and QJsonDocument text");

void orderCall(benchmark::State &state)
{
    Page page;
    auto *dispatcher = new TradeThread(&page.view);
    const QVariantList args{uuid,
                            QStringLiteral("880010001"),
                            noSuchSymbol,
                            QStringLiteral("SH"),
                            QStringLiteral("Buy"),
                            QStringLiteral("Limit"),
                            QStringLiteral("10.01"),
                            QStringLiteral("100"),
                            QStringLiteral("bench")};
    while (state.KeepRunning()) {
        dispatcher->onInvokeMethod(0, 0, QStringLiteral("Trade_insertOrder_REQ"), args);
        page.takeEvents();
    }
}
BENCHMARK(orderCall)->Name("order refused, whole/library");

} // namespace
