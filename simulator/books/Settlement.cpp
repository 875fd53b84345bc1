#include "books/Settlement.h"

#include "books/Books.h"
#include "exchange/Exchange.h"

#include <algorithm>
#include <cmath>

namespace sim::settlement {

namespace {

const QString kTrader = QStringLiteral("broker");
const QString kTag = QStringLiteral("margin");

Prices pricesAt(const Exchange &exchange, qint64 step)
{
    return [&exchange, step](const QString &symbol) { return exchange.lastPrice(symbol, step).value_or(0); };
}

/// When the trading of that day is over.
QDateTime endOfTrading(const Exchange &exchange, qint64 day)
{
    return exchange.timeOfStep(steps::last(day, Phase::AfterHours));
}

Money marginOf(const Position &position)
{
    return position.holdingCost.part(position.instrument->marginRate);
}

/// How much margin the account lacks; not positive when it has enough.
Money lackingMargin(const Ledger &ledger, const Prices &prices)
{
    return -(ledger.value(prices).available + ledger.frozenCash());
}

Order closingOrder(const Position &position, const QString &tradingAccount, qint64 qty, const PriceLimits &limits)
{
    Order order;
    order.tradingAccount = tradingAccount;
    order.trader = kTrader;
    order.tag = kTag;
    order.instrument = position.instrument;
    order.side = position.isShort ? Side::BuyClose : Side::SellClose;
    order.qty = qty;
    order.priceType = limits.areSet() ? PriceType::Limit : PriceType::Market;
    order.price = position.isShort ? limits.upper : limits.lower;
    order.remark = QStringLiteral("保证金不足，强制平仓");
    return order;
}

/// The numbers of the open orders that pass the test.
template <typename Test>
std::vector<int> openOrdersIf(const Books &books, Test test)
{
    std::vector<int> numbers;
    int number = books.firstOrder();
    for (const Order &order : books.orders()) {
        if (order.isOpen() && test(order))
            numbers.push_back(number);
        ++number;
    }
    return numbers;
}

} // namespace

std::vector<int> expiringOrders(const Books &books, const Exchange &exchange, qint64 step)
{
    const QDateTime end = endOfTrading(exchange, steps::Moment(step).day);
    return openOrdersIf(books, [&](const Order &order) { return order.entered < end; });
}

std::vector<int> openOrders(const Books &books, const QString &tradingAccount)
{
    return openOrdersIf(books, [&](const Order &order) { return order.tradingAccount == tradingAccount; });
}

void settle(Books &books, const Exchange &exchange, qint64 step)
{
    books.settle(pricesAt(exchange, step));
}

void forgetPastDays(Books &books, const Exchange &exchange, qint64 step)
{
    books.forgetBefore(endOfTrading(exchange, steps::Moment(step).day - 1));
}

QStringList accountsShortOfMargin(const Books &books, const Exchange &exchange, qint64 step)
{
    QStringList accounts;
    const Prices prices = pricesAt(exchange, step);
    for (const FundAccount &fund : books.accounts().fundAccounts(FuturesFund)) {
        for (const QString &account : fund.tradingAccounts) {
            if (Money() < lackingMargin(*books.ledger(account), prices))
                accounts.append(account);
        }
    }
    return accounts;
}

std::vector<Order> closingOrders(const Books &books, const Exchange &exchange, const QString &tradingAccount,
                                 qint64 step)
{
    const Ledger &ledger = *books.ledger(tradingAccount);
    std::vector<const Position *> positions;
    for (const Position &position : ledger.positions()) {
        if (position.closableQty() > 0 && Money() < marginOf(position))
            positions.push_back(&position);
    }
    std::stable_sort(positions.begin(), positions.end(),
                     [](const Position *a, const Position *b) { return marginOf(*b) < marginOf(*a); });

    std::vector<Order> orders;
    double lacking = lackingMargin(ledger, pricesAt(exchange, step)).yuan();
    for (const Position *position : positions) {
        const double marginOfOne = marginOf(*position).yuan() / double(position->qty());
        const Instrument &instrument = *position->instrument;
        qint64 qty = qMin(position->closableQty(), qint64(std::ceil(lacking / marginOfOne)));
        lacking -= double(qty) * marginOfOne;
        for (; qty > 0; qty -= qMin(qty, instrument.maxQty)) {
            orders.push_back(closingOrder(*position, tradingAccount, qMin(qty, instrument.maxQty),
                                          exchange.limits(instrument.symbol, step)));
        }
        if (lacking <= 0)
            break;
    }
    return orders;
}

} // namespace sim::settlement
