#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// The host's account and security look-ups. All are called on the thread of a page call, the account
/// look-ups also on the message center's thread; several may run at once. What is unknown gives an
/// empty answer, never a failure.
class VARNEL_HOST_API VarnelBusinessDataInterface {
public:
    // Accounts

    /// The trading accounts below a fund account; the library uses the first. It always passes true.
    static QList<tagUserAccountInfo> GetAccountInfoListFromFund(QString fundAccount, bool flag);

    /// The fund accounts above a trading account; the library uses the first. It always passes true.
    static QList<tagUserAccountInfo> GetAccountInfoListFromTrade(QString tradingAccount, bool flag);

    /// The fund accounts of one property, in the order in which the page shall list them. fundProp comes
    /// unchanged from the page (0 when it sent no number); the library passes 16, false, an empty list
    /// and true for the rest.
    static QList<tagUserAccountInfo> GetFundAccountListByFundProp(int fundProp, int scope, bool flag,
                                                                  const QStringList &filter, bool lastFlag);

    /// The traders of the organisation: identifier to name. Pages get the identifiers only.
    static QMap<QString, QString> GetOrganTraderList();

    /// The operator-station text of this terminal for the station information given, which may be empty.
    static QString GetVarnelOrderStation(QString information);

    /// The asset property of a trading account: one of the Varnel_Values::FundAccountType texts.
    static QString GetAccountAssetPropByTradingAccount(const QString &tradingAccount);

    static VarnelMarketValueInfo GetMarketValueByTradingAccount(const QString &tradingAccount);

    /// The event id that the bus assigned to a named event (Orlo_Keys::EventMsgName); the same for the
    /// whole run. Also called on the bus thread.
    static int GetOrloEventMsgIdByStr(const QString &eventName);

    // Securities

    static QString GetSymbolBySecurityIDAndExchange(const QString &securityId, const QString &exchange);

    /// The details of a security under the host's field names.
    static QVariantMap GetSecurityDetailsBySymbol(const QString &symbol);

    /// Decimals of a price. The library passes an empty text for the second.
    static int GetPricePrecisionBySymbol(const QString &symbol, const QString &priceType);

    /// Smallest price step. The library passes the default 0.0 and an empty text.
    static double GetPriceUnitBySymbol(const QString &symbol, double defaultUnit, const QString &priceType);

    static int GetQtyStepBySymbol(const QString &symbol);
    static qint64 GetMinQtyPerOrderBySymbol(const QString &symbol);

    /// The library passes an empty map for the order's fields.
    static qint64 GetMaxQtyPerOrderBySymbol(const QString &symbol, const QVariantMap &order);

    static QString GetSecurityTypeBySymbol(const QString &symbol);
    static QString GetSecuritySubTypeBySymbol(const QString &symbol);
};
