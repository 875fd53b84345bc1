#include "VarnelTradeLogic.h"

#include "OrderRequestList.h"
#include "books/TradableQty.h"
#include "platform/Terminal.h"
#include "services/TradeCodes.h"

namespace {

using namespace sim;

/// Futures are opened and closed, all else is bought and sold.
bool fits(Side side, const Instrument &instrument)
{
    switch (side) {
    case Side::BuyOpen:
    case Side::SellOpen:
    case Side::BuyClose:
    case Side::SellClose:
        return instrument.kind == SecurityKind::Future;
    case Side::Buy:
    case Side::Sell:
    case Side::AfterHoursBuy:
    case Side::AfterHoursSell:
        return instrument.kind != SecurityKind::Future;
    }
    return false;
}

/// The order that a line asks for; none when the line makes no sense.
std::optional<Order> readOrder(const VarnelLogic::OrderRequest &line, const Exchange &exchange)
{
    const std::optional<Side> side = sideCodes().value(line.side);
    const std::optional<PriceType> priceType = priceTypeCodes().value(line.priceType);
    Order order;
    order.instrument = exchange.instrument(line.symbol);
    if (!order.instrument || !side || !priceType || !fits(*side, *order.instrument))
        return std::nullopt;
    if (!line.exchange.isEmpty() && line.exchange != order.instrument->exchange)
        return std::nullopt;
    order.side = *side;
    order.priceType = *priceType;
    if (*priceType != PriceType::Market) {
        bool isNumber = false;
        order.price = line.price.toDouble(&isNumber);
        if (!isNumber || !(order.price > 0) || qIsInf(order.price))
            return std::nullopt;
    }
    return order;
}

} // namespace

VarnelTradeLogic *VarnelTradeLogic::instance()
{
    static VarnelTradeLogic logic;
    return &logic;
}

int VarnelTradeLogic::getDispQtyStepBySymbol(const QString &symbol)
{
    const Instrument *instrument = Terminal::instance().exchange().instrument(symbol);
    return instrument ? int(instrument->displayStep) : 0;
}

QString VarnelTradeLogic::queryMaxTradableQty(const OrderRequestList &orders)
{
    const Terminal &terminal = Terminal::instance();
    const std::optional<Ledger> ledger = terminal.desk().ledger(orders.Account());
    const QList<VarnelLogic::OrderRequest> lines = orders.Orders();
    if (!ledger || lines.size() != 1)
        return {};
    const std::optional<Order> order = readOrder(lines.first(), terminal.exchange());
    return order ? QString::number(tradableQty(*ledger, *order, terminal.latestPrices())) : QString();
}
