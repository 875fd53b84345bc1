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

    /// Step in which quantities are shown, in shares, bonds or contracts; pages get it as "qtyStep".
    int getDispQtyStepBySymbol(const QString &symbol);

    /// The largest quantity with which the single line of the list could be placed now. The text goes to the page as it
    /// is, also an empty one.
    QString queryMaxTradableQty(const OrderRequestList &orders);

    /// Places the orders and waits for the outcome: 0 means that they were taken and response is set for transOrderRsp,
    /// anything else that none was placed, with the reasons in errors. Without a reason the page is told of success:
    /// give one. The list may be empty. The library passes 319 and true. It never repeats the call. May spin the event
    /// loop, for example to ask the user, and the calling view may be deleted meanwhile.
    int orders(const OrderRequestList &orders, QVariant &response, int kind, QList<VarnelLogic::ResponseInfo> &errors,
               bool flag);

    /// The response of orders() as one field map for each order, in the order of the list. Called right after it, on
    /// the same thread. The library reads Tessar_Fields::System::requestExeStatus ("0" for an order that was accepted)
    /// and textDescription, Tessar_Fields::Security::symbol, side, price, orderQty, orderID,
    /// Tessar_Fields::CustomField::priceType and Tessar_Fields::UserAccount::securityExchange, all as texts.
    static QList<QMap<QString, QVariant>> transOrderRsp(const OrderRequestList &orders, const QVariant &response);
};
