// The terminal must put here: its own separator of search entries, which is never empty.
#include "SearchConstants.h"

namespace Constants {
const QString SymbolSearch_Split = QStringLiteral("|");
} // namespace Constants
