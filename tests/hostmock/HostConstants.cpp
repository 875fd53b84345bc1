// The host's constants. Their texts differ from those of real hosts, so that a test fails when the library assumes a
// text.

#include "Algo_Fields.h"
#include "Algo_Values.h"
#include "Orlo_Keys.h"
#include "SearchConstants.h"
#include "Tessar_Fields.h"
#include "Tessar_Values.h"
#include "Varnel_Fields.h"
#include "Varnel_MsgType.h"
#include "Varnel_Values.h"

namespace Algo_Fields {
namespace VarnelStrategy {
const QString supportType = QStringLiteral("mock:VarnelStrategy.supportType");
} // namespace VarnelStrategy
} // namespace Algo_Fields

namespace Algo_Values {
namespace SupprotType {
const QString KFZ_SNB = QStringLiteral("mock:SupprotType.KFZ_SNB");
} // namespace SupprotType
} // namespace Algo_Values

namespace Orlo_Keys {
namespace EventMsgName {
const QString VELOX_TRANS_MSG_IN = QStringLiteral("mock:EventMsgName.VELOX_TRANS_MSG_IN");
const QString VELOX_TRANS_MSG_OUT = QStringLiteral("mock:EventMsgName.VELOX_TRANS_MSG_OUT");
} // namespace EventMsgName
} // namespace Orlo_Keys

namespace Constants {
const QString SymbolSearch_Split = QStringLiteral("<|>");
} // namespace Constants

namespace Tessar_Fields {
namespace Security {
const QString symbol = QStringLiteral("mock:Security.symbol");
const QString securityID = QStringLiteral("mock:Security.securityID");
const QString orderStatus = QStringLiteral("mock:Security.orderStatus");
const QString algoOrderID = QStringLiteral("mock:Security.algoOrderID");
const QString tradeableCash = QStringLiteral("mock:Security.tradeableCash");
const QString positionFlag = QStringLiteral("mock:Security.positionFlag");
const QString chineseName = QStringLiteral("mock:Security.chineseName");
const QString spellCode = QStringLiteral("mock:Security.spellCode");
const QString priceLimitType = QStringLiteral("mock:Security.priceLimitType");
const QString orderID = QStringLiteral("mock:Security.orderID");
const QString side = QStringLiteral("mock:Security.side");
const QString price = QStringLiteral("mock:Security.price");
const QString orderQty = QStringLiteral("mock:Security.orderQty");
const QString clOrdID = QStringLiteral("mock:Security.clOrdID");
const QString execID = QStringLiteral("mock:Security.execID");
} // namespace Security

namespace UserAccount {
const QString tradingAccount = QStringLiteral("mock:UserAccount.tradingAccount");
const QString loginUserId = QStringLiteral("mock:UserAccount.loginUserId");
const QString securityExchange = QStringLiteral("mock:UserAccount.securityExchange");
const QString userID = QStringLiteral("mock:UserAccount.userID");
} // namespace UserAccount

namespace System {
const QString requestExeStatus = QStringLiteral("mock:System.requestExeStatus");
const QString textDescription = QStringLiteral("mock:System.textDescription");
const QString msgType = QStringLiteral("mock:System.msgType");
const QString clientMsgID = QStringLiteral("mock:System.clientMsgID");
} // namespace System

namespace Strategy {
const QString strategyBasicParam = QStringLiteral("mock:Strategy.strategyBasicParam");
const QString strategyID = QStringLiteral("mock:Strategy.strategyID");
const QString strategyStatus = QStringLiteral("mock:Strategy.strategyStatus");
} // namespace Strategy

namespace CustomField {
const QString priceType = QStringLiteral("mock:CustomField.priceType");
} // namespace CustomField

namespace MDCFieldDefine {
const QString mdcSecurityType = QStringLiteral("mock:MDCFieldDefine.mdcSecurityType");
} // namespace MDCFieldDefine
} // namespace Tessar_Fields

namespace Tessar_Values {
namespace MdcSecurityType {
const QString BondType = QStringLiteral("mock:MdcSecurityType.BondType");
} // namespace MdcSecurityType

namespace PositionFalg {
const QString shortPosition = QStringLiteral("mock:PositionFalg.shortPosition");
} // namespace PositionFalg

namespace Currency {
const QString CNY = QStringLiteral("mock:Currency.CNY");
} // namespace Currency
} // namespace Tessar_Values

