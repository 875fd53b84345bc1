#pragma once

#include "exchange/Instrument.h"

/// The host's text for a kind of security.
QString securityTypeText(sim::SecurityKind kind);
