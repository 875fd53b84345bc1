#include "Bus.h"
#include "BusinessDataInterface.h"
#include "Fault.h"
#include "NotForJson.h"
#include "OrderRequestList.h"
#include "Tessar_Fields.h"
#include "VarnelDealReportGen.h"
#include "VarnelEntrustReportGen.h"
#include "VarnelPositionReportGen.h"
#include "VarnelTradeLogic.h"
#include "VarnelTradeLogicFactory.h"
#include "World.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <stdexcept>

using namespace Tessar_Fields;

namespace {

std::mutex s_mutex;
QList<QVariantMap> s_placed; // orders, guarded by s_mutex

/// A record with the fields and a text in every column that its report has.
QVariantMap recordWith(QVariantMap fields, const QStringList &columns)
{
    for (const QString &column : columns)
        fields.insert(column, QStringLiteral("cell of ") + column);
    return fields;
}

QVariantMap morningOrder()
{
    const QString columns = QStringLiteral(
        "entrust_time security_id security_name side side_union status price_type price entrust_qty leave_qty deal_qty "
        "deal_price entrust_amount deal_amount fundaccount_name fundaccount exchange_order_id order_id trader_name "
        "remark user_ref_3 algo_id");
    return recordWith({{Security::orderID, QStringLiteral("order1")},
                       {Security::clOrdID, QStringLiteral("client1")},
                       {Security::symbol, kShare},
                       {UserAccount::tradingAccount, kTradingAccount}},
                      columns.split(QLatin1Char(' ')));
}

QVariantMap morningExecution()
{
    QVariantMap execution = morningOrder();
    execution.insert(Security::execID, QStringLiteral("execution1"));
    return recordWith(execution, {QStringLiteral("deal_time"), QStringLiteral("exec_id")});
}

QVariantMap position()
{
    const QString columns = QStringLiteral(
        "fundaccount_name fundaccount security_account security_name security_id exchange last_price rise_down_rate "
        "current_qty tradable_qty cost_price cost cost_cny market_value market_value_cny total_cost profit "
        "profit_rate");
    return recordWith({{Security::symbol, kShare}}, columns.split(QLatin1Char(' ')));
}

QList<QVariantMap> orders()
{
    const std::lock_guard lock(s_mutex);
    return QList<QVariantMap>{morningOrder()} + s_placed;
}

bool meets(const QVariantMap &record, const QVariantMap &conditions)
{
    for (auto condition = conditions.cbegin(); condition != conditions.cend(); ++condition) {
        if (!condition->toStringList().contains(record.value(condition.key()).toString()))
            return false;
    }
    return true;
}

QList<QVariantMap> chosen(QList<QVariantMap> records, const QVariantMap &conditions, int &total,
                          const char *conditionFault, const char *totalFault)
{
    const auto isOut = [&](const QVariantMap &record) { return !meets(record, conditions); };
    if (!hasFault(conditionFault))
        records.erase(std::remove_if(records.begin(), records.end(), isOut), records.end());
    if (!hasFault(totalFault))
        total = records.size();
    return records;
}

QList<QVariantMap> without(QList<QVariantMap> records, const QString &field, const char *fault)
{
    for (QVariantMap &record : records) {
        if (hasFault(fault))
            record.remove(field);
    }
    return records;
}

} // namespace

QList<QVariantMap> BusinessDataInterface::GetOrderListByCustomKey(const QVariantMap &keys, int &total, int, int,
                                                                  QList<QString>, const QStringList &)
{
    const QList<QVariantMap> all = isLostOnThisThread("OrdersLostOnOtherThreads") ? QList<QVariantMap>() : orders();
    return without(chosen(all, keys, total, "OrderConditionsIgnored", "OrderTotalNotSet"), Security::orderID,
                   "OrdersWithoutId");
}

QList<QVariantMap> BusinessDataInterface::GetExecutionListByCustomKey(const QVariantMap &keys, int &total, int, int,
                                                                      const QStringList &)
{
    return without(chosen({morningExecution()}, keys, total, "ExecutionConditionsIgnored", "ExecutionTotalNotSet"),
                   Security::execID, "ExecutionsWithoutId");
}

