#pragma once

#include "HostApi.h"

#include <QString>

/// Field values of the host. The host defines the texts; the library never assumes one.
namespace Tessar_Values {
/// Values of Tessar_Fields::MDCFieldDefine::mdcSecurityType.
namespace MdcSecurityType {
extern VARNEL_HOST_API const QString BondType; ///< marks a bond: only then is QvBondDataMgr asked
} // namespace MdcSecurityType

/// Values of Tessar_Fields::Security::positionFlag.
namespace PositionFalg {
extern VARNEL_HOST_API const QString shortPosition; ///< short positions: their floating profit is cost less value
} // namespace PositionFalg

/// Currencies of CBusinessDataBase::getTradeAccountParam.
namespace Currency {
extern VARNEL_HOST_API const QString CNY; ///< the currency in which account parameters are asked for
} // namespace Currency
} // namespace Tessar_Values
