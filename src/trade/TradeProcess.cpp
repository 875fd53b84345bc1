#include "trade/TradeProcess.h"

#include "common/AccountRules.h"
#include "common/Reply.h"

#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "OrderRequestList.h"
#include "Tessar_Fields.h"
#include "VarnelTradeLogic.h"
#include "VarnelTradeLogicFactory.h"

#include <QJsonDocument>

using namespace WebConstants;

namespace {

/// Orders of pages carry this number; its meaning is the host's.
constexpr int orderRequestNumber = 319;

/// An order as the page wrote it.
struct PageOrder {
    QString symbol;
    QString exchange;
    QString side;
    QString priceType;
    QString price;
    QString qty;
};

VarnelLogic::OrderRequest orderRequest(const PageOrder &order, const QString &orderTag)
{
    VarnelLogic::OrderRequest request;
    request.symbol = order.symbol;
    request.orderQty = order.qty.toInt(nullptr, 10);
    request.priceType = order.priceType;
    request.price = order.price;
    request.side = effectiveSide(order.side, order.priceType);
    request.exchange = order.exchange;
    request.clOrdID = CBusinessDataBase::GetInstance()->getClientOrderID();
    request.orderTag = orderTag;
    return request;
}

/// The outcome of a request: the host's responses, or its reasons for refusing it, of which there may be none.
struct Outcome {
    bool accepted;
    QList<QVariantMap> responses;
    QList<VarnelLogic::ResponseInfo> errors;
};

Outcome placeOrders(const OrderRequestList &orders)
{
    QVariant response;
    QList<VarnelLogic::ResponseInfo> errors;
    if (VarnelTradeLogic::instance()->orders(orders, response, orderRequestNumber, errors, true) != 0)
        return {false, {}, errors};
    return {true, VarnelTradeLogic::transOrderRsp(orders, response), {}};
}

/// The page's record of one order's response: the host's values, all as texts.
QVariantMap orderResult(const QVariantMap &response)
{
    static const QPair<QString, QString> fields[] = {
        {Key::symbol, Tessar_Fields::Security::symbol},
        {Key::orderSide, Tessar_Fields::Security::side},
        {Key::priceType, Tessar_Fields::CustomField::priceType},
        {Key::price, Tessar_Fields::Security::price},
        {Key::qty, Tessar_Fields::Security::orderQty},
        {Key::exchange, Tessar_Fields::UserAccount::securityExchange},
        {Key::orderID, Tessar_Fields::Security::orderID},
        {Key::code, Tessar_Fields::System::requestExeStatus},
        {Key::msg, Tessar_Fields::System::textDescription},
    };
    QVariantMap result;
    for (const auto &[key, field] : fields)
        result.insert(key, response.value(field).toString());
    return result;
}

} // namespace

TradeProcess::TradeProcess() = default;

TradeProcess::~TradeProcess() = default;

TradeProcess *TradeProcess::instance()
{
    static TradeProcess process;
    return &process;
}

void TradeProcess::init() {}

QString TradeProcess::processInsertOrder(const QString &uuid, const QString &fundAccount, const QString &symbol,
                                         const QString &exchange, const QString &orderSide, const QString &priceType,
                                         const QString &price, const QString &qty, const QString &orderTag)
{
    const Operation operation = VARNEL_OPERATION(TradeProcess, processInsertOrder);
    const std::optional<tagUserAccountInfo> account = firstTradingAccount(fundAccount);
    if (!account)
        return Reply::textWithoutResult(uuid, Code::failure, Message::accountError);

    OrderRequestList orders(account->tradingAccount, orderTag);
    qCDebug(lcWebSdk) << operation.name << priceType << price;
    orders.AddSymbol(orderRequest({symbol, exchange, orderSide, priceType, price, qty}, orderTag));
    const Outcome outcome = placeOrders(orders);

    QVariantMap result{
        {Key::fundAccount, fundAccount}, {Key::symbol, symbol}, {Key::orderSide, orderSide},
        {Key::priceType, priceType},     {Key::price, price},   {Key::qty, qty},
        {Key::exchange, exchange},
    };
    // Meant: a host that refuses without saying why leaves these at success.
    QString code = Code::success;
    QString msg;
    if (!outcome.responses.isEmpty()) {
        const QVariantMap &response = outcome.responses.first();
        code = response.value(Tessar_Fields::System::requestExeStatus).toString();
        msg = response.value(Tessar_Fields::System::textDescription).toString();
        result.insert(Key::orderID, response.value(Tessar_Fields::Security::orderID).toString());
    } else if (!outcome.errors.isEmpty()) {
        code = Code::failure;
        msg = outcome.errors.first().message;
    }
    return Reply::text(uuid, result, code, msg);
}

