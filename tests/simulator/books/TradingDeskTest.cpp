#include "books/DeskTest.h"

#include <QSet>

using namespace sim;

using TradingDeskTest = DeskTest;

namespace {

constexpr int kStepSeconds = 3;

} // namespace

TEST_F(TradingDeskTest, AnOrderAtMarketPriceFillsAtTheNextStep)
{
    const Order order = world.place(world.order(share, Side::Buy, 1000), at("2025-03-03 10:00:03"));
    EXPECT_EQ(OrderStatus::Reported, order.status);
    desk.advance(at("2025-03-03 10:00:05"));
    EXPECT_EQ(OrderStatus::Reported, world.now(order).status);
    desk.advance(at("2025-03-03 10:00:06"));
    EXPECT_EQ(OrderStatus::Filled, world.now(order).status);
    const std::vector<Execution> executions = world.executionsOf(order);
    ASSERT_EQ(1u, executions.size());
    EXPECT_EQ(at("2025-03-03 10:00:06"), executions[0].time);
    EXPECT_EQ(world.price(share, executions[0].time), executions[0].price);
    EXPECT_EQ(1000, executions[0].qty);
}

TEST_F(TradingDeskTest, LimitOrdersFillWhenThePriceReachesTheirLimit)
{
    const QDateTime entered = at("2025-03-03 10:00:00");
    const QDateTime end = at("2025-03-03 10:20:00");
    std::vector<Order> orders;
    for (int number = 0; number < 8; ++number) {
        const Instrument &instrument = world.any(SecurityKind::Future, number % 4);
        for (int away = -60; away <= 60; away += 10) {
            for (const Side side : {Side::BuyOpen, Side::SellOpen})
                orders.push_back(world.order(instrument, side, 1, world.price(instrument, entered, away)));
        }
    }
    int filled = 0;
    const std::vector<Order> placed = desk.place(orders, entered);
    desk.advance(end);
    for (const Order &order : placed) {
        if (order.status == OrderStatus::Rejected)
            continue;
        const auto isReached = [&](double price) {
            return isBuy(order.side) ? price <= order.price : price >= order.price;
        };
        QDateTime expected = entered.addSecs(kStepSeconds);
        while (expected <= end && !isReached(world.price(*order.instrument, expected)))
            expected = expected.addSecs(kStepSeconds);
        const std::vector<Execution> executions = world.executionsOf(order);
        ASSERT_EQ(expected <= end, !executions.empty()) << qPrintable(order.id);
        for (const Execution &execution : executions) {
            ++filled;
            EXPECT_EQ(expected, execution.time);
            EXPECT_EQ(world.price(*order.instrument, expected), execution.price);
            EXPECT_TRUE(isReached(execution.price));
        }
    }
    EXPECT_GT(filled, 20);
    EXPECT_LT(filled, int(placed.size()) - 20);
}

TEST_F(TradingDeskTest, LimitOrdersFillInOneOrTwoPartsOfWholeLots)
{
    const QDateTime entered = at("2025-03-03 10:00:00");
    const double limit = share.priceOf(share.ticksOf(share.price * (1 + share.limitRate)) - 1);
    desk.place(std::vector<Order>(40, world.order(share, Side::Buy, 500, limit)), entered);
    desk.advance(at("2025-03-03 10:01:00"));
    QMap<size_t, int> count;
    for (const Order &order : desk.read()->orders())
        EXPECT_EQ(OrderStatus::Filled, order.status);
    for (const OrderEntered &event : world.reported<OrderEntered>()) {
        const std::vector<Execution> parts = world.executionsOf(event.order);
        ++count[parts.size()];
        for (const Execution &part : parts)
            EXPECT_EQ(0, part.qty % share.lot);
    }
    EXPECT_EQ((QList<size_t>{1, 2}), count.keys());
    EXPECT_GT(count[1], 5);
    EXPECT_GT(count[2], 5);
}

TEST_F(TradingDeskTest, AfterHoursOrdersFillAfterTheCloseAtItsPrice)
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

TEST_F(TradingDeskTest, OrdersOfTheOpeningCallTradeAtTheOpen)
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

TEST_F(TradingDeskTest, OrdersEnteredWhileTheMarketIsClosedWaitUntilItOpens)
{
    const Order order = world.place(world.order(share, Side::Buy, 1000), at("2025-03-03 15:30:00"));
    EXPECT_EQ(at("2025-03-03 15:30:00"), order.entered);
    desk.advance(at("2025-03-04 09:24:59"));
    EXPECT_EQ(OrderStatus::Reported, world.now(order).status);
    desk.advance(at("2025-03-04 09:25:00"));
    EXPECT_EQ(OrderStatus::Filled, world.now(order).status);
}

TEST_F(TradingDeskTest, AHaltedSecurityTakesNoOrdersAndThoseThatWaitStay)
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

