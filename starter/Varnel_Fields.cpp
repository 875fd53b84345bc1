// The terminal must put here: the texts of its own field names.
#include "Varnel_Fields.h"

namespace Varnel_Fields {
namespace ETF {
const QString UserReference3 = QStringLiteral("UserReference3");
} // namespace ETF

namespace NormalFundEx {
const QString marketValue = QStringLiteral("marketValue");
const QString assetBalance = QStringLiteral("assetBalance");
} // namespace NormalFundEx

namespace Futures {
const QString HoldingCost = QStringLiteral("HoldingCost");
const QString OpenCost = QStringLiteral("OpenCost");
const QString ClosePosProfitDate = QStringLiteral("ClosePosProfitDate");
const QString ClosePosProfitTrade = QStringLiteral("ClosePosProfitTrade");
} // namespace Futures

namespace AssetView {
const QString profitAndLoss = QStringLiteral("profitAndLoss");
const QString returnRate = QStringLiteral("returnRate");
} // namespace AssetView

namespace Security {
const QString withDrawQuota = QStringLiteral("withDrawQuota");
} // namespace Security

namespace FastFocus {
const QString fundAccount = QStringLiteral("fundAccount");
} // namespace FastFocus

namespace VeloxFields {
const QString msgSubEventType = QStringLiteral("msgSubEventType");
const QString strategyCustomMsgID = QStringLiteral("strategyCustomMsgID");
const QString strategyCustomMsg = QStringLiteral("strategyCustomMsg");
} // namespace VeloxFields

namespace VeloxValues {
const QString MSEventStartStrategyReq = QStringLiteral("MSEventStartStrategyReq");
const QString MSEventStopStrategyReq = QStringLiteral("MSEventStopStrategyReq");
const QString MSEventQueryStrategyStatusReq = QStringLiteral("MSEventQueryStrategyStatusReq");
const QString MSEventStrategyCustomMsg = QStringLiteral("MSEventStrategyCustomMsg");
const QString MSEventSubStrategyMsg = QStringLiteral("MSEventSubStrategyMsg");
const QString MSEventStartStrategyRsp = QStringLiteral("MSEventStartStrategyRsp");
const QString MSEventStopStrategyRsp = QStringLiteral("MSEventStopStrategyRsp");
const QString MSEventQueryStrategyStatusRsp = QStringLiteral("MSEventQueryStrategyStatusRsp");
const QString MSEventStrategyStatusUpdate = QStringLiteral("MSEventStrategyStatusUpdate");
} // namespace VeloxValues
} // namespace Varnel_Fields
