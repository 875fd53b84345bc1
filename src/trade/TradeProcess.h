#pragma once

#include "common/Export.h"

#include <QObject>
#include <QStringList>

/// Places and cancels orders for web pages through the host's trade logic.
/// One for the process, made by the first instance(), destroyed at process exit.
/// Every operation may be called from any thread, several at once, as far as the host's own may; it blocks until the
/// host has answered.
/// It keeps nothing between calls, never repeats an order and never throws.
class VARNEL_WEBSDK_API TradeProcess : public QObject {
    Q_OBJECT
public:
    /// Never null; valid until the process ends. Any thread.
    static TradeProcess *instance();
    ~TradeProcess() override;

    /// Does nothing; each TradeThread calls it when it is made.
    void init();

    // Each returns the whole reply as compact JSON; uuid comes back in it unchanged. A host value that JSON cannot
    // express is null.

    /// Places one order through the first trading account of the fund account. orderSide and priceType are codes of
    /// the host; price is passed on as it is; qty is a whole number in base 10, anything else is 0. "code" and "msg"
    /// are those of the host's response, or "-1" and its first error. "resultData" has the page's texts and, when the
    /// host gave one, "orderID"; it is absent for an unknown fund account. A host that refuses without any error
    /// leaves "code" at "0" and "orderID" out.
    QString processInsertOrder(const QString &uuid, const QString &fundAccount, const QString &symbol,
                               const QString &exchange, const QString &orderSide, const QString &priceType,
                               const QString &price, const QString &qty, const QString &orderTag);

    /// Places several orders in one request to the host. ordersJson: a JSON array of objects with "symbol",
    /// "exchange", "orderSide", "priceType", "price" and "qty". "resultData": the host's response for each order, with
    /// a "code" and "msg" of its own; empty when the request as a whole was refused. Text that is no JSON places
    /// nothing and gives the empty text.
    QString processInsertOrderList(const QString &uuid, const QString &fundAccount, const QString &orderTag,
                                   const QString &ordersJson);

    /// Cancels the orders in one request to the host, also those that it does not know. "resultData": {"orderId",
    /// "code", "msg"} for each element of the host's response; the envelope itself always tells success.
    QString processCancelOrders(const QString &uuid, const QStringList &orderIds);

private:
    TradeProcess();
};
