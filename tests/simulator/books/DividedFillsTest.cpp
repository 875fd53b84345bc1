#include "books/DeskTest.h"
#include "exchange/Random.h"

#include <algorithm>

using namespace sim;

namespace {

const QDateTime kEntered = at("2025-03-03 10:00:00");
const QDateTime kLater = at("2025-03-03 10:05:00");

/// A desk that divides as many fills as the test says.
class DividedFillsTest : public DeskTest {
protected:
    std::vector<qint64> qtysOf(const Order &order) const
    {
        std::vector<qint64> qtys;
        for (const Execution &execution : world.executionsOf(order))
            qtys.push_back(execution.qty);
        return qtys;
    }

    qint64 stepOf(const Execution &execution) const { return world.exchange.stepAt(execution.time); }

    /// Plays until the order begins to fill.
    void awaitFirstFill(const Order &order)
    {
        for (qint64 step = world.exchange.stepAt(kEntered); world.now(order).filledQty == 0; ++step)
            desk.advance(world.exchange.timeOfStep(step));
    }
};

} // namespace

TEST_F(DividedFillsTest, HalfOfASmallOrderFillsAtOnceAndTheRestLater)
{
    world.divisions = 1;
    const Order order = world.placeAtExchange(world.order(share, Side::Buy, 500), kEntered);
    awaitFirstFill(order);
    EXPECT_EQ(OrderStatus::PartlyFilled, world.now(order).status);
    EXPECT_EQ(200, world.now(order).filledQty); // in whole lots
    EXPECT_EQ(0, world.divisions);
    desk.advance(kLater);
    EXPECT_EQ(OrderStatus::Filled, world.now(order).status);
    EXPECT_EQ(std::vector<qint64>({200, 300}), qtysOf(order));
    const std::vector<Execution> executions = world.executionsOf(order);
    EXPECT_LT(stepOf(executions[0]), stepOf(executions[1]));
}

TEST_F(DividedFillsTest, TheFirstPartHasTheTimeAndThePriceOfTheWholeFill)
{
    DeskWorld whole(kMorning);
    const Order undivided =
        whole.placeAtExchange(whole.order(whole.any(SecurityKind::Share), Side::Buy, 200), kEntered);
    whole.desk.advance(kLater);
    ASSERT_EQ(1U, whole.executionsOf(undivided).size());
    world.divisions = 1;
    const Order order = world.placeAtExchange(world.order(share, Side::Buy, 200), kEntered);
    desk.advance(kLater);
    const Execution first = world.executionsOf(order).at(0);
    EXPECT_EQ(100, first.qty);
    EXPECT_EQ(whole.executionsOf(undivided)[0].time, first.time);
    EXPECT_EQ(whole.executionsOf(undivided)[0].price, first.price);
}

TEST_F(DividedFillsTest, AnOrderOfOneLotIsNotDivided)
{
    world.divisions = 1;
    const Order order = world.placeAtExchange(world.order(share, Side::Buy, 100), kEntered);
    desk.advance(kLater);
    EXPECT_EQ(std::vector<qint64>{100}, qtysOf(order));
    EXPECT_EQ(1, world.divisions);
}

TEST_F(DividedFillsTest, AnOddSaleIsDividedBehindItsFirstLot)
{
    const Ledger ledger = desk.ledger(QStringLiteral("A1")).value();
    const auto &positions = ledger.positions();
    const auto held = std::find_if(positions.begin(), positions.end(), [](const Position &one) {
        return one.instrument->lot == 100 && one.closableQty() >= 200;
    });
    ASSERT_NE(positions.end(), held);
    world.divisions = 1;
    const Order order = world.placeAtExchange(world.order(*held->instrument, Side::Sell, 130), kEntered);
    desk.advance(kLater);
    EXPECT_EQ(std::vector<qint64>({100, 30}), qtysOf(order));
}

TEST_F(DividedFillsTest, NoLaterOrderComesBeforeTheRest)
{
    world.divisions = 1;
    const double high = world.price(share, kEntered, 6);
    const Order first = world.place(world.order(share, Side::Buy, 400, high), kEntered);
    const Order second = world.placeAtExchange(world.order(share, Side::Buy, 100, high), kEntered);
    awaitFirstFill(first);
    EXPECT_EQ(200, world.now(first).filledQty);
    EXPECT_EQ(0, world.now(second).filledQty);
    desk.advance(kLater);
    ASSERT_EQ(OrderStatus::Filled, world.now(first).status);
    ASSERT_EQ(OrderStatus::Filled, world.now(second).status);
    EXPECT_LE(stepOf(world.executionsOf(first).back()), stepOf(world.executionsOf(second).front()));
}

TEST_F(DividedFillsTest, ARestThatWasCancelledReleasesItsMoney)
{
    world.divisions = 1;
    const Order order = world.placeAtExchange(world.order(share, Side::Buy, 400), kEntered);
    awaitFirstFill(order);
    const QDateTime now = world.now(order).changed;
    EXPECT_EQ(QStringList(QString()), desk.cancel({{order.id, order.tradingAccount}}, now));
    desk.advance(soonAfter(now));
    EXPECT_EQ(OrderStatus::PartlyCancelled, world.now(order).status);
    EXPECT_EQ(200, world.now(order).filledQty);
    EXPECT_EQ(Money(), desk.ledger(order.tradingAccount)->frozenCash());
}

TEST_F(DividedFillsTest, AnyOrderIsInPartsWithinItsLimitAndInWholeLots)
{
    world.divisions = 1000000;
    random::Sequence chance(3);
    std::vector<Order> orders;
    QDateTime now = kEntered;
    for (int number = 0; number < 400; ++number) {
        now = now.addSecs(chance.whole(1, 4));
        const QVector<Instrument> &listed = world.exchange.instruments();
        const Instrument &instrument = listed[int(chance.whole(0, listed.size() - 1))];
        const Side side = instrument.kind == SecurityKind::Future ? Side::BuyOpen : Side::Buy;
        const double price = chance.whole(0, 1) == 0 ? 0 : world.price(instrument, now, int(chance.whole(0, 8)));
        orders.push_back(
            world.place(world.order(instrument, side, instrument.minQty * chance.whole(1, 12), price), now));
    }
    desk.advance(now.addSecs(600));
    int divided = 0;
    for (const Order &placed : orders) {
        const Order order = world.now(placed);
        const std::vector<Execution> executions = world.executionsOf(order);
        qint64 sum = 0;
        for (const Execution &execution : executions) {
            sum += execution.qty;
            EXPECT_EQ(0, execution.qty % order.instrument->lot);
            EXPECT_LT(0, execution.qty);
            if (order.price > 0) {
                EXPECT_LE(execution.price, order.price);
            }
        }
        EXPECT_EQ(order.filledQty, sum);
        if (order.status != OrderStatus::Filled || order.qty == order.instrument->lot)
            continue;
        EXPECT_LT(stepOf(executions.front()), stepOf(executions.back())) << qPrintable(order.id);
        ++divided;
    }
    EXPECT_LT(100, divided);
}
