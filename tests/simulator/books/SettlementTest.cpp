#include "books/DeskTest.h"
#include "exchange/Random.h"

#include <QRegularExpression>

#include <cmath>
#include <map>
#include <set>

using namespace sim;

namespace {

const QStringList kAccounts{QStringLiteral("A1"), QStringLiteral("A2"), QStringLiteral("C1")};

using SettlementTest = DeskTest;

} // namespace

TEST_F(SettlementTest, OrdersEndWithTheirDay)
{
    const double low = world.price(share, at("2025-03-03 10:00:00"), -40);
    const Order order = world.place(world.order(share, Side::Buy, 1000, low), at("2025-03-03 10:00:00"));
    const Order late = world.place(world.order(share, Side::Buy, 1000, low), at("2025-03-03 15:29:59"));
    const Order next = world.place(world.order(share, Side::Buy, 1000, low), at("2025-03-03 15:30:00"));
    desk.advance(at("2025-03-03 15:59:59"));
    ASSERT_TRUE(world.now(order).isOpen());
    world.events.clear();
    desk.advance(at("2025-03-03 16:00:00"));
    for (const Order &ended : {order, late}) {
        EXPECT_EQ(OrderStatus::Cancelled, world.now(ended).status);
        EXPECT_EQ(QStringLiteral("当日有效，收市后失效"), world.now(ended).remark);
        EXPECT_EQ(at("2025-03-03 16:00:00"), world.now(ended).changed);
    }
    EXPECT_TRUE(world.now(next).isOpen());
    std::set<QString> changed;
    for (const OrderChanged &event : world.reported<OrderChanged>())
        changed.insert(event.order.id);
    EXPECT_EQ((std::set<QString>{order.id, late.id}), changed);
    EXPECT_EQ(size_t(kAccounts.size()), world.reported<AssetChanged>().size());
    EXPECT_EQ(moneyToOpen(next, next.amount(low, 1000)), desk.ledger(QStringLiteral("A1"))->frozenCash());
    desk.advance(at("2025-03-04 16:00:00"));
    EXPECT_EQ(Money(), desk.ledger(QStringLiteral("A1"))->frozenCash());
}

TEST_F(SettlementTest, SharesCanBeSoldOnTheNextDay)
{
    world.place(world.order(share, Side::Buy, 300), at("2025-03-03 10:00:00"));
    desk.advance(at("2025-03-03 15:30:00"));
    const auto position = [&] { return desk.ledger(QStringLiteral("A1"))->positions()[{share.symbol, false}]; };
    const Position before = position();
    EXPECT_EQ(300, before.openedQty);
    EXPECT_EQ(before.openingQty, before.closableQty());
    desk.advance(at("2025-03-03 16:00:00"));
    EXPECT_EQ(before.qty(), position().closableQty());
    EXPECT_EQ(before.holdingCost, position().holdingCost);
    EXPECT_EQ(0, position().openedQty);
    const std::vector<PositionChanged> reported = world.reported<PositionChanged>();
    EXPECT_TRUE(std::any_of(reported.begin(), reported.end(), [&](const PositionChanged &event) {
        return event.position.instrument == &share && event.position.closableQty() == before.qty();
    }));
}

TEST_F(SettlementTest, FuturesAreMarkedToTheClose)
{
    const Ledger before = desk.ledger(QStringLiteral("C1")).value();
    desk.advance(at("2025-03-03 16:00:00"));
    const Ledger after = desk.ledger(QStringLiteral("C1")).value();
    ASSERT_FALSE(after.positions().isEmpty());
    Money profit;
    for (const Position &position : after.positions()) {
        const Money value = position.marketValue(world.price(*position.instrument, at("2025-03-03 15:00:00")));
        EXPECT_EQ(value, position.holdingCost);
        const Position old = before.positions()[{position.instrument->symbol, position.isShort}];
        profit += position.isShort ? old.holdingCost - value : value - old.holdingCost;
        EXPECT_EQ(old.openCost, position.openCost);
    }
    EXPECT_NE(Money(), profit);
    EXPECT_EQ(before.cash() + profit, after.cash());
}

