#pragma once

#include "HostApi.h"

#include <QString>

/// Constants of the security search.
namespace Constants {
/// Separates the parts of a search entry; never empty.
extern VARNEL_HOST_API const QString SymbolSearch_Split;
} // namespace Constants
