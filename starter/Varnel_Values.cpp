// The terminal must put here: the texts of its own field values.
#include "Varnel_Values.h"

namespace Varnel_Values {
namespace FundAccountType {
const QString Future = QStringLiteral("Future");
} // namespace FundAccountType

namespace PriceType {
const QString shEntrustAfterHours = QStringLiteral("shEntrustAfterHours");
} // namespace PriceType

namespace SideUnion {
const QString pfpBuy = QStringLiteral("pfpBuy");
const QString pfpSell = QStringLiteral("pfpSell");
const QStringList buyItemList{QStringLiteral("Buy"), pfpBuy};
} // namespace SideUnion
} // namespace Varnel_Values
