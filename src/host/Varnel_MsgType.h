#pragma once

#include "HostApi.h"

#include <QString>

/// Names of the host's server requests.
namespace Varnel_MsgType {
extern VARNEL_HOST_API const QString QueryAlgoPermissionsByConditionRequest;
} // namespace Varnel_MsgType
