#pragma once

#include "HostApi.h"
#include "HostMessages.h"
#include "HostTypes.h"
#include "OrderRequestList.h"
#include "QtValues.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>
#include <gmock/gmock.h>

class QvPresenterClass;

/// The terminal as a mock: one method for each operation that the library can call, named Class_operation. The host's
/// definitions in this folder forward to the only HostMock. Use it as testing::StrictMock<HostMock>, so that an
/// unexpected call on any thread fails the test. A call without a mock prints the name of the operation and aborts.
class VARNEL_HOST_API HostMock {
public:
    /// Receives all calls until it is destroyed. Only one can exist at a time.
    HostMock();
    virtual ~HostMock();

    /// The mock that receives the calls. operation: for the message when there is none.
    static HostMock &current(const char *operation);

    using FieldMaps = QList<QVariantMap>;
    using Accounts = QList<tagUserAccountInfo>;
    using LineData = QMap<int, QVariantMap>;
    using Orders = OrderRequestList;

    MOCK_METHOD(QString, CBusinessDataBase_GetLoginAccount, ());
    MOCK_METHOD(QVariantMap, CBusinessDataBase_GetAccountDetailsByTradinngAccount, (const QString &tradingAccount));
    MOCK_METHOD(QVariantMap, CBusinessDataBase_getTradeAccountParam, (const QString &account, const QString &currency));
    MOCK_METHOD(QString, CBusinessDataBase_getClientOrderID, ());

    MOCK_METHOD(FieldMaps, BusinessDataInterface_GetOrderListByCustomKey,
                (const QVariantMap &keys, int &total, int pageArg1, int pageArg2, QList<QString> sortKeys,
                 const QStringList &fields));
    MOCK_METHOD(FieldMaps, BusinessDataInterface_GetExecutionListByCustomKey,
                (const QVariantMap &keys, int &total, int pageArg1, int pageArg2, const QStringList &fields));
    MOCK_METHOD(FieldMaps, BusinessDataInterface_GetPositionListByAccount,
                (const QVariantMap &accountDetails, const QString &text1, const QString &symbol, const QString &text3,
                 const QString &text4, const QString &text5, const QString &text6));
    MOCK_METHOD(QVariantMap, BusinessDataInterface_GetOrderDetailByOrderID, (const QString &orderId));

    MOCK_METHOD(Accounts, VarnelBusinessDataInterface_GetAccountInfoListFromFund, (QString fundAccount, bool flag));
    MOCK_METHOD(Accounts, VarnelBusinessDataInterface_GetAccountInfoListFromTrade, (QString tradingAccount, bool flag));
    MOCK_METHOD(Accounts, VarnelBusinessDataInterface_GetFundAccountListByFundProp,
                (int fundProp, int scope, bool flag, const QStringList &filter, bool lastFlag));
    MOCK_METHOD((QMap<QString, QString>), VarnelBusinessDataInterface_GetOrganTraderList, ());
    MOCK_METHOD(QString, VarnelBusinessDataInterface_GetVarnelOrderStation, (QString information));
    MOCK_METHOD(QString, VarnelBusinessDataInterface_GetAccountAssetPropByTradingAccount,
                (const QString &tradingAccount));
    MOCK_METHOD(VarnelMarketValueInfo, VarnelBusinessDataInterface_GetMarketValueByTradingAccount,
                (const QString &tradingAccount));
    MOCK_METHOD(int, VarnelBusinessDataInterface_GetOrloEventMsgIdByStr, (const QString &eventName));
    MOCK_METHOD(QString, VarnelBusinessDataInterface_GetSymbolBySecurityIDAndExchange,
                (const QString &securityId, const QString &exchange));
    MOCK_METHOD(QVariantMap, VarnelBusinessDataInterface_GetSecurityDetailsBySymbol, (const QString &symbol));
    MOCK_METHOD(int, VarnelBusinessDataInterface_GetPricePrecisionBySymbol,
                (const QString &symbol, const QString &priceType));
    MOCK_METHOD(double, VarnelBusinessDataInterface_GetPriceUnitBySymbol,
                (const QString &symbol, double defaultUnit, const QString &priceType));
    MOCK_METHOD(int, VarnelBusinessDataInterface_GetQtyStepBySymbol, (const QString &symbol));
    MOCK_METHOD(qint64, VarnelBusinessDataInterface_GetMinQtyPerOrderBySymbol, (const QString &symbol));
    MOCK_METHOD(qint64, VarnelBusinessDataInterface_GetMaxQtyPerOrderBySymbol,
                (const QString &symbol, const QVariantMap &order));
    MOCK_METHOD(QString, VarnelBusinessDataInterface_GetSecurityTypeBySymbol, (const QString &symbol));
    MOCK_METHOD(QString, VarnelBusinessDataInterface_GetSecuritySubTypeBySymbol, (const QString &symbol));

