#include "SearchConstants.h"

namespace Constants {
const QString SymbolSearch_Split = QStringLiteral("|");
} // namespace Constants
