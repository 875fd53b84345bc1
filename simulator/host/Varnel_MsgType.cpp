#include "Varnel_MsgType.h"

namespace Varnel_MsgType {
const QString QueryAlgoPermissionsByConditionRequest = QStringLiteral("QueryAlgoPermissionsByConditionRequest");
} // namespace Varnel_MsgType
