#include "books/Matching.h"

#include "books/Orders.h"
#include "exchange/Exchange.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace sim {

namespace {

constexpr qint64 kAnyPrice = INT64_MIN; // the key of orders at market price
constexpr int kBuying = -1;             // the sign of keys: see Matching::Levels
constexpr int kSelling = 1;

qint64 wholeLots(qint64 qty, qint64 lot)
{
    return qty / lot * lot;
}

/// The key of the best level; kAnyPrice when all are empty.
qint64 keyOfBest(const QVector<QuoteLevel> &levels, const Instrument &instrument, int sign)
{
    for (const QuoteLevel &level : levels) {
        if (level.qty > 0)
            return sign * instrument.ticksOf(level.price);
    }
    return kAnyPrice;
}

} // namespace

/// One step of one security. It takes from the orders and notes the fills.
class Matching::Step {
public:
    Step(qint64 number, const Instrument &instrument, const StepTrades &trades, double participation,
         const Divides &divides, Outcome &outcome)
        : m_number(number)
        , m_instrument(instrument)
        , m_trades(trades)
        , m_divides(divides)
        , m_outcome(outcome)
        , m_volume(trades.volume)
    {
        const qint64 part = wholeLots(qint64(double(m_volume) * participation), instrument.lot);
        m_ours = qMin(m_volume, qMax(instrument.lot, part));
    }

    /// Fills orders from the levels of the other side. sign: of the orders' keys.
    void takeLevels(Levels &queue, int sign)
    {
        for (const QuoteLevel &other : othersOf(sign)) {
            if (other.qty == 0)
                continue;
            const qint64 key = sign * m_instrument.ticksOf(other.price);
            qint64 offered = other.qty;
            while (offered > 0 && m_ours > 0 && !queue.empty() && queue.begin()->first <= key)
                offered -= fillFirst(queue, other.price, offered);
            // The price has reached what still waits: nobody stands before it any more.
            for (auto level = queue.begin(); level != queue.end() && level->first <= key; ++level)
                level->second.traded = qMax(level->second.traded, level->second.lastTurn);
        }
    }

    /// Fills the orders at the last price, each after what was displayed there before it.
    void takeTurns(Levels &queue, int sign)
    {
        const qint64 key = sign * m_instrument.ticksOf(m_trades.last);
        if (keyOfBest(othersOf(sign), m_instrument, sign) == key)
            return; // it was the others who waited at that price
        // Somebody with a better price who has found too little comes first.
        const auto isNext = [&] { return !queue.empty() && queue.begin()->first == key; };
        while (m_volume > 0 && m_ours > 0 && isNext()) {
            Level &level = queue.begin()->second;
            const qint64 before = level.orders.begin()->second.turn - level.traded;
            if (before > 0) {
                const qint64 ofOthers = qMin(before, m_volume);
                level.traded += ofOthers;
                m_volume -= ofOthers;
                m_ours = qMin(m_ours, m_volume);
            } else {
                fillFirst(queue, m_trades.last, m_volume);
            }
        }
        if (isNext())
            queue.begin()->second.traded += m_volume; // the rest was of others
    }

    /// Fills the orders that allow the one price of the step.
    void takeOnePrice(Levels &queue, int sign)
    {
        const qint64 key = sign * m_instrument.ticksOf(m_trades.last);
        while (m_ours > 0 && !queue.empty() && queue.begin()->first <= key)
            fillFirst(queue, m_trades.last, m_ours);
    }

    /// Removes the orders at market price whose time is over.
    void expire(Levels &queue)
    {
        const auto found = queue.find(kAnyPrice);
        if (found == queue.end())
            return;
        std::map<int, Waiting> &orders = found->second.orders;
        for (auto order = orders.begin(); order != orders.end();) {
            if (--order->second.stepsLeft > 0) {
                ++order;
                continue;
            }
            m_outcome.expired.push_back(order->first);
            order = orders.erase(order);
        }
        if (orders.empty())
            queue.erase(found);
    }

private:
    const QVector<QuoteLevel> &othersOf(int sign) const { return sign < 0 ? m_trades.asks : m_trades.bids; }

