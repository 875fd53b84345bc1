#pragma once

#include "HostApi.h"

#include <QString>

/// Names of bus events; VarnelBusinessDataInterface::GetOrloEventMsgIdByStr gives their ids.
namespace Orlo_Keys {
/// Names of the events that carry strategy messages.
namespace EventMsgName {
extern VARNEL_HOST_API const QString VELOX_TRANS_MSG_IN;  ///< the library to the strategy platform
extern VARNEL_HOST_API const QString VELOX_TRANS_MSG_OUT; ///< the strategy platform to the library: answers and notices
} // namespace EventMsgName
} // namespace Orlo_Keys
