#include "books/Accounts.h"

namespace sim {

Accounts::Accounts(const QMap<QString, QString> &traders, const QVector<FundAccount> &fundAccounts)
    : m_traders(traders), m_fundAccounts(fundAccounts)
{
    for (int i = 0; i < m_fundAccounts.size(); ++i) {
        m_byAccount.insert(m_fundAccounts[i].account, i);
        for (const QString &tradingAccount : m_fundAccounts[i].tradingAccounts)
            m_byTradingAccount.insert(tradingAccount, i);
    }
}

QVector<FundAccount> Accounts::fundAccounts(int property) const
{
    if (property == AllFunds)
        return m_fundAccounts;
    QVector<FundAccount> accounts;
    for (const FundAccount &account : m_fundAccounts) {
        if (account.property == property)
            accounts.append(account);
    }
    return accounts;
}

const FundAccount *Accounts::fundAccount(const QString &account) const
{
    const auto found = m_byAccount.constFind(account);
    return found == m_byAccount.constEnd() ? nullptr : &m_fundAccounts[*found];
}

const FundAccount *Accounts::fundAccountOf(const QString &tradingAccount) const
{
    const auto found = m_byTradingAccount.constFind(tradingAccount);
    return found == m_byTradingAccount.constEnd() ? nullptr : &m_fundAccounts[*found];
}

} // namespace sim
