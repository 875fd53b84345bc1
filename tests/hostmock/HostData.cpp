// The host's data interfaces: every operation calls the mock.

#include "BaseBusinessDataInterface.h"
#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "HostMock.h"
#include "QvBondDataMgr.h"
#include "QvCore.h"
#include "VarnelBusiUtils.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelInitStateMgr.h"
#include "VarnelUtils.h"

// CBusinessDataBase

CBusinessDataBase *CBusinessDataBase::GetInstance()
{
    static CBusinessDataBase self;
    return &self;
}

QString CBusinessDataBase::GetLoginAccount() const
{
    return HostMock::current(Q_FUNC_INFO).CBusinessDataBase_GetLoginAccount();
}

QVariantMap CBusinessDataBase::GetAccountDetailsByTradinngAccount(const QString &tradingAccount)
{
    return HostMock::current(Q_FUNC_INFO).CBusinessDataBase_GetAccountDetailsByTradinngAccount(tradingAccount);
}

QVariantMap CBusinessDataBase::getTradeAccountParam(const QString &account, const QString &currency)
{
    return HostMock::current(Q_FUNC_INFO).CBusinessDataBase_getTradeAccountParam(account, currency);
}

QString CBusinessDataBase::getClientOrderID()
{
    return HostMock::current(Q_FUNC_INFO).CBusinessDataBase_getClientOrderID();
}

// BusinessDataInterface

QList<QVariantMap> BusinessDataInterface::GetOrderListByCustomKey(const QVariantMap &keys, int &total, int pageArg1,
                                                                  int pageArg2, QList<QString> sortKeys,
                                                                  const QStringList &fields)
{
    return HostMock::current(Q_FUNC_INFO)
        .BusinessDataInterface_GetOrderListByCustomKey(keys, total, pageArg1, pageArg2, sortKeys, fields);
}

QList<QVariantMap> BusinessDataInterface::GetExecutionListByCustomKey(const QVariantMap &keys, int &total, int pageArg1,
                                                                      int pageArg2, const QStringList &fields)
{
    return HostMock::current(Q_FUNC_INFO)
        .BusinessDataInterface_GetExecutionListByCustomKey(keys, total, pageArg1, pageArg2, fields);
}

QList<QVariantMap> BusinessDataInterface::GetPositionListByAccount(const QVariantMap &accountDetails,
                                                                   const QString &text1, const QString &symbol,
                                                                   const QString &text3, const QString &text4,
                                                                   const QString &text5, const QString &text6)
{
    return HostMock::current(Q_FUNC_INFO)
        .BusinessDataInterface_GetPositionListByAccount(accountDetails, text1, symbol, text3, text4, text5, text6);
}

QMap<QString, QVariant> BusinessDataInterface::GetOrderDetailByOrderID(const QString &orderId)
{
    return HostMock::current(Q_FUNC_INFO).BusinessDataInterface_GetOrderDetailByOrderID(orderId);
}

// VarnelBusinessDataInterface

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetAccountInfoListFromFund(QString fundAccount, bool flag)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetAccountInfoListFromFund(fundAccount, flag);
}

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetAccountInfoListFromTrade(QString tradingAccount, bool flag)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetAccountInfoListFromTrade(tradingAccount, flag);
}

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetFundAccountListByFundProp(int fundProp, int scope, bool flag,
                                                                                    const QStringList &filter,
                                                                                    bool lastFlag)
{
    return HostMock::current(Q_FUNC_INFO)
        .VarnelBusinessDataInterface_GetFundAccountListByFundProp(fundProp, scope, flag, filter, lastFlag);
}

QMap<QString, QString> VarnelBusinessDataInterface::GetOrganTraderList()
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetOrganTraderList();
}

QString VarnelBusinessDataInterface::GetVarnelOrderStation(QString information)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetVarnelOrderStation(information);
}

QString VarnelBusinessDataInterface::GetAccountAssetPropByTradingAccount(const QString &tradingAccount)
{
    return HostMock::current(Q_FUNC_INFO)
        .VarnelBusinessDataInterface_GetAccountAssetPropByTradingAccount(tradingAccount);
}

VarnelMarketValueInfo VarnelBusinessDataInterface::GetMarketValueByTradingAccount(const QString &tradingAccount)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetMarketValueByTradingAccount(tradingAccount);
}

int VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(const QString &eventName)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetOrloEventMsgIdByStr(eventName);
}

