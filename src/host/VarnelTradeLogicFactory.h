#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QString>
#include <QVariant>

/// The host's basic trade requests. Called on threads of page calls; the host owns the instance.
class VARNEL_HOST_API VarnelTradeLogicFactory {
public:
    /// Never null; valid until the process ends.
    static VarnelTradeLogicFactory *GetInstance();

    /// Sends one request and waits for the outcome; the library ignores the result, so a failure must show in response.
    /// The one type is CancelOrdersTradeRequest. request: a QList<QMap<QString, QVariant>> with one map for each order,
    /// of Tessar_Fields::UserAccount::tradingAccount, Tessar_Fields::Security::orderID and clOrdID; account and clOrdID
    /// are invalid variants for an order that the host does not know. response: the same type, or a QVariantList of
    /// maps, one for each order, with orderID, Tessar_Fields::System::requestExeStatus ("0" for success) and
    /// textDescription. caller is "WEB". May spin the event loop, as VarnelTradeLogic::orders.
    int SendRequestSync(const Basic_Trade_REQ_Type &type, const QVariant &request, const QString &caller,
                        QVariant &response);
};
