#pragma once

#include "platform/MessageBus.h"
#include "platform/Scenario.h"

namespace sim {

/// The server's list of who may use which kind of algorithm: the one query that the bus serves for it.
namespace PermissionService {

void install(MessageBus &bus, const Scenario &scenario);

} // namespace PermissionService
} // namespace sim
