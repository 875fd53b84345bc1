#pragma once

#include "books/Orders.h"

#include <vector>

class QWidget;

namespace sim {

/// Shows the orders of one call in a modal dialog, and returns whether the user wants to place them. The event loop
/// runs meanwhile. User-interface thread only.
bool confirmOrders(QWidget *window, const std::vector<Order> &orders);

} // namespace sim