    /// Fills the first order as far as offer and volume go. Returns how much of the offer that uses up, in whole lots,
    /// so that every offer stays in whole lots. Only the end of an order is less than a lot.
    qint64 fillFirst(Levels &queue, double price, qint64 offered)
    {
        Level &level = queue.begin()->second;
        const auto first = level.orders.begin();
        Waiting &waiting = first->second;
        const qint64 whole = qMin(waiting.open, qMin(offered, m_ours));
        const qint64 qty = dividedIfWanted(first->first, waiting, whole);
        waiting.firstFill = m_number;
        if (qty > 0)
            m_outcome.fills.push_back({first->first, price, qty});
        waiting.open -= qty;
        level.open -= qty;
        if (waiting.open == 0)
            level.orders.erase(first);
        if (level.orders.empty())
            queue.erase(queue.begin());
        const qint64 used = wholeLots(qty + m_instrument.lot - 1, m_instrument.lot);
        m_volume -= used;
        m_ours = qty < whole ? 0 : m_ours - used;
        return used;
    }

    /// The quantity of a fill, or a part of it.
    qint64 dividedIfWanted(int order, const Waiting &waiting, qint64 qty) const
    {
        const bool isFirst = waiting.firstFill == kNoStep;
        const bool isWholeAtOnce = qty == waiting.open && (isFirst || waiting.firstFill == m_number);
        const qint64 half = wholeLots(qty / 2, m_instrument.lot);
        const qint64 part = isFirst ? qMax(half, m_instrument.lot) : half;
        return isWholeAtOnce && part < qty && m_divides && m_divides(order) ? part : qty;
    }

    const qint64 m_number;
    const Instrument &m_instrument;
    const StepTrades &m_trades;
    const Divides &m_divides;
    Outcome &m_outcome;
    qint64 m_volume; ///< that nobody has had yet
    qint64 m_ours;   ///< that the orders may still have of it
};

bool Matching::Security::isEmpty() const
{
    return std::all_of(queues.begin(), queues.end(), [](const Levels &levels) { return levels.empty(); });
}

Matching::Queue Matching::queueOf(const Order &order)
{
    if (isAfterHours(order))
        return isBuy(order.side) ? AfterHoursBuys : AfterHoursSells;
    return isBuy(order.side) ? Buys : Sells;
}

qint64 Matching::keyOf(const Order &order)
{
    if (order.priceType == PriceType::Market)
        return kAnyPrice;
    const qint64 ticks = order.instrument->ticksOf(order.price);
    return isBuy(order.side) ? -ticks : ticks;
}

void Matching::add(int number, const Order &order, const Exchange &exchange, qint64 step)
{
    const Instrument &instrument = *order.instrument;
    Security &security = m_bySecurity[&instrument];
    const Queue queue = queueOf(order);
    const qint64 key = keyOf(order);
    Level &level = security.queues[queue][key];
    Waiting waiting{order.leaveQty(), level.traded};
    if (key == kAnyPrice) {
        waiting.stepsLeft = kMarketOrderSteps;
    } else if (queue == Buys || queue == Sells) {
        if (security.shownStep != step) {
            security.shown = exchange.trades(instrument.symbol, step).value_or(StepTrades());
            security.shownStep = step;
        }
        for (const QuoteLevel &shown : queue == Buys ? security.shown.bids : security.shown.asks) {
            if (shown.qty > 0 && instrument.ticksOf(shown.price) == std::abs(key))
                waiting.turn += shown.qty;
        }
    }
    level.lastTurn = qMax(level.lastTurn, waiting.turn);
    level.open += waiting.open;
    level.orders.emplace(number, waiting);
}

void Matching::remove(int number, const Order &order)
{
    const auto security = m_bySecurity.find(order.instrument);
    if (security == m_bySecurity.end())
        return;
    Levels &levels = security->second.queues[queueOf(order)];
    const auto level = levels.find(keyOf(order));
    if (level == levels.end())
        return;
    const auto waiting = level->second.orders.find(number);
    if (waiting == level->second.orders.end())
        return;
    level->second.open -= waiting->second.open;
    level->second.orders.erase(waiting);
    if (level->second.orders.empty())
        levels.erase(level);
    if (security->second.isEmpty())
        m_bySecurity.erase(security);
}

