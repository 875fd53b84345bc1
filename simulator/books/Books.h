#pragma once

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

/// The broker's books: who trades and with which accounts.
/// Made once for a scenario; what it holds now is constant after construction and so safe to use from any thread at
/// once. Numbers of accounts are unique: that is checked when the scenario is read.
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

private:
    const QMap<QString, QString> m_traders;
    const QVector<FundAccount> m_fundAccounts;
    const QString m_orderIdPrefix;
    QHash<QString, int> m_byAccount; ///< indices in m_fundAccounts
    QHash<QString, int> m_byTradingAccount;
    std::atomic<int> m_lastOrderId{0};
};

} // namespace sim
