#pragma once

#include "HostApi.h"

#include <QString>

/// Field values of the host. The host defines the texts; the library never assumes one.
namespace Tessar_Values {
namespace MdcSecurityType {
extern VARNEL_HOST_API const QString BondType;
} // namespace MdcSecurityType

namespace PositionFalg {
extern VARNEL_HOST_API const QString shortPosition;
} // namespace PositionFalg

namespace Currency {
extern VARNEL_HOST_API const QString CNY;
} // namespace Currency
} // namespace Tessar_Values
