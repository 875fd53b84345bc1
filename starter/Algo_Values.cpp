// The terminal must put here: the texts of its own field values.
#include "Algo_Values.h"

namespace Algo_Values {
namespace SupprotType {
const QString KFZ_SNB = QStringLiteral("KFZ_SNB");
} // namespace SupprotType
} // namespace Algo_Values
