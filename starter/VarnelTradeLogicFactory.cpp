// The terminal must put here: how it cancels orders.
#include "VarnelTradeLogicFactory.h"

#include "Tessar_Fields.h"

VarnelTradeLogicFactory *VarnelTradeLogicFactory::GetInstance()
{
    static VarnelTradeLogicFactory instance;
    return &instance;
}

int VarnelTradeLogicFactory::SendRequestSync(const Basic_Trade_REQ_Type &, const QVariant &request, const QString &,
                                             QVariant &response)
{
    using namespace Tessar_Fields;
    // Every cancel is refused. Each has its place in the response, so that the page learns it.
    QList<QMap<QString, QVariant>> refusals;
    const auto cancels = request.value<QVariantList>();
    for (const QVariant &cancel : cancels) {
        refusals.append({{Security::orderID, cancel.toMap().value(Security::orderID)},
                         {System::requestExeStatus, QStringLiteral("-1")},
                         {System::textDescription, QStringLiteral("this terminal has no such order")}});
    }
    response = QVariant::fromValue(refusals);
    return -1;
}
