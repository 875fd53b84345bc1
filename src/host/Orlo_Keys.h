#pragma once

#include "HostApi.h"

#include <QString>

/// Names of bus events; VarnelBusinessDataInterface::GetOrloEventMsgIdByStr gives their ids.
namespace Orlo_Keys {
namespace EventMsgName {
extern VARNEL_HOST_API const QString VELOX_TRANS_MSG_IN;
extern VARNEL_HOST_API const QString VELOX_TRANS_MSG_OUT;
} // namespace EventMsgName
} // namespace Orlo_Keys
