#pragma once

#include "exchange/MarketRules.h"
#include "platform/StrictJson.h"

namespace sim {

/// The market rules of a scenario: those of its key "rules", and the usual ones for what it leaves out.
MarketRules readRules(JsonNode &root);

} // namespace sim
