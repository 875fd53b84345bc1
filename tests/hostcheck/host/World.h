#pragma once

#include <QString>

/// What exists on this host.
inline const QString kFundAccount = QStringLiteral("fund1");
inline const QString kTradingAccount = QStringLiteral("trading1");
inline const QString kShare = QStringLiteral("600001.X");
inline const QString kBond = QStringLiteral("100001.X");

inline bool isTradingAccount(const QString &account)
{
    return account == kTradingAccount;
}

inline bool isSymbol(const QString &symbol)
{
    return symbol == kShare || symbol == kBond;
}
