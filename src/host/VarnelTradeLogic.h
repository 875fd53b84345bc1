#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>

class OrderRequestList;

/// The host's order checks and order entry. Called on threads of page calls; the host owns the instance.
class VARNEL_HOST_API VarnelTradeLogic {
public:
    /// Never null; valid until the process ends.
    static VarnelTradeLogic *instance();

    /// Quantity step for display.
    int getDispQtyStepBySymbol(const QString &symbol);

    /// The largest quantity that the single line of the list could be placed with. The text goes to the
    /// page as it is.
    QString queryMaxTradableQty(const OrderRequestList &orders);

    /// Places the orders and waits for the outcome: 0 means that they were taken and response is set,
    /// anything else that none was placed, with the reasons in errors. The library passes 319 and true.
    int orders(const OrderRequestList &orders, QVariant &response, int kind, QList<VarnelLogic::ResponseInfo> &errors,
               bool flag);

    /// The response of orders() as one field map per order, in the order of the list.
    static QList<QMap<QString, QVariant>> transOrderRsp(const OrderRequestList &orders, const QVariant &response);
};
