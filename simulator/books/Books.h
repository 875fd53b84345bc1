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

    /// In the order of entry. The number of an order is its index.
    const std::vector<Order> &orders() const { return m_orders; }

    /// The number of the order, -1 for an unknown identifier.
    int orderNumber(const QString &id) const { return m_byOrderId.value(id, -1); }

    /// In the order in which they happened.
    const std::vector<Execution> &executions() const { return m_executions; }

    // Writing

    /// For opening balances. Null for an unknown trading account.
    Ledger *ledgerToOpen(const QString &tradingAccount);

    /// Enters an order of a known trading account and returns its number. The order is rejected when it breaks a rule,
    /// exceeds the price limits or costs more than the account has, or when its remark says already why. available: the
    /// account's money for new orders.
    int enter(Order order, Money available, const PriceLimits &limits);

    /// Books a fill of an open order. qty: at most the order's open quantity.
    void fill(int order, const QDateTime &time, double price, qint64 qty);

    /// Cancels what is open of an open order.
    void cancel(int order, const QDateTime &time);

private:
    Ledger &ledgerOf(const Order &order) { return m_ledgers[order.tradingAccount]; }

    const Accounts &m_accounts;
    const QString m_orderIdPrefix;
    std::atomic<int> m_lastOrderId{0};
    std::vector<Order> m_orders;     ///< not a QVector: detaching would invalidate references
    QHash<QString, int> m_byOrderId; ///< indices in m_orders
    std::vector<Execution> m_executions;
    QHash<QString, Ledger> m_ledgers;        ///< by trading account, one for each
    QHash<QString, int> m_lastExchangeOrder; ///< by exchange
};

} // namespace sim
