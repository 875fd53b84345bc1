#include "books/Orders.h"

#include "exchange/Instrument.h"

#include <cmath>

namespace sim {

namespace {

/// How far a price can run in a day where the exchange sets no limit, as far as setting money aside goes.
constexpr double kUnlimitedRate = 0.2;

} // namespace

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
    return dealtQty == 0 ? 0 : dealtAmount.yuan() / (double(dealtQty) * instrument->multiplier);
}

double Order::reservePrice() const
{
    if (price > 0)
        return price;
    const double rate = instrument->limitRate > 0 ? instrument->limitRate : kUnlimitedRate;
    return instrument->price * (1 + rate);
}

bool isAfterHours(const Order &order)
{
    return order.priceType == PriceType::AfterHours || order.side == Side::AfterHoursBuy ||
           order.side == Side::AfterHoursSell;
}

QString violatedRule(const Order &order)
{
    const Instrument &instrument = *order.instrument;
    if (order.qty < 1 || order.qty > instrument.maxQty)
        return QStringLiteral("委托数量超出范围");
    // What is left of a position may be sold however little it is.
    if (opens(order.side) && (order.qty < instrument.minQty || order.qty % instrument.lot != 0))
        return QStringLiteral("委托数量不符合交易单位");
    if (order.priceType == PriceType::Market)
        return {};
    const double halfTick = instrument.tick / 2;
    if (order.price < halfTick || std::abs(order.price - instrument.priceOf(instrument.ticksOf(order.price))) > 1e-9)
        return QStringLiteral("委托价格不符合最小变动价位");
    if (instrument.limitRate > 0 &&
        (std::abs(order.price - instrument.price) > instrument.price * instrument.limitRate + halfTick))
        return QStringLiteral("委托价格超出涨跌停范围");
    return {};
}

} // namespace sim
