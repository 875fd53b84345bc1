#pragma once

#include "HostApi.h"

#include <QString>

/// Field names of the host. The host defines the texts; the library never assumes one.
namespace Varnel_Fields {
namespace ETF {
extern VARNEL_HOST_API const QString UserReference3;
} // namespace ETF

namespace NormalFundEx {
extern VARNEL_HOST_API const QString marketValue;
extern VARNEL_HOST_API const QString assetBalance;
} // namespace NormalFundEx

namespace Futures {
extern VARNEL_HOST_API const QString HoldingCost;
extern VARNEL_HOST_API const QString OpenCost;
extern VARNEL_HOST_API const QString ClosePosProfitDate;
extern VARNEL_HOST_API const QString ClosePosProfitTrade;
} // namespace Futures

namespace AssetView {
extern VARNEL_HOST_API const QString profitAndLoss;
extern VARNEL_HOST_API const QString returnRate;
} // namespace AssetView

namespace Security {
extern VARNEL_HOST_API const QString withDrawQuota;
} // namespace Security

namespace FastFocus {
extern VARNEL_HOST_API const QString fundAccount;
} // namespace FastFocus

namespace VeloxFields {
extern VARNEL_HOST_API const QString msgSubEventType;
extern VARNEL_HOST_API const QString strategyCustomMsgID;
extern VARNEL_HOST_API const QString strategyCustomMsg;
} // namespace VeloxFields

namespace VeloxValues {
extern VARNEL_HOST_API const QString MSEventStartStrategyReq;
extern VARNEL_HOST_API const QString MSEventStopStrategyReq;
extern VARNEL_HOST_API const QString MSEventQueryStrategyStatusReq;
extern VARNEL_HOST_API const QString MSEventStrategyCustomMsg;
extern VARNEL_HOST_API const QString MSEventSubStrategyMsg;
extern VARNEL_HOST_API const QString MSEventStartStrategyRsp;
extern VARNEL_HOST_API const QString MSEventStopStrategyRsp;
extern VARNEL_HOST_API const QString MSEventQueryStrategyStatusRsp;
extern VARNEL_HOST_API const QString MSEventStrategyStatusUpdate;
} // namespace VeloxValues
} // namespace Varnel_Fields