namespace Varnel_Fields {
namespace ETF {
const QString UserReference3 = QStringLiteral("mock:ETF.UserReference3");
} // namespace ETF

namespace NormalFundEx {
const QString marketValue = QStringLiteral("mock:NormalFundEx.marketValue");
const QString assetBalance = QStringLiteral("mock:NormalFundEx.assetBalance");
} // namespace NormalFundEx

namespace Futures {
const QString HoldingCost = QStringLiteral("mock:Futures.HoldingCost");
const QString OpenCost = QStringLiteral("mock:Futures.OpenCost");
const QString ClosePosProfitDate = QStringLiteral("mock:Futures.ClosePosProfitDate");
const QString ClosePosProfitTrade = QStringLiteral("mock:Futures.ClosePosProfitTrade");
} // namespace Futures

namespace AssetView {
const QString profitAndLoss = QStringLiteral("mock:AssetView.profitAndLoss");
const QString returnRate = QStringLiteral("mock:AssetView.returnRate");
} // namespace AssetView

namespace Security {
const QString withDrawQuota = QStringLiteral("mock:Security.withDrawQuota");
} // namespace Security

namespace FastFocus {
const QString fundAccount = QStringLiteral("mock:FastFocus.fundAccount");
} // namespace FastFocus

namespace VeloxFields {
const QString msgSubEventType = QStringLiteral("mock:VeloxFields.msgSubEventType");
const QString strategyCustomMsgID = QStringLiteral("mock:VeloxFields.strategyCustomMsgID");
const QString strategyCustomMsg = QStringLiteral("mock:VeloxFields.strategyCustomMsg");
} // namespace VeloxFields

namespace VeloxValues {
const QString MSEventStartStrategyReq = QStringLiteral("mock:VeloxValues.MSEventStartStrategyReq");
const QString MSEventStopStrategyReq = QStringLiteral("mock:VeloxValues.MSEventStopStrategyReq");
const QString MSEventQueryStrategyStatusReq = QStringLiteral("mock:VeloxValues.MSEventQueryStrategyStatusReq");
const QString MSEventStrategyCustomMsg = QStringLiteral("mock:VeloxValues.MSEventStrategyCustomMsg");
const QString MSEventSubStrategyMsg = QStringLiteral("mock:VeloxValues.MSEventSubStrategyMsg");
const QString MSEventStartStrategyRsp = QStringLiteral("mock:VeloxValues.MSEventStartStrategyRsp");
const QString MSEventStopStrategyRsp = QStringLiteral("mock:VeloxValues.MSEventStopStrategyRsp");
const QString MSEventQueryStrategyStatusRsp = QStringLiteral("mock:VeloxValues.MSEventQueryStrategyStatusRsp");
const QString MSEventStrategyStatusUpdate = QStringLiteral("mock:VeloxValues.MSEventStrategyStatusUpdate");
} // namespace VeloxValues
} // namespace Varnel_Fields

namespace Varnel_MsgType {
const QString QueryAlgoPermissionsByConditionRequest =
    QStringLiteral("mock:Varnel_MsgType.QueryAlgoPermissionsByConditionRequest");
} // namespace Varnel_MsgType

namespace Varnel_Values {
namespace FundAccountType {
const QString Future = QStringLiteral("mock:FundAccountType.Future");
} // namespace FundAccountType

namespace PriceType {
const QString shEntrustAfterHours = QStringLiteral("mock:PriceType.shEntrustAfterHours");
} // namespace PriceType

namespace SideUnion {
const QString pfpBuy = QStringLiteral("mock:SideUnion.pfpBuy");
const QString pfpSell = QStringLiteral("mock:SideUnion.pfpSell");
// Meant: pfpBuy is not in the list.
const QStringList buyItemList = {QStringLiteral("mock:buy.margin"), QStringLiteral("mock:buy.cash"),
                                 QStringLiteral("mock:buy.repay")};
} // namespace SideUnion
} // namespace Varnel_Values
