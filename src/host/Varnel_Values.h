#pragma once

#include "HostApi.h"

#include <QString>
#include <QStringList>

/// Field values of the host. The host defines the texts; the library never assumes one.
namespace Varnel_Values {
namespace FundAccountType {
extern VARNEL_HOST_API const QString Future;
} // namespace FundAccountType

namespace PriceType {
extern VARNEL_HOST_API const QString shEntrustAfterHours;
} // namespace PriceType

namespace SideUnion {
extern VARNEL_HOST_API const QString pfpBuy;
extern VARNEL_HOST_API const QString pfpSell;
extern VARNEL_HOST_API const QStringList buyItemList;
} // namespace SideUnion
} // namespace Varnel_Values
