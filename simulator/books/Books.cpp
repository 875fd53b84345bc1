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
    if (order.remark.isEmpty()) {
        const QString &exchange = order.instrument->exchange;
        order.exchangeOrderId = numbered(exchange, ++m_lastExchangeOrder[exchange]);
        ledgerOf(order).reserve(order);
    } else {
        order.status = OrderStatus::Rejected;
    }
    m_byOrderId.insert(order.id, number);
    m_orders.push_back(order);
    return number;
}

void Books::fill(int order, const QDateTime &time, double price, qint64 qty)
{
    Order &filled = m_orders[size_t(order)];
    Q_ASSERT(qty > 0 && qty <= filled.leaveQty());
    Ledger &ledger = ledgerOf(filled);
    ledger.release(filled);
    const Money fee = ledger.fill(filled, price, qty);
    const Money amount = filled.amount(price, qty);
    filled.filledQty += qty;
    filled.filledAmount += amount;
    filled.status = filled.filledQty == filled.qty ? OrderStatus::Filled : OrderStatus::PartlyFilled;
    filled.changed = time;
    ledger.reserve(filled);
    const QString id = numbered(QStringLiteral("E") + m_orderIdPrefix, int(m_executions.size()) + 1);
    m_executions.push_back({id, order, time, price, qty, amount, fee});
}

void Books::cancel(int order, const QDateTime &time)
{
    Order &cancelled = m_orders[size_t(order)];
    Q_ASSERT(cancelled.isOpen());
    ledgerOf(cancelled).release(cancelled);
    cancelled.status = cancelled.filledQty == 0 ? OrderStatus::Cancelled : OrderStatus::PartlyCancelled;
    cancelled.changed = time;
}

} // namespace sim
