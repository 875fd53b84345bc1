#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// The host's account and security look-ups. All are called on the thread of a page call; those that pushes of
/// positions and assets need, on the message center's thread too. Several may run at once. What is unknown gives an
/// empty answer or 0, never a failure.
class VARNEL_HOST_API VarnelBusinessDataInterface {
public:
    // Accounts

    /// The trading accounts below a fund account; the library trades and asks through the first. It always passes true.
    /// When the list is empty, the fund account counts as unknown.
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

    /// The operator-station text of this terminal. information: what the page sent, two pieces joined by ";", or one
    /// alone; may be empty. Pages get the text as it is.
    static QString GetVarnelOrderStation(QString information);

    /// The asset property of a trading account: Varnel_Values::FundAccountType::Future for a futures account, any other
    /// text for others.
    static QString GetAccountAssetPropByTradingAccount(const QString &tradingAccount);

    /// What the trading account holds, in its currency; zeros for an unknown account. Not asked for futures accounts.
    static VarnelMarketValueInfo GetMarketValueByTradingAccount(const QString &tradingAccount);

    /// The id that the bus has given to a named event, one of Orlo_Keys::EventMsgName; the same for the whole run. It
    /// must differ from the ids of the trading events. Called on any thread, also on the bus's for each event that is
    /// no trading event.
    static int GetOrloEventMsgIdByStr(const QString &eventName);

    // Securities

    /// The symbol of a security; empty when there is none. Asked for positions without a symbol.
    static QString GetSymbolBySecurityIDAndExchange(const QString &securityId, const QString &exchange);

    /// The details of a security under the host's field names; empty for an unknown symbol. The library reads
    /// Tessar_Fields::Security::symbol, securityID, chineseName, spellCode, priceLimitType,
    /// Tessar_Fields::UserAccount::securityExchange and Tessar_Fields::MDCFieldDefine::mdcSecurityType.
    static QVariantMap GetSecurityDetailsBySymbol(const QString &symbol);

    /// Number of decimals of a price. The library passes an empty price type.
    static int GetPricePrecisionBySymbol(const QString &symbol, const QString &priceType);

    /// Smallest price step, in the currency of the price. The library passes the default 0.0 and an empty price type.
    static double GetPriceUnitBySymbol(const QString &symbol, double defaultUnit, const QString &priceType);

    /// Step of order quantities, in shares, bonds or contracts.
    static int GetQtyStepBySymbol(const QString &symbol);

    /// Smallest quantity of one order, in shares, bonds or contracts.
    static qint64 GetMinQtyPerOrderBySymbol(const QString &symbol);

    /// Largest quantity of one order, in shares, bonds or contracts. The library passes an empty map for the order.
    static qint64 GetMaxQtyPerOrderBySymbol(const QString &symbol, const QVariantMap &order);

    /// Type of a security, a text of the host that pages get as it is.
    static QString GetSecurityTypeBySymbol(const QString &symbol);

    /// Sub-type of a security, a text of the host that pages get as it is.
    static QString GetSecuritySubTypeBySymbol(const QString &symbol);
};
