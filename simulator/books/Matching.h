#pragma once

#include "exchange/Quote.h"

#include <QtGlobal>

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace sim {

class Exchange;
struct Instrument;
struct Order;

/// The orders that the exchange has accepted, by security, side and price, and what fills them at each step.
///
/// An order that reaches the other side of the market takes the displayed levels there, at their prices. An order that
/// waits at the price that trades is filled when what was displayed there before it has traded. At the opening and
/// after hours there is one price, at which all orders fill that allow it. Orders with a better price come first, and
/// at one price the earlier ones. All together they get a part of the volume of the step (MarketRules::participation),
/// in whole lots.
///
/// A plain value; the TradingDesk has one and guards it.
class Matching {
public:
    struct Fill {
        int order; ///< its number
        double price;
        qint64 qty;
    };

    /// What a step does, security by security, and in each in the order of the fills.
    struct Outcome {
        std::vector<Fill> fills;
        std::vector<int> expired; ///< orders at market price that have found too little: they are no longer here
    };

    /// The steps in which an order at market price takes what trades. Its rest is cancelled.
    static constexpr int kMarketOrderSteps = 20;

    /// step: the latest one, after which the order was accepted.
    void add(int number, const Order &order, const Exchange &exchange, qint64 step);

    /// Does nothing when the order is not here.
    void remove(int number, const Order &order);

    bool isEmpty() const { return m_bySecurity.empty(); }

    /// Asked when the order of that number would be filled whole in the step in which it fills first. True leaves a
    /// part of it open, and gives the rest of the step's volume to others, so that no later order comes before that
    /// part.
    using Divides = std::function<bool(int order)>;

    /// Orders that are filled whole are no longer here.
    Outcome play(const Exchange &exchange, qint64 step, const Divides &divides = {});

    /// Adds the orders that wait to the five levels of a quote. Orders that reach its other side are left out: they do
    /// not wait there, they fill at one of the next steps.
    void addTo(Quote &quote, const Instrument &instrument) const;

private:
    static constexpr qint64 kNoStep = -1;

    struct Waiting {
        qint64 open;
        qint64 turn;       ///< the volume of others at this price that must have traded, counted in Level::traded
        int stepsLeft = 0; ///< for an order at market price
        qint64 firstFill = kNoStep;
    };

    /// The orders at one price, by number, which is the order of their acceptance.
    struct Level {
        std::map<int, Waiting> orders;
        qint64 open = 0;     ///< of all of them
        qint64 traded = 0;   ///< of others, since the first order came
        qint64 lastTurn = 0; ///< the highest of all turns
    };

    // The key of a level: its price in ticks for sells, the negative of it for buys. The lowest key trades first.
    using Levels = std::map<qint64, Level>;
    enum Queue { Buys, Sells, AfterHoursBuys, AfterHoursSells, QueueCount };

    struct Security {
        std::array<Levels, QueueCount> queues;
        qint64 shownStep = -1; ///< of the trades below
        StepTrades shown;      ///< so that a list of orders for one security computes them once

        bool isEmpty() const;
    };

    class Step;

    static Queue queueOf(const Order &order);
    static qint64 keyOf(const Order &order);
    static std::optional<StepTrades> tradesThatReach(const Levels &buys, const Levels &sells,
                                                     const Instrument &instrument, const Exchange &exchange,
                                                     qint64 step);

    // By address: the instruments of an exchange are one array, so this is the order of the listing.
    std::map<const Instrument *, Security> m_bySecurity; ///< only securities with orders
};

} // namespace sim