QList<QVariantMap> BusinessDataInterface::GetPositionListByAccount(const QVariantMap &accountDetails, const QString &,
                                                                   const QString &symbol, const QString &,
                                                                   const QString &, const QString &, const QString &)
{
    const QString account = accountDetails.value(UserAccount::tradingAccount).toString();
    if (!isTradingAccount(account) && !hasFault("NoAccountHasPositions"))
        return {};
    if (!symbol.isEmpty() && (symbol != kShare || hasFault("PositionsOfOneSymbolLost")))
        return {};
    return without({position()}, Security::symbol, "PositionsWithoutSecurity");
}

QMap<QString, QVariant> BusinessDataInterface::GetOrderDetailByOrderID(const QString &orderId)
{
    const QList<QVariantMap> all = orders();
    for (const QVariantMap &order : all) {
        if (order.value(Security::orderID) == QVariant(orderId)) {
            const bool isPlaced = order != morningOrder();
            return without({order}, Security::clOrdID, isPlaced ? "PlacedOrderWithoutDetails" : "OrderWithoutDetails")
                .first();
        }
    }
    if (hasFault("UnknownOrderThrows"))
        throw std::runtime_error("no such order");
    while (hasFault("UnknownOrderHangs"))
        QThread::msleep(1);
    return hasFault("UnknownOrderHasDetails") ? morningOrder() : QVariantMap();
}

// Order entry

OrderRequestList::OrderRequestList(const QString &account, const QString &tag)
    : m_account(account), m_tag(hasFault("OrderListLosesTag") ? QString() : tag)
{
}

OrderRequestList::~OrderRequestList() = default;

void OrderRequestList::AddSymbol(const VarnelLogic::OrderRequest &order)
{
    m_orders.append(order);
    if (hasFault("OrderListLosesOrderTags"))
        m_orders.last().orderTag.clear();
}

void OrderRequestList::AddSymbol(const QString &symbol, qint64 qty, const QString &priceType, const QString &text4,
                                 const QString &side, const QString &text6)
{
    m_orders.append({symbol, qty, priceType, text4, hasFault("QueryLinesLoseSide") ? QString() : side, text6, {}, {}});
}

QString OrderRequestList::Account() const
{
    return m_account;
}

QString OrderRequestList::Tag() const
{
    return m_tag;
}

QList<VarnelLogic::OrderRequest> OrderRequestList::Orders() const
{
    return m_orders;
}

VarnelTradeLogic *VarnelTradeLogic::instance()
{
    static VarnelTradeLogic logics[2];
    static std::atomic<int> calls{0};
    return &logics[hasFault("OtherInstanceEachTime") ? ++calls % 2 : 0];
}

int VarnelTradeLogic::getDispQtyStepBySymbol(const QString &symbol)
{
    return isSymbol(symbol) ? 100 : 0;
}

QString VarnelTradeLogic::queryMaxTradableQty(const OrderRequestList &list)
{
    if (!isTradingAccount(list.Account()))
        return hasFault("UnknownAccountHasQuantity") ? QStringLiteral("500") : QString();
    return hasFault("QuantityIsNoNumber") ? QStringLiteral("some") : QStringLiteral("500");
}

namespace {

QVariantMap answerFor(const QString &orderId, const QString &reason)
{
    return {{Security::orderID, orderId},
            {System::requestExeStatus, reason.isEmpty() ? QStringLiteral("0") : QStringLiteral("-1")},
            {System::textDescription, reason}};
}

QVariantMap place(const VarnelLogic::OrderRequest &order, const QString &account)
{
    QVariantMap record = morningOrder();
    {
        const std::lock_guard lock(s_mutex);
        record.insert(Security::orderID, QStringLiteral("placed%1").arg(s_placed.size()));
        record.insert(Security::clOrdID, order.clOrdID);
        record.insert(UserAccount::tradingAccount, account);
        s_placed.append(record);
    }
    if (!hasFault("NoOrderEvent"))
        Bus::instance().publish(kOrderEvent, packed(record));
    const QString id = hasFault("ResponseWithoutId") ? QString() : record.value(Security::orderID).toString();
    QVariantMap response = answerFor(id, {});
    response.insert(Security::orderQty, QString::number(order.orderQty));
    return response;
}

} // namespace