Matching::Outcome Matching::play(const Exchange &exchange, qint64 step, const Divides &divides)
{
    Outcome outcome;
    const Phase phase = Exchange::phase(step);
    if (phase != Phase::OpeningMatch && phase != Phase::Continuous && phase != Phase::AfterHours)
        return outcome;
    const bool isAfterHours = phase == Phase::AfterHours;
    for (auto one = m_bySecurity.begin(); one != m_bySecurity.end();) {
        const Instrument &instrument = *one->first;
        Security &security = one->second;
        Levels &buys = security.queues[isAfterHours ? AfterHoursBuys : Buys];
        Levels &sells = security.queues[isAfterHours ? AfterHoursSells : Sells];
        if (const std::optional<StepTrades> trades = tradesThatReach(buys, sells, instrument, exchange, step)) {
            Step played(step, instrument, *trades, exchange.rules().participation, divides, outcome);
            if (phase == Phase::Continuous) {
                played.takeLevels(buys, kBuying);
                played.takeLevels(sells, kSelling);
                played.takeTurns(buys, kBuying);
                played.takeTurns(sells, kSelling);
            } else {
                played.takeOnePrice(buys, kBuying);
                played.takeOnePrice(sells, kSelling);
            }
            played.expire(buys);
            played.expire(sells);
        }
        one = security.isEmpty() ? m_bySecurity.erase(one) : std::next(one);
    }
    return outcome;
}

/// Nothing where no order can trade, which is found out with the last price alone: most orders wait far away, and the
/// last price is the best level of one side.
std::optional<StepTrades> Matching::tradesThatReach(const Levels &buys, const Levels &sells,
                                                    const Instrument &instrument, const Exchange &exchange, qint64 step)
{
    if (buys.empty() && sells.empty())
        return std::nullopt;
    const std::optional<double> last = exchange.lastPrice(instrument.symbol, step);
    if (!last)
        return std::nullopt;
    const auto reaches = [key = instrument.ticksOf(*last)](const Levels &levels, int sign) {
        return !levels.empty() && levels.begin()->first <= sign * key;
    };
    return reaches(buys, kBuying) || reaches(sells, kSelling) ? exchange.trades(instrument.symbol, step) : std::nullopt;
}

void Matching::addTo(Quote &quote, const Instrument &instrument) const
{
    const auto found = m_bySecurity.find(&instrument);
    if (found == m_bySecurity.end())
        return;
    const qint64 bestBid = keyOfBest(quote.bids, instrument, kSelling);
    if (bestBid != kAnyPrice && bestBid == keyOfBest(quote.asks, instrument, kSelling))
        return; // the price of the opening call, at which all would trade
    const Levels &buys = found->second.queues[Buys];
    const Levels &sells = found->second.queues[Sells];
    // Without levels on the other side, the orders there are the other side.
    const auto reach = [&](const QVector<QuoteLevel> &others, const Levels &othersOrders, int sign) {
        const qint64 key = keyOfBest(others, instrument, sign);
        const auto first = othersOrders.upper_bound(kAnyPrice);
        return key != kAnyPrice || first == othersOrders.end() ? key : -first->first;
    };
    const qint64 reachOfBuys = reach(quote.asks, sells, kBuying);
    const qint64 reachOfSells = reach(quote.bids, buys, kSelling);
    const auto add = [&](QVector<QuoteLevel> &shown, const Levels &orders, qint64 reached, int sign) {
        std::map<qint64, qint64> qtys; // by key
        for (const QuoteLevel &level : qAsConst(shown)) {
            if (level.qty > 0)
                qtys[sign * instrument.ticksOf(level.price)] += level.qty;
        }
        int left = shown.size();
        for (auto own = orders.upper_bound(reached); own != orders.end() && left > 0; ++own, --left)
            qtys[own->first] += own->second.open;
        auto next = qtys.begin();
        for (QuoteLevel &level : shown) {
            level =
                next == qtys.end() ? QuoteLevel() : QuoteLevel{instrument.priceOf(sign * next->first), next->second};
            if (next != qtys.end())
                ++next;
        }
    };
    add(quote.bids, buys, reachOfBuys, kBuying);
    add(quote.asks, sells, reachOfSells, kSelling);
}

} // namespace sim
