#include "books/DeskTest.h"

#include <QSet>

#include <map>

using namespace sim;

using TradingDeskTest = DeskTest;

namespace {

constexpr int kStepSeconds = 3;

} // namespace

TEST_F(TradingDeskTest, AnOrderIsSentAcceptedAndFilledEachAtItsTime)
{
    const QDateTime entered = at("2025-03-03 10:00:03");
    const Order order = world.place(world.order(share, Side::Buy, share.lot), entered);
    EXPECT_EQ(OrderStatus::ToBeSent, order.status);
    EXPECT_EQ(OrderStatus::ToBeSent, world.now(order).status);

    const QDateTime sent = desk.nextMessage().value();
    EXPECT_GE(sent, entered.addMSecs(1));
    EXPECT_LE(sent, entered.addMSecs(3));
    desk.advance(sent.addMSecs(-1));
    EXPECT_EQ(OrderStatus::ToBeSent, world.now(order).status);
    desk.advance(sent);
    EXPECT_EQ(OrderStatus::Sent, world.now(order).status);
    EXPECT_EQ(sent, world.now(order).changed);
    EXPECT_TRUE(world.now(order).exchangeOrderId.isEmpty());

    const QDateTime accepted = desk.nextMessage().value();
    EXPECT_GE(accepted, sent.addMSecs(5));
    EXPECT_LE(accepted, sent.addMSecs(50));
    desk.advance(accepted);
    EXPECT_EQ(OrderStatus::Reported, world.now(order).status);
    EXPECT_EQ(accepted, world.now(order).changed);
    EXPECT_FALSE(world.now(order).exchangeOrderId.isEmpty());
    EXPECT_FALSE(desk.nextMessage());

    desk.advance(at("2025-03-03 10:00:05"));
    EXPECT_EQ(OrderStatus::Reported, world.now(order).status);
    desk.advance(at("2025-03-03 10:00:06"));
    EXPECT_EQ(OrderStatus::Filled, world.now(order).status);
    EXPECT_EQ(at("2025-03-03 10:00:06"), world.now(order).changed);

    std::vector<OrderStatus> states{world.reported<OrderEntered>().at(0).order.status};
    for (const OrderChanged &event : world.reported<OrderChanged>())
        states.push_back(event.order.status);
    EXPECT_EQ((std::vector<OrderStatus>{OrderStatus::ToBeSent, OrderStatus::Sent, OrderStatus::Reported,
                                        OrderStatus::Filled}),
              states);
}

TEST_F(TradingDeskTest, TheOrdersOfAListTravelTogetherAndAreNotOvertaken)
{
    const QDateTime time = at("2025-03-03 10:00:00");
    const double low = world.price(share, time, -60);
    for (int list = 0; list < 20; ++list)
        desk.place(std::vector<Order>(50, world.order(share, Side::Buy, 100, low)), time.addMSecs(list));
    desk.advance(soonAfter(time));
    std::map<QDateTime, int> ofOneTime;
    QDateTime last;
    QString lastId;
    for (const OrderChanged &event : world.reported<OrderChanged>()) {
        if (event.order.status != OrderStatus::Reported)
            continue;
        ++ofOneTime[event.order.changed];
        EXPECT_LE(last, event.order.changed);
        EXPECT_LT(lastId, event.order.exchangeOrderId);
        last = event.order.changed;
        lastId = event.order.exchangeOrderId;
    }
    EXPECT_GT(ofOneTime.size(), 5u);
    for (const auto &[moment, count] : ofOneTime)
        EXPECT_EQ(0, count % 50) << qPrintable(moment.toString(Qt::ISODateWithMs));
}

TEST_F(TradingDeskTest, TheExchangeRefusesAnOrderThatBreaksTheRulesWhenItArrives)
{
    // Sent just before the limits of the next day hold.
    DeskWorld slow(kMorning, 7, {{1, 1}, {3000, 3000}, {1, 1}});
    const QDateTime time = at("2025-03-03 15:29:58");
    const auto limits = [&](const QDateTime &when) {
        return slow.exchange.limits(share.symbol, slow.exchange.stepAt(when));
    };
    const PriceLimits now = limits(time);
    const PriceLimits next = limits(soonAfter(time.addSecs(3)));
    ASSERT_NE(now.upper, next.upper);
    const double price = next.upper > now.upper ? now.lower : now.upper;
    const Order order = slow.place(slow.order(share, Side::Buy, 100, price), time);
    EXPECT_EQ(OrderStatus::ToBeSent, order.status) << qPrintable(order.remark);
    EXPECT_NE(Money(), slow.desk.ledger(order.tradingAccount)->frozenCash());
    slow.desk.advance(soonAfter(time.addSecs(3)));
    const Order refused = slow.now(order);
    EXPECT_EQ(OrderStatus::Rejected, refused.status);
    EXPECT_EQ(QStringLiteral("委托价格超出涨跌停范围"), refused.remark);
    EXPECT_TRUE(refused.exchangeOrderId.isEmpty());
    EXPECT_EQ(Money(), slow.desk.ledger(order.tradingAccount)->frozenCash());
    EXPECT_EQ(2u, slow.reported<AssetChanged>().size());
}

