#pragma once

#include "exchange/Quote.h"

/// The road from the exchange's quotes to CommonQuotaHandler's listeners.
namespace sim::QuoteTicks {

/// Emits the handler's tick signal on the calling thread. What it hands over is made afresh, for the listeners alone.
void emitTick(const Quote &quote);

} // namespace sim::QuoteTicks
