#pragma once

#include "books/Accounts.h"
#include "books/Orders.h"
#include "books/Positions.h"

#include <QHash>
#include <QString>

#include <atomic>
#include <vector>

namespace sim {

/// The broker's books: orders and deals, money and positions of all trading accounts.
/// Made by the TradingDesk, which opens them and guards them from then on. Only nextClientOrderId may be called
/// without its lock. They know nothing of time, prices and the exchange's matching.
class Books {
public:
    /// The accounts must outlive the books.
    Books(const Accounts &accounts, const QString &orderIdPrefix);

    const Accounts &accounts() const { return m_accounts; }

    /// A fresh client order identifier, never given twice. Any thread.
    QString nextClientOrderId();

    /// Null for an unknown trading account.
    const Ledger *ledger(const QString &tradingAccount) const;

    /// In the order in which they were entered; an order's number is its place.
    const std::vector<Order> &orders() const { return m_orders; }

    /// The number of the order, -1 for an unknown identifier.
    int orderNumber(const QString &id) const { return m_byOrderId.value(id, -1); }

    /// In the order in which they happened.
    const std::vector<Execution> &executions() const { return m_executions; }

    // Writing

    /// For opening balances. Null for an unknown trading account.
    Ledger *ledgerToOpen(const QString &tradingAccount);

    /// Enters an order of a known trading account, and gives its number. It is rejected when it breaks a rule or when
    /// the account cannot afford it. available: what the account's value leaves for new orders.
    int enter(Order order, Money available);

    /// A deal of an open order, of at most its open quantity.
    void deal(int order, const QDateTime &time, double price, qint64 qty);

    /// Ends an open order.
    void cancel(int order, const QDateTime &time);

private:
    Ledger &ledgerOf(const Order &order) { return m_ledgers[order.tradingAccount]; }

    const Accounts &m_accounts;
    const QString m_orderIdPrefix;
    std::atomic<int> m_lastOrderId{0};
    std::vector<Order> m_orders;     ///< not a shared vector: a write must never move it from under a reference
    QHash<QString, int> m_byOrderId; ///< indices in m_orders
    std::vector<Execution> m_executions;
    QHash<QString, Ledger> m_ledgers;        ///< by trading account, one for each
    QHash<QString, int> m_lastExchangeOrder; ///< by exchange
};

} // namespace sim
