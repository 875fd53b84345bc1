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

/// The orders that rest at the exchange, sorted by what they wait for, so that what a trade reaches is found without
/// looking at all the rest.
/// A plain value; the TradingDesk keeps one and guards it. It knows the orders by their numbers only and deals in none.
class OpenOrders {
public:
    struct Reached {
        int order; ///< its number
        double price;
    };

    void add(int number, const Order &order);
    void remove(int number, const Order &order);

    bool isEmpty() const { return m_bySecurity.empty(); }

    /// The orders that can be dealt in at the step, by their numbers: those at the latest price or better of it, and
    /// after the close those for the fixed price of the close.
    std::vector<Reached> reachedBy(const Exchange &exchange, qint64 step) const;

private:
    enum Queue { Buys, Sells, AfterHoursBuys, AfterHoursSells, QueueCount };

    // The lower the key, the earlier a falling (sells) or rising (buys) price reaches the order.
    using Keys = std::set<std::pair<qint64, int>>; ///< with the order's number
    using Queues = std::array<Keys, QueueCount>;

    static Queue queueOf(const Order &order);
    static qint64 keyOf(const Order &order);

    std::unordered_map<const Instrument *, Queues> m_bySecurity; ///< those that have any
};

} // namespace sim
