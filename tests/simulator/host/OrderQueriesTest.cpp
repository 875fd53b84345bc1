#include "TerminalTest.h"

#include "BusinessDataInterface.h"
#include "Tessar_Fields.h"
#include "Varnel_Fields.h"
#include "services/TradeCodes.h"

#include <functional>

using namespace sim;
using namespace Tessar_Fields;

namespace {

struct Page {
    QList<QVariantMap> records;
    int total = -1;
};

Page orders(const QVariantMap &keys = QVariantMap(), int offset = 0, int count = 0)
{
    Page page;
    page.records = BusinessDataInterface::GetOrderListByCustomKey(keys, page.total, offset, count, QList<QString>(),
                                                                  QStringList());
    return page;
}

Page executions(const QVariantMap &keys = QVariantMap(), int offset = 0, int count = 0)
{
    Page page;
    page.records = BusinessDataInterface::GetExecutionListByCustomKey(keys, page.total, offset, count, QStringList());
    return page;
}

class OrderQueriesTest : public StandingTerminalTest {
protected:
    int numberOf(const std::function<bool(const Order &)> &test)
    {
        return int(std::count_if(allOrders.begin(), allOrders.end(), test));
    }

    int numberOfExecutionsOf(const std::function<bool(const Order &)> &test)
    {
        return int(std::count_if(allExecutions.begin(), allExecutions.end(),
                                 [&](const Execution &execution) { return test(allOrders[execution.order]); }));
    }

    const std::vector<Order> allOrders = terminal.desk().read()->orders();
    const std::vector<Execution> allExecutions = terminal.desk().read()->executions();
    const Order some = allOrders[100];
};

} // namespace

TEST_F(OrderQueriesTest, WithoutConditionsAllRecordsComeNewestFirst)
{
    const Page all = orders();
    ASSERT_EQ(400, all.total);
    ASSERT_EQ(400, all.records.size());
    for (int i = 0; i < 400; ++i)
        EXPECT_EQ(allOrders[399 - i].id, all.records[i].value(Security::orderID).toString());
    const Page deals = executions();
    ASSERT_EQ(int(allExecutions.size()), deals.total);
    EXPECT_EQ(allExecutions.back().id, deals.records.front().value(Security::execID).toString());
    EXPECT_EQ(allExecutions.front().id, deals.records.back().value(Security::execID).toString());
}

TEST_F(OrderQueriesTest, EachConditionSelectsByItsField)
{
    struct Condition {
        QString key;
        QString value;
        std::function<bool(const Order &)> test;
    };
    const Condition conditions[] = {
        {UserAccount::tradingAccount, some.tradingAccount,
         [&](const Order &order) { return order.tradingAccount == some.tradingAccount; }},
        {Security::symbol, some.instrument->symbol,
         [&](const Order &order) { return order.instrument == some.instrument; }},
        {UserAccount::loginUserId, some.trader, [&](const Order &order) { return order.trader == some.trader; }},
        {Security::orderStatus, QStringLiteral("PartlyFilled"),
         [](const Order &order) { return order.status == OrderStatus::PartlyFilled; }},
        {Varnel_Fields::ETF::UserReference3, some.tag, [&](const Order &order) { return order.tag == some.tag; }},
        {Security::algoOrderID, QStringLiteral("GRID-01"),
         [](const Order &order) { return order.algoId == QLatin1String("GRID-01"); }},
    };
    for (const Condition &condition : conditions) {
        const QVariantMap keys{{condition.key, QStringList{condition.value}}};
        const Page found = orders(keys);
        EXPECT_EQ(numberOf(condition.test), found.total) << qPrintable(condition.key);
        EXPECT_GT(found.total, 0) << qPrintable(condition.key);
        EXPECT_LT(found.total, 400) << qPrintable(condition.key);
        for (const QVariantMap &record : found.records)
            EXPECT_EQ(condition.value, record.value(condition.key).toString());

        const Page deals = executions(keys);
        EXPECT_EQ(numberOfExecutionsOf(condition.test), deals.total) << qPrintable(condition.key);
        EXPECT_GT(deals.total, 0) << qPrintable(condition.key);
    }
}

