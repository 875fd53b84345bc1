#pragma once

#include "platform/MessageBus.h"

namespace sim {

class Exchange;

/// The quote service's candle history: the one request that the bus serves for it.
namespace KLineService {

/// Has the bus answer candle requests from the exchange, which must live until the bus has stopped.
void install(MessageBus &bus, const Exchange &exchange);

} // namespace KLineService
} // namespace sim
