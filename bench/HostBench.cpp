// What the simulator's host costs its callers, most of which are on the user-interface thread. Each case has a smaller
// one beside it, whose cost per record or quote it should have: the same with fewer orders, or earlier in the day.

#include "BenchHost.h"

#include "BusinessDataInterface.h"
#include "CommonQuotaHandler.h"
#include "OrderRequestList.h"
#include "Tessar_Fields.h"
#include "VarnelDealReportGen.h"
#include "VarnelEntrustReportGen.h"
#include "VarnelPositionReportGen.h"
#include "VarnelTradeLogic.h"
#include "common/ReportColumns.h"
#include "terminal/Terminal.h"

#include <benchmark/benchmark.h>

using namespace sim;

namespace {

using LineData = QMap<int, QVariantMap>;

// Cells

const QList<QVariantMap> &orderRecords()
{
    static const QList<QVariantMap> records = [] {
        int total = 0;
        return BusinessDataInterface::GetOrderListByCustomKey({}, total, 0, 100, {}, {});
    }();
    return records;
}

const QList<QVariantMap> &executionRecords()
{
    static const QList<QVariantMap> records = [] {
        int total = 0;
        return BusinessDataInterface::GetExecutionListByCustomKey({}, total, 0, 100, {});
    }();
    return records;
}

const QList<QVariantMap> &positionRecords()
{
    static const QList<QVariantMap> records = [] {
        const QString account = Terminal::instance().accounts().fundAccounts(StockFund).first().tradingAccounts.first();
        return BusinessDataInterface::GetPositionListByAccount({{Tessar_Fields::UserAccount::tradingAccount, account}},
                                                               {}, {}, {}, {}, {}, {});
    }();
    return records;
}

void fillOrder(const QVariantMap &record, LineData &line)
{
    static const QStringList columns = ReportColumns::entrust();
    VarnelEntrustReportGen::fillLineData(record, line, columns, PlainShowType, false);
}

void fillExecution(const QVariantMap &record, LineData &line)
{
    static const QStringList columns = ReportColumns::execution();
    VarnelDealReportGen::fillLineData(record, line, columns, PlainShowType, false);
}

void fillPosition(const QVariantMap &record, LineData &line)
{
    static const QStringList columns = ReportColumns::position();
    static const QVariantMap quote = CommonQuotaHandler::instance()->GetQuotaSnapshot(
        positionRecords().first().value(Tessar_Fields::Security::symbol).toString(), 0);
    VarnelPositionReportGen::fillLineData(0, record, line, columns, PlainShowType, quote, QString(), false);
}

void cells(benchmark::State &state, const QList<QVariantMap> &(*records)(),
           void (*fill)(const QVariantMap &, LineData &))
{
    const QList<QVariantMap> &all = records();
    int next = 0;
    while (state.KeepRunning()) {
        LineData line;
        fill(all[next++ % all.size()], line);
        benchmark::DoNotOptimize(line);
    }
}

/// The same maps, made of values that are there already: what nobody could save who fills them.
void copiedCells(benchmark::State &state, const QList<QVariantMap> &(*records)(),
                 void (*fill)(const QVariantMap &, LineData &))
{
    LineData filled;
    fill(records().first(), filled);
    while (state.KeepRunning()) {
        LineData line;
        for (auto cell = filled.cbegin(); cell != filled.cend(); ++cell) {
            QVariantMap &copy = line[cell.key()];
            for (auto role = cell->cbegin(); role != cell->cend(); ++role)
                copy.insert(role.key(), *role);
        }
        benchmark::DoNotOptimize(line);
    }
}

BENCHMARK_CAPTURE(cells, order, orderRecords, fillOrder)->Name("cells of an order/host");
BENCHMARK_CAPTURE(copiedCells, order, orderRecords, fillOrder)->Name("cells of an order/copied");
BENCHMARK_CAPTURE(cells, execution, executionRecords, fillExecution)->Name("cells of an execution/host");
BENCHMARK_CAPTURE(cells, position, positionRecords, fillPosition)->Name("cells of a position/host");

void orderRecord(benchmark::State &state)
{
    const QString id = orderRecords().first().value(Tessar_Fields::Security::orderID).toString();
    while (state.KeepRunning())
        benchmark::DoNotOptimize(BusinessDataInterface::GetOrderDetailByOrderID(id));
}
BENCHMARK(orderRecord)->Name("record of an order/host");

// Orders

OrderRequestList orderList(int count)
{
    const Terminal &terminal = Terminal::instance();
    const QString account = terminal.accounts().fundAccounts(StockFund).first().tradingAccounts.first();
    OrderRequestList list(account, QStringLiteral("bench"));
    for (const Instrument &instrument : terminal.exchange().instruments()) {
        if (instrument.kind != SecurityKind::Share)
            continue;
        const std::optional<Quote> quote = terminal.exchange().quote(instrument.symbol);
        for (int i = 0; quote && i < count; ++i)
            list.AddSymbol(instrument.symbol, instrument.minQty, QStringLiteral("Limit"),
                           QString::number(quote->lowerLimit, 'f', instrument.decimals), QStringLiteral("Buy"),
                           instrument.exchange);
        break;
    }
    return list;
}

/// Places a list of orders and cancels them, so that each round begins with the same money.
void placeAndCancel(benchmark::State &state, const OrderRequestList &list)
{
    TradingDesk &desk = Terminal::instance().desk();
    QVariant response;
    QList<VarnelLogic::ResponseInfo> errors;
    if (VarnelTradeLogic::instance()->orders(list, response, 0, errors, true) != 0)
        return state.SkipWithError("the host refuses the orders");
    state.PauseTiming();
    std::vector<TradingDesk::CancelRequest> cancels;
    for (const QVariant &order : response.toList())
        cancels.push_back({order.toMap().value(Tessar_Fields::Security::orderID).toString(), list.Account()});
    desk.cancel(cancels, Terminal::instance().now());
    while (const std::optional<QDateTime> next = desk.nextMessage())
        desk.advance(*next);
    state.ResumeTiming();
}

void placedOrders(benchmark::State &state)
{
    const OrderRequestList list = orderList(int(state.range(0)));
    while (state.KeepRunning())
        placeAndCancel(state, list);
}
BENCHMARK(placedOrders)->Name("orders placed/host")->ArgName("orders")->Arg(1)->Arg(50)->Arg(5000);

/// Orders that wait far from the price, spread over all securities that have a price limit: the steps of an hour.
void stepsWithOrders(benchmark::State &state)
{
    const Exchange &exchange = Terminal::instance().exchange();
    const qint64 first = exchange.stepAt(QDateTime(Terminal::instance().now().date(), QTime(10, 0), Qt::UTC));
    std::vector<Order> orders;
    for (const Instrument &instrument : exchange.instruments()) {
        const PriceLimits limits = exchange.limits(instrument.symbol, first);
        if (!limits.areSet())
            continue;
        Order order;
        order.instrument = &instrument;
        order.price = limits.lower;
        order.qty = instrument.minQty;
        orders.push_back(order);
    }
    Matching matching;
    for (int number = 0; number < state.range(0); ++number)
        matching.add(number, orders[size_t(number) % orders.size()], exchange, first);
    qint64 step = 0;
    while (state.KeepRunning())
        benchmark::DoNotOptimize(matching.play(exchange, first + 1 + step++ % 1200));
}
BENCHMARK(stepsWithOrders)->Name("step of the market/host")->ArgName("open orders")->Arg(1000)->Arg(10000)->Arg(100000);

// Quotes

/// Each security in turn, at each step of that minute of the day.
void quotes(benchmark::State &state)
{
    const Exchange &exchange = Terminal::instance().exchange();
    const QDateTime open(Terminal::instance().now().date(), QTime(9, 30), Qt::UTC);
    const QDateTime begin = open.addSecs(60 * (state.range(0) - 1));
    int next = 0;
    int step = 1;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(exchange.quote(exchange.instruments()[next].symbol, begin.addSecs(qint64{3} * step)));
        if (++next == exchange.instruments().size()) {
            next = 0;
            step = step % 20 + 1;
        }
    }
}
BENCHMARK(quotes)->Name("quote/host")->ArgName("minute")->Arg(1)->Arg(120);

} // namespace