TEST_F(TradingDeskTest, OrdersEnteredWhileTheMarketIsClosedWaitUntilItOpens)
{
    const Order order = world.place(world.order(share, Side::Buy, share.lot), at("2025-03-03 15:30:00"));
    EXPECT_EQ(at("2025-03-03 15:30:00"), order.entered);
    desk.advance(at("2025-03-04 09:24:59"));
    EXPECT_EQ(OrderStatus::Reported, world.now(order).status);
    desk.advance(at("2025-03-04 09:25:00"));
    EXPECT_EQ(OrderStatus::Filled, world.now(order).status);
}

TEST_F(TradingDeskTest, TheExchangeRefusesAnOrderForASecurityThatWasHaltedMeanwhile)
{
    DeskWorld slow(kMorning, 7, {{1, 1}, {3000, 3000}, {1, 1}});
    const QDateTime time = at("2025-03-03 09:59:59");
    slow.exchange.halt(share.symbol, soonAfter(time), at("2025-03-03 10:30:00"));
    const Order order = slow.place(slow.order(share, Side::Buy, 100, slow.price(share, time, -20)), time);
    EXPECT_EQ(OrderStatus::ToBeSent, order.status);
    slow.desk.advance(time.addSecs(4));
    EXPECT_EQ(OrderStatus::Rejected, slow.now(order).status);
    EXPECT_EQ(QStringLiteral("证券停牌，不能委托"), slow.now(order).remark);
    EXPECT_EQ(Money(), slow.desk.ledger(order.tradingAccount)->frozenCash());
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
        EXPECT_EQ(OrderStatus::ToBeSent, placed[i].status) << qPrintable(placed[i].remark);
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
    const Order filled = world.place(world.order(share, Side::Buy, share.lot), time);
    const Order refused = world.place(world.order(share, Side::Buy, 50, 1), time);
    const QString &account = open.tradingAccount;
    const QDateTime asked = at("2025-03-03 10:00:03");
    const std::vector<TradingDesk::CancelRequest> requests{{open.id, QString()},
                                                           {open.id, QStringLiteral("A2")},
                                                           {open.id, account},
                                                           {open.id, account},
                                                           {filled.id, account},
                                                           {refused.id, account},
                                                           {QStringLiteral("nothing"), account}};
    EXPECT_EQ(QStringList({QStringLiteral("交易账号与委托不符"), QStringLiteral("交易账号与委托不符"), QString(),
                           QStringLiteral("委托正在撤单"), QStringLiteral("委托已全部成交，不能撤单"),
                           QStringLiteral("废单不能撤单"), QStringLiteral("委托不存在")}),
              desk.cancel(requests, asked));
    EXPECT_EQ(OrderStatus::ToBeCancelled, world.now(open).status);
    EXPECT_EQ(1000, world.now(open).leaveQty());
    EXPECT_NE(Money(), desk.ledger(account)->frozenCash());

    const QDateTime cancelled = desk.nextMessage().value();
    EXPECT_GE(cancelled, asked.addMSecs(10));
    EXPECT_LE(cancelled, asked.addMSecs(100));
    desk.advance(cancelled);
    EXPECT_EQ(OrderStatus::Cancelled, world.now(open).status);
    EXPECT_EQ(cancelled, world.now(open).changed);
    EXPECT_EQ(Money(), desk.ledger(account)->frozenCash());
    EXPECT_EQ(QStringList{QStringLiteral("委托已撤单")}, desk.cancel({{open.id, account}}, soonAfter(cancelled)));
    desk.advance(at("2025-03-03 15:00:00"));
    EXPECT_TRUE(world.executionsOf(open).empty());
}

TEST_F(TradingDeskTest, ACancelWaitsForTheAcceptanceOfItsOrder)
{
    const QDateTime time = at("2025-03-03 10:00:00");
    DeskWorld slow(kMorning, 7, {{100, 100}, {500, 500}, {10, 10}});
    const Order order = slow.place(slow.order(share, Side::Buy, 1000, slow.price(share, time, -60)), time);
    EXPECT_EQ(QStringList{QString()}, slow.desk.cancel({{order.id, order.tradingAccount}}, time.addMSecs(1)));
    EXPECT_EQ(OrderStatus::ToBeCancelled, slow.now(order).status);
    slow.desk.advance(time.addMSecs(599));
    EXPECT_EQ(OrderStatus::ToBeCancelled, slow.now(order).status);
    EXPECT_FALSE(slow.now(order).isAtExchange());
    slow.desk.advance(time.addMSecs(600));
    EXPECT_EQ(OrderStatus::Cancelled, slow.now(order).status);
    EXPECT_TRUE(slow.now(order).isAtExchange());
    EXPECT_EQ(Money(), slow.desk.ledger(order.tradingAccount)->frozenCash());
}

