// The terminal must put here: the names of its own server requests.
#include "Varnel_MsgType.h"

namespace Varnel_MsgType {
const QString QueryAlgoPermissionsByConditionRequest = QStringLiteral("QueryAlgoPermissionsByConditionRequest");
} // namespace Varnel_MsgType
