#pragma once

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

namespace sim {

/// A trader who may log in to the terminal, and the token of the login.
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

/// One fund account and its trading accounts. The first one is the default.
struct FundAccount {
    QString account;
    QString name;
    FundProperty property = StockFund;
    QStringList tradingAccounts; ///< never empty
};

/// The traders and the accounts of a scenario.
/// Made once for a scenario. Constant after construction, so that any thread may read it and keep pointers into it.
/// Account numbers are unique: the reader of the scenario checks that.
class Accounts {
public:
    Accounts(const QMap<QString, QString> &traders, const QVector<FundAccount> &fundAccounts);

    /// Identifier to name.
    const QMap<QString, QString> &traders() const { return m_traders; }

    /// In the scenario's order; AllFunds gives every one.
    QVector<FundAccount> fundAccounts(int property) const;

    /// Null when there is none.
    const FundAccount *fundAccount(const QString &account) const;
    const FundAccount *fundAccountOf(const QString &tradingAccount) const;

private:
    const QMap<QString, QString> m_traders;
    const QVector<FundAccount> m_fundAccounts;
    QHash<QString, int> m_byAccount; ///< indices in m_fundAccounts
    QHash<QString, int> m_byTradingAccount;
};

} // namespace sim