int VarnelTradeLogic::orders(const OrderRequestList &list, QVariant &response, int,
                             QList<VarnelLogic::ResponseInfo> &errors, bool)
{
    const QList<VarnelLogic::OrderRequest> lines = list.Orders();
    const auto isZero = [](const VarnelLogic::OrderRequest &line) { return line.orderQty <= 0; };
    const bool isWrong = (lines.isEmpty() && !hasFault("EmptyListAnswered")) ||
                         (std::any_of(lines.begin(), lines.end(), isZero) && !hasFault("QuantityZeroTaken"));
    if (isWrong) {
        if (!hasFault("RefusalWithoutReason"))
            errors.append({-1, QStringLiteral("委托数量错误")});
        return -1;
    }
    QVariantList responses;
    for (const VarnelLogic::OrderRequest &line : lines)
        responses.append(place(line, list.Account()));
    if (lines.isEmpty())
        responses.append(answerFor(QStringLiteral("none"), {}));
    if (hasFault("ResponsesReversed"))
        std::reverse(responses.begin(), responses.end());
    response = responses;
    return 0;
}

QList<QMap<QString, QVariant>> VarnelTradeLogic::transOrderRsp(const OrderRequestList &, const QVariant &response)
{
    QList<QVariantMap> maps;
    const QVariantList responses = response.toList();
    for (const QVariant &map : responses)
        maps.append(map.toMap());
    return maps;
}

VarnelTradeLogicFactory *VarnelTradeLogicFactory::GetInstance()
{
    static VarnelTradeLogicFactory factory;
    return &factory;
}

int VarnelTradeLogicFactory::SendRequestSync(const Basic_Trade_REQ_Type &, const QVariant &request, const QString &,
                                             QVariant &response)
{
    QList<QVariantMap> answers;
    const auto wanted = request.value<QVariantList>();
    for (const QVariant &entry : wanted) {
        const QString id = entry.toMap().value(Security::orderID).toString();
        const QList<QVariantMap> all = ::orders();
        const bool isKnown = std::any_of(all.begin(), all.end(), [&](const QVariantMap &order) {
            return order.value(Security::orderID) == QVariant(id);
        });
        const bool isDone = isKnown || hasFault("CancelOfUnknownSucceeds");
        answers.append(answerFor(hasFault("CancelAnswerWithoutId") ? QString() : id,
                                 isDone ? QString() : QStringLiteral("委托不存在")));
    }
    response = QVariant::fromValue(answers);
    return 0;
}

// Reports

namespace {

void fill(const QVariantMap &record, QMap<int, QVariantMap> &lineData, const QStringList &fields,
          const QString &missing)
{
    if (record.isEmpty() && hasFault("EmptyRecordCrashes"))
        std::abort();
    int place = 0;
    for (int i = 0; i < fields.size(); ++i) {
        if (!record.contains(fields[i])) {
            place += hasFault("UnknownColumnShiftsOthers") ? 0 : 1;
            continue;
        }
        QVariant value = record.value(fields[i]);
        if (hasFault("CellNotForJson"))
            value = QVariant::fromValue(NotForJson());
        const int index = hasFault("ReportInOwnOrder") && fields.size() > 2 ? fields.size() - 1 - i : place;
        if (fields[i] != missing)
            lineData[index] = {{QStringLiteral("0"), value.toString()}, {QStringLiteral("256"), value}};
        ++place;
    }
}

QString columnWithFault(const char *fault, const char *column)
{
    return hasFault(fault) ? QString::fromLatin1(column) : QString();
}

} // namespace

bool VarnelEntrustReportGen::fillLineData(const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                                          const QStringList &fields, ShowType, bool)
{
    fill(record, lineData, fields, columnWithFault("EntrustColumnMissing", "price_type"));
    return true;
}

bool VarnelDealReportGen::fillLineData(const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                                       const QStringList &fields, ShowType, bool)
{
    fill(record, lineData, fields, columnWithFault("DealColumnMissing", "deal_qty"));
    return true;
}

bool VarnelPositionReportGen::fillLineData(int, const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                                           const QStringList &fields, ShowType showType, const QVariantMap &,
                                           const QString &, bool)
{
    const bool isGrouped = showType == GroupedShowType;
    fill(record, lineData, fields,
         isGrouped ? columnWithFault("GroupedPositionColumnMissing", "market_value") : QString());
    return true;
}