QString TradeProcess::processInsertOrderList(const QString &uuid, const QString &fundAccount, const QString &orderTag,
                                             const QString &ordersJson)
{
    const Operation operation = VARNEL_OPERATION(TradeProcess, processInsertOrderList);
    qCDebug(lcWebSdk) << operation.name << fundAccount << orderTag;
    const std::optional<tagUserAccountInfo> account = firstTradingAccount(fundAccount);
    if (!account)
        return Reply::text(uuid, QVariantList(), Code::failure, Message::accountError);

    OrderRequestList orders(account->tradingAccount, orderTag);
    QJsonParseError jsonError;
    const QJsonDocument document = QJsonDocument::fromJson(ordersJson.toUtf8(), &jsonError);
    if (jsonError.error != QJsonParseError::NoError) {
        qCDebug(lcWebSdk) << operation.name << " jsonErr.errorString(): " << jsonError.errorString();
        return QString(); // meant: no envelope
    }
    const QVariantList elements = document.toVariant().toList();
    for (const QVariant &element : elements) {
        const QVariantMap order = element.toMap(); // an element that is not an object becomes an order of empty texts
        orders.AddSymbol(orderRequest({order.value(Key::symbol).toString(), order.value(Key::exchange).toString(),
                                       order.value(Key::orderSide).toString(), order.value(Key::priceType).toString(),
                                       order.value(Key::price).toString(), order.value(Key::qty).toString()},
                                      orderTag));
    }
    const Outcome outcome = placeOrders(orders);

    QVariantList results;
    results.reserve(outcome.responses.size());
    for (const QVariantMap &response : outcome.responses)
        results.append(orderResult(response));
    return Reply::text(uuid, results, outcome.accepted ? Code::success : Code::failure,
                       outcome.errors.isEmpty() ? QString() : outcome.errors.first().message);
}

QString TradeProcess::processCancelOrders(const QString &uuid, const QStringList &orderIds)
{
    using Tessar_Fields::Security::clOrdID;
    using Tessar_Fields::Security::orderID;
    using Tessar_Fields::UserAccount::tradingAccount;
    QList<QVariantMap> orders;
    orders.reserve(orderIds.size());
    for (const QString &id : orderIds) {
        // An order that the host does not know is sent too: the page gets what the host answers.
        const QVariantMap details = BusinessDataInterface::GetOrderDetailByOrderID(id);
        orders.append(
            {{tradingAccount, details.value(tradingAccount)}, {orderID, id}, {clOrdID, details.value(clOrdID)}});
    }
    QVariant response;
    VarnelTradeLogicFactory::GetInstance()->SendRequestSync(CancelOrdersTradeRequest, QVariant::fromValue(orders),
                                                            Trade::caller, response);
    QVariantList results;
    // value() reads a list of maps and a list of variants alike, toList() only the latter.
    const auto answers = response.value<QVariantList>();
    for (const QVariant &answer : answers) {
        const QVariantMap fields = answer.toMap();
        // Meant: "orderId" here, "orderID" where orders are placed.
        results.append(QVariantMap{{Key::orderId, fields.value(orderID)},
                                   {Key::code, fields.value(Tessar_Fields::System::requestExeStatus)},
                                   {Key::msg, fields.value(Tessar_Fields::System::textDescription)}});
    }
    return Reply::text(uuid, results);
}
