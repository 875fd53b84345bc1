#include "books/TradableQty.h"

#include "exchange/MarketRules.h"

namespace sim {

namespace {

qint64 affordableQty(const Order &order, Money available)
{
    const Instrument &instrument = *order.instrument;
    const auto needed = [&](qint64 qty) { return moneyToOpen(order, order.amount(order.reservePrice(), qty)); };
    const Money neededForMost = needed(instrument.maxQty);
    if (neededForMost <= available)
        return instrument.maxQty;
    // The money needed is proportional to the quantity apart from rounding, so this starts at most a few lots too high.
    const double part = qMax(0.0, available.yuan()) / neededForMost.yuan();
    qint64 qty = (qint64(part * double(instrument.maxQty)) / instrument.lot + 1) * instrument.lot;
    while (qty > 0 && available < needed(qty))
        qty -= instrument.lot;
    return qty;
}

} // namespace

qint64 tradableQty(const Ledger &ledger, Order order, const PriceLimits &limits, const Prices &prices)
{
    order.highestPrice = limits.highest;
    const Instrument &instrument = *order.instrument;
    const bool isOpening = opens(order.side);
    order.qty = isOpening ? affordableQty(order, ledger.value(prices).available)
                          : qMin(ledger.closableQty(instrument.symbol, isOfShort(order.side)), instrument.maxQty);
    return violatedRule(order, limits).isEmpty() ? order.qty : 0;
}

} // namespace sim
