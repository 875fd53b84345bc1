#pragma once

#include "HostApi.h"

#include <QString>

/// Field names of the host. The host defines the texts; the library never assumes one.
namespace Tessar_Fields {
/// Of securities, orders, executions and positions.
namespace Security {
extern VARNEL_HOST_API const QString symbol;         ///< of securities, orders and positions, a text
extern VARNEL_HOST_API const QString securityID;     ///< code of a security without its exchange, a text
extern VARNEL_HOST_API const QString orderStatus;    ///< status of an order: key of an order query
extern VARNEL_HOST_API const QString algoOrderID;    ///< strategy instance that placed an order: key of an order query
extern VARNEL_HOST_API const QString tradeableCash;  ///< money for new orders, a number: of account parameters
extern VARNEL_HOST_API const QString positionFlag;   ///< direction of the holdings: of the details of a trading account
extern VARNEL_HOST_API const QString chineseName;    ///< display name of a security, a text
extern VARNEL_HOST_API const QString spellCode;      ///< spelling code of a security, a text
extern VARNEL_HOST_API const QString priceLimitType; ///< whether a security has price limits, read as true or false
extern VARNEL_HOST_API const QString orderID;        ///< identifier of an order, a text: of events, responses, cancels
extern VARNEL_HOST_API const QString side;           ///< side of an order: of order responses
extern VARNEL_HOST_API const QString price;          ///< price of an order: of order responses, read as text
extern VARNEL_HOST_API const QString orderQty;       ///< quantity of an order: of order responses, read as text
extern VARNEL_HOST_API const QString clOrdID; ///< client order identifier: of an order's details and of cancels, a text
extern VARNEL_HOST_API const QString execID;  ///< identifier of an execution: of execution events, a text
} // namespace Security

/// Of accounts, and of the records that belong to them.
namespace UserAccount {
extern VARNEL_HOST_API const QString tradingAccount;   ///< of account details, asset events, cancels and order queries
extern VARNEL_HOST_API const QString loginUserId;      ///< trader of an order: key of an order query
extern VARNEL_HOST_API const QString securityExchange; ///< exchange of a security, position or order, a text
extern VARNEL_HOST_API const QString userID;           ///< condition of the permission query: the login account
} // namespace UserAccount

/// Of requests and their answers.
namespace System {
extern VARNEL_HOST_API const QString requestExeStatus; ///< outcome of an order or a cancel: "0" for success
extern VARNEL_HOST_API const QString textDescription;  ///< reason, the page's "msg"; "0" when a strategy call succeeded
extern VARNEL_HOST_API const QString msgType;          ///< type of a message, again inside its body
extern VARNEL_HOST_API const QString clientMsgID; ///< identifier of a request, repeated by each candle of its answer
} // namespace System

/// Of strategy messages.
namespace Strategy {
extern VARNEL_HOST_API const QString strategyBasicParam; ///< of a start: any value, as the page sent it
extern VARNEL_HOST_API const QString strategyID;         ///< identifier of a strategy, a text
extern VARNEL_HOST_API const QString strategyStatus;     ///< status of a strategy, a text that pages get as it is
} // namespace Strategy

/// Of orders.
namespace CustomField {
extern VARNEL_HOST_API const QString priceType; ///< price type of an order: of order responses
} // namespace CustomField

/// Of the details of a security.
namespace MDCFieldDefine {
extern VARNEL_HOST_API const QString mdcSecurityType; ///< type of a security, which tells bonds
} // namespace MDCFieldDefine
} // namespace Tessar_Fields
