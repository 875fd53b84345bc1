#pragma once

#include "HostApi.h"

#include <QString>

/// Field names of the host. The host defines the texts; the library never assumes one.
namespace Algo_Fields {
/// Of the permissions for algorithms.
namespace VarnelStrategy {
extern VARNEL_HOST_API const QString supportType; ///< kind of algorithms: of the permission query and its records
} // namespace VarnelStrategy
} // namespace Algo_Fields
