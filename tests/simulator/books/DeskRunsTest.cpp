#include "books/DeskTest.h"
#include "exchange/Random.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <map>
#include <thread>

using namespace sim;

namespace {

/// Named by the first difference, because the whole is long.
void expectSame(const QStringList &expected, const QStringList &seen)
{
    EXPECT_EQ(expected.size(), seen.size());
    const auto differs = std::mismatch(expected.begin(), expected.end(), seen.begin(), seen.end());
    if (differs.first != expected.end() && differs.second != seen.end())
        ADD_FAILURE() << qPrintable(*differs.first) << "\n" << qPrintable(*differs.second);
}

QStringList summary(const TradingDesk &desk)
{
    QStringList lines;
    const TradingDesk::Reader books = desk.read();
    for (const Order &order : books->orders()) {
        lines.append(QStringLiteral("%1 %2 %3 %4 %5 %6")
                         .arg(order.id, order.exchangeOrderId, order.remark, order.changed.toString(Qt::ISODateWithMs))
                         .arg(order.filledQty)
                         .arg(int(order.status)));
    }
    for (const Execution &execution : books->executions()) {
        lines.append(QStringLiteral("%1 %2 %3 %4 %5")
                         .arg(execution.id, execution.time.toString(Qt::ISODate))
                         .arg(execution.order)
                         .arg(execution.qty)
                         .arg(execution.price));
    }
    return lines;
}

/// A random order, not always a valid one.
Order anyOrder(const DeskWorld &world, random::Sequence &chance, const QDateTime &now)
{
    static const std::array<Side, 4> futures{Side::BuyOpen, Side::SellOpen, Side::BuyClose, Side::SellClose};
    static const std::array<Side, 3> others{Side::Buy, Side::Buy, Side::Sell};
    const QVector<Instrument> &listed = world.exchange.instruments();
    const Instrument &instrument = listed[int(chance.whole(0, listed.size() - 1))];
    const bool isFuture = instrument.kind == SecurityKind::Future;
    const Side side = isFuture ? futures[size_t(chance.whole(0, 3))] : others[size_t(chance.whole(0, 2))];
    const double price = chance.from0To1() < 0.2 ? 0 : world.price(instrument, now, int(chance.whole(-8, 8)));
    return world.order(instrument, side, instrument.minQty * chance.whole(1, isFuture ? 3 : 12), price);
}

/// Plays half an hour of the same orders and cancels; the desk is advanced every secondsBetween seconds.
QStringList playedDay(int secondsBetween, int divisions = 0)
{
    DeskWorld world("2025-03-03 10:15:20");
    world.divisions = divisions;
    random::Sequence chance(1);
    QDateTime now = world.clock.now();
    std::vector<Order> mine;
    for (int second = 0; second < 1800; ++second) {
        now = now.addSecs(1);
        if (secondsBetween > 0 && second % secondsBetween == 0)
            world.desk.advance(now);
        const double what = chance.from0To1();
        if (what < 0.3) {
            mine.push_back(world.place(anyOrder(world, chance, now), now));
        } else if (what < 0.4 && !mine.empty()) {
            const Order &order = mine[size_t(chance.whole(0, qint64(mine.size()) - 1))];
            world.desk.cancel({{order.id, order.tradingAccount}}, now);
        }
    }
    world.desk.advance(now);
    return summary(world.desk);
}

} // namespace

TEST(DeskRuns, TheResultDoesNotDependOnHowOftenTheDeskIsAdvanced)
{
    const QStringList everySecond = playedDay(1);
    EXPECT_GT(everySecond.size(), 700);
    expectSame(everySecond, playedDay(1));
    expectSame(everySecond, playedDay(7));
    expectSame(everySecond, playedDay(400));
    expectSame(everySecond, playedDay(0));
}

TEST(DeskRuns, TheFillsThatAreDividedDoNotDependOnItEither)
{
    const QStringList everySecond = playedDay(1, 40);
    expectSame(everySecond, playedDay(7, 40));
    expectSame(everySecond, playedDay(0, 40));
    EXPECT_NE(everySecond, playedDay(1));
}

TEST(DeskRuns, AnotherSeedGivesAnotherResult)
{
    DeskWorld one("2025-03-03 10:15:20");
    DeskWorld other("2025-03-03 10:15:20", 8);
    one.desk.advance(at("2025-03-03 10:30:00"));
    other.desk.advance(at("2025-03-03 10:30:00"));
    EXPECT_NE(summary(one.desk), summary(other.desk));
}

TEST(DeskRuns, OrdersQuotesAndReadersMayUseTheDeskAtTheSameTime)
{
    DeskWorld world("2025-03-03 10:15:20");
    const QDateTime start = world.clock.now();
    constexpr int kRounds = 300;
    std::atomic<int> busy{2};

    std::thread trader([&] {
        random::Sequence chance(2);
        std::vector<Order> mine;
        for (int round = 0; round < kRounds; ++round) {
            const QDateTime now = start.addSecs(round);
            mine.push_back(world.place(anyOrder(world, chance, now), now));
            if (round % 3 == 0) {
                const Order &order = mine[size_t(chance.whole(0, qint64(mine.size()) - 1))];
                world.desk.cancel({{order.id, order.tradingAccount}}, now);
            }
        }
        --busy;
    });
    std::thread quotes([&] {
        for (int round = 0; round < kRounds; ++round)
            world.desk.advance(start.addSecs(round));
        --busy;
    });
    bool isConsistent = true;
    do { // a reader never sees half a change
        {
            const TradingDesk::Reader books = world.desk.read();
            std::map<int, qint64> filled;
            for (const Execution &execution : books->executions())
                filled[execution.order] += execution.qty;
            for (const auto &[number, qty] : filled)
                isConsistent = isConsistent && qty == books->orders()[size_t(number)].filledQty;
        }
        std::this_thread::yield();
    } while (busy > 0);
    trader.join();
    quotes.join();
    EXPECT_TRUE(isConsistent);

    // Everything was reported, in the order in which it happened.
    QStringList entered;
    for (const OrderEntered &event : world.reported<OrderEntered>())
        entered.append(event.order.id);
    EXPECT_EQ(kRounds, entered.size());
    EXPECT_TRUE(std::is_sorted(entered.begin(), entered.end()));
    QStringList executed;
    for (const OrderExecuted &event : world.reported<OrderExecuted>())
        executed.append(event.execution.id);
    EXPECT_GT(executed.size(), 10);
    EXPECT_TRUE(std::is_sorted(executed.begin(), executed.end()));
    QMap<QString, Order> last;
    for (const OrderChanged &event : world.reported<OrderChanged>())
        last[event.order.id] = event.order;
    for (const Order &order : qAsConst(last)) {
        EXPECT_EQ(world.now(order).status, order.status);
        EXPECT_EQ(world.now(order).filledQty, order.filledQty);
    }
}
