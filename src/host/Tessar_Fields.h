#pragma once

#include "HostApi.h"

#include <QString>

/// Field names of the host. The host defines the texts; the library never assumes one.
namespace Tessar_Fields {
namespace Security {
extern VARNEL_HOST_API const QString symbol;
extern VARNEL_HOST_API const QString securityID;
extern VARNEL_HOST_API const QString orderStatus;
extern VARNEL_HOST_API const QString algoOrderID;
extern VARNEL_HOST_API const QString tradeableCash;
extern VARNEL_HOST_API const QString positionFlag;
extern VARNEL_HOST_API const QString chineseName;
extern VARNEL_HOST_API const QString spellCode;
extern VARNEL_HOST_API const QString priceLimitType;
extern VARNEL_HOST_API const QString orderID;
extern VARNEL_HOST_API const QString side;
extern VARNEL_HOST_API const QString price;
extern VARNEL_HOST_API const QString orderQty;
extern VARNEL_HOST_API const QString clOrdID;
extern VARNEL_HOST_API const QString execID;
} // namespace Security

namespace UserAccount {
extern VARNEL_HOST_API const QString tradingAccount;
extern VARNEL_HOST_API const QString loginUserId;
extern VARNEL_HOST_API const QString securityExchange;
extern VARNEL_HOST_API const QString userID;
} // namespace UserAccount

namespace System {
extern VARNEL_HOST_API const QString requestExeStatus;
extern VARNEL_HOST_API const QString textDescription;
extern VARNEL_HOST_API const QString msgType;
extern VARNEL_HOST_API const QString clientMsgID;
} // namespace System

namespace Strategy {
extern VARNEL_HOST_API const QString strategyBasicParam;
extern VARNEL_HOST_API const QString strategyID;
extern VARNEL_HOST_API const QString strategyStatus;
} // namespace Strategy

namespace CustomField {
extern VARNEL_HOST_API const QString priceType;
} // namespace CustomField

namespace MDCFieldDefine {
extern VARNEL_HOST_API const QString mdcSecurityType;
} // namespace MDCFieldDefine
} // namespace Tessar_Fields
