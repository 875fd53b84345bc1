// The terminal must put here: the texts of its own field names.
#include "Algo_Fields.h"

namespace Algo_Fields {
namespace VarnelStrategy {
const QString supportType = QStringLiteral("supportType");
} // namespace VarnelStrategy
} // namespace Algo_Fields
