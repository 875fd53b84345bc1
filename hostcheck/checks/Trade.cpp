#include "hostcheck/checks/BusTalk.h"
#include "hostcheck/checks/Tables.h"

#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "OrderRequestList.h"
#include "Tessar_Fields.h"
#include "VarnelTradeLogic.h"
#include "VarnelTradeLogicFactory.h"
#include "common/WebConstants.h"
#include "msgcenter/TradingEvents.h"

#include <algorithm>

namespace HostCheck {

namespace {

using namespace Tessar_Fields;

constexpr int kOrderRequest = 319; // what the library passes
const QString kTag = QStringLiteral("varnel-host-check");
const QString kSuccess = QStringLiteral("0");

/// The outcome of placing orders, as the library reads it.
struct Outcome {
    int result = 0;
    QStringList clientIds; ///< of the orders
    QList<QVariantMap> responses;
    QList<VarnelLogic::ResponseInfo> errors;

    bool isRefused() const
    {
        return result != 0 || responses.isEmpty() ||
               responses.first().value(System::requestExeStatus).toString() != kSuccess;
    }
    QString reason() const
    {
        return result != 0 ? (errors.isEmpty() ? QString() : errors.first().message)
                           : responses.value(0).value(System::textDescription).toString();
    }
};

Outcome place(const KnownValues &known, const QList<qint64> &quantities)
{
    OrderRequestList list(known.tradingAccount, kTag);
    Outcome outcome;
    for (const qint64 quantity : quantities) {
        VarnelLogic::OrderRequest order = known.order;
        order.symbol = known.symbol;
        order.orderQty = quantity;
        order.orderTag = kTag;
        order.clOrdID = present(CBusinessDataBase::GetInstance()).getClientOrderID();
        outcome.clientIds.append(order.clOrdID);
        list.AddSymbol(order);
    }
    QVariant response;
    outcome.result = present(VarnelTradeLogic::instance()).orders(list, response, kOrderRequest, outcome.errors, true);
    if (outcome.result == 0)
        outcome.responses = VarnelTradeLogic::transOrderRsp(list, response);
    return outcome;
}

QString idOf(const QVariantMap &response)
{
    return response.value(Security::orderID).toString();
}

/// Two orders, the second of twice the quantity, and what the bus told of orders meanwhile. Placed once for all checks
/// that look at them.
struct Placed {
    Outcome outcome;
    QVector<QVariantMap> events;
};

const Placed &placed(const KnownValues &known)
{
    static const Placed once = [&] {
        Placed placed;
        Probe probe;
        for (const int id : {EntrustEvent, EntrustChangedEvent})
            probe.SubEvent(probe.pluginPid(), QVariant(id), 1);
        placed.outcome = place(known, {known.order.orderQty, 2 * known.order.orderQty});
        const QString id = idOf(placed.outcome.responses.value(0));
        const auto tells = [&](const Probe::Delivery &delivery) {
            return rowOf(delivery.data).value(Security::orderID).toString() == id;
        };
        const auto isTold = [&] {
            const std::vector<Probe::Delivery> deliveries = probe.deliveries();
            return std::any_of(deliveries.begin(), deliveries.end(), tells);
        };
        if (!id.isEmpty() && waitUntil(isTold)) {
            for (const Probe::Delivery &delivery : probe.deliveries())
                placed.events.append(rowOf(delivery.data));
        }
        return placed;
    }();
    return once;
}

const Outcome &takenOrders(const KnownValues &known)
{
    const Outcome &outcome = placed(known).outcome;
    if (outcome.result != 0 || outcome.responses.size() != 2 || idOf(outcome.responses.first()).isEmpty())
        skip(QStringLiteral("no order is taken: see trade.response"));
    return outcome;
}

QVariantList cancel(const QString &account, const QString &orderId, const QString &clientId)
{
    const QList<QVariantMap> request{
        {{UserAccount::tradingAccount, account}, {Security::orderID, orderId}, {Security::clOrdID, clientId}}};
    QVariant response;
    present(VarnelTradeLogicFactory::GetInstance())
        .SendRequestSync(CancelOrdersTradeRequest, QVariant::fromValue(request), WebConstants::Trade::caller, response);
    return response.value<QVariantList>(); // reads both forms that the host may use
}

void maxQuantity(const KnownValues &known)
{
    OrderRequestList list(known.tradingAccount, kTag);
    list.AddSymbol(known.symbol, 0, known.order.priceType, known.order.price, known.order.side, known.order.exchange);
    const QString text = present(VarnelTradeLogic::instance()).queryMaxTradableQty(list);
    bool isNumber = false;
    const double quantity = text.toDouble(&isNumber);
    expect(isNumber && quantity >= 0, "the tradable quantity is a number", shown(text));
}

void refusesZero(const KnownValues &known)
{
    const Outcome outcome = place(known, {0});
    expect(outcome.isRefused(), "an order of quantity 0 is refused",
           QStringLiteral("it became the order \"%1\"").arg(idOf(outcome.responses.value(0))));
}

void refusalHasReason(const KnownValues &known)
{
    const Outcome outcome = place(known, {0});
    if (!outcome.isRefused())
        skip(QStringLiteral("the order is not refused: see trade.refuses-quantity-zero"));
    expect(!outcome.reason().isEmpty(), "a refusal comes with a reason", QStringLiteral("none"));
}

void refusesEmptyList(const KnownValues &known)
{
    const Outcome outcome = place(known, {});
    expect(outcome.result != 0 || outcome.responses.isEmpty(), "a list without orders places none",
           QStringLiteral("%1 responses").arg(outcome.responses.size()));
}

void response(const KnownValues &known)
{
    const Outcome &outcome = placed(known).outcome;
    expect(outcome.result == 0 && outcome.responses.size() == 2 && !outcome.isRefused(),
           "orders() takes two orders and transOrderRsp gives a response for each",
           QStringLiteral("%1, %2 responses, \"%3\"")
               .arg(outcome.result)
               .arg(outcome.responses.size())
               .arg(outcome.reason()));
    for (const QVariantMap &fields : outcome.responses)
        expect(!idOf(fields).isEmpty(), "every response has the identifier of its order", shown(fields));
}

void responsesInOrder(const KnownValues &known)
{
    const qint64 first = takenOrders(known).responses.first().value(Security::orderQty).toLongLong();
    expect(first == known.order.orderQty, "the responses come in the order of the list, with their quantities",
           QStringLiteral("the first has the quantity %1 instead of %2").arg(first).arg(known.order.orderQty));
}

void knownAtOnce(const KnownValues &known)
{
    const Outcome &outcome = takenOrders(known);
    const QVariantMap details = BusinessDataInterface::GetOrderDetailByOrderID(idOf(outcome.responses.first()));
    expect(details.value(UserAccount::tradingAccount).toString() == known.tradingAccount &&
               outcome.clientIds.contains(details.value(Security::clOrdID).toString()),
           "a placed order has details with its trading account and its client order id", shown(details));
}

void announced(const KnownValues &known)
{
    takenOrders(known);
    expect(!placed(known).events.isEmpty(), "an event 0x30003 or 0x30005 with its identifier tells of a placed order",
           QStringLiteral("nothing came"));
}

/// Also ends what the checks above have placed.
void cancelAnswers(const KnownValues &known)
{
    const Outcome &outcome = takenOrders(known);
    for (int i = 0; i < outcome.responses.size(); ++i) {
        const QString id = idOf(outcome.responses[i]);
        const QVariantList answers = cancel(known.tradingAccount, id, outcome.clientIds.value(i));
        const QVariantMap answer = answers.value(0).toMap();
        expect(answers.size() == 1 && idOf(answer) == id && answer.contains(System::requestExeStatus),
               "the answer to a cancellation has the identifier and the status of each order", shown(answers));
    }
}

void cancelOfUnknown(const KnownValues &)
{
    const QVariantList answers = cancel(QString(), kUnknown, QString());
    const QVariantMap answer = answers.value(0).toMap();
    expect(answers.size() == 1 && answer.value(System::requestExeStatus).toString() != kSuccess &&
               !answer.value(System::textDescription).toString().isEmpty(),
           "the cancellation of an order that does not exist is answered with a reason", shown(answers));
}

} // namespace

CheckTable tradeChecks()
{
    constexpr unsigned kTerms = Symbol | TradingAccount | OrderTerms;
    return {
        {"trade.max-quantity", "Pages cannot show how much can be traded.", maxQuantity, Part::Login, kTerms},
        {"trade.refuses-quantity-zero", "A page that sends no whole number places an order that nobody wants.",
         refusesZero, Part::Orders, kTerms},
        {"trade.refusal-has-a-reason", "A page takes the refusal of an order for a success.", refusalHasReason,
         Part::Orders, kTerms},
        {"trade.refuses-empty-list", "A page that sends no orders gets answers for some.", refusesEmptyList,
         Part::Orders, kTerms},
        {"trade.response", "Pages get no identifiers for the orders that they have placed.", response, Part::Orders,
         kTerms},
        {"trade.responses-in-order", "Pages take one of their orders for another.", responsesInOrder, Part::Orders,
         kTerms},
        {"trade.known-at-once", "An order cannot be cancelled after it was placed.", knownAtOnce, Part::Orders, kTerms},
        {"trade.announced", "Pages do not see their new orders.", announced, Part::Orders, kTerms},
        {"trade.cancel-answers", "Pages cannot tell which of their orders were cancelled.", cancelAnswers, Part::Orders,
         kTerms},
        {"trade.cancel-of-unknown", "Pages take the refusal of a cancellation for a success.", cancelOfUnknown,
         Part::Orders},
    };
}

} // namespace HostCheck
