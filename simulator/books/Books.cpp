#include "books/Books.h"

#include "exchange/MarketRules.h"

#include <algorithm>

namespace sim {

namespace {

QString numbered(const QString &prefix, int number)
{
    return prefix + QString::number(number).rightJustified(8, QLatin1Char('0'));
}

} // namespace

Books::Books(const Accounts &accounts, const QString &orderIdPrefix)
    : m_accounts(accounts), m_orderIdPrefix(orderIdPrefix)
{
    const QVector<FundAccount> funds = accounts.fundAccounts(AllFunds);
    for (const FundAccount &fund : funds) {
        for (const QString &tradingAccount : fund.tradingAccounts)
            m_ledgers.insert(tradingAccount, Ledger());
    }
}

QString Books::nextClientOrderId()
{
    return numbered(m_orderIdPrefix, ++m_lastOrderId);
}

const Ledger *Books::ledger(const QString &tradingAccount) const
{
    const auto found = m_ledgers.constFind(tradingAccount);
    return found == m_ledgers.constEnd() ? nullptr : &*found;
}

Ledger *Books::ledgerToOpen(const QString &tradingAccount)
{
    const auto found = m_ledgers.find(tradingAccount);
    return found == m_ledgers.end() ? nullptr : &*found;
}

int Books::enter(Order order, Money available, const PriceLimits &limits, QString refusal)
{
    const int number = m_firstOrder + int(m_orders.size());
    order.id = numbered(QStringLiteral("O") + m_orderIdPrefix, number + 1);
    order.changed = order.entered;
    order.highestPrice = limits.highest;
    if (order.clientId.isEmpty())
        order.clientId = QLatin1Char('C') + order.id;
    if (refusal.isEmpty())
        refusal = violatedRule(order, limits);
    if (refusal.isEmpty())
        refusal = ledgerOf(order).shortage(order, available);
    if (refusal.isEmpty()) {
        ledgerOf(order).reserve(order);
    } else {
        order.status = OrderStatus::Rejected;
        order.remark = refusal;
    }
    m_byOrderId.insert(order.id, number);
    m_orders.push_back(order);
    return number;
}

Order &Books::openOrder(int number)
{
    Order &order = m_orders[size_t(number - m_firstOrder)];
    Q_ASSERT(order.isOpen());
    return order;
}

void Books::change(Order &order, OrderStatus status, const QDateTime &time)
{
    const bool isStillOpen =
        status == OrderStatus::Sent || status == OrderStatus::Reported || status == OrderStatus::PartlyFilled;
    if (isStillOpen && order.status == OrderStatus::ToBeCancelled)
        return;
    order.status = status;
    order.changed = time;
}

void Books::send(int order, const QDateTime &time)
{
    change(openOrder(order), OrderStatus::Sent, time);
}

void Books::accept(int order, const QDateTime &time)
{
    Order &accepted = openOrder(order);
    const QString &exchange = accepted.instrument->exchange;
    accepted.exchangeOrderId = numbered(exchange, ++m_lastExchangeOrder[exchange]);
    change(accepted, OrderStatus::Reported, time);
}

void Books::reject(int order, const QDateTime &time, const QString &reason)
{
    Order &rejected = openOrder(order);
    ledgerOf(rejected).release(rejected);
    rejected.remark = reason;
    change(rejected, OrderStatus::Rejected, time);
}

void Books::fill(int order, const QDateTime &time, double price, qint64 qty)
{
    Order &filled = openOrder(order);
    Q_ASSERT(qty > 0 && qty <= filled.leaveQty());
    Ledger &ledger = ledgerOf(filled);
    ledger.release(filled);
    const Money fee = ledger.fill(filled, price, qty);
    const Money amount = filled.amount(price, qty);
    filled.filledQty += qty;
    filled.filledAmount += amount;
    filled.feeByRate += feeByRate(*filled.instrument, filled.side, amount);
    change(filled, filled.filledQty == filled.qty ? OrderStatus::Filled : OrderStatus::PartlyFilled, time);
    ledger.reserve(filled);
    const QString id = numbered(QStringLiteral("E") + m_orderIdPrefix, ++m_lastExecution);
    m_executions.push_back({id, order, time, price, qty, amount, fee});
}

void Books::requestCancel(int order, const QDateTime &time)
{
    change(openOrder(order), OrderStatus::ToBeCancelled, time);
}

void Books::cancel(int order, const QDateTime &time, const QString &reason)
{
    Order &cancelled = openOrder(order);
    ledgerOf(cancelled).release(cancelled);
    cancelled.remark = reason;
    change(cancelled, cancelled.filledQty == 0 ? OrderStatus::Cancelled : OrderStatus::PartlyCancelled, time);
}

void Books::noteLateCancel(int order)
{
    m_orders[size_t(order - m_firstOrder)].remark = QStringLiteral("撤单太晚，委托已全部成交");
}

void Books::settle(const Prices &settlementPrices)
{
    for (Ledger &ledger : m_ledgers)
        ledger.settle(settlementPrices);
}

void Books::forgetBefore(const QDateTime &time)
{
    const auto kept =
        std::find_if(m_orders.begin(), m_orders.end(), [&](const Order &order) { return order.entered >= time; });
    for (auto order = m_orders.begin(); order != kept; ++order)
        m_byOrderId.remove(order->id);
    m_firstOrder += int(kept - m_orders.begin());
    m_orders = std::vector<Order>(kept, m_orders.end()); // with as much memory as they need
    const auto keptExecutions = std::find_if(m_executions.begin(), m_executions.end(),
                                             [&](const Execution &execution) { return execution.time >= time; });
    m_executions = std::vector<Execution>(keptExecutions, m_executions.end());
}

} // namespace sim
