#pragma once

#include "HostApi.h"

#include <QString>
#include <QVariantMap>

/// The host's login and account data. Safe to call from any thread; the host owns the instance.
class VARNEL_HOST_API CBusinessDataBase {
public:
    /// Never null; valid until the process ends.
    static CBusinessDataBase *GetInstance();

    /// The account that is logged in; empty when nobody is. Read once for the folder of the settings
    /// file, and for each query that names the user.
    QString GetLoginAccount() const;

    /// The details of a trading account under the host's field names; empty for an unknown account.
    QVariantMap GetAccountDetailsByTradinngAccount(const QString &tradingAccount);

    /// The account's parameters in one currency (a Tessar_Values::Currency text), under the host's field
    /// names; empty for an unknown account.
    QVariantMap getTradeAccountParam(const QString &account, const QString &currency);

    /// A fresh client order identifier, never given twice.
    QString getClientOrderID();
};
