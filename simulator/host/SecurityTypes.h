#pragma once

#include "exchange/Instrument.h"

/// The text of a security type in records.
QString securityTypeText(sim::SecurityKind kind);
