#pragma once

#include <QString>

/// Every text that the library itself defines, each exactly once; using one allocates nothing. Texts of the
/// host are not here: the host headers name them and the host defines them.
namespace WebConstants {

/// Calls that a page may make.
namespace Method {
inline const QString Data_getToken = QStringLiteral("Data_getToken_REQ");
inline const QString Data_getSymbolDetail = QStringLiteral("Data_getSymbolDetail_REQ");
inline const QString Data_getCurrentTick = QStringLiteral("Data_getCurrentTick_REQ");
inline const QString Data_getFundAccountList = QStringLiteral("Data_getFundAccountList_REQ");
inline const QString Data_getTraderList = QStringLiteral("Data_getTraderList_REQ");
inline const QString Data_getLoginTrader = QStringLiteral("Data_getLoginTrader_REQ");
inline const QString Data_getSymbolList = QStringLiteral("Data_getSymbolList_REQ");
inline const QString Data_getSymbolListWithDetail = QStringLiteral("Data_getSymbolListWithDetail_REQ");
inline const QString Data_getEntrustList = QStringLiteral("Data_getEntrustList_REQ");
inline const QString Data_getExecutionList = QStringLiteral("Data_getExecutionList_REQ");
inline const QString Data_getPositionList = QStringLiteral("Data_getPositionList_REQ");
inline const QString Data_getAsset = QStringLiteral("Data_getAsset_REQ");
inline const QString Data_getTradableQty = QStringLiteral("Data_getTradableQty_REQ");
inline const QString Data_getSetting = QStringLiteral("Data_getSetting_REQ");
inline const QString Data_saveSetting = QStringLiteral("Data_saveSetting_REQ");
inline const QString Data_getPermission = QStringLiteral("Data_getPermission_REQ");
inline const QString Data_openPermissionMenu = QStringLiteral("Data_openPermissionMenu_REQ");
inline const QString Data_getUpsDownsAnalysis = QStringLiteral("Data_getUpsDownsAnalysis_REQ");
inline const QString Data_getKLineData = QStringLiteral("Data_getKLineData_REQ");
inline const QString Data_getOPStation = QStringLiteral("Data_getOPStation_REQ");
inline const QString Trade_insertOrder = QStringLiteral("Trade_insertOrder_REQ");
inline const QString Trade_insertOrderList = QStringLiteral("Trade_insertOrderList_REQ");
inline const QString Trade_reqCancelOrder = QStringLiteral("Trade_reqCancelOrder_REQ");
inline const QString Sub_subscribe = QStringLiteral("Sub_subscribe_REQ");
inline const QString UnSub_subscribe = QStringLiteral("UnSub_subscribe_REQ");
inline const QString UnSub_subscribeAll = QStringLiteral("UnSub_subscribeAll_REQ");
inline const QString Vlx_startStrategy = QStringLiteral("Vlx_startStrategy_REQ");
inline const QString Vlx_stopStrategy = QStringLiteral("Vlx_stopStrategy_REQ");
inline const QString Vlx_queryStrategyStatus = QStringLiteral("Vlx_queryStrategyStatus_REQ");
inline const QString Vlx_sendCustomInfo = QStringLiteral("Vlx_sendCustomInfo_REQ");
inline const QString Vlx_subStrategyMsg = QStringLiteral("Vlx_subStrategyMsg_REQ");
} // namespace Method

/// The event that answers a call.
namespace ReplyEvent {
inline const QString Data_getToken = QStringLiteral("Data_getToken_RES");
inline const QString Data_getSymbolDetail = QStringLiteral("Data_getSymbolDetail_RES");
inline const QString Data_getCurrentTick = QStringLiteral("Data_getCurrentTick_RES");
inline const QString Data_getFundAccountList = QStringLiteral("Data_getFundAccountList_RES");
inline const QString Data_getTraderList = QStringLiteral("Data_getTraderList_RES");
inline const QString Data_getLoginTrader = QStringLiteral("Data_getLoginTrader_RES");
inline const QString Data_getSymbolList = QStringLiteral("Data_getSymbolList_RES");
inline const QString Data_getSymbolListWithDetail = QStringLiteral("Data_getSymbolListWithDetail_RES");
inline const QString Data_getEntrustList = QStringLiteral("Data_getEntrustList_RES");
inline const QString Data_getExecutionList = QStringLiteral("Data_getExecutionList_RES");
inline const QString Data_getPositionList = QStringLiteral("Data_getPositionList_RES");
inline const QString Data_getAsset = QStringLiteral("Data_getAsset_RES");
inline const QString Data_getTradableQty = QStringLiteral("Data_getTradableQty_RES");
inline const QString Data_getSetting = QStringLiteral("Data_getSetting_RES");
inline const QString Data_saveSetting = QStringLiteral("Data_saveSetting_RES");
inline const QString Data_getPermission = QStringLiteral("Data_getPermission_RES");
inline const QString Data_openPermissionMenu = QStringLiteral("Data_openPermissionMenu_RES");
inline const QString Data_getUpsDownsAnalysis = QStringLiteral("Data_getUpsDownsAnalysis_RES");
inline const QString Data_getKLineData = QStringLiteral("Data_getKLineData_RES");
inline const QString Data_getOPStation = QStringLiteral("Data_getOPStation_RES");
inline const QString Trade_insertOrder = QStringLiteral("Trade_insertOrder_RES");
inline const QString Trade_insertOrderList = QStringLiteral("Trade_insertOrderList_RES");
inline const QString Trade_reqCancelOrder = QStringLiteral("Trade_reqCancelOrder_RES");
inline const QString Sub_subscribe = QStringLiteral("Sub_subscribe_RES");
inline const QString UnSub_subscribe = QStringLiteral("UnSub_subscribe_RES");
inline const QString UnSub_subscribeAll = QStringLiteral("UnSub_subscribeAll_RES");
inline const QString Vlx_startStrategy = QStringLiteral("Vlx_startStrategy_RES");
inline const QString Vlx_stopStrategy = QStringLiteral("Vlx_stopStrategy_RES");
inline const QString Vlx_queryStrategyStatus = QStringLiteral("Vlx_queryStrategyStatus_RES");
} // namespace ReplyEvent

/// Events that come without being asked for.
namespace Push {
inline const QString tickUpdate = QStringLiteral("on_tickUpdate");
inline const QString assetUpdate = QStringLiteral("on_AssetUpdate");
inline const QString entrustUpdate = QStringLiteral("on_entrustUpdate");
inline const QString executionUpdate = QStringLiteral("on_executionUpdate");
inline const QString positionUpdate = QStringLiteral("on_positionUpdate");
inline const QString orderLoaded = QStringLiteral("on_orderLoaded");
inline const QString vlxRcvCustomInfo = QStringLiteral("on_vlxRcvCustomInfo");
inline const QString vlxStrategyStatusUpdate = QStringLiteral("on_vlxStrategyStatusUpdate");
} // namespace Push

/// Names that belong to the protocol but are meant to stay unused: nobody handles the two calls, and none
/// of the events is ever sent.
namespace Reserved {
inline const QString Data_getBufferCall = QStringLiteral("Data_getBuffer_REQ");
inline const QString Data_getBufferReply = QStringLiteral("Data_getBuffer_RES");
inline const QString Data_saveBufferCall = QStringLiteral("Data_saveBuffer_REQ");
inline const QString Data_saveBufferReply = QStringLiteral("Data_saveBuffer_RES");
inline const QString Vlx_sendCustomInfoReply = QStringLiteral("Vlx_sendCustomInfo_RES");
inline const QString Vlx_subStrategyMsgReply = QStringLiteral("Vlx_subStrategyMsg_RES");
inline const QString callError = QStringLiteral("on_callError");
inline const QString webReady = QStringLiteral("Notify_WebReady");
} // namespace Reserved

/// Keys of the JSON objects that pages send and get.
namespace Key {
// The reply envelope
inline const QString uuid = QStringLiteral("uuid");
inline const QString code = QStringLiteral("code");
inline const QString msg = QStringLiteral("msg");
inline const QString resultData = QStringLiteral("resultData");

// Filters
inline const QString symbol = QStringLiteral("symbol");
inline const QString trader = QStringLiteral("trader");
inline const QString orderStatus = QStringLiteral("orderStatus");
inline const QString symbolFilter = QStringLiteral("symbolFilter");
inline const QString securityType = QStringLiteral("securityType");
inline const QString securitySubType = QStringLiteral("securitySubType");
inline const QString securityPost = QStringLiteral("securityPost");

// Accounts
inline const QString fundAccount = QStringLiteral("fundAccount");
inline const QString fundAccountName = QStringLiteral("fundAccountName");

// Order and execution records
inline const QString entrustTime = QStringLiteral("entrustTime");
inline const QString securityId = QStringLiteral("securityId");
inline const QString securityName = QStringLiteral("securityName");
inline const QString side = QStringLiteral("side");
inline const QString sideUnion = QStringLiteral("sideUnion");
inline const QString status = QStringLiteral("status");
inline const QString priceType = QStringLiteral("priceType");
inline const QString price = QStringLiteral("price");
inline const QString entrustQty = QStringLiteral("entrustQty");
inline const QString leaveQty = QStringLiteral("leaveQty");
inline const QString dealQty = QStringLiteral("dealQty");
inline const QString dealPrice = QStringLiteral("dealPrice");
inline const QString entrustAmount = QStringLiteral("entrustAmount");
inline const QString dealAmount = QStringLiteral("dealAmount");
inline const QString exchangeOrderId = QStringLiteral("exchangeOrderId");
inline const QString orderId = QStringLiteral("orderId");
inline const QString traderName = QStringLiteral("traderName");
inline const QString remark = QStringLiteral("remark");
inline const QString dealTime = QStringLiteral("dealTime");
inline const QString execId = QStringLiteral("execId");
inline const QString orderSource = QStringLiteral("orderSource");
inline const QString instanceID = QStringLiteral("instanceID");

// A cell of an order or execution record
inline const QString displayRole = QStringLiteral("displayRole");
inline const QString userRole = QStringLiteral("userRole");

// A page of records
inline const QString totalSize = QStringLiteral("totalSize");
inline const QString size = QStringLiteral("size");
inline const QString entrustInfoList = QStringLiteral("entrustInfoList");
inline const QString executionInfoList = QStringLiteral("executionInfoList");

// Position records
inline const QString securityAccount = QStringLiteral("securityAccount");
inline const QString exchange = QStringLiteral("exchange");
inline const QString lastPrice = QStringLiteral("lastPrice");
inline const QString riseDownRate = QStringLiteral("riseDownRate");
inline const QString currentQty = QStringLiteral("currentQty");
inline const QString tradableQty = QStringLiteral("tradableQty");
inline const QString costPrice = QStringLiteral("costPrice");
inline const QString cost = QStringLiteral("cost");
inline const QString costCNY = QStringLiteral("costCNY");
inline const QString marketValue = QStringLiteral("marketValue");
inline const QString marketValueCNY = QStringLiteral("marketValueCNY");
inline const QString totalCost = QStringLiteral("totalCost");
inline const QString profit = QStringLiteral("profit");
inline const QString profitRate = QStringLiteral("profitRate");
inline const QString stockInterest = QStringLiteral("stockInterest");

// Asset records
inline const QString holdingCost = QStringLiteral("holdingCost");
inline const QString fetchableCash = QStringLiteral("fetchableCash");
inline const QString totalAsset = QStringLiteral("totalAsset");
inline const QString tradableCash = QStringLiteral("tradableCash");
inline const QString closePosProfitDate = QStringLiteral("closePosProfitDate");
inline const QString closePosProfitTrade = QStringLiteral("closePosProfitTrade");
inline const QString floatingProfit = QStringLiteral("floatingProfit");

// Securities
inline const QString displayName = QStringLiteral("displayName");
inline const QString spellName = QStringLiteral("spellName");
inline const QString qtyUnit = QStringLiteral("qtyUnit");
inline const QString precision = QStringLiteral("precision");
inline const QString priceUnit = QStringLiteral("priceUnit");
inline const QString qtyStep = QStringLiteral("qtyStep");
inline const QString qtyPrecision = QStringLiteral("qtyPrecision");
inline const QString minQty = QStringLiteral("minQty");
inline const QString maxQty = QStringLiteral("maxQty");
inline const QString priceLimitType = QStringLiteral("priceLimitType");

// Tradable quantity
inline const QString qty = QStringLiteral("qty");

// Order entry. Meant: "orderID" here, "orderId" in records and in the answer to a cancellation.
inline const QString orderID = QStringLiteral("orderID");
inline const QString orderSide = QStringLiteral("orderSide");

// Strategies
inline const QString strategyID = QStringLiteral("strategyID");
inline const QString strategyStatus = QStringLiteral("strategyStatus");
inline const QString extField = QStringLiteral("ExtField");
} // namespace Key

/// Columns of the host's report generators. Where column and page key are the same text, they are the
/// same constant.
namespace Column {
inline const QString entrustTime = QStringLiteral("entrust_time");
inline const QString securityId = QStringLiteral("security_id");
inline const QString securityName = QStringLiteral("security_name");
using Key::side;
inline const QString sideUnion = QStringLiteral("side_union");
using Key::status;
inline const QString priceType = QStringLiteral("price_type");
using Key::price;
inline const QString entrustQty = QStringLiteral("entrust_qty");
inline const QString leaveQty = QStringLiteral("leave_qty");
inline const QString dealQty = QStringLiteral("deal_qty");
inline const QString dealPrice = QStringLiteral("deal_price");
inline const QString entrustAmount = QStringLiteral("entrust_amount");
inline const QString dealAmount = QStringLiteral("deal_amount");
inline const QString fundAccountName = QStringLiteral("fundaccount_name");
inline const QString fundAccount = QStringLiteral("fundaccount");
inline const QString exchangeOrderId = QStringLiteral("exchange_order_id");
inline const QString orderId = QStringLiteral("order_id");
inline const QString traderName = QStringLiteral("trader_name");
using Key::remark;
inline const QString dealTime = QStringLiteral("deal_time");
inline const QString execId = QStringLiteral("exec_id");
inline const QString userRef3 = QStringLiteral("user_ref_3");
inline const QString algoId = QStringLiteral("algo_id");
inline const QString securityAccount = QStringLiteral("security_account");
using Key::exchange;
inline const QString lastPrice = QStringLiteral("last_price");
inline const QString riseDownRate = QStringLiteral("rise_down_rate");
inline const QString currentQty = QStringLiteral("current_qty");
inline const QString tradableQty = QStringLiteral("tradable_qty");
inline const QString costPrice = QStringLiteral("cost_price");
using Key::cost;
inline const QString costCNY = QStringLiteral("cost_cny");
inline const QString marketValue = QStringLiteral("market_value");
inline const QString marketValueCNY = QStringLiteral("market_value_cny");
inline const QString totalCost = QStringLiteral("total_cost");
using Key::profit;
inline const QString profitRate = QStringLiteral("profit_rate");
} // namespace Column

/// Keys of a cell in the host's line data: the decimal texts of two item data roles.
namespace LineDataRole {
inline const QString display = QString::number(Qt::DisplayRole);
inline const QString user = QString::number(Qt::UserRole);
} // namespace LineDataRole

/// Values of "code": texts, never numbers.
namespace Code {
inline const QString success = QStringLiteral("0");
inline const QString failure = QStringLiteral("-1");
} // namespace Code

/// Fixed texts of "msg" and of log lines.
namespace Message {
inline const QString argumentConversionError = QStringLiteral("参数转换错误");
inline const QString accountError = QStringLiteral("资产账号获取错误");
inline const QString filterConversionError = QStringLiteral("过滤条件参数转换错误");
inline const QString queryFailed = QStringLiteral("query failed");
} // namespace Message

/// A page's choice between two: this text, or any other.
namespace Flag {
inline const QString one = QStringLiteral("1");
} // namespace Flag

/// The K-line request and its answer on the host bus.
namespace KLine {
inline const QString requestType = QStringLiteral("KLineRequest");
inline const QString responseType = QStringLiteral("KLineResponse");
inline const QString symbol = QStringLiteral("Symbol");
inline const QString startTime = QStringLiteral("StartTime");
inline const QString stopTime = QStringLiteral("StopTime");
/// Spelled with a small r: the quote service knows it so.
inline const QString exRightsType = QStringLiteral("ExrightsType");
inline const QString periodType = QStringLiteral("PeriodType");
} // namespace KLine

/// The message center on the host bus, and its settings file.
namespace Center {
/// The doubled word is meant: it is the presenter's identity on the bus.
inline const QString presenterName = QStringLiteral("WebWebMsgCenter");
inline const QString settingsFolder = QStringLiteral("/work/");
inline const QString settingsFile = QStringLiteral("/WebSettings.ini");
} // namespace Center

/// Requests to the strategy platform on the host bus.
namespace Strategy {
inline const QString filePath = QStringLiteral("FilePath");
inline const QString language = QStringLiteral("Language");
inline const QString fundAccountList = QStringLiteral("FundAccountList");
using Key::extField;
inline const QString subType = QStringLiteral("SubType");
/// The calling view: the platform returns it with the answer.
inline const QString panelPtr = QStringLiteral("panelPtr");
using Key::uuid;
} // namespace Strategy

/// Requests to the host's trade logic.
namespace Trade {
/// Who asks for a cancellation.
inline const QString caller = QStringLiteral("WEB");
} // namespace Trade

/// Permissions, which are loaded once and asked for by pages.
namespace Permission {
inline const QString initState = QStringLiteral("SnbBindInit");
/// Two support types in one text, meant: pages ask for it so.
inline const QString bothSupportTypes = QStringLiteral("KFZ;SNB");
inline const QString menu = QStringLiteral("1210");
} // namespace Permission

} // namespace WebConstants
