// Order entry.
#include "VarnelTradeLogic.h"

#include "OrderBook.h"
#include "OrderRequestList.h"

VarnelTradeLogic *VarnelTradeLogic::instance()
{
    static VarnelTradeLogic instance;
    return &instance;
}

int VarnelTradeLogic::orders(const OrderRequestList &orders, QVariant &response, int,
                             QList<VarnelLogic::ResponseInfo> &errors, bool)
{
    if (orders.Orders().isEmpty()) {
        errors.append({-1, "the list has no order"}); // a refusal must give a reason
        return -1;
    }
    QList<QVariantMap> records;
    for (const VarnelLogic::OrderRequest &order : orders.Orders())
        records.append(OrderBook::instance().place(orders.Account(), order));
    response = QVariant::fromValue(records);
    return 0;
}

QList<QMap<QString, QVariant>> VarnelTradeLogic::transOrderRsp(const OrderRequestList &, const QVariant &response)
{
    return response.value<QList<QVariantMap>>(); // as orders() wrote it
}

int VarnelTradeLogic::getDispQtyStepBySymbol(const QString &)
{
    return 100;
}

QString VarnelTradeLogic::queryMaxTradableQty(const OrderRequestList &)
{
    return "0"; // nobody asks in this example
}
