#include "hostcheck/checks/Tables.h"

#include "OrderRequestList.h"

namespace HostCheck {

namespace {

QStringList fieldsOf(const VarnelLogic::OrderRequest &order)
{
    return {order.symbol,    QString::number(order.orderQty),
            order.priceType, order.price,
            order.side,      order.exchange,
            order.clOrdID,   order.orderTag};
}

VarnelLogic::OrderRequest sampleOrder(const QString &mark)
{
    VarnelLogic::OrderRequest order;
    order.symbol = QStringLiteral("symbol") + mark;
    order.orderQty = (qint64(1) << 40) + mark.toInt();
    order.priceType = QStringLiteral("price type") + mark;
    order.price = QStringLiteral("18.36") + mark;
    order.side = QStringLiteral("side") + mark;
    order.exchange = QStringLiteral("exchange") + mark;
    order.clOrdID = QStringLiteral("client order id") + mark;
    order.orderTag = QStringLiteral("标签") + mark;
    return order;
}

void keepAccountAndTag(const KnownValues &)
{
    const OrderRequestList list(QStringLiteral("account"), QStringLiteral("标签"));
    expect(list.Account() == QLatin1String("account") && list.Tag() == QStringLiteral("标签"),
           "a list of orders keeps its account and its tag",
           QStringLiteral("\"%1\", \"%2\"").arg(list.Account(), list.Tag()));
    expect(list.Orders().isEmpty(), "a new list has no orders", QString::number(list.Orders().size()));
}

void keepOrders(const KnownValues &)
{
    OrderRequestList list(QStringLiteral("account"), QString());
    const QList<VarnelLogic::OrderRequest> added{sampleOrder(QStringLiteral("2")), sampleOrder(QStringLiteral("1"))};
    for (const VarnelLogic::OrderRequest &order : added)
        list.AddSymbol(order);
    const QList<VarnelLogic::OrderRequest> kept = list.Orders();
    expect(kept.size() == added.size(), "a list keeps all orders", QStringLiteral("%1 of 2").arg(kept.size()));
    for (int i = 0; i < added.size(); ++i)
        expect(fieldsOf(kept[i]) == fieldsOf(added[i]), "a list keeps every field of its orders, in their order",
               fieldsOf(kept[i]).join(QStringLiteral(", ")));
}

void keepQueryLines(const KnownValues &)
{
    OrderRequestList list(QStringLiteral("account"), QString());
    list.AddSymbol(QStringLiteral("symbol"), 7, QStringLiteral("price type"), QStringLiteral("fourth"),
                   QStringLiteral("side"), QStringLiteral("last"));
    const QList<VarnelLogic::OrderRequest> kept = list.Orders();
    expect(kept.size() == 1, "a list keeps the line of a quantity query", QStringLiteral("%1 lines").arg(kept.size()));
    const VarnelLogic::OrderRequest &line = kept.first();
    expect(line.symbol == QLatin1String("symbol") && line.orderQty == 7 &&
               line.priceType == QLatin1String("price type") && line.side == QLatin1String("side"),
           "a line has the symbol, quantity, price type and side that were given",
           fieldsOf(line).join(QStringLiteral(", ")));
}

} // namespace

CheckTable orderListChecks()
{
    return {
        {"order-lists.keep-account-and-tag", "Orders go to another account, or pages do not find their own orders.",
         keepAccountAndTag},
        {"order-lists.keep-orders", "Orders are placed with other terms than the page has given.", keepOrders},
        {"order-lists.keep-query-lines", "Pages get the tradable quantity of other terms.", keepQueryLines},
    };
}

} // namespace HostCheck
