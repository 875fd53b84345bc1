// Accounts and securities: what the library asks VarnelBusinessDataInterface for.
#include "FuzzHost.h"
#include "VariantParts.h"

#include "Orlo_Keys.h"
#include "VarnelBusinessDataInterface.h"

using FuzzHost::decisions;

namespace {

QList<tagUserAccountInfo> anyAccounts()
{
    if (decisions().oneIn(8))
        return {};
    return {{anyText(decisions()), anyText(decisions()), QStringLiteral("t1")}};
}

} // namespace

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetAccountInfoListFromFund(QString, bool)
{
    return anyAccounts();
}

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetAccountInfoListFromTrade(QString, bool)
{
    return anyAccounts();
}

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetFundAccountListByFundProp(int, int, bool, const QStringList &,
                                                                                    bool)
{
    return anyAccounts();
}

QMap<QString, QString> VarnelBusinessDataInterface::GetOrganTraderList()
{
    return {{anyText(decisions()), anyText(decisions())}};
}

QString VarnelBusinessDataInterface::GetVarnelOrderStation(QString information)
{
    return information;
}

QString VarnelBusinessDataInterface::GetAccountAssetPropByTradingAccount(const QString &)
{
    return anyText(decisions());
}

VarnelMarketValueInfo VarnelBusinessDataInterface::GetMarketValueByTradingAccount(const QString &)
{
    VarnelMarketValueInfo info;
    info.marketValue = anyDouble(decisions());
    return info;
}

int VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(const QString &eventName)
{
    return eventName == Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT ? 2 : 1;
}

QString VarnelBusinessDataInterface::GetSymbolBySecurityIDAndExchange(const QString &securityId, const QString &)
{
    return securityId;
}

QVariantMap VarnelBusinessDataInterface::GetSecurityDetailsBySymbol(const QString &)
{
    return anyMap(decisions());
}

int VarnelBusinessDataInterface::GetPricePrecisionBySymbol(const QString &, const QString &)
{
    return decisions().bits<int>();
}

double VarnelBusinessDataInterface::GetPriceUnitBySymbol(const QString &, double, const QString &)
{
    return anyDouble(decisions());
}

int VarnelBusinessDataInterface::GetQtyStepBySymbol(const QString &)
{
    return decisions().bits<int>();
}

qint64 VarnelBusinessDataInterface::GetMinQtyPerOrderBySymbol(const QString &)
{
    return decisions().bits<qint64>();
}

qint64 VarnelBusinessDataInterface::GetMaxQtyPerOrderBySymbol(const QString &, const QVariantMap &)
{
    return decisions().bits<qint64>();
}

QString VarnelBusinessDataInterface::GetSecurityTypeBySymbol(const QString &)
{
    return anyText(decisions());
}

QString VarnelBusinessDataInterface::GetSecuritySubTypeBySymbol(const QString &)
{
    return anyText(decisions());
}
