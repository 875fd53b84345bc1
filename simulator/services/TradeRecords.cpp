#include "services/TradeRecords.h"

#include "Tessar_Fields.h"
#include "Tessar_Values.h"
#include "Varnel_Fields.h"
#include "exchange/Instrument.h"
#include "services/TimeTexts.h"
#include "services/TradeCodes.h"

using namespace Tessar_Fields;

namespace sim {

namespace {

/// The fields that orders and executions share.
const RecordFields<OrderSource> &sharedFields()
{
    using Source = const OrderSource &;
    static const RecordFields<OrderSource> fields{
        {Security::orderID, [](Source s) { return s.order.id; }},
        {Security::clOrdID, [](Source s) { return s.order.clientId; }},
        {RecordField::exchangeOrderID, [](Source s) { return s.order.exchangeOrderId; }},
        {Security::orderStatus, [](Source s) { return orderStatusCodes().code(s.order.status); }},
        {Security::symbol, [](Source s) { return s.order.instrument->symbol; }},
        {Security::securityID, [](Source s) { return s.order.instrument->securityId; }},
        {Security::chineseName, [](Source s) { return s.order.instrument->name; }},
        {UserAccount::securityExchange, [](Source s) { return s.order.instrument->exchange; }},
        {Security::side, [](Source s) { return sideCodes().code(s.order.side); }},
        {UserAccount::tradingAccount, [](Source s) { return s.order.tradingAccount; }},
        {Varnel_Fields::FastFocus::fundAccount,
         [](Source s) { return s.accounts.fundAccountOf(s.order.tradingAccount)->account; }},
        {RecordField::fundAccountName, [](Source s) { return s.accounts.fundAccountOf(s.order.tradingAccount)->name; }},
        {UserAccount::loginUserId, [](Source s) { return s.order.trader; }},
        {Varnel_Fields::ETF::UserReference3, [](Source s) { return s.order.tag; }},
        {Security::algoOrderID, [](Source s) { return s.order.algoId; }},
    };
    return fields;
}

} // namespace

const RecordFields<OrderSource> &orderFields()
{
    using Source = const OrderSource &;
    static const RecordFields<OrderSource> fields = [] {
        RecordFields<OrderSource> all = sharedFields();
        const RecordFields<OrderSource> own{
            {RecordField::orderTime, [](Source s) { return TimeTexts::write(s.order.entered); }},
            {CustomField::priceType, [](Source s) { return priceTypeCodes().code(s.order.priceType); }},
            {Security::price, [](Source s) { return s.order.price; }},
            {Security::orderQty, [](Source s) { return s.order.qty; }},
            {RecordField::orderAmount, [](Source s) { return s.order.amount(s.order.price, s.order.qty).yuan(); }},
            {RecordField::leaveQty, [](Source s) { return s.order.leaveQty(); }},
            {RecordField::dealQty, [](Source s) { return s.order.filledQty; }},
            {RecordField::dealPrice, [](Source s) { return s.order.averagePrice(); }},
            {RecordField::dealAmount, [](Source s) { return s.order.filledAmount.yuan(); }},
            {RecordField::remark, [](Source s) { return s.order.remark; }},
        };
        for (auto field = own.cbegin(); field != own.cend(); ++field)
            all.insert(field.key(), field.value());
        return all;
    }();
    return fields;
}

const RecordFields<ExecutionSource> &executionFields()
{
    using Source = const ExecutionSource &;
    static const RecordFields<ExecutionSource> fields = [] {
        RecordFields<ExecutionSource> all{
            {Security::execID, [](Source s) { return s.execution.id; }},
            {RecordField::dealTime, [](Source s) { return TimeTexts::write(s.execution.time); }},
            {RecordField::dealQty, [](Source s) { return s.execution.qty; }},
            {RecordField::dealPrice, [](Source s) { return s.execution.price; }},
            {RecordField::dealAmount, [](Source s) { return s.execution.amount.yuan(); }},
            {RecordField::fee, [](Source s) { return s.execution.fee.yuan(); }},
        };
        for (auto field = sharedFields().cbegin(); field != sharedFields().cend(); ++field) {
            all.insert(field.key(), [read = field.value()](Source s) { return read({s.accounts, s.order}); });
        }
        return all;
    }();
    return fields;
}

const RecordFields<PositionSource> &positionFields()
{
    using Source = const PositionSource &;
    // Meant: short positions are negative, so that sums over an account are right.
    static const auto sign = [](Source s) { return s.position.isShort ? -1 : 1; };
    static const RecordFields<PositionSource> fields{
        {Security::symbol, [](Source s) { return s.position.instrument->symbol; }},
        {Security::securityID, [](Source s) { return s.position.instrument->securityId; }},
        {Security::chineseName, [](Source s) { return s.position.instrument->name; }},
        {UserAccount::securityExchange, [](Source s) { return s.position.instrument->exchange; }},
        {UserAccount::tradingAccount, [](Source s) { return s.tradingAccount; }},
        {Varnel_Fields::FastFocus::fundAccount, [](Source s) { return s.fund.account; }},
        {RecordField::fundAccountName, [](Source s) { return s.fund.name; }},
        {Security::positionFlag, [](Source s) { return positionFlag(s.position.isShort); }},
        {RecordField::currentQty, [](Source s) { return sign(s) * s.position.qty(); }},
        {RecordField::tradableQty, [](Source s) { return sign(s) * s.position.closableQty(); }},
        {Varnel_Fields::Futures::HoldingCost, [](Source s) { return sign(s) * s.position.holdingCost.yuan(); }},
        {Varnel_Fields::Futures::OpenCost, [](Source s) { return sign(s) * s.position.openCost.yuan(); }},
    };
    return fields;
}

QString positionFlag(bool isShort)
{
    return isShort ? Tessar_Values::PositionFalg::shortPosition : QStringLiteral("Long");
}

} // namespace sim
