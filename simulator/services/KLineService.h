#pragma once

#include "platform/MessageBus.h"

namespace sim {

class Exchange;

/// The candle history: answers K-line requests on the bus.
namespace KLineService {

/// From now on the bus answers K-line requests. The exchange must live until the bus has stopped.
void install(MessageBus &bus, const Exchange &exchange);

} // namespace KLineService
} // namespace sim
