#pragma once

#include "books/Positions.h"

namespace sim {

/// The largest quantity with which the account could enter the order now: what its money or its position is enough
/// for, as far as the exchange's rules for quantities and prices allow. The order's own quantity does not matter.
qint64 tradableQty(const Ledger &ledger, Order order, const Prices &prices);

} // namespace sim
