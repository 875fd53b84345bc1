#include "Algo_Fields.h"
#include "Algo_Values.h"
#include "Fault.h"
#include "Orlo_Keys.h"
#include "SearchConstants.h"
#include "Tessar_Fields.h"
#include "Tessar_Values.h"
#include "Varnel_Fields.h"
#include "Varnel_MsgType.h"
#include "Varnel_Values.h"

namespace {

QString text(const char *own)
{
    return QString::fromLatin1(own);
}

/// Another text when the host has the fault.
QString text(const char *own, const char *fault, const char *other)
{
    return QString::fromLatin1(hasFault(fault) ? other : own);
}

} // namespace

namespace Tessar_Fields {
namespace Security {
const QString symbol = text("f.symbol");
const QString securityID = text("f.securityID");
const QString orderStatus = text("f.orderStatus");
const QString algoOrderID = text("f.algoOrderID");
const QString tradeableCash = text("f.tradeableCash");
const QString positionFlag = text("f.positionFlag");
const QString chineseName = text("f.chineseName");
const QString spellCode = text("f.spellCode", "EmptyConstant", "");
const QString priceLimitType = text("f.priceLimitType");
const QString orderID = text("f.orderID");
const QString side = text("f.side");
const QString price = text("f.price");
const QString orderQty = text("f.orderQty");
const QString clOrdID = text("f.clOrdID");
const QString execID = text("f.execID");
} // namespace Security

namespace UserAccount {
const QString tradingAccount = text("f.tradingAccount");
const QString loginUserId = text("f.loginUserId");
const QString securityExchange = text("f.securityExchange");
const QString userID = text("f.userID");
} // namespace UserAccount

namespace System {
const QString requestExeStatus = text("f.requestExeStatus");
const QString textDescription = text("f.textDescription");
const QString msgType = text("f.msgType");
const QString clientMsgID = text("f.clientMsgID");
} // namespace System

namespace Strategy {
const QString strategyBasicParam = text("f.strategyBasicParam");
const QString strategyID = text("f.strategyID");
const QString strategyStatus = text("f.strategyStatus");
} // namespace Strategy

namespace CustomField {
const QString priceType = text("f.priceType");
} // namespace CustomField

namespace MDCFieldDefine {
const QString mdcSecurityType = text("f.mdcSecurityType");
} // namespace MDCFieldDefine
} // namespace Tessar_Fields

namespace Tessar_Values {
namespace MdcSecurityType {
const QString BondType = text("bond");
} // namespace MdcSecurityType
namespace PositionFalg {
const QString shortPosition = text("short");
} // namespace PositionFalg
namespace Currency {
const QString CNY = text("CNY");
} // namespace Currency
} // namespace Tessar_Values

namespace Varnel_Fields {
namespace ETF {
const QString UserReference3 = text("f.userReference3");
} // namespace ETF

namespace NormalFundEx {
const QString marketValue = text("f.marketValue");
const QString assetBalance = text("f.assetBalance");
} // namespace NormalFundEx

namespace Futures {
const QString HoldingCost = text("f.holdingCost");
const QString OpenCost = text("f.openCost");
const QString ClosePosProfitDate = text("f.closePosProfitDate");
const QString ClosePosProfitTrade = text("f.closePosProfitTrade");
} // namespace Futures

namespace AssetView {
const QString profitAndLoss = text("f.profitAndLoss");
const QString returnRate = text("f.returnRate", "EqualFieldNames", "f.openCost");
} // namespace AssetView

namespace Security {
const QString withDrawQuota = text("f.withDrawQuota");
} // namespace Security

namespace FastFocus {
const QString fundAccount = text("f.fundAccount");
} // namespace FastFocus

namespace VeloxFields {
const QString msgSubEventType = text("f.msgSubEventType");
const QString strategyCustomMsgID = text("f.strategyCustomMsgID");
const QString strategyCustomMsg = text("f.strategyCustomMsg");
} // namespace VeloxFields

namespace VeloxValues {
const QString MSEventStartStrategyReq = text("m.startReq");
const QString MSEventStopStrategyReq = text("m.stopReq");
const QString MSEventQueryStrategyStatusReq = text("m.queryReq");
const QString MSEventStrategyCustomMsg = text("m.custom");
const QString MSEventSubStrategyMsg = text("m.sub");
const QString MSEventStartStrategyRsp = text("m.startRsp");
const QString MSEventStopStrategyRsp = text("m.stopRsp", "EqualStrategyMessages", "m.startRsp");
const QString MSEventQueryStrategyStatusRsp = text("m.queryRsp");
const QString MSEventStrategyStatusUpdate = text("m.status");
} // namespace VeloxValues
} // namespace Varnel_Fields

namespace Varnel_Values {
namespace FundAccountType {
const QString Future = text("futures");
} // namespace FundAccountType
namespace PriceType {
const QString shEntrustAfterHours = text("after hours");
} // namespace PriceType
namespace SideUnion {
const QString pfpBuy = text("after hours buy");
const QString pfpSell = text("after hours sell", "EqualAfterHoursSides", "after hours buy");
const QStringList buyItemList = hasFault("NoBuySides") ? QStringList() : QStringList{text("buy")};
} // namespace SideUnion
} // namespace Varnel_Values

namespace Algo_Fields {
namespace VarnelStrategy {
const QString supportType = text("f.supportType");
} // namespace VarnelStrategy
} // namespace Algo_Fields

namespace Algo_Values {
namespace SupprotType {
const QString KFZ_SNB = text("algo");
} // namespace SupprotType
} // namespace Algo_Values

namespace Varnel_MsgType {
const QString QueryAlgoPermissionsByConditionRequest = text("permission query");
} // namespace Varnel_MsgType

namespace Orlo_Keys {
namespace EventMsgName {
const QString VELOX_TRANS_MSG_IN = text("strategy calls");
const QString VELOX_TRANS_MSG_OUT = text("strategy answers");
} // namespace EventMsgName
} // namespace Orlo_Keys

namespace Constants {
const QString SymbolSearch_Split = text("|");
} // namespace Constants