TEST_F(SettlementTest, TheSumsOfTheDayBeginAgain)
{
    world.place(world.order(share, Side::Buy, 300), at("2025-03-03 10:00:00"));
    for (const auto &[key, position] : desk.ledger(QStringLiteral("A1"))->positions().toStdMap()) {
        if (position.closableQty() >= 100)
            world.place(world.order(*position.instrument, Side::Sell, 100), at("2025-03-03 10:00:00"));
    }
    desk.advance(at("2025-03-03 15:30:00"));
    EXPECT_NE(Money(), desk.ledger(QStringLiteral("A1"))->fees());
    EXPECT_NE(Money(), desk.ledger(QStringLiteral("A1"))->closeProfitByTrade());
    const Prices none = [](const QString &) { return 1.0; };
    const Valuation before = desk.ledger(QStringLiteral("A1"))->value(none);
    EXPECT_NE(before.available, before.withdrawable);
    desk.advance(at("2025-03-03 16:00:00"));
    const Ledger after = desk.ledger(QStringLiteral("A1")).value();
    EXPECT_EQ(Money(), after.fees());
    EXPECT_EQ(Money(), after.closeProfitByDate());
    EXPECT_EQ(Money(), after.closeProfitByTrade());
    EXPECT_EQ(after.value(none).available, after.value(none).withdrawable);
}

TEST_F(SettlementTest, TheNextDayBeginsWithEmptyLists)
{
    const Order filled = world.place(world.order(share, Side::Buy, 100), at("2025-03-03 10:00:00"));
    const Order next = world.place(world.order(share, Side::Buy, 100), at("2025-03-03 18:00:00"));
    desk.advance(at("2025-03-04 08:59:59"));
    EXPECT_EQ(2u, desk.read()->orders().size());
    const QString lastExecution = desk.read()->executions().back().id;
    EXPECT_TRUE(world.reported<DayBegan>().empty());
    desk.advance(at("2025-03-04 09:00:00"));
    EXPECT_EQ(1u, world.reported<DayBegan>().size());
    ASSERT_EQ(1u, desk.read()->orders().size());
    EXPECT_TRUE(desk.read()->executions().empty());
    EXPECT_FALSE(desk.order(filled.id));
    EXPECT_EQ(next.id, world.now(next).id);
    EXPECT_EQ(QStringList(QStringLiteral("委托不存在")),
              desk.cancel({{filled.id, filled.tradingAccount}}, at("2025-03-04 09:00:00")));

    const Order another = world.place(world.order(share, Side::Buy, 100), at("2025-03-04 10:00:00"));
    EXPECT_GT(another.id, next.id);
    desk.advance(at("2025-03-04 10:10:00"));
    ASSERT_FALSE(world.executionsOf(next).empty());
    EXPECT_GT(world.executionsOf(next).front().id, lastExecution);
}

TEST_F(SettlementTest, NothingHappensOnHolidaysAndAtWeekends)
{
    desk.advance(at("2025-03-07 16:00:00")); // a Friday
    world.events.clear();
    desk.advance(at("2025-03-10 08:59:59"));
    EXPECT_TRUE(world.events.empty());
    desk.advance(at("2025-03-10 09:00:00"));
    EXPECT_EQ(1u, world.reported<DayBegan>().size());
}

TEST_F(SettlementTest, AStartInTheEveningIsAfterTheSettlement)
{
    DeskWorld evening("2025-03-03 17:00:00");
    bool isTraded = false;
    for (const Order &order : evening.desk.read()->orders()) {
        EXPECT_FALSE(order.isOpen());
        isTraded = isTraded || order.filledQty > 0;
    }
    EXPECT_TRUE(isTraded);
    for (const QString &account : kAccounts) {
        const Ledger ledger = evening.desk.ledger(account).value();
        EXPECT_EQ(Money(), ledger.frozenCash());
        for (const Position &position : ledger.positions())
            EXPECT_EQ(position.qty(), position.closableQty());
    }
    EXPECT_TRUE(evening.events.empty());
}

namespace {

/// Opens as many futures as the account can, of the one that moves most until the close, and in the wrong direction.
void loseMoney(DeskWorld &world)
{
    QDateTime time = at("2025-03-03 10:00:00");
    const auto change = [&](const Instrument &future) {
        return world.price(future, at("2025-03-03 15:00:00")) / world.price(future, time) - 1;
    };
    const Instrument *worst = &world.any(SecurityKind::Future);
    for (const Instrument &instrument : world.exchange.instruments()) {
        if (instrument.kind == SecurityKind::Future && std::abs(change(instrument)) > std::abs(change(*worst)))
            worst = &instrument;
    }
    const Side side = change(*worst) < 0 ? Side::BuyOpen : Side::SellOpen;
    for (int round = 0; round < 20; ++round, time = time.addSecs(30)) { // a fill frees what was set aside for its limit
        while (world.place(world.order(*worst, side, 1), time).status != OrderStatus::Rejected) {
        }
    }
}

} // namespace

