#include "books/Orders.h"

#include "exchange/MarketRules.h"

#include <cmath>

namespace sim {

bool isBuy(Side side)
{
    switch (side) {
    case Side::Buy:
    case Side::BuyOpen:
    case Side::BuyClose:
    case Side::AfterHoursBuy:
        return true;
    case Side::Sell:
    case Side::SellOpen:
    case Side::SellClose:
    case Side::AfterHoursSell:
        return false;
    }
    return false;
}

bool opens(Side side)
{
    return side != Side::BuyClose && (isBuy(side) || side == Side::SellOpen);
}

bool isOfShort(Side side)
{
    return side == Side::SellOpen || side == Side::BuyClose;
}

Money Order::amount(double price, qint64 qty) const
{
    return Money::rounded(price * double(qty) * instrument->multiplier);
}

double Order::averagePrice() const
{
    return filledQty == 0 ? 0 : filledAmount.yuan() / (double(filledQty) * instrument->multiplier);
}

bool isAfterHours(const Order &order)
{
    return order.priceType == PriceType::AfterHours || order.side == Side::AfterHoursBuy ||
           order.side == Side::AfterHoursSell;
}

QString violatedRule(const Order &order, const PriceLimits &limits)
{
    const Instrument &instrument = *order.instrument;
    if (order.qty < 1 || order.qty > instrument.maxQty)
        return QStringLiteral("委托数量超出范围");
    if (isAfterHours(order) && !instrument.afterHours)
        return QStringLiteral("该证券不支持盘后定价交易");
    // Closing orders need no whole lots, so that the rest of a position can always be sold.
    if (opens(order.side) && (order.qty < instrument.minQty || order.qty % instrument.lot != 0))
        return QStringLiteral("委托数量不符合交易单位");
    if (order.priceType == PriceType::Market)
        return {};
    const qint64 ticks = instrument.ticksOf(order.price);
    if (ticks < 1 || std::abs(order.price - instrument.priceOf(ticks)) > 1e-9)
        return QStringLiteral("委托价格不符合最小变动价位");
    if (limits.areSet() && (ticks < instrument.ticksOf(limits.lower) || ticks > instrument.ticksOf(limits.upper)))
        return QStringLiteral("委托价格超出涨跌停范围");
    return {};
}

} // namespace sim