    MOCK_METHOD(void, BaseBusinessDataInterface_OpenMenuTabByMenuID, (const QString &menuId));
    MOCK_METHOD(QStringList, VarnelBusiUtils_GetInputSymbolList, (const QList<SymbolListType> &types));
    MOCK_METHOD(ShowType, VarnelUtils_GetCurrentShowType, ());
    MOCK_METHOD(FieldMaps, VarnelUtils_QueryDatasFromServer,
                (QvPresenterClass * presenter, const QString &msgType, const QVariantMap &conditions,
                 QueryDataMode mode, QString &error));
    MOCK_METHOD(bool, VarnelInitStateMgr_StartInit, (const QString &key));
    MOCK_METHOD(bool, VarnelInitStateMgr_FinishInit, (const QString &key, bool succeeded, bool flag));
    MOCK_METHOD(bool, VarnelInitStateMgr_IsInited, (const QString &key));
    MOCK_METHOD(QString, QvBondDataMgr_GetSingelBondBaseInfo, (const QString &symbol, stuBaseInfo &info));
    MOCK_METHOD(QString, QvCore_getCurrentToken, ());

    MOCK_METHOD(bool, VarnelEntrustReportGen_fillLineData,
                (const QVariantMap &record, LineData &lineData, const QStringList &fields, ShowType showType,
                 bool flag));
    MOCK_METHOD(bool, VarnelDealReportGen_fillLineData,
                (const QVariantMap &record, LineData &lineData, const QStringList &fields, ShowType showType,
                 bool flag));
    MOCK_METHOD(bool, VarnelPositionReportGen_fillLineData,
                (int kind, const QVariantMap &record, LineData &lineData, const QStringList &fields, ShowType showType,
                 const QVariantMap &quote, const QString &text, bool flag));

    MOCK_METHOD(int, VarnelTradeLogic_getDispQtyStepBySymbol, (const QString &symbol));
    MOCK_METHOD(QString, VarnelTradeLogic_queryMaxTradableQty, (const Orders &orders));
    MOCK_METHOD(int, VarnelTradeLogic_orders,
                (const Orders &orders, QVariant &response, int kind, QList<VarnelLogic::ResponseInfo> &errors,
                 bool flag));
    MOCK_METHOD(FieldMaps, VarnelTradeLogic_transOrderRsp, (const Orders &orders, const QVariant &response));
    MOCK_METHOD(int, VarnelTradeLogicFactory_SendRequestSync,
                (const Basic_Trade_REQ_Type &type, const QVariant &request, const QString &caller, QVariant &response));

    MOCK_METHOD(int, CommonQuotaHandler_SubscribeQuota, (const QStringList &symbols, bool subscribe, int level));
    MOCK_METHOD(QVariantMap, CommonQuotaHandler_GetQuotaSnapshot, (const QString &symbol, int level));
    MOCK_METHOD(int, CommonQuotaHandler_GetQtyUnit, (const QString &symbol));

    /// Messages arrive as records: the message itself is deleted before these are called.
    MOCK_METHOD(int, QvPresenterClass_pluginPid, ());
    MOCK_METHOD(void, QvPresenterClass_SubEvent, (int pid, const QVariant &eventId, int mode));
    MOCK_METHOD(void, QvPresenterClass_PutEvent, (int pid, const MessageRecord &event));
    MOCK_METHOD(int, QvPresenterClass_sendRequest_Async, (const MessageRecord &request));
    MOCK_METHOD(int, QvPresenterClass_sendRequest_Sync, (const MessageRecord &request, QVariant &reply));

private:
    Q_DISABLE_COPY(HostMock)
};
