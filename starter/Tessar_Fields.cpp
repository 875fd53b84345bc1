// The terminal must put here: the texts of its own field names.
#include "Tessar_Fields.h"

namespace Tessar_Fields {
namespace Security {
const QString symbol = QStringLiteral("symbol");
const QString securityID = QStringLiteral("securityID");
const QString orderStatus = QStringLiteral("orderStatus");
const QString algoOrderID = QStringLiteral("algoOrderID");
const QString tradeableCash = QStringLiteral("tradeableCash");
const QString positionFlag = QStringLiteral("positionFlag");
const QString chineseName = QStringLiteral("chineseName");
const QString spellCode = QStringLiteral("spellCode");
const QString priceLimitType = QStringLiteral("priceLimitType");
const QString orderID = QStringLiteral("orderID");
const QString side = QStringLiteral("side");
const QString price = QStringLiteral("price");
const QString orderQty = QStringLiteral("orderQty");
const QString clOrdID = QStringLiteral("clOrdID");
const QString execID = QStringLiteral("execID");
} // namespace Security

namespace UserAccount {
const QString tradingAccount = QStringLiteral("tradingAccount");
const QString loginUserId = QStringLiteral("loginUserId");
const QString securityExchange = QStringLiteral("securityExchange");
const QString userID = QStringLiteral("userID");
} // namespace UserAccount

namespace System {
const QString requestExeStatus = QStringLiteral("requestExeStatus");
const QString textDescription = QStringLiteral("textDescription");
const QString msgType = QStringLiteral("msgType");
const QString clientMsgID = QStringLiteral("clientMsgID");
} // namespace System

namespace Strategy {
const QString strategyBasicParam = QStringLiteral("strategyBasicParam");
const QString strategyID = QStringLiteral("strategyID");
const QString strategyStatus = QStringLiteral("strategyStatus");
} // namespace Strategy

namespace CustomField {
const QString priceType = QStringLiteral("priceType");
} // namespace CustomField

namespace MDCFieldDefine {
const QString mdcSecurityType = QStringLiteral("mdcSecurityType");
} // namespace MDCFieldDefine
} // namespace Tessar_Fields
