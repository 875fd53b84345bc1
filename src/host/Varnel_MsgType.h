#pragma once

#include "HostApi.h"

#include <QString>

/// Names of the host's server requests.
namespace Varnel_MsgType {
/// Which fund accounts of a user may use algorithms of a kind. Each record of the answer has Varnel_Fields::FastFocus::
/// fundAccount and Algo_Fields::VarnelStrategy::supportType.
extern VARNEL_HOST_API const QString QueryAlgoPermissionsByConditionRequest;
} // namespace Varnel_MsgType
