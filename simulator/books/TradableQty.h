#pragma once

#include "books/Ledger.h"

namespace sim {

/// The largest quantity that the order could be entered with now: limited by the account's money or position and by the
/// rules for quantities. 0 when no quantity is accepted, such as at a price beyond the limits. The order's own quantity
/// is ignored.
qint64 tradableQty(const Ledger &ledger, Order order, const PriceLimits &limits, const Prices &prices);

} // namespace sim
