#include "Varnel_Values.h"

namespace Varnel_Values {
namespace FundAccountType {
const QString Future = QStringLiteral("futures");
} // namespace FundAccountType

namespace PriceType {
const QString shEntrustAfterHours = QStringLiteral("AfterHours");
} // namespace PriceType

namespace SideUnion {
const QString pfpBuy = QStringLiteral("AfterHoursBuy");
const QString pfpSell = QStringLiteral("AfterHoursSell");
const QStringList buyItemList{QStringLiteral("Buy"), QStringLiteral("BuyOpen"), QStringLiteral("BuyClose"),
                              QStringLiteral("AfterHoursBuy")};
} // namespace SideUnion
} // namespace Varnel_Values
