#pragma once

#include "books/Orders.h"
#include "books/Positions.h"

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include <atomic>

namespace sim {

/// Someone who may log in to the terminal: a trader of the organisation, with the token of that login.
struct Login {
    QString account;
    QString token;
};

/// What a fund account is for. The numbers are what pages send.
enum FundProperty {
    AllFunds = 0, ///< only in queries
    StockFund = 1,
    FuturesFund = 2,
};

/// One fund account and the exchange accounts below it, the first being the one that is used by default.
struct FundAccount {
    QString account;
    QString name;
    FundProperty property = StockFund;
    QStringList tradingAccounts; ///< never empty
};

/// The broker's books: who trades and with which accounts, their orders and deals, money and positions.
/// Made once for a scenario. Accounts are constant after construction. Orders and ledgers are written by one thread
/// while the terminal is being made, and constant from then on, so that any thread may read everything at once.
/// Numbers of accounts are unique: that is checked when the scenario is read.
class Books {
public:
    Books(const QMap<QString, QString> &traders, const QVector<FundAccount> &fundAccounts,
          const QString &orderIdPrefix);

    /// Identifier to name.
    const QMap<QString, QString> &traders() const { return m_traders; }

    /// In the scenario's order; AllFunds gives every one.
    QVector<FundAccount> fundAccounts(int property) const;

    /// Null when there is none.
    const FundAccount *fundAccount(const QString &account) const;
    const FundAccount *fundAccountOf(const QString &tradingAccount) const;

    /// A fresh client order identifier, never given twice. Any thread.
    QString nextClientOrderId();

    /// Null for an unknown trading account.
    const Ledger *ledger(const QString &tradingAccount) const;

    /// In the order in which they were entered; an order's number is its place.
    const QVector<Order> &orders() const { return m_orders; }

    /// In the order in which they happened.
    const QVector<Execution> &executions() const { return m_executions; }

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

    const QMap<QString, QString> m_traders;
    const QVector<FundAccount> m_fundAccounts;
    const QString m_orderIdPrefix;
    QHash<QString, int> m_byAccount; ///< indices in m_fundAccounts
    QHash<QString, int> m_byTradingAccount;
    std::atomic<int> m_lastOrderId{0};
    QVector<Order> m_orders;
    QVector<Execution> m_executions;
    QHash<QString, Ledger> m_ledgers;        ///< by trading account, one for each
    QHash<QString, int> m_lastExchangeOrder; ///< by exchange
};

} // namespace sim
