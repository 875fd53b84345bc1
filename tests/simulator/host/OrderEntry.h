#pragma once

#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "OrderRequestList.h"
#include "Tessar_Fields.h"
#include "VarnelTradeLogic.h"
#include "VarnelTradeLogicFactory.h"

#include <gtest/gtest.h>

/// Order entry as the library calls it.
namespace entry {

inline VarnelLogic::OrderRequest line(const QString &symbol, const char *side, qint64 qty, const QString &price,
                                      const char *priceType = "Limit", const QString &exchange = QString())
{
    VarnelLogic::OrderRequest line;
    line.symbol = symbol;
    line.orderQty = qty;
    line.priceType = QLatin1String(priceType);
    line.price = price;
    line.side = QLatin1String(side);
    line.exchange = exchange;
    line.clOrdID = CBusinessDataBase::GetInstance()->getClientOrderID();
    line.orderTag = QStringLiteral("page tag");
    return line;
}

struct Outcome {
    int result = 1;
    QList<QVariantMap> responses; ///< of the orders, when the list was accepted
    QStringList errors;

    QString id(int order = 0) const
    {
        return responses.value(order).value(Tessar_Fields::Security::orderID).toString();
    }
    QString status(int order = 0) const
    {
        return responses.value(order).value(Tessar_Fields::System::requestExeStatus).toString();
    }
    QString text(int order = 0) const
    {
        return responses.value(order).value(Tessar_Fields::System::textDescription).toString();
    }
};

inline Outcome place(const QString &account, const QList<VarnelLogic::OrderRequest> &lines)
{
    OrderRequestList list(account, QStringLiteral("page tag"));
    for (const VarnelLogic::OrderRequest &line : lines)
        list.AddSymbol(line);
    Outcome outcome;
    QVariant response;
    QList<VarnelLogic::ResponseInfo> errors;
    outcome.result = VarnelTradeLogic::instance()->orders(list, response, 319, errors, true);
    if (outcome.result == 0)
        outcome.responses = VarnelTradeLogic::transOrderRsp(list, response);
    else
        EXPECT_FALSE(response.isValid());
    for (const VarnelLogic::ResponseInfo &error : qAsConst(errors))
        outcome.errors.append(error.message);
    return outcome;
}

inline QVariantMap cancelLine(const QString &orderId)
{
    using namespace Tessar_Fields;
    const QVariantMap details = BusinessDataInterface::GetOrderDetailByOrderID(orderId);
    return {{UserAccount::tradingAccount, details.value(UserAccount::tradingAccount)},
            {Security::orderID, orderId},
            {Security::clOrdID, details.value(Security::clOrdID)}};
}

inline Outcome cancel(const QVariant &request)
{
    Outcome outcome;
    QVariant response;
    outcome.result = VarnelTradeLogicFactory::GetInstance()->SendRequestSync(CancelOrdersTradeRequest, request,
                                                                             QStringLiteral("WEB"), response);
    for (const QVariant &map : response.value<QVariantList>())
        outcome.responses.append(map.toMap());
    return outcome;
}

inline Outcome cancel(const QStringList &orderIds)
{
    QList<QVariantMap> lines;
    for (const QString &id : orderIds)
        lines.append(cancelLine(id));
    return cancel(QVariant::fromValue(lines));
}

} // namespace entry