TEST_F(OrderQueriesTest, OneOfTheValuesOfEveryConditionMustMatch)
{
    const QString status = orderStatusCodes().code(OrderStatus::Filled);
    const QString other = orderStatusCodes().code(OrderStatus::Cancelled);
    const Page found = orders({{Security::orderStatus, QStringList{status, other}},
                               {UserAccount::tradingAccount, QStringList{some.tradingAccount}}});
    EXPECT_EQ(numberOf([&](const Order &order) {
                  return (order.status == OrderStatus::Filled || order.status == OrderStatus::Cancelled) &&
                         order.tradingAccount == some.tradingAccount;
              }),
              found.total);
    EXPECT_GT(found.total, 0);
}

TEST_F(OrderQueriesTest, UnknownValuesAndUnknownFieldsMatchNothing)
{
    EXPECT_EQ(0, orders({{Security::symbol, QStringList{QStringLiteral("nothing")}}}).total);
    EXPECT_EQ(0, orders({{QStringLiteral("noField"), QStringList{QString()}}}).total);
    EXPECT_EQ(0, executions({{QStringLiteral("noField"), QStringList{QString()}}}).total);
}

TEST_F(OrderQueriesTest, APageIsGivenInRowsAndTheTotalCountsAllMatches)
{
    const QList<QVariantMap> all = orders().records;
    const Page page = orders({}, 30, 20);
    EXPECT_EQ(400, page.total);
    EXPECT_EQ(all.mid(30, 20), page.records);
    EXPECT_EQ(all.mid(390), orders({}, 390, 20).records);
    EXPECT_EQ(all.mid(390), orders({}, 390, 0).records);
    EXPECT_EQ(all.mid(390), orders({}, 390, -1).records);
    EXPECT_EQ(all.mid(0, 5), orders({}, -7, 5).records);
    EXPECT_TRUE(orders({}, 400, 20).records.isEmpty());
    EXPECT_EQ(400, orders({}, 2147483647, 2147483647).total);
    EXPECT_EQ(executions().records.mid(3, 4), executions({}, 3, 4).records);
}

TEST_F(OrderQueriesTest, ARecordHasTheFieldsOfTheOrder)
{
    const QVariantMap record = orders().records[400 - 1 - 100];
    EXPECT_EQ(some.id, record.value(Security::orderID).toString());
    EXPECT_EQ(some.clientId, record.value(Security::clOrdID).toString());
    EXPECT_EQ(some.instrument->symbol, record.value(Security::symbol).toString());
    EXPECT_EQ(sideCodes().code(some.side), record.value(Security::side).toString());
    EXPECT_EQ(some.price, record.value(Security::price).toDouble());
    EXPECT_EQ(some.qty, record.value(Security::orderQty).toLongLong());
    EXPECT_EQ(some.tag, record.value(Varnel_Fields::ETF::UserReference3).toString());
    EXPECT_FALSE(record.contains(Security::execID));
}

TEST_F(OrderQueriesTest, ARecordOfAnExecutionHasTheFieldsOfItsOrder)
{
    const Execution &first = allExecutions.front();
    const Order &order = allOrders[first.order];
    const QVariantMap record = executions().records.back();
    EXPECT_EQ(first.id, record.value(Security::execID).toString());
    EXPECT_EQ(order.id, record.value(Security::orderID).toString());
    EXPECT_EQ(order.tradingAccount, record.value(UserAccount::tradingAccount).toString());
}

TEST_F(OrderQueriesTest, AnOrderIsFoundByItsId)
{
    const QVariantMap record = BusinessDataInterface::GetOrderDetailByOrderID(some.id);
    EXPECT_EQ(orders().records[400 - 1 - 100], record);
    EXPECT_TRUE(BusinessDataInterface::GetOrderDetailByOrderID(QStringLiteral("nothing")).isEmpty());
    EXPECT_TRUE(BusinessDataInterface::GetOrderDetailByOrderID(QString()).isEmpty());
}
