#include "DataServiceTest.h"

#include <thread>

using testing::_;
using testing::WithArgs;

namespace {

/// A column of the host's report generators, and the key under which pages find it.
struct Field {
    const char *column;
    const char *key;
};

constexpr Field entrustFields[] = {
    {"entrust_time", "entrustTime"},
    {"security_id", "securityId"},
    {"security_name", "securityName"},
    {"side", "side"},
    {"side_union", "sideUnion"},
    {"status", "status"},
    {"price_type", "priceType"},
    {"price", "price"},
    {"entrust_qty", "entrustQty"},
    {"leave_qty", "leaveQty"},
    {"deal_qty", "dealQty"},
    {"deal_price", "dealPrice"},
    {"entrust_amount", "entrustAmount"},
    {"deal_amount", "dealAmount"},
    {"fundaccount_name", "fundAccountName"},
    {"fundaccount", "fundAccount"},
    {"exchange_order_id", "exchangeOrderId"},
    {"order_id", "orderId"},
    {"trader_name", "traderName"},
    {"remark", "remark"},
    {"user_ref_3", "orderSource"},
    {"algo_id", "instanceID"},
};

constexpr Field executionFields[] = {
    {"deal_time", "dealTime"},
    {"security_id", "securityId"},
    {"security_name", "securityName"},
    {"side", "side"},
    {"side_union", "sideUnion"},
    {"deal_price", "dealPrice"},
    {"deal_qty", "dealQty"},
    {"deal_amount", "dealAmount"},
    {"fundaccount_name", "fundAccountName"},
    {"fundaccount", "fundAccount"},
    {"exec_id", "execId"},
    {"exchange_order_id", "exchangeOrderId"},
    {"order_id", "orderId"},
    {"trader_name", "traderName"},
    {"user_ref_3", "orderSource"},
    {"algo_id", "instanceID"},
};

constexpr Field positionFields[] = {
    {"fundaccount_name", "fundAccountName"},
    {"fundaccount", "fundAccount"},
    {"security_account", "securityAccount"},
    {"security_name", "securityName"},
    {"security_id", "securityId"},
    {"exchange", "exchange"},
    {"last_price", "lastPrice"},
    {"rise_down_rate", "riseDownRate"},
    {"current_qty", "currentQty"},
    {"tradable_qty", "tradableQty"},
    {"cost_price", "costPrice"},
    {"cost", "cost"},
    {"cost_cny", "costCNY"},
    {"market_value", "marketValue"},
    {"market_value_cny", "marketValueCNY"},
    {"total_cost", "totalCost"},
    {"profit", "profit"},
    {"profit_rate", "profitRate"},
};

const QStringList positionIdentityKeys{u"fundAccountName"_qs, u"fundAccount"_qs, u"securityAccount"_qs,
                                       u"securityName"_qs, u"exchange"_qs};

template <int count>
QStringList columnsOf(const Field (&fields)[count])
{
    QStringList columns;
    for (const Field &field : fields)
        columns << QString::fromLatin1(field.column);
    return columns;
}

/// The page record of the cells that fillCells fills.
template <int count>
QVariantMap pairsOf(const Field (&fields)[count])
{
    QVariantMap record;
    for (const Field &field : fields) {
        const QString column = QString::fromLatin1(field.column);
        record[QString::fromLatin1(field.key)] =
            QVariantMap{{u"displayRole"_qs, displayText(column)}, {u"userRole"_qs, userValue(column)}};
    }
    return record;
}

class FieldTablesTest : public DataServiceTest {};

TEST_F(FieldTablesTest, OrderColumnsReachTheGeneratorInOrderAndEachHasItsPageKey)
{
    ASSERT_EQ(std::size(entrustFields), 22u);
    EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, _, columnsOf(entrustFields), _, _))
        .WillOnce(WithArgs<1, 2>(fillCells));
    EXPECT_THAT(process->packageEntrustOrderMsg({}), Identical(pairsOf(entrustFields)));
}

TEST_F(FieldTablesTest, ExecutionColumnsReachTheGeneratorInOrderAndEachHasItsPageKey)
{
    ASSERT_EQ(std::size(executionFields), 16u);
    EXPECT_CALL(host, VarnelDealReportGen_fillLineData(_, _, columnsOf(executionFields), _, _))
        .WillOnce(WithArgs<1, 2>(fillCells));
    EXPECT_THAT(process->packageExecutionOrderMsg({}), Identical(pairsOf(executionFields)));
}

TEST_F(FieldTablesTest, PositionColumnsReachTheGeneratorInOrderAndEachHasItsPageKey)
{
    ASSERT_EQ(std::size(positionFields), 18u);
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetSymbolBySecurityIDAndExchange(_, _));
    EXPECT_CALL(host, CommonQuotaHandler_GetQuotaSnapshot(_, _));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetSecurityDetailsBySymbol(_));
    EXPECT_CALL(host, VarnelPositionReportGen_fillLineData(_, _, _, columnsOf(positionFields), _, _, _, _))
        .WillOnce(WithArgs<2, 3>(fillCells));

    // Columns that name the holding give display texts; columns that measure it give underlying values.
    QVariantMap expected{{u"stockInterest"_qs, 0.0}};
    for (const Field &field : positionFields) {
        const QString column = QString::fromLatin1(field.column);
        const QString key = QString::fromLatin1(field.key);
        expected[key] = positionIdentityKeys.contains(key) ? displayText(column) : userValue(column);
    }
    EXPECT_THAT(process->packagePositionMsg({}), Identical(expected));
}

// Not from the fixture: there the instance exists before the test begins.
class FieldTablesAtStartTest : public HostTest {};

TEST_F(FieldTablesAtStartTest, AreFilledOnceWhenThreadsAskAtOnce)
{
    EXPECT_CALL(host, VarnelEntrustReportGen_fillLineData(_, _, columnsOf(entrustFields), _, _)).Times(2);
    EXPECT_CALL(host, VarnelDealReportGen_fillLineData(_, _, columnsOf(executionFields), _, _)).Times(2);
    const auto work = [] {
        DataProcess *const process = DataProcess::instance();
        EXPECT_EQ(process->packageEntrustOrderMsg({}).size(), 22);
        EXPECT_EQ(process->packageExecutionOrderMsg({}).size(), 16);
    };
    std::thread one(work);
    std::thread other(work);
    one.join();
    other.join();
}

} // namespace
