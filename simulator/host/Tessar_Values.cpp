#include "Tessar_Values.h"

namespace Tessar_Values {
namespace MdcSecurityType {
const QString BondType = QStringLiteral("Bond");
} // namespace MdcSecurityType

namespace PositionFalg {
const QString shortPosition = QStringLiteral("Short");
} // namespace PositionFalg

namespace Currency {
const QString CNY = QStringLiteral("CNY");
} // namespace Currency
} // namespace Tessar_Values
