#include "VarnelTradeLogic.h"

#include "OrderRequestList.h"
#include "Tessar_Fields.h"
#include "books/TradableQty.h"
#include "host/TradeResponses.h"
#include "services/TradeCodes.h"
#include "terminal/Terminal.h"
#include "traffic/Log.h"

#include <QLocale>

namespace {

using namespace sim;

constexpr int kAccepted = 0;
constexpr int kRefused = -1;

constexpr double kHighestPrice = 1e12; ///< above every price that can be listed

/// Whether the side is one of the security's kind: futures are opened and closed, all others bought and sold.
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

/// Reads the order of a line. Returns why the line is refused, as a text for the user; empty when it is accepted.
QString readOrder(const VarnelLogic::OrderRequest &line, const FundAccount &fund, const Exchange &exchange,
                  Order &order)
{
    order.instrument = exchange.instrument(line.symbol);
    if (!order.instrument)
        return QStringLiteral("证券代码不存在");
    const Instrument &instrument = *order.instrument;
    if (!line.exchange.isEmpty() && line.exchange != instrument.exchange)
        return QStringLiteral("交易市场与证券不符");
    if ((fund.property == FuturesFund) != (instrument.kind == SecurityKind::Future))
        return QStringLiteral("该账户不能交易此类证券");
    const std::optional<Side> side = sideCodes().value(line.side);
    if (!side || !fits(*side, instrument))
        return QStringLiteral("买卖方向错误");
    const std::optional<PriceType> priceType = priceTypeCodes().value(line.priceType);
    if (!priceType)
        return QStringLiteral("价格类型错误");
    order.side = *side;
    order.priceType = *priceType;
    if (*priceType != PriceType::Market) {
        bool isNumber = false;
        order.price = line.price.toDouble(&isNumber);
        if (!isNumber || !(order.price > 0 && order.price <= kHighestPrice))
            return QStringLiteral("委托价格错误");
    }
    return {};
}

/// The orders of a list. Reasons for refusing the whole list are added to errors.
std::vector<Order> readOrders(const OrderRequestList &list, const Terminal &terminal,
                              QList<VarnelLogic::ResponseInfo> &errors)
{
    const auto refuse = [&](const QString &reason) { errors.append({kRefused, reason}); };
    const FundAccount *fund = terminal.accounts().fundAccountOf(list.Account());
    const QList<VarnelLogic::OrderRequest> lines = list.Orders();
    std::vector<Order> orders;
    orders.reserve(size_t(lines.size()));
    if (!fund) {
        refuse(QStringLiteral("交易账号不存在"));
        return orders;
    }
    if (lines.isEmpty())
        refuse(QStringLiteral("委托列表为空"));
    for (int i = 0; i < lines.size(); ++i) {
        const VarnelLogic::OrderRequest &line = lines[i];
        Order order;
        const QString reason = readOrder(line, *fund, terminal.exchange(), order);
        if (!reason.isEmpty())
            refuse(lines.size() == 1 ? reason : QStringLiteral("第%1笔委托：%2").arg(i + 1).arg(reason));
        order.clientId = line.clOrdID;
        order.tradingAccount = list.Account();
        order.trader = terminal.login().account;
        order.tag = line.orderTag.isEmpty() ? list.Tag() : line.orderTag;
        order.qty = line.orderQty;
        orders.push_back(order);
    }
    return orders;
}

/// The number without exponent and trailing zeros.
QString plainText(double number)
{
    return QString::number(number, 'f', QLocale::FloatingPointShortest);
}

/// The answer for an order. All values are texts.
QVariantMap responseOf(const Order &order)
{
    using namespace Tessar_Fields;
    QVariantMap response = tradeResponse(order.id, order.remark);
    response.insert(Security::symbol, order.instrument->symbol);
    response.insert(Security::side, sideCodes().code(order.side));
    response.insert(CustomField::priceType, priceTypeCodes().code(order.priceType));
    response.insert(Security::price, plainText(order.price));
    response.insert(Security::orderQty, QString::number(order.qty));
    response.insert(UserAccount::securityExchange, order.instrument->exchange);
    return response;
}

} // namespace

VarnelTradeLogic *VarnelTradeLogic::instance()
{
    static VarnelTradeLogic logic;
    return &logic;
}

int VarnelTradeLogic::getDispQtyStepBySymbol(const QString &symbol)
{
    traffic::log().hostCall("VarnelTradeLogic::getDispQtyStepBySymbol");
    const Instrument *instrument = Terminal::instance().exchange().instrument(symbol);
    return instrument ? int(instrument->displayStep) : 0;
}

QString VarnelTradeLogic::queryMaxTradableQty(const OrderRequestList &orders)
{
    traffic::log().hostCall("VarnelTradeLogic::queryMaxTradableQty");
    const Terminal &terminal = Terminal::instance();
    const FundAccount *fund = terminal.accounts().fundAccountOf(orders.Account());
    const std::optional<Ledger> ledger = terminal.desk().ledger(orders.Account());
    const QList<VarnelLogic::OrderRequest> lines = orders.Orders();
    Order order;
    if (!fund || !ledger || lines.size() != 1 || !readOrder(lines.first(), *fund, terminal.exchange(), order).isEmpty())
        return {};
    const qint64 step = terminal.exchange().stepAt(terminal.now());
    const PriceLimits limits = terminal.exchange().limits(order.instrument->symbol, step);
    return QString::number(tradableQty(*ledger, order, limits, terminal.latestPrices()));
}

// The number and the flag are unnamed: the library always passes the same values.

int VarnelTradeLogic::orders(const OrderRequestList &list, QVariant &response, int,
                             QList<VarnelLogic::ResponseInfo> &errors, bool)
{
    traffic::log().hostCall("VarnelTradeLogic::orders");
    Terminal &terminal = Terminal::instance();
    QList<VarnelLogic::ResponseInfo> reasons;
    const std::vector<Order> orders = readOrders(list, terminal, reasons);
    if (!reasons.isEmpty()) {
        errors += reasons;
        return kRefused;
    }
    if (!terminal.mayPlace(orders)) { // the page may be gone after the question
        errors.append({kRefused, QStringLiteral("用户取消了委托")});
        return kRefused;
    }
    QVariantList responses;
    responses.reserve(int(orders.size()));
    for (const Order &order : terminal.desk().place(orders, terminal.now()))
        responses.append(responseOf(order));
    response = responses;
    return kAccepted;
}

QList<QMap<QString, QVariant>> VarnelTradeLogic::transOrderRsp(const OrderRequestList &, const QVariant &response)
{
    traffic::log().hostCall("VarnelTradeLogic::transOrderRsp");
    QList<QMap<QString, QVariant>> maps;
    const QVariantList responses = response.value<QVariantList>();
    maps.reserve(responses.size());
    for (const QVariant &map : responses)
        maps.append(map.toMap());
    return maps;
}
