#pragma once

#include "HostTypes.h"

#include <QMap>
#include <QVariantMap>

/// The orders of the day: order identifier to record. A record has the terminal's own field names, and also tells what
/// became of the last request. Used on the user-interface thread only, where the calls of pages come in.
class OrderBook {
public:
    static OrderBook &instance();

    /// Takes the order, or keeps it as refused. Returns its record.
    QVariantMap place(const QString &tradingAccount, const VarnelLogic::OrderRequest &request);

    /// Returns the record of the order, with the reason when it cannot be cancelled.
    QVariantMap cancel(const QString &orderId);

private:
    QMap<QString, QVariantMap> m_orders;
};
