#include "books/DeskTest.h"

using namespace sim;

using DeskPhasesTest = DeskTest;

TEST_F(DeskPhasesTest, AfterHoursOrdersFillAfterTheCloseAtItsPrice)
{
    const QDateTime close = at("2025-03-03 15:00:00");
    const Instrument &growth = world.growthShare();
    Order after = world.order(growth, Side::AfterHoursBuy, 200, world.price(growth, close, 1));
    after.priceType = PriceType::AfterHours;
    Order tooLow = after;
    tooLow.price = world.price(growth, close, -1);
    Order unfit = world.order(share, Side::AfterHoursBuy, 1000, world.price(share, close, 1));
    const QDateTime noon = at("2025-03-03 11:45:00");
    const std::vector<Order> orders = desk.place({after, tooLow, unfit}, noon);
    EXPECT_EQ(QStringLiteral("该证券不支持盘后定价交易"), orders[2].remark);
    desk.advance(at("2025-03-03 15:05:02"));
    EXPECT_TRUE(world.executionsOf(orders[0]).empty());
    desk.advance(at("2025-03-03 15:30:00"));
    EXPECT_EQ(OrderStatus::Filled, world.now(orders[0]).status);
    const Execution first = world.executionsOf(orders[0]).at(0);
    EXPECT_EQ(world.price(growth, close), first.price);
    EXPECT_GT(first.time, at("2025-03-03 15:05:00"));
    EXPECT_TRUE(world.executionsOf(orders[1]).empty());
}

TEST_F(DeskPhasesTest, OrdersOfTheOpeningCallTradeAtTheOpen)
{
    const double open = world.exchange.quote(share.symbol, at("2025-03-03 09:30:03"))->open;
    const Order good = world.place(world.order(share, Side::Buy, 100, share.priceOf(share.ticksOf(open) + 5)),
                                   at("2025-03-03 09:20:30"));
    const Order low = world.place(world.order(share, Side::Buy, 100, share.priceOf(share.ticksOf(open) - 1)),
                                  at("2025-03-03 09:20:30"));
    desk.advance(at("2025-03-03 09:24:59"));
    EXPECT_TRUE(world.executionsOf(good).empty());
    desk.advance(at("2025-03-03 09:29:59"));
    ASSERT_EQ(1u, world.executionsOf(good).size());
    EXPECT_EQ(open, world.executionsOf(good)[0].price);
    EXPECT_EQ(at("2025-03-03 09:25:00"), world.executionsOf(good)[0].time);
    EXPECT_TRUE(world.executionsOf(low).empty());
}

TEST_F(DeskPhasesTest, AHaltedSecurityTakesNoOrdersAndThoseThatWaitStay)
{
    const QDateTime from = at("2025-03-03 10:00:00");
    world.exchange.halt(share.symbol, from, at("2025-03-03 10:30:00"));
    const double price = world.price(share, from, 20);
    const Order waiting = world.place(world.order(share, Side::Buy, 100, price), at("2025-03-03 09:59:59"));
    const Order refused = world.place(world.order(share, Side::Buy, 100, price), at("2025-03-03 10:00:01"));
    EXPECT_EQ(OrderStatus::Rejected, world.now(refused).status);
    EXPECT_EQ(QStringLiteral("证券停牌，不能委托"), world.now(refused).remark);
    desk.advance(at("2025-03-03 10:29:59"));
    for (const Execution &execution : world.executionsOf(waiting))
        EXPECT_LE(execution.time, from);
    const Order again = world.place(world.order(share, Side::Buy, 100, price), at("2025-03-03 10:30:01"));
    EXPECT_NE(OrderStatus::Rejected, world.now(again).status);
}
