// The terminal must put here: the names of its own bus events.
#include "Orlo_Keys.h"

namespace Orlo_Keys {
namespace EventMsgName {
const QString VELOX_TRANS_MSG_IN = QStringLiteral("VELOX_TRANS_MSG_IN");
const QString VELOX_TRANS_MSG_OUT = QStringLiteral("VELOX_TRANS_MSG_OUT");
} // namespace EventMsgName
} // namespace Orlo_Keys
