// Cancels orders.
#include "VarnelTradeLogicFactory.h"

#include "OrderBook.h"
#include "Tessar_Fields.h"

VarnelTradeLogicFactory *VarnelTradeLogicFactory::GetInstance()
{
    static VarnelTradeLogicFactory instance;
    return &instance;
}

int VarnelTradeLogicFactory::SendRequestSync(const Basic_Trade_REQ_Type &, const QVariant &request, const QString &,
                                             QVariant &response)
{
    QList<QVariantMap> outcomes; // one for each cancel, in their order
    for (const QVariant &cancel : request.value<QVariantList>()) {
        const QString orderId = cancel.toMap().value(Tessar_Fields::Security::orderID).toString();
        outcomes.append(OrderBook::instance().cancel(orderId));
    }
    response = QVariant::fromValue(outcomes);
    return 0;
}
