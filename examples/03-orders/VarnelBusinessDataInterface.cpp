// One fund account with one trading account. The rest is as in the starter host.
#include "VarnelBusinessDataInterface.h"

#include "Orlo_Keys.h"

// Accounts

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetAccountInfoListFromFund(QString fundAccount, bool)
{
    if (fundAccount != "F1")
        return {};
    tagUserAccountInfo account;
    account.fundAccount = fundAccount;
    account.fundAccountName = "Fund One";
    account.tradingAccount = "T1"; // the account that order entry gets
    return {account};
}

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetAccountInfoListFromTrade(QString, bool)
{
    return {};
}

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetFundAccountListByFundProp(int, int, bool, const QStringList &,
                                                                                    bool)
{
    return {};
}

QMap<QString, QString> VarnelBusinessDataInterface::GetOrganTraderList()
{
    return {};
}

QString VarnelBusinessDataInterface::GetVarnelOrderStation(QString)
{
    return {};
}

QString VarnelBusinessDataInterface::GetAccountAssetPropByTradingAccount(const QString &)
{
    return {};
}

VarnelMarketValueInfo VarnelBusinessDataInterface::GetMarketValueByTradingAccount(const QString &)
{
    return {};
}

int VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(const QString &eventName)
{
    if (eventName == Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_IN)
        return 1;
    if (eventName == Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT)
        return 2;
    return 0;
}

// Securities

QString VarnelBusinessDataInterface::GetSymbolBySecurityIDAndExchange(const QString &, const QString &)
{
    return {};
}

QVariantMap VarnelBusinessDataInterface::GetSecurityDetailsBySymbol(const QString &)
{
    return {};
}

int VarnelBusinessDataInterface::GetPricePrecisionBySymbol(const QString &, const QString &)
{
    return 0;
}

double VarnelBusinessDataInterface::GetPriceUnitBySymbol(const QString &, double defaultUnit, const QString &)
{
    return defaultUnit;
}

int VarnelBusinessDataInterface::GetQtyStepBySymbol(const QString &)
{
    return 0;
}

qint64 VarnelBusinessDataInterface::GetMinQtyPerOrderBySymbol(const QString &)
{
    return 0;
}

qint64 VarnelBusinessDataInterface::GetMaxQtyPerOrderBySymbol(const QString &, const QVariantMap &)
{
    return 0;
}

QString VarnelBusinessDataInterface::GetSecurityTypeBySymbol(const QString &)
{
    return {};
}

QString VarnelBusinessDataInterface::GetSecuritySubTypeBySymbol(const QString &)
{
    return {};
}
