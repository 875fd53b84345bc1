// The terminal must put here: its order entry and the order checks before it.
#include "VarnelTradeLogic.h"

#include "OrderRequestList.h"

VarnelTradeLogic *VarnelTradeLogic::instance()
{
    static VarnelTradeLogic instance;
    return &instance;
}

int VarnelTradeLogic::getDispQtyStepBySymbol(const QString &)
{
    return 0;
}

QString VarnelTradeLogic::queryMaxTradableQty(const OrderRequestList &)
{
    return QStringLiteral("0");
}

int VarnelTradeLogic::orders(const OrderRequestList &, QVariant &, int, QList<VarnelLogic::ResponseInfo> &errors, bool)
{
    // A refusal must give a reason: without one the page's reply has the code of success.
    errors.append({-1, QStringLiteral("this terminal takes no orders")});
    return -1;
}

QList<QMap<QString, QVariant>> VarnelTradeLogic::transOrderRsp(const OrderRequestList &, const QVariant &)
{
    return {};
}
