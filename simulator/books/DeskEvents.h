#pragma once

#include "books/Orders.h"
#include "books/Positions.h"

#include <variant>
#include <vector>

namespace sim {

// What a trading desk reports. Plain values: everything as it was when it happened.

struct OrderEntered { ///< a refused one too
    Order order;
};

struct OrderChanged {
    Order order;
};

struct OrderExecuted {
    Order order; ///< as it is since
    Execution execution;
};

struct PositionChanged {
    QString tradingAccount;
    Position position;
};

struct AssetChanged {
    QString tradingAccount;
};

using DeskEvent = std::variant<OrderEntered, OrderChanged, OrderExecuted, PositionChanged, AssetChanged>;
using DeskEvents = std::vector<DeskEvent>; ///< in the order in which they happened

} // namespace sim