TEST_F(TradingDeskTest, ACancelThatComesTooLateTellsSo)
{
    const QDateTime time = at("2025-03-03 10:00:00");
    DeskWorld slow(kMorning, 7, {{1, 1}, {5, 5}, {4000, 4000}});
    const Order order = slow.placeAtExchange(slow.order(share, Side::Buy, share.lot), time);
    EXPECT_EQ(QStringList{QString()}, slow.desk.cancel({{order.id, order.tradingAccount}}, soonAfter(time)));
    slow.desk.advance(at("2025-03-03 10:00:03"));
    EXPECT_EQ(OrderStatus::Filled, slow.now(order).status);
    EXPECT_EQ(QString(), slow.now(order).remark);
    slow.desk.advance(at("2025-03-03 10:00:05"));
    EXPECT_EQ(OrderStatus::Filled, slow.now(order).status);
    EXPECT_EQ(QStringLiteral("撤单太晚，委托已全部成交"), slow.now(order).remark);
    EXPECT_EQ(at("2025-03-03 10:00:03"), slow.now(order).changed);
    const OrderChanged last = slow.reported<OrderChanged>().back();
    EXPECT_EQ(slow.now(order).remark, last.order.remark);
}

TEST_F(TradingDeskTest, AnOrderThatIsToBeCancelledCanBeFilledInPart)
{
    const QDateTime time = at("2025-03-03 10:00:00");
    DeskWorld slow(kMorning, 7, {{1, 1}, {5, 5}, {4000, 4000}});
    const qint64 volume = slow.exchange.trades(share.symbol, slow.exchange.stepAt(time) + 1)->volume;
    const Order order = slow.placeAtExchange(slow.order(share, Side::Buy, volume), time);
    slow.desk.cancel({{order.id, order.tradingAccount}}, soonAfter(time));
    slow.desk.advance(at("2025-03-03 10:00:03"));
    EXPECT_EQ(OrderStatus::ToBeCancelled, slow.now(order).status);
    EXPECT_GT(slow.now(order).filledQty, 0);
    slow.desk.advance(at("2025-03-03 10:00:05"));
    EXPECT_EQ(OrderStatus::PartlyCancelled, slow.now(order).status);
    EXPECT_EQ(0, slow.now(order).leaveQty());
    EXPECT_EQ(Money(), slow.desk.ledger(order.tradingAccount)->frozenCash());
}

TEST_F(TradingDeskTest, ManyOrdersAreReportedOneByOneAndTheirAccountOnce)
{
    const QDateTime time = at("2025-03-03 10:00:00");
    const double low = world.price(share, time, -60);
    desk.place(std::vector<Order>(500, world.order(share, Side::Buy, 100, low)), time);
    EXPECT_EQ(500u, world.reported<OrderEntered>().size());
    EXPECT_EQ(1u, world.reported<AssetChanged>().size());
    EXPECT_EQ(501u, world.events.size()); // buy orders freeze no position

    world.events.clear();
    desk.advance(soonAfter(time));
    EXPECT_EQ(1000u, world.reported<OrderChanged>().size()); // sent and accepted, which moves no money
    EXPECT_EQ(1000u, world.events.size());
}

TEST_F(TradingDeskTest, TheFillsOfAStepAreReportedOneByOneAndTheirAccountOnce)
{
    const QDateTime time = at("2025-03-03 10:00:00");
    desk.place(std::vector<Order>(3, world.order(share, Side::Buy, share.lot)), time);
    desk.advance(soonAfter(time));
    world.events.clear();
    desk.advance(time.addSecs(kStepSeconds));
    EXPECT_EQ(3u, world.reported<OrderChanged>().size());
    EXPECT_EQ(3u, world.reported<OrderExecuted>().size());
    ASSERT_EQ(1u, world.reported<PositionChanged>().size());
    EXPECT_GE(world.reported<PositionChanged>()[0].position.openedQty, 3 * share.lot);
    ASSERT_EQ(1u, world.reported<AssetChanged>().size());
    EXPECT_EQ(QStringLiteral("A1"), world.reported<AssetChanged>()[0].tradingAccount);
    EXPECT_TRUE(std::holds_alternative<AssetChanged>(world.events.back().what));
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
    desk.advance(at("2025-03-03 10:11:01"));
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
        const Order order = world.place(world.order(share, Side::Buy, 1000), at(time));
        const Money amount = Money::rounded(world.exchange.quote(share.symbol, at(day))->upperLimit * 1000);
        EXPECT_EQ(moneyToOpen(order, amount), desk.ledger(QStringLiteral("A1"))->frozenCash() - before);
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
    EXPECT_EQ(OrderStatus::ToBeSent, world.now(order).status);
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
