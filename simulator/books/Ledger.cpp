#include "books/Ledger.h"

#include "exchange/Instrument.h"

namespace sim {

namespace {

bool isFuture(const Instrument &instrument)
{
    return instrument.kind == SecurityKind::Future;
}

Money withSign(int sign, Money money)
{
    return sign < 0 ? -money : money;
}

} // namespace

Money feeByRate(const Instrument &instrument, Side side, Money amount)
{
    return amount.part(instrument.feeRate + (isBuy(side) ? 0 : instrument.saleTaxRate));
}

Money feeOf(const Order &order, Money amount)
{
    const Money least = Money::rounded(order.instrument->minFee);
    const Money paid = order.filledQty == 0 ? Money() : qMax(order.feeByRate, least);
    return qMax(order.feeByRate + feeByRate(*order.instrument, order.side, amount), least) - paid;
}

Money moneyToOpen(const Order &order, Money amount)
{
    const Instrument &instrument = *order.instrument;
    return (isFuture(instrument) ? amount.part(instrument.marginRate) : amount) + feeOf(order, amount);
}

Position &Ledger::positionOf(const Instrument &instrument, bool isShort)
{
    Position &position = m_positions[{instrument.symbol, isShort}];
    position.instrument = &instrument;
    position.isShort = isShort;
    return position;
}

qint64 Ledger::closableQty(const QString &symbol, bool isShort) const
{
    const auto found = m_positions.constFind({symbol, isShort});
    return found == m_positions.constEnd() ? 0 : found->closableQty();
}

void Ledger::holdFromBefore(const Instrument &instrument, bool isShort, qint64 qty, double openPrice)
{
    Position &position = positionOf(instrument, isShort);
    const double units = double(qty) * double(instrument.multiplier);
    position.openingQty += qty;
    position.openCost += Money::rounded(openPrice * units);
    position.holdingCost += Money::rounded((isFuture(instrument) ? instrument.price : openPrice) * units);
}

QString Ledger::shortage(const Order &order, Money available) const
{
    const qint64 qty = order.leaveQty();
    if (!opens(order.side)) {
        const bool enough = qty <= closableQty(order.instrument->symbol, isOfShort(order.side));
        return enough ? QString() : QStringLiteral("可用持仓不足");
    }
    const Money needed = moneyToOpen(order, order.amount(order.reservePrice(), qty));
    return needed <= available ? QString() : QStringLiteral("可用资金不足");
}

void Ledger::setAside(const Order &order, int sign)
{
    const qint64 qty = order.leaveQty();
    if (opens(order.side)) {
        const Money money = moneyToOpen(order, order.amount(order.reservePrice(), qty));
        m_frozenCash += withSign(sign, money);
    } else {
        positionOf(*order.instrument, isOfShort(order.side)).frozenQty += sign * qty;
    }
}

void Ledger::reserve(const Order &order)
{
    setAside(order, 1);
}

void Ledger::release(const Order &order)
{
    setAside(order, -1);
}

Money Ledger::fill(const Order &order, double price, qint64 qty)
{
    const Instrument &instrument = *order.instrument;
    const Money amount = order.amount(price, qty);
    const Money fee = feeOf(order, amount);
    Position &position = positionOf(instrument, isOfShort(order.side));
    m_fees += fee;
    m_cash -= fee;
    if (opens(order.side)) {
        position.openedQty += qty;
        position.openCost += amount;
        position.holdingCost += amount;
        if (!isFuture(instrument))
            m_cash -= amount;
        return fee;
    }

    // Closing a part of a position takes the same part of its cost.
    const double part = double(qty) / double(position.qty());
    const Money openCost = position.openCost.part(part);
    const Money holdingCost = position.holdingCost.part(part);
    const int sign = position.isShort ? -1 : 1;
    position.closedQty += qty;
    position.openCost -= openCost;
    position.holdingCost -= holdingCost;
    m_closeProfitByTrade += withSign(sign, amount - openCost);
    m_closeProfitByDate += withSign(sign, amount - holdingCost);
    if (isFuture(instrument)) {
        m_cash += withSign(sign, amount - holdingCost);
    } else {
        m_cash += amount;
        m_soldToday += amount - fee;
    }
    return fee;
}

void Ledger::settle(const Prices &settlementPrices)
{
    for (auto position = m_positions.begin(); position != m_positions.end();) {
        if (position->qty() == 0) {
            position = m_positions.erase(position);
            continue;
        }
        if (isFuture(*position->instrument)) {
            const Money value = position->marketValue(settlementPrices(position->instrument->symbol));
            m_cash += withSign(position->isShort ? -1 : 1, value - position->holdingCost);
            position->holdingCost = value;
        }
        position->openingQty = position->qty();
        position->openedQty = 0;
        position->closedQty = 0;
        ++position;
    }
    m_soldToday = m_fees = m_closeProfitByDate = m_closeProfitByTrade = Money();
}

Valuation Ledger::value(const Prices &prices) const
{
    Valuation value;
    Money paidInFull;
    Money futuresProfit;
    for (const Position &position : m_positions) {
        if (position.qty() == 0)
            continue;
        const int sign = position.isShort ? -1 : 1;
        const Money marketValue = position.marketValue(prices(position.instrument->symbol));
        value.marketValue += withSign(sign, marketValue);
        value.holdingCost += withSign(sign, position.holdingCost);
        value.openCost += withSign(sign, position.openCost);
        if (isFuture(*position.instrument)) {
            futuresProfit += withSign(sign, marketValue - position.holdingCost);
            value.margin += position.holdingCost.part(position.instrument->marginRate);
        } else {
            paidInFull += marketValue;
        }
    }
    value.totalAsset = m_cash + paidInFull + futuresProfit;
    value.available = m_cash + futuresProfit - value.margin - m_frozenCash;
    value.withdrawable = qMax(Money(), value.available - m_soldToday - qMax(Money(), futuresProfit));
    return value;
}

} // namespace sim
