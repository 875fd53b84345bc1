#include "trade/TradeProcess.h"

#include "HostTest.h"
#include "Replies.h"
#include "ThreadLatch.h"

#include "Tessar_Fields.h"

using testing::_;
using testing::Return;

namespace {

/// Operations on two threads at once. Were one to wait for the other, the test would never end.
class TradeThreadsTest : public HostTest {
protected:
    TradeThreadsTest()
    {
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromFund(u"f1"_qs, true))
            .WillRepeatedly(Return(QList<tagUserAccountInfo>{{u"f1"_qs, u"name"_qs, u"t1"_qs}}));
        EXPECT_CALL(host, CBusinessDataBase_getClientOrderID()).WillRepeatedly(Return(u"c"_qs));
    }

    /// An order of which the host says that it has the identifier of its symbol. It takes its time over the one for
    /// "SLOW", until the latch opens.
    void expectOrders(int count)
    {
        EXPECT_CALL(host, VarnelTradeLogic_orders(_, _, 319, _, true))
            .Times(count)
            .WillRepeatedly(testing::WithArg<0>([this](const OrderRequestList &orders) {
                if (orders.Orders().first().symbol == u"SLOW"_qs) {
                    atHost.open();
                    mayAnswer.wait();
                }
                return 0;
            }));
        EXPECT_CALL(host, VarnelTradeLogic_transOrderRsp(_, _))
            .Times(count)
            .WillRepeatedly(testing::WithArg<0>([](const OrderRequestList &orders) {
                return QList<QVariantMap>{{{Tessar_Fields::Security::orderID, orders.Orders().first().symbol}}};
            }));
    }

    QString insert(const QString &symbol)
    {
        return resultOf(process->processInsertOrder(u"u1"_qs, u"f1"_qs, symbol, QString(), u"buy"_qs, u"limit"_qs,
                                                    u"1"_qs, u"100"_qs, u"tag"_qs))
            .toObject()
            .value(u"orderID"_qs)
            .toString();
    }

    QString insertList(const QString &symbol)
    {
        return resultOf(process->processInsertOrderList(u"u1"_qs, u"f1"_qs, u"tag"_qs,
                                                        uR"([{"symbol":"%1"}])"_qs.arg(symbol)))
            .toArray()
            .first()
            .toObject()
            .value(u"orderID"_qs)
            .toString();
    }

    TradeProcess *process = TradeProcess::instance();
    ThreadLatch atHost;
    ThreadLatch mayAnswer;
    BusThread other; // before the latches go, it has ended
};

TEST_F(TradeThreadsTest, OrdersAndCancelsPassAnOrderThatTheHostTakesItsTimeOver)
{
    expectOrders(3);
    EXPECT_CALL(host, BusinessDataInterface_GetOrderDetailByOrderID(u"1001"_qs)).WillOnce(Return(QVariantMap()));
    EXPECT_CALL(host, VarnelTradeLogicFactory_SendRequestSync(CancelOrdersTradeRequest, _, u"WEB"_qs, _))
        .WillOnce(Return(0));
    QString slow;
    other.post([&] { slow = insert(u"SLOW"_qs); });
    atHost.wait();
    EXPECT_EQ(insert(u"A"_qs), u"A"_qs);
    EXPECT_EQ(insertList(u"B"_qs), u"B"_qs);
    EXPECT_EQ(process->processCancelOrders(u"u1"_qs, {u"1001"_qs}), successReply(u"[]"_qs));
    mayAnswer.open();
    other.wait();
    EXPECT_EQ(slow, u"SLOW"_qs);
}

TEST_F(TradeThreadsTest, OrdersPassAListThatTheHostTakesItsTimeOver)
{
    expectOrders(2);
    QString slow;
    other.post([&] { slow = insertList(u"SLOW"_qs); });
    atHost.wait();
    EXPECT_EQ(insert(u"A"_qs), u"A"_qs);
    mayAnswer.open();
    other.wait();
    EXPECT_EQ(slow, u"SLOW"_qs);
}

TEST_F(TradeThreadsTest, OrdersPassACancelThatTheHostTakesItsTimeOver)
{
    expectOrders(1);
    EXPECT_CALL(host, BusinessDataInterface_GetOrderDetailByOrderID(u"1001"_qs)).WillOnce(Return(QVariantMap()));
    EXPECT_CALL(host, VarnelTradeLogicFactory_SendRequestSync(CancelOrdersTradeRequest, _, u"WEB"_qs, _))
        .WillOnce([this] {
            atHost.open();
            mayAnswer.wait();
            return 0;
        });
    QString slow;
    other.post([&] { slow = process->processCancelOrders(u"u1"_qs, {u"1001"_qs}); });
    atHost.wait();
    EXPECT_EQ(insert(u"A"_qs), u"A"_qs);
    mayAnswer.open();
    other.wait();
    EXPECT_EQ(slow, successReply(u"[]"_qs));
}

TEST(TradeProcessInstance, IsTheSameForEveryThread)
{
    TradeProcess *seen = nullptr;
    BusThread other;
    other.run([&] { seen = TradeProcess::instance(); });
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen, TradeProcess::instance());
    EXPECT_EQ(seen->parent(), nullptr);
}

} // namespace
