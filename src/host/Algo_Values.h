#pragma once

#include "HostApi.h"

#include <QString>

/// Field values of the host. The host defines the texts; the library never assumes one.
namespace Algo_Values {
namespace SupprotType {
extern VARNEL_HOST_API const QString KFZ_SNB;
} // namespace SupprotType
} // namespace Algo_Values
