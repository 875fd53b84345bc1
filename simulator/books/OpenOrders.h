#pragma once

#include <QtGlobal>

#include <array>
#include <set>
#include <unordered_map>
#include <vector>

namespace sim {

class Exchange;
struct Instrument;
struct Order;

/// The numbers of the open orders, sorted by price, so that the orders that a price fills are found without looking at
/// the others.
/// A plain value; the TradingDesk has one and guards it.
class OpenOrders {
public:
    struct Fill {
        int order; ///< its number
        double price;
    };

    void add(int number, const Order &order);
    void remove(int number, const Order &order);

    bool isEmpty() const { return m_bySecurity.empty(); }

    /// The orders that fill at this step's price, by number; after-hours orders only after hours.
    std::vector<Fill> fillsAt(const Exchange &exchange, qint64 step) const;

private:
    enum Queue { Buys, Sells, AfterHoursBuys, AfterHoursSells, QueueCount };

    // The key of an order: its price in ticks for sells, the negative of it for buys. The lowest key fills first.
    using Keys = std::set<std::pair<qint64, int>>; ///< key and number
    using Queues = std::array<Keys, QueueCount>;

    static Queue queueOf(const Order &order);
    static qint64 keyOf(const Order &order);

    std::unordered_map<const Instrument *, Queues> m_bySecurity; ///< only securities with open orders
};

} // namespace sim
