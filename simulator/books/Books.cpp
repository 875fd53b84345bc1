#include "books/Books.h"

#include "exchange/MarketRules.h"

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

int Books::enter(Order order, Money available, const PriceLimits &limits)
{
    const int number = int(m_orders.size());
    order.id = numbered(QStringLiteral("O") + m_orderIdPrefix, number + 1);
    order.changed = order.entered;
    order.highestPrice = limits.highest;
    if (order.remark.isEmpty())
        order.remark = violatedRule(order, limits);
    if (order.remark.isEmpty())
        order.remark = ledgerOf(order).shortage(order, available);
    if (order.remark.isEmpty())
        ledgerOf(order).reserve(order);
    else
        order.status = OrderStatus::Rejected;
    m_byOrderId.insert(order.id, number);
    m_orders.push_back(order);
    return number;
}

Order &Books::openOrder(int number)
{
    Order &order = m_orders[size_t(number)];
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
    change(filled, filled.filledQty == filled.qty ? OrderStatus::Filled : OrderStatus::PartlyFilled, time);
    ledger.reserve(filled);
    const QString id = numbered(QStringLiteral("E") + m_orderIdPrefix, int(m_executions.size()) + 1);
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
    m_orders[size_t(order)].remark = QStringLiteral("撤单太晚，委托已全部成交");
}

} // namespace sim
