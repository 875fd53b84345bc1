#pragma once

#include "HostApi.h"

#include <QString>

/// Field names of the host. The host defines the texts; the library never assumes one.
namespace Varnel_Fields {
/// Of orders.
namespace ETF {
extern VARNEL_HOST_API const QString UserReference3; ///< where the order came from: key of an order query
} // namespace ETF

/// Of the details of a trading account.
namespace NormalFundEx {
extern VARNEL_HOST_API const QString marketValue;  ///< market value of the holdings, a number
extern VARNEL_HOST_API const QString assetBalance; ///< total assets, a number
} // namespace NormalFundEx

/// Of the details of a trading account, of stock accounts too.
namespace Futures {
extern VARNEL_HOST_API const QString HoldingCost;        ///< what the holdings have cost, a number
extern VARNEL_HOST_API const QString OpenCost;           ///< what the holdings cost when they were opened, a number
extern VARNEL_HOST_API const QString ClosePosProfitDate; ///< today's closed positions: profit since the last settlement
extern VARNEL_HOST_API const QString ClosePosProfitTrade; ///< today's closed positions: profit since they were opened
} // namespace Futures

/// Of the details of a trading account. The library computes them itself unless it is a futures account.
namespace AssetView {
extern VARNEL_HOST_API const QString profitAndLoss; ///< market value less holding cost, a number
extern VARNEL_HOST_API const QString returnRate;    ///< that as a fraction of the holding cost, a number
} // namespace AssetView

/// Of the parameters of a trading account in one currency.
namespace Security {
extern VARNEL_HOST_API const QString withDrawQuota; ///< money that can be withdrawn, a number
} // namespace Security

/// Of permissions.
namespace FastFocus {
extern VARNEL_HOST_API const QString fundAccount; ///< the fund account of a permission record
} // namespace FastFocus

/// Of strategy messages. QvPresenterClass::PutEvent lists the fields of each.
namespace VeloxFields {
extern VARNEL_HOST_API const QString msgSubEventType;     ///< which message it is: one of VeloxValues
extern VARNEL_HOST_API const QString strategyCustomMsgID; ///< the identifier that pages subscribe to, a text
extern VARNEL_HOST_API const QString strategyCustomMsg;   ///< the message itself, a text
} // namespace VeloxFields

/// Kinds of strategy messages.
namespace VeloxValues {
extern VARNEL_HOST_API const QString MSEventStartStrategyReq;       ///< to the platform: start
extern VARNEL_HOST_API const QString MSEventStopStrategyReq;        ///< to the platform: stop
extern VARNEL_HOST_API const QString MSEventQueryStrategyStatusReq; ///< to the platform: tell the status
extern VARNEL_HOST_API const QString MSEventStrategyCustomMsg;      ///< a custom message, in both directions
extern VARNEL_HOST_API const QString MSEventSubStrategyMsg;         ///< to the platform: custom messages, or no more
extern VARNEL_HOST_API const QString MSEventStartStrategyRsp;       ///< from the platform: answer to a start
extern VARNEL_HOST_API const QString MSEventStopStrategyRsp;        ///< from the platform: answer to a stop
extern VARNEL_HOST_API const QString MSEventQueryStrategyStatusRsp; ///< from the platform: answer to a query
extern VARNEL_HOST_API const QString MSEventStrategyStatusUpdate;   ///< from the platform: a status has changed
} // namespace VeloxValues
} // namespace Varnel_Fields
