#pragma once

#include "HostApi.h"

#include <QString>
#include <QVariantMap>

/// The host's login and account data. Safe to call from any thread; the host owns the instance.
class VARNEL_HOST_API CBusinessDataBase {
public:
    /// Never null; valid until the process ends.
    static CBusinessDataBase *GetInstance();

    /// The account that is logged in; empty when nobody is. Read once for the folder of the settings file, so its
    /// characters must be allowed in the name of a folder, and again for each load of permissions and each page that
    /// asks.
    QString GetLoginAccount() const;

    /// The details of a trading account under the host's field names; empty for an unknown account. The library reads
    /// Tessar_Fields::UserAccount::tradingAccount, Tessar_Fields::Security::positionFlag and, as numbers in the
    /// account's currency, the fields in Varnel_Fields::NormalFundEx, Futures and AssetView. What is missing counts as
    /// 0.
    QVariantMap GetAccountDetailsByTradinngAccount(const QString &tradingAccount);

    /// The parameters of a trading account in one currency, always Tessar_Values::Currency::CNY, under the host's field
    /// names; empty for an unknown account. They replace the account's details of the same names. The library reads
    /// Tessar_Fields::Security::tradeableCash and Varnel_Fields::Security::withDrawQuota, as numbers.
    QVariantMap getTradeAccountParam(const QString &account, const QString &currency);

    /// A new client order identifier, never given twice. Asked for once for each
    /// order, before it is placed.
    QString getClientOrderID();
};