TEST_F(SettlementTest, AnAccountWithTooLittleMarginIsClosedByTheBroker)
{
    loseMoney(world);
    desk.advance(at("2025-03-03 16:00:00"));
    const auto lacking = [&] {
        const Ledger ledger = desk.ledger(QStringLiteral("C1")).value();
        const auto prices = [&](const QString &symbol) {
            return world.exchange.lastPrice(symbol, world.exchange.stepAt(at("2025-03-03 16:00:00"))).value();
        };
        return ledger.value(prices).margin - ledger.cash();
    };
    ASSERT_LT(Money(), lacking()) << "the account has not lost enough for this test";
    const Instrument &future = world.any(SecurityKind::Future, 0);
    const double far = world.exchange.limits(future.symbol, world.exchange.stepAt(at("2025-03-03 18:00:00"))).lower;
    Order resting = world.order(future, Side::SellClose, 1, future.priceOf(future.ticksOf(far)));
    resting = world.place(resting, at("2025-03-03 18:00:00"));
    world.events.clear();
    desk.advance(at("2025-03-04 09:00:00"));
    EXPECT_FALSE(world.now(resting).isOpen());
    const std::vector<OrderEntered> orders = world.reported<OrderEntered>();
    ASSERT_FALSE(orders.empty());
    double released = 0;
    for (const OrderEntered &event : orders) {
        EXPECT_EQ(QStringLiteral("C1"), event.order.tradingAccount);
        EXPECT_EQ(QStringLiteral("broker"), event.order.trader);
        EXPECT_EQ(QStringLiteral("保证金不足，强制平仓"), event.order.remark);
        EXPECT_FALSE(opens(event.order.side));
        EXPECT_TRUE(event.order.isOpen());
        const Position position = desk.ledger(QStringLiteral("C1"))
                                      ->positions()[{event.order.instrument->symbol, isOfShort(event.order.side)}];
        released += position.holdingCost.yuan() * position.instrument->marginRate / double(position.qty()) *
                    double(event.order.qty);
    }
    EXPECT_GE(released, lacking().yuan());
    desk.advance(at("2025-03-04 10:00:00"));
    for (const OrderEntered &event : orders)
        EXPECT_EQ(OrderStatus::Filled, world.now(event.order).status);
}

namespace {

/// Some days of random orders and cancels, the desk advanced every so many seconds. Checks the money of every account
/// at each settlement; returns what happened.
class Week {
public:
    Week(int seed, int secondsBetween) : m_secondsBetween(secondsBetween), m_chance(quint64(seed)) {}

    QStringList play(const char *end)
    {
        for (const QString &account : kAccounts)
            m_opening[account] = m_world.desk.ledger(account).value();
        QDateTime now = m_world.clock.now();
        while (now < at(end)) {
            now = now.addSecs(m_chance.whole(1, 1200));
            const QDateTime settlement(now.date(), QTime(16, 0), Qt::UTC);
            if (m_settled < settlement && now >= settlement && now.date().dayOfWeek() <= Qt::Friday) {
                advance(settlement.addSecs(-1));
                checkDay();
                m_settled = settlement;
            }
            act(now);
        }
        advance(now);
        return m_log;
    }

private:
    void advance(const QDateTime &time)
    {
        for (; m_secondsBetween > 0 && m_now.addSecs(m_secondsBetween) < time; m_now = m_now.addSecs(m_secondsBetween))
            m_world.desk.advance(m_now.addSecs(m_secondsBetween));
        m_now = time;
        m_world.desk.advance(time);
    }

    void act(const QDateTime &time)
    {
        advance(time);
        const Instrument &instrument = anyInstrument();
        const bool isFuture = instrument.kind == SecurityKind::Future;
        static const Side futures[] = {Side::BuyOpen, Side::SellOpen, Side::BuyClose, Side::SellClose};
        const Side side = isFuture ? futures[m_chance.whole(0, 3)] : m_chance.from0To1() < 0.6 ? Side::Buy : Side::Sell;
        const double price =
            m_chance.from0To1() < 0.2 ? 0 : m_world.price(instrument, time, int(m_chance.whole(-8, 8)));
        m_orders.push_back(m_world.place(
            m_world.order(instrument, side, instrument.minQty * m_chance.whole(1, isFuture ? 40 : 60), price), time));
        if (m_chance.from0To1() < 0.3) {
            const Order &order = m_orders[size_t(m_chance.whole(0, qint64(m_orders.size()) - 1))];
            m_world.desk.cancel({{order.id, order.tradingAccount}}, time);
        }
    }

