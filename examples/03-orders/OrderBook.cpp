#include "OrderBook.h"

#include "Bus.h"
#include "Tessar_Fields.h"

using namespace Tessar_Fields;

namespace {

constexpr int orderEntered = 0x30003; // an event that the library subscribes to
constexpr int orderChanged = 0x30005; // the same

/// The outcome of a request, in the fields from which the library reads it. An empty reason means success.
void setOutcome(QVariantMap &record, const QString &reason)
{
    record[System::requestExeStatus] = reason.isEmpty() ? "0" : "-1";
    record[System::textDescription] = reason;
}

} // namespace

OrderBook &OrderBook::instance()
{
    static OrderBook book;
    return book;
}

QVariantMap OrderBook::place(const QString &tradingAccount, const VarnelLogic::OrderRequest &request)
{
    const bool isWholeLot = request.orderQty > 0 && request.orderQty % 100 == 0; // a page's "abc" arrives as 0
    const QString orderId = QString::number(m_orders.size() + 1);
    QVariantMap record{
        {Security::orderID, orderId},
        {Security::clOrdID, request.clOrdID},
        {UserAccount::tradingAccount, tradingAccount},
        {Security::symbol, request.symbol},
        {UserAccount::securityExchange, request.exchange},
        {Security::side, request.side},
        {CustomField::priceType, request.priceType},
        {Security::price, request.price},
        {Security::orderQty, request.orderQty},
        {Security::orderStatus, isWholeLot ? "accepted" : "refused"},
    };
    setOutcome(record, isWholeLot ? QString() : "the quantity is no multiple of 100");
    m_orders.insert(orderId, record);
    Bus::instance().publish(orderEntered, record);
    return record;
}

QVariantMap OrderBook::cancel(const QString &orderId)
{
    QVariantMap record = m_orders.value(orderId);
    if (record.value(Security::orderStatus) != "accepted") {
        record[Security::orderID] = orderId;
        setOutcome(record, "there is no open order of this number");
        return record;
    }
    record[Security::orderStatus] = "cancelled";
    setOutcome(record, {});
    m_orders.insert(orderId, record);
    Bus::instance().publish(orderChanged, record);
    return record;
}