QString VarnelBusinessDataInterface::GetSymbolBySecurityIDAndExchange(const QString &securityId,
                                                                      const QString &exchange)
{
    return HostMock::current(Q_FUNC_INFO)
        .VarnelBusinessDataInterface_GetSymbolBySecurityIDAndExchange(securityId, exchange);
}

QVariantMap VarnelBusinessDataInterface::GetSecurityDetailsBySymbol(const QString &symbol)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetSecurityDetailsBySymbol(symbol);
}

int VarnelBusinessDataInterface::GetPricePrecisionBySymbol(const QString &symbol, const QString &priceType)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetPricePrecisionBySymbol(symbol, priceType);
}

double VarnelBusinessDataInterface::GetPriceUnitBySymbol(const QString &symbol, double defaultUnit,
                                                         const QString &priceType)
{
    return HostMock::current(Q_FUNC_INFO)
        .VarnelBusinessDataInterface_GetPriceUnitBySymbol(symbol, defaultUnit, priceType);
}

int VarnelBusinessDataInterface::GetQtyStepBySymbol(const QString &symbol)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetQtyStepBySymbol(symbol);
}

qint64 VarnelBusinessDataInterface::GetMinQtyPerOrderBySymbol(const QString &symbol)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetMinQtyPerOrderBySymbol(symbol);
}

qint64 VarnelBusinessDataInterface::GetMaxQtyPerOrderBySymbol(const QString &symbol, const QVariantMap &order)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetMaxQtyPerOrderBySymbol(symbol, order);
}

QString VarnelBusinessDataInterface::GetSecurityTypeBySymbol(const QString &symbol)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetSecurityTypeBySymbol(symbol);
}

QString VarnelBusinessDataInterface::GetSecuritySubTypeBySymbol(const QString &symbol)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusinessDataInterface_GetSecuritySubTypeBySymbol(symbol);
}

// BaseBusinessDataInterface

void BaseBusinessDataInterface::OpenMenuTabByMenuID(const QString &menuId)
{
    HostMock::current(Q_FUNC_INFO).BaseBusinessDataInterface_OpenMenuTabByMenuID(menuId);
}

// VarnelBusiUtils

QStringList VarnelBusiUtils::GetInputSymbolList(const QList<SymbolListType> &types)
{
    return HostMock::current(Q_FUNC_INFO).VarnelBusiUtils_GetInputSymbolList(types);
}

// VarnelUtils

ShowType VarnelUtils::GetCurrentShowType()
{
    return HostMock::current(Q_FUNC_INFO).VarnelUtils_GetCurrentShowType();
}

QList<QVariantMap> VarnelUtils::QueryDatasFromServer(QvPresenterClass *presenter, const QString &msgType,
                                                     const QVariantMap &conditions, QueryDataMode mode, QString &error)
{
    return HostMock::current(Q_FUNC_INFO).VarnelUtils_QueryDatasFromServer(presenter, msgType, conditions, mode, error);
}

// VarnelInitStateMgr

VarnelInitStateMgr *VarnelInitStateMgr::instance()
{
    static VarnelInitStateMgr self;
    return &self;
}

bool VarnelInitStateMgr::StartInit(const QString &key)
{
    return HostMock::current(Q_FUNC_INFO).VarnelInitStateMgr_StartInit(key);
}

bool VarnelInitStateMgr::FinishInit(const QString &key, bool succeeded, bool flag)
{
    return HostMock::current(Q_FUNC_INFO).VarnelInitStateMgr_FinishInit(key, succeeded, flag);
}

bool VarnelInitStateMgr::IsInited(const QString &key)
{
    return HostMock::current(Q_FUNC_INFO).VarnelInitStateMgr_IsInited(key);
}

// QvBondDataMgr

QvBondDataMgr *QvBondDataMgr::instance()
{
    static QvBondDataMgr self;
    return &self;
}

QString QvBondDataMgr::GetSingelBondBaseInfo(const QString &symbol, stuBaseInfo &info)
{
    return HostMock::current(Q_FUNC_INFO).QvBondDataMgr_GetSingelBondBaseInfo(symbol, info);
}

// QvCore

QvCore *QvCore::instance()
{
    static QvCore self;
    return &self;
}

QString QvCore::getCurrentToken()
{
    return HostMock::current(Q_FUNC_INFO).QvCore_getCurrentToken();
}
