#pragma once

#include "HostApi.h"

#include <QString>
#include <QStringList>

/// Field values of the host. The host defines the texts; the library never assumes one.
namespace Varnel_Values {
/// Values of VarnelBusinessDataInterface::GetAccountAssetPropByTradingAccount.
namespace FundAccountType {
extern VARNEL_HOST_API const QString Future; ///< a futures account: its figures are shown as the host gives them
} // namespace FundAccountType

/// Price types of orders.
namespace PriceType {
extern VARNEL_HOST_API const QString shEntrustAfterHours; ///< trading after hours at the price of the close
} // namespace PriceType

/// Sides of orders. For orders after hours the library replaces the page's side by one of these.
namespace SideUnion {
extern VARNEL_HOST_API const QString pfpBuy;          ///< the side of a buy after hours
extern VARNEL_HOST_API const QString pfpSell;         ///< the side of a sale after hours
extern VARNEL_HOST_API const QStringList buyItemList; ///< every side that counts as a buy; all others count as a sale
} // namespace SideUnion
} // namespace Varnel_Values
