#pragma once

#include "HostApi.h"

#include <QString>

/// Field values of the host. The host defines the texts; the library never assumes one.
namespace Algo_Values {
/// Kinds of algorithms, the values of Algo_Fields::VarnelStrategy::supportType.
namespace SupprotType {
extern VARNEL_HOST_API const QString KFZ_SNB; ///< the one kind that the library asks the server for
} // namespace SupprotType
} // namespace Algo_Values
