#pragma once

#include "HostApi.h"

#include <QString>

/// Field names of the host. The host defines the texts; the library never assumes one.
namespace Algo_Fields {
namespace VarnelStrategy {
extern VARNEL_HOST_API const QString supportType;
} // namespace VarnelStrategy
} // namespace Algo_Fields
