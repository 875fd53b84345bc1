#pragma once

#include "books/Accounts.h"
#include "books/Ledger.h"
#include "books/Orders.h"

#include <QHash>
#include <QString>

#include <atomic>
#include <vector>

namespace sim {

/// The broker's books: orders and fills, money and positions of all trading accounts.
/// Made by the TradingDesk, which fills in the opening balances and guards them from then on. Only nextClientOrderId
/// may be called without its lock. The books know no clock, no quotes and no matching: those come in as arguments.
class Books {
public:
    /// The accounts must outlive the books.
    Books(const Accounts &accounts, const QString &orderIdPrefix);

    const Accounts &accounts() const { return m_accounts; }

    /// A new, unique client order identifier. Any thread.
    QString nextClientOrderId();

    /// Null for an unknown trading account.
    const Ledger *ledger(const QString &tradingAccount) const;

    /// Those of the current day, in the order of entry. Each order has a number, which no other one ever gets; that of
    /// the first order here is firstOrder(), and the others follow.
    const std::vector<Order> &orders() const { return m_orders; }
    int firstOrder() const { return m_firstOrder; }
    const Order &order(int number) const { return m_orders[size_t(number - m_firstOrder)]; }

    /// The number of the order, -1 for an unknown identifier.
    int orderNumber(const QString &id) const { return m_byOrderId.value(id, -1); }

    /// Those of the current day, in the order in which they happened.
    const std::vector<Execution> &executions() const { return m_executions; }

    // Writing

    /// For opening balances. Null for an unknown trading account.
    Ledger *ledgerToOpen(const QString &tradingAccount);

    /// Enters an order of a known trading account and returns its number. The broker rejects the order when it breaks a
    /// rule, exceeds the price limits or costs more than the account has, or for the reason that is given; otherwise it
    /// is to be sent. available: the account's money for new orders.
    int enter(Order order, Money available, const PriceLimits &limits, QString refusal = {});

    // The states of an open order. An order that is to be cancelled stays so while it is sent, accepted or partly
    // filled.

    void send(int order, const QDateTime &time);

    /// The exchange accepts the order and gives it a number.
    void accept(int order, const QDateTime &time);

    /// The exchange refuses the order. reason: a text for its owner.
    void reject(int order, const QDateTime &time, const QString &reason);

    /// Books a fill. qty: at most the order's open quantity.
    void fill(int order, const QDateTime &time, double price, qint64 qty);

    /// Its owner wants the order cancelled.
    void requestCancel(int order, const QDateTime &time);

    /// Cancels what is open. reason: a text for its owner where he did not ask for it.
    void cancel(int order, const QDateTime &time, const QString &reason = {});

    /// Tells the owner of an order that is done that its cancel came too late.
    void noteLateCancel(int order);

    /// Settles every account: see Ledger::settle.
    void settle(const Prices &settlementPrices);

    /// Forgets the orders that were entered before that time, and the executions before it. None of the orders is open.
    void forgetBefore(const QDateTime &time);

private:
    Ledger &ledgerOf(const Order &order) { return m_ledgers[order.tradingAccount]; }
    Order &openOrder(int number);
    static void change(Order &order, OrderStatus status, const QDateTime &time);

    const Accounts &m_accounts;
    const QString m_orderIdPrefix;
    std::atomic<int> m_lastOrderId{0};
    int m_firstOrder = 0;
    std::vector<Order> m_orders;     ///< not a QVector: detaching would invalidate references
    QHash<QString, int> m_byOrderId; ///< numbers
    int m_lastExecution = 0;
    std::vector<Execution> m_executions;
    QHash<QString, Ledger> m_ledgers;        ///< by trading account, one for each
    QHash<QString, int> m_lastExchangeOrder; ///< by exchange
};

} // namespace sim
