#pragma once

#include "platform/MessageBus.h"
#include "platform/Scenario.h"

namespace sim {

/// The list of algorithm permissions: answers permission queries on the bus.
namespace PermissionService {

/// The faults must live until the bus has stopped.
void install(MessageBus &bus, const Scenario &scenario, const Faults &faults);

} // namespace PermissionService
} // namespace sim
