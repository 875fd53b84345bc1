#include "books/OpenOrders.h"

#include "books/Orders.h"
#include "exchange/Exchange.h"

#include <algorithm>
#include <cstdint>

namespace sim {

OpenOrders::Queue OpenOrders::queueOf(const Order &order)
{
    if (isAfterHours(order))
        return isBuy(order.side) ? AfterHoursBuys : AfterHoursSells;
    return isBuy(order.side) ? Buys : Sells;
}

qint64 OpenOrders::keyOf(const Order &order)
{
    if (order.priceType == PriceType::Market)
        return INT64_MIN;
    const qint64 ticks = order.instrument->ticksOf(order.price);
    return isBuy(order.side) ? -ticks : ticks;
}

void OpenOrders::add(int number, const Order &order)
{
    m_bySecurity[order.instrument][queueOf(order)].insert({keyOf(order), number});
}

void OpenOrders::remove(int number, const Order &order)
{
    const auto found = m_bySecurity.find(order.instrument);
    if (found == m_bySecurity.end())
        return;
    Queues &queues = found->second;
    queues[queueOf(order)].erase({keyOf(order), number});
    if (std::all_of(queues.begin(), queues.end(), [](const Keys &keys) { return keys.empty(); }))
        m_bySecurity.erase(found);
}

std::vector<OpenOrders::Fill> OpenOrders::fillsAt(const Exchange &exchange, qint64 step) const
{
    std::vector<Fill> all;
    const Phase phase = Exchange::phase(step);
    const bool isAfterHours = phase == Phase::AfterHours;
    if (!isAfterHours && phase != Phase::OpeningMatch && phase != Phase::Continuous)
        return all;
    for (const auto &[instrument, queues] : m_bySecurity) {
        const Keys &buys = queues[isAfterHours ? AfterHoursBuys : Buys];
        const Keys &sells = queues[isAfterHours ? AfterHoursSells : Sells];
        if ((buys.empty() && sells.empty()) || exchange.isHalted(instrument->symbol, step))
            continue;
        const std::optional<double> price = exchange.lastPrice(instrument->symbol, step);
        if (!price)
            continue;
        const qint64 ticks = instrument->ticksOf(*price);
        const auto take = [&all, price = *price](const Keys &keys, qint64 upTo) {
            for (auto key = keys.begin(); key != keys.end() && key->first <= upTo; ++key)
                all.push_back({key->second, price});
        };
        take(buys, -ticks);
        take(sells, ticks);
    }
    // First come, first served: the hash of addresses has another order in every process.
    std::sort(all.begin(), all.end(), [](const Fill &a, const Fill &b) { return a.order < b.order; });
    return all;
}

} // namespace sim
