#pragma once

#include "books/OpeningBooks.h"
#include "exchange/Instrument.h"
#include "platform/StrictJson.h"

namespace sim {

/// What a member of the fund accounts begins with. securities: those that are written by hand; others cannot be named.
GivenOpening readGivenOpening(JsonNode &node, bool isFutures, const QVector<Instrument> &securities);

} // namespace sim
