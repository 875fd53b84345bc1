#pragma once

#include "books/Orders.h"
#include "books/Positions.h"

#include <QDateTime>

#include <variant>
#include <vector>

namespace sim {

// What a trading desk reports. Plain values: copies from the time of the event.

struct OrderEntered { ///< also when it was rejected
    Order order;
};

struct OrderChanged {
    Order order;
};

struct OrderExecuted {
    Order order; ///< after the fill
    Execution execution;
};

struct PositionChanged {
    QString tradingAccount;
    Position position;
};

struct AssetChanged {
    QString tradingAccount;
};

/// A trading day begins: the orders and executions of the days before are gone.
struct DayBegan {};

struct DeskEvent {
    QDateTime time; ///< of the exchange, at which it happened
    std::variant<OrderEntered, OrderChanged, OrderExecuted, PositionChanged, AssetChanged, DayBegan> what;
};

using DeskEvents = std::vector<DeskEvent>; ///< in the order in which they happened

} // namespace sim
