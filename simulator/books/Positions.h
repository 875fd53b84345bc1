#pragma once

#include "books/Money.h"

#include <QString>

#include <functional>

namespace sim {

struct Instrument;

/// The latest price of a security, by symbol.
using Prices = std::function<double(const QString &symbol)>;

/// What a trading account holds of one security in one direction. A plain value; quantities and costs are positive
/// for short positions too.
struct Position {
    const Instrument *instrument = nullptr;
    bool isShort = false;
    qint64 openingQty = 0; ///< held before the day began
    qint64 openedQty = 0;  ///< today
    qint64 closedQty = 0;  ///< today
    qint64 frozenQty = 0;  ///< set aside for orders that close it
    Money openCost;        ///< of what is held, at the prices at which it was opened
    Money holdingCost;     ///< the same; futures from before today count at the previous close

    qint64 qty() const { return openingQty + openedQty - closedQty; }

    /// The quantity that an order may close now. Shares and funds bought today can be sold from tomorrow on.
    qint64 closableQty() const;

    Money marketValue(double price) const;
};

} // namespace sim