TEST_F(TradingDeskTest, OrdersThatTheAccountCannotAffordAreRejected)
{
    const QDateTime time = at("2025-03-03 10:00:00");
    const double price = world.price(share, time);
    const double cash = desk.ledger(QStringLiteral("A1"))->cash().yuan();
    const qint64 most = qint64(cash / price / 1.001) / share.lot * share.lot; // with its fee
    ASSERT_GE(share.maxQty * 3, most) << "too rich for this test";
    std::vector<Order> orders;
    for (qint64 left = most; left > 0; left -= share.maxQty / 4)
        orders.push_back(world.order(share, Side::Buy, qMin(left, share.maxQty / 4), price));
    orders.push_back(world.order(share, Side::Buy, share.lot * 10, price)); // no money is left for it
    orders.push_back(world.order(share, Side::Buy, share.lot / 2, price));
    orders.push_back(world.order(share, Side::Sell, share.maxQty, price));

    const std::vector<Order> placed = desk.place(orders, time);
    ASSERT_EQ(orders.size(), placed.size());
    for (size_t i = 0; i < placed.size() - 3; ++i)
        EXPECT_EQ(OrderStatus::Reported, placed[i].status) << qPrintable(placed[i].remark);
    const Order *refused = &placed[placed.size() - 3];
    EXPECT_EQ(QStringLiteral("可用资金不足"), refused[0].remark);
    EXPECT_EQ(QStringLiteral("委托数量不符合交易单位"), refused[1].remark);
    EXPECT_EQ(QStringLiteral("可用持仓不足"), refused[2].remark);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(OrderStatus::Rejected, refused[i].status);
        EXPECT_EQ(refused[i].remark, world.now(refused[i]).remark);
        EXPECT_TRUE(refused[i].exchangeOrderId.isEmpty());
    }
    EXPECT_LE(desk.ledger(QStringLiteral("A1"))->frozenCash(), desk.ledger(QStringLiteral("A1"))->cash());
}

TEST_F(TradingDeskTest, ACancelEndsAnOpenOrderOrGivesTheReason)
{
    const QDateTime time = at("2025-03-03 10:00:00");
    const Order open = world.place(world.order(share, Side::Buy, 1000, world.price(share, time, -60)), time);
    const Order filled = world.place(world.order(share, Side::Buy, 1000), time);
    const Order refused = world.place(world.order(share, Side::Buy, 50, 1), time);
    const QString &account = open.tradingAccount;
    const QStringList reasons = desk.cancel({{open.id, QString()},
                                             {open.id, QStringLiteral("A2")},
                                             {open.id, account},
                                             {open.id, account},
                                             {filled.id, account},
                                             {refused.id, account},
                                             {QStringLiteral("nothing"), account}},
                                            at("2025-03-03 10:00:03"));
    EXPECT_EQ(QStringList({QStringLiteral("交易账号与委托不符"), QStringLiteral("交易账号与委托不符"), QString(),
                           QStringLiteral("委托已撤单"), QStringLiteral("委托已全部成交，不能撤单"),
                           QStringLiteral("废单不能撤单"), QStringLiteral("委托不存在")}),
              reasons);
    EXPECT_EQ(OrderStatus::Cancelled, world.now(open).status);
    EXPECT_EQ(Money(), desk.ledger(account)->frozenCash());
    desk.advance(at("2025-03-03 15:00:00"));
    EXPECT_TRUE(world.executionsOf(open).empty());
}

TEST_F(TradingDeskTest, ManyOrdersAreReportedOneByOneAndTheirAccountOnce)
{
    const QDateTime time = at("2025-03-03 10:00:00");
    desk.place(std::vector<Order>(500, world.order(share, Side::Buy, 100)), time);
    EXPECT_EQ(500u, world.reported<OrderEntered>().size());
    EXPECT_EQ(1u, world.reported<AssetChanged>().size());
    EXPECT_EQ(501u, world.events.size()); // buy orders freeze no position

    world.events.clear();
    desk.advance(time.addSecs(kStepSeconds));
    EXPECT_EQ(500u, world.reported<OrderChanged>().size());
    EXPECT_EQ(500u, world.reported<OrderExecuted>().size());
    ASSERT_EQ(1u, world.reported<PositionChanged>().size());
    EXPECT_GE(world.reported<PositionChanged>()[0].position.openedQty, 50000);
    ASSERT_EQ(1u, world.reported<AssetChanged>().size());
    EXPECT_EQ(QStringLiteral("A1"), world.reported<AssetChanged>()[0].tradingAccount);
    EXPECT_TRUE(std::holds_alternative<AssetChanged>(world.events.back()));
}

TEST_F(TradingDeskTest, ARejectedOrderChangesNoAccount)
{
    world.place(world.order(share, Side::Buy, 50), at("2025-03-03 10:00:00"));
    EXPECT_EQ(1u, world.reported<OrderEntered>().size());
    EXPECT_EQ(1u, world.events.size());
}

