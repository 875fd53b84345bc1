#pragma once

#include "platform/MessageBus.h"
#include "platform/Scenario.h"

namespace sim {

/// The list of algorithm permissions: answers permission queries on the bus.
namespace PermissionService {

void install(MessageBus &bus, const Scenario &scenario);

} // namespace PermissionService
} // namespace sim