    const Instrument &anyInstrument()
    {
        const QVector<Instrument> &listed = m_world.exchange.instruments();
        if (m_chance.from0To1() < 0.5) { // one that the accounts hold, so that they sell and close too
            const auto positions = m_world.desk.ledger(oneAccount())->positions();
            if (!positions.isEmpty())
                return *positions.values()[int(m_chance.whole(0, positions.size() - 1))].instrument;
        }
        return listed[int(m_chance.whole(0, listed.size() - 1))];
    }

    QString oneAccount() { return kAccounts[int(m_chance.whole(0, kAccounts.size() - 1))]; }

    /// Plays the settlement of the day, and compares each account with its last one by the executions alone:
    /// the cash falls by what was bought and by the fees, and rises by what was sold; futures pay the change of their
    /// value instead, at the last settlement, at their trades and at this one.
    void checkDay()
    {
        struct Flow {
            Money bought; ///< less what was sold
            Money fees;
        };
        std::map<QString, Flow> flows;
        std::map<QString, Money> profits;
        {
            const TradingDesk::Reader books = m_world.desk.read();
            for (const Execution &execution : books->executions()) {
                const Order &order = books->order(execution.order);
                Flow &flow = flows[order.tradingAccount];
                flow.bought += isBuy(order.side) ? execution.amount : -execution.amount;
                flow.fees += execution.fee;
                m_log.append(
                    QStringLiteral("%1 %2 %3 %4").arg(execution.id, order.id).arg(execution.qty).arg(execution.price));
            }
            for (const QString &account : kAccounts)
                profits[account] = books->ledger(account)->closeProfitByDate();
        }
        const QDateTime settlement(m_now.date(), QTime(16, 0), Qt::UTC);
        m_now = settlement;
        m_world.desk.advance(settlement);
        for (const QString &account : kAccounts) {
            const Ledger ledger = m_world.desk.ledger(account).value();
            const Ledger &before = m_opening[account];
            const Flow &flow = flows[account];
            const Money cost = costOf(ledger) - costOf(before);
            const Money cash = before.cash() - flow.fees - flow.bought;
            if (account == QStringLiteral("C1")) {
                EXPECT_EQ(cash + cost, ledger.cash());
            } else {
                EXPECT_EQ(cash, ledger.cash()) << qPrintable(account);
                EXPECT_EQ(flow.bought + profits[account], cost) << qPrintable(account);
            }
            for (const Position &position : ledger.positions()) {
                EXPECT_GT(position.qty(), 0);
                EXPECT_EQ(position.qty(), position.openingQty);
                if (position.instrument->kind == SecurityKind::Future) {
                    EXPECT_EQ(position.marketValue(m_world.price(*position.instrument, settlement)),
                              position.holdingCost);
                }
            }
            m_log.append(QStringLiteral("%1 %2 %3 %4")
                             .arg(account)
                             .arg(ledger.cash().yuan(), 0, 'f', 2)
                             .arg(ledger.frozenCash().yuan(), 0, 'f', 2)
                             .arg(ledger.positions().size()));
            m_opening[account] = ledger;
        }
        for (const Order &order : m_world.desk.read()->orders())
            m_log.append(
                QStringLiteral("%1 %2 %3 %4").arg(order.id, order.remark).arg(int(order.status)).arg(order.filledQty));
    }

    /// Short positions count negative.
    static Money costOf(const Ledger &ledger)
    {
        Money cost;
        for (const Position &position : ledger.positions())
            cost += position.isShort ? -position.holdingCost : position.holdingCost;
        return cost;
    }

    DeskWorld m_world{"2025-03-03 09:20:00"};
    const int m_secondsBetween;
    random::Sequence m_chance;
    QDateTime m_now = m_world.clock.now();
    QDateTime m_settled = m_world.clock.now();
    std::map<QString, Ledger> m_opening;
    std::vector<Order> m_orders;
    QStringList m_log;
};

} // namespace

class WeekTest : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Seeds, WeekTest, testing::Range(1, 4));

TEST_P(WeekTest, TheMoneyAddsUpAtEverySettlementHoweverOftenTheDeskIsAdvanced)
{
    const QStringList week = Week(GetParam(), 0).play("2025-03-11 12:00:00");
    EXPECT_GT(week.size(), 800);
    EXPECT_GT(week.filter(QRegularExpression(QStringLiteral("^E"))).size(), 150);
    EXPECT_GT(week.filter(QStringLiteral("当日有效")).size(), 20);
    EXPECT_EQ(week, Week(GetParam(), 997).play("2025-03-11 12:00:00"));
}