TEST_F(TradingDeskTest, ThousandsOfOpenOrdersAreCancelledAtOnce)
{
    constexpr int kOrders = 10000;
    const QDateTime time = at("2025-03-03 10:00:00");
    const double low = share.priceOf(share.ticksOf(share.price * (1 - share.limitRate)) + 1);
    std::vector<Order> orders(kOrders, world.order(share, Side::Buy, 100, low));
    for (Order &order : orders)
        order.tradingAccount = QStringLiteral("A2"); // without money: they are rejected
    EXPECT_EQ(size_t(kOrders), desk.place(orders, time).size());
    const Instrument &bond = world.any(SecurityKind::Bond);
    const double cheap = bond.priceOf(bond.ticksOf(bond.price * 0.85));
    const std::vector<Order> placed =
        desk.place(std::vector<Order>(kOrders, world.order(bond, Side::Buy, bond.minQty, cheap)), time);
    desk.advance(at("2025-03-03 10:10:00"));
    std::vector<TradingDesk::CancelRequest> requests;
    for (const Order &order : placed) {
        if (order.isOpen())
            requests.push_back({order.id, order.tradingAccount});
    }
    EXPECT_GT(requests.size(), 1000u);
    const QStringList reasons = desk.cancel(requests, at("2025-03-03 10:11:00"));
    EXPECT_EQ(int(requests.size()), reasons.count(QString()));
    EXPECT_EQ(Money(), desk.ledger(QStringLiteral("A1"))->frozenCash());
}

TEST_F(TradingDeskTest, OrdersAreCheckedAgainstThePriceLimitsThatTheQuoteShows)
{
    const double firstUpperLimit = world.exchange.quote(share.symbol, at("2025-03-03 10:00:00"))->upperLimit;
    for (const char *time : {"2025-03-03 10:00:00", "2025-03-04 10:00:00", "2025-03-06 14:00:00"}) {
        const Quote quote = *world.exchange.quote(share.symbol, at(time));
        EXPECT_EQ(at(time).date() == at("2025-03-03 00:00:00").date(), quote.upperLimit == firstUpperLimit);
        const struct {
            double limit;
            int ticks; ///< beyond the limit
            const char *remark;
        } table[] = {
            {quote.lowerLimit, -1, "委托价格超出涨跌停范围"},
            {quote.lowerLimit, 0, ""},
            {quote.upperLimit, 0, ""},
            {quote.upperLimit, 1, "委托价格超出涨跌停范围"},
        };
        for (const auto &row : table) {
            const double price = share.priceOf(share.ticksOf(row.limit) + row.ticks);
            const Order order = world.place(world.order(share, Side::Buy, 1000, price), at(time));
            EXPECT_EQ(QString::fromUtf8(row.remark), order.remark) << time << " " << price;
        }
    }
}

TEST_F(TradingDeskTest, AnOrderAtMarketPriceFreezesMoneyAtTheUpperLimitOfItsDay)
{
    const struct {
        const char *entered;
        const char *day;
    } table[] = {{"2025-03-03 15:29:59", "2025-03-03 15:00:00"}, {"2025-03-04 15:30:00", "2025-03-05 10:00:00"}};
    for (const auto &[time, day] : table) {
        desk.advance(at(time));
        const Money before = desk.ledger(QStringLiteral("A1"))->frozenCash();
        world.place(world.order(share, Side::Buy, 1000), at(time));
        const Money amount = Money::rounded(world.exchange.quote(share.symbol, at(day))->upperLimit * 1000);
        EXPECT_EQ(moneyToOpen(share, Side::Buy, amount), desk.ledger(QStringLiteral("A1"))->frozenCash() - before);
    }
    desk.advance(at("2025-03-05 10:00:00"));
    EXPECT_EQ(Money(), desk.ledger(QStringLiteral("A1"))->frozenCash());
}

TEST_F(TradingDeskTest, TimeDoesNotGoBack)
{
    desk.advance(at("2025-03-03 10:00:00"));
    const Order order = world.place(world.order(share, Side::Buy, 100), at("2025-03-03 09:45:00"));
    EXPECT_EQ(at("2025-03-03 10:00:00"), order.entered);
    desk.advance(at("2025-03-03 09:59:00"));
    EXPECT_EQ(OrderStatus::Reported, world.now(order).status);
}

TEST(OpeningOrders, FillWhileTheMarketGoesOn)
{
    DeskWorld world("2025-03-03 10:15:20");
    QSet<QString> open;
    const std::vector<Order> before = world.desk.read()->orders();
    for (const Order &order : before) {
        if (order.isOpen())
            open.insert(order.id);
    }
    ASSERT_GT(open.size(), 10);
    world.desk.advance(at("2025-03-03 15:00:00"));
    int filled = 0;
    for (const Order &order : before) {
        const Order now = world.now(order);
        if (!open.contains(order.id))
            EXPECT_EQ(order.status, now.status);
        else if (now.status == OrderStatus::Filled)
            ++filled;
        EXPECT_FALSE(now.status == OrderStatus::Reported && now.priceType == PriceType::Market);
    }
    EXPECT_GT(filled, 5);
    for (const OrderExecuted &event : world.reported<OrderExecuted>())
        EXPECT_GT(event.execution.time, at("2025-03-03 10:15:20"));
}
