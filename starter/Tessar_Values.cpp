// The terminal must put here: the texts of its own field values.
#include "Tessar_Values.h"

namespace Tessar_Values {
namespace MdcSecurityType {
const QString BondType = QStringLiteral("BondType");
} // namespace MdcSecurityType

namespace PositionFalg {
const QString shortPosition = QStringLiteral("shortPosition");
} // namespace PositionFalg

namespace Currency {
const QString CNY = QStringLiteral("CNY");
} // namespace Currency
} // namespace Tessar_Values
