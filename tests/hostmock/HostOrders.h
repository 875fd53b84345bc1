#pragma once

#include "HostApi.h"

/// How many order lists the library has made in this process.
VARNEL_HOST_API int orderListsMade();
