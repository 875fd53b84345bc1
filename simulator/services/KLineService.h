#pragma once

#include "platform/MessageBus.h"

namespace sim {

class Exchange;
class Faults;

/// The candle history: answers K-line requests on the bus.
namespace KLineService {

/// From now on the bus answers K-line requests. Exchange and faults must live until the bus has stopped.
void install(MessageBus &bus, const Exchange &exchange, const Faults &faults);

} // namespace KLineService
} // namespace sim
