#include "books/DeskTest.h"
#include "exchange/Random.h"

#include <array>
#include <map>
#include <set>

using namespace sim;

// Thousands of random actions over a few securities, so that the orders of a security meet each other. After each step
// and message the rules of docs/vocabulary.md must hold.

namespace {

class DeskRulesTest : public testing::TestWithParam<int> {
protected:
    static constexpr int kSeconds = 900;

    Order anyOrder()
    {
        static const std::array<Side, 4> futures{Side::BuyOpen, Side::SellOpen, Side::BuyClose, Side::SellClose};
        static const std::array<Side, 3> others{Side::Buy, Side::Buy, Side::Sell};
        const Instrument &instrument = *m_traded[size_t(m_chance.whole(0, qint64(m_traded.size()) - 1))];
        const bool isFuture = instrument.kind == SecurityKind::Future;
        const Side side = isFuture ? futures[size_t(m_chance.whole(0, 3))] : others[size_t(m_chance.whole(0, 2))];
        const double price = happens(0.1) ? 0 : m_world.price(instrument, m_now, int(m_chance.whole(-5, 5)));
        const qint64 most = isFuture ? 4 : happens(0.1) ? 150 : 20;
        return m_world.order(instrument, side, instrument.minQty * m_chance.whole(1, most), price);
    }

    bool happens(double probability) { return m_chance.from0To1() < probability; }

    void act()
    {
        const double what = m_chance.from0To1();
        if (what < 0.35) {
            std::vector<Order> orders;
            for (qint64 left = m_chance.whole(1, 12); left > 0; --left)
                orders.push_back(anyOrder());
            for (const Order &order : m_world.desk.place(orders, m_now))
                m_mine.push_back(order.id);
        } else if (what < 0.6 && !m_mine.empty()) {
            std::vector<TradingDesk::CancelRequest> requests;
            for (qint64 left = m_chance.whole(1, 6); left > 0; --left) { // most of young orders
                const qint64 first = happens(0.3) ? 0 : qMax<qint64>(0, qint64(m_mine.size()) - 40);
                const QString &id = m_mine[size_t(m_chance.whole(first, qint64(m_mine.size()) - 1))];
                requests.push_back({id, m_world.desk.order(id)->tradingAccount});
            }
            m_world.desk.cancel(requests, m_now);
        }
    }

    /// Plays up to the moment before the step, so that the orders that it meets are known, and then the step.
    void playStep()
    {
        m_world.desk.advance(m_now.addMSecs(-1));
        noteWhoWaits(*m_world.desk.read());
        m_world.desk.advance(m_now);
        expectFillsInOrder(*m_world.desk.read());
        expectBooksAddUp(*m_world.desk.read());
    }

    void noteWhoWaits(const Books &books)
    {
        ASSERT_EQ(m_seenExecutions, books.executions().size()) << "filled between two steps";
        m_atExchange.clear();
        for (size_t i = 0; i < books.orders().size(); ++i) {
            if (books.orders()[i].isOpen() && books.orders()[i].isAtExchange())
                m_atExchange.push_back(int(i));
        }
    }

    void expectFillsInOrder(const Books &books)
    {
        std::map<const Instrument *, qint64> volume;
        std::set<int> filled;
        for (size_t i = m_seenExecutions; i < books.executions().size(); ++i) {
            const Execution &execution = books.executions()[i];
            const Order &order = books.orders()[size_t(execution.order)];
            const Instrument &instrument = *order.instrument;
            const qint64 step = m_world.exchange.stepAt(execution.time);
            ASSERT_EQ(m_world.exchange.timeOfStep(step), execution.time);
            ASSERT_GT(execution.time, order.entered);
            volume[&instrument] += execution.qty;
            filled.insert(execution.order);
            ++m_fills;

            // Inside the limit of the order and the price limits of the day, at a price of this step.
            const StepTrades trades = *m_world.exchange.trades(instrument.symbol, step);
            const PriceLimits limits = m_world.exchange.limits(instrument.symbol, step);
            const double sign = isBuy(order.side) ? 1 : -1;
            ASSERT_TRUE(order.priceType == PriceType::Market || sign * execution.price <= sign * order.price);
            ASSERT_TRUE(!limits.areSet() || (execution.price >= limits.lower && execution.price <= limits.upper));
            const double best = isBuy(order.side) ? trades.asks[0].price : trades.bids[0].price;
            const double worst = isBuy(order.side) ? trades.asks[4].price : trades.bids[4].price;
            const bool isOfOthers = isBuy(order.side) ? execution.price >= best && execution.price <= worst
                                                      : execution.price <= best && execution.price >= worst;
            ASSERT_TRUE(isOfOthers || execution.price == trades.last) << qPrintable(order.id);
            if (isOfOthers)
                ++m_taken;
        }
        for (const auto &[instrument, qty] : volume)
            ASSERT_LE(qty, m_world.exchange.trades(instrument->symbol, m_step)->volume);

        // Who has a better price, or the same and came earlier, has nothing left where a later one was filled.
        for (const int number : filled) {
            const Order &order = books.orders()[size_t(number)];
            for (const int other : m_atExchange) {
                const Order &first = books.orders()[size_t(other)];
                if (first.instrument != order.instrument || isBuy(first.side) != isBuy(order.side) || !first.isOpen())
                    continue;
                ASSERT_FALSE(comesBefore(first, other, order, number))
                    << qPrintable(first.id) << " before " << qPrintable(order.id);
            }
        }
        m_seenExecutions = books.executions().size();
    }

    static bool comesBefore(const Order &a, int numberOfA, const Order &b, int numberOfB)
    {
        const auto rank = [](const Order &order) {
            return order.priceType == PriceType::Market ? -1e18 : isBuy(order.side) ? -order.price : order.price;
        };
        return rank(a) < rank(b) || (rank(a) == rank(b) && numberOfA < numberOfB);
    }

    void expectBooksAddUp(const Books &books)
    {
        std::map<int, std::pair<qint64, Money>> filled;
        for (const Execution &execution : books.executions()) {
            filled[execution.order].first += execution.qty;
            filled[execution.order].second += execution.amount;
        }
        std::map<QString, Money> frozen;
        for (size_t i = 0; i < books.orders().size(); ++i) {
            const Order &order = books.orders()[i];
            const auto &[qty, amount] = filled[int(i)];
            ASSERT_EQ(qty, order.filledQty);
            ASSERT_EQ(amount, order.filledAmount);
            ASSERT_LE(order.filledQty, order.qty);
            ASSERT_EQ(order.filledQty == order.qty, order.status == OrderStatus::Filled);
            if (order.isOpen() && opens(order.side))
                frozen[order.tradingAccount] +=
                    moneyToOpen(order, order.amount(order.reservePrice(), order.leaveQty()));
            ++m_states[order.status];
        }
        for (const char *account : {"A1", "A2", "C1"}) {
            const QString name = QString::fromLatin1(account);
            ASSERT_EQ(frozen[name], books.ledger(name)->frozenCash()) << account;
        }
    }

    void expectSoundQuotes()
    {
        for (const Instrument *instrument : m_traded) {
            const Quote market = *m_world.exchange.quote(instrument->symbol, m_now);
            Quote quote = market;
            m_world.desk.addOrdersTo(quote);
            ASSERT_EQ(5, quote.bids.size());
            ASSERT_EQ(5, quote.asks.size());
            for (int level = 1; level < 5; ++level) {
                ASSERT_TRUE(quote.bids[level].qty == 0 || quote.bids[level].price < quote.bids[level - 1].price);
                ASSERT_TRUE(quote.asks[level].qty == 0 || quote.asks[level].price > quote.asks[level - 1].price);
            }
            ASSERT_TRUE(quote.bids[0].qty == 0 || quote.asks[0].qty == 0 || quote.bids[0].price < quote.asks[0].price);
            for (int level = 0; level < 5; ++level)
                m_shown += quote.bids[level].qty > market.bids[level].qty ? 1 : 0;
        }
    }

    DeskWorld m_world{"2025-03-03 10:15:20", 7, {{1, 1200}, {5, 1500}, {10, 6000}}}; // so slow that they meet steps
    random::Sequence m_chance{quint64(GetParam())};
    QDateTime m_now = m_world.clock.now();
    qint64 m_step = m_world.exchange.stepAt(m_now);
    const std::vector<const Instrument *> m_traded{
        &m_world.any(SecurityKind::Share, 0),  &m_world.any(SecurityKind::Share, 3),
        &m_world.any(SecurityKind::Bond, 0),   &m_world.any(SecurityKind::Fund, 0),
        &m_world.any(SecurityKind::Future, 0), &m_world.any(SecurityKind::Future, 2)};
    std::vector<QString> m_mine;
    std::vector<int> m_atExchange; ///< numbers of the open orders there, before the step
    size_t m_seenExecutions = m_world.desk.read()->executions().size();
    int m_fills = 0;
    int m_taken = 0;
    int m_shown = 0;
    std::map<OrderStatus, int> m_states;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Seeds, DeskRulesTest, testing::Range(1, 4));

TEST_P(DeskRulesTest, HoldThroughThousandsOfActions)
{
    for (int second = 0; second < kSeconds && !HasFatalFailure(); ++second) {
        m_now = m_now.addSecs(1);
        const bool isStep = m_world.exchange.stepAt(m_now) > m_step;
        m_step = m_world.exchange.stepAt(m_now);
        if (isStep) {
            playStep();
            expectSoundQuotes();
        }
        act();
    }
    EXPECT_GT(m_mine.size(), 1500u);
    EXPECT_GT(m_fills, 400);
    EXPECT_GT(m_taken, 100);
    EXPECT_LT(m_taken, m_fills - 20);
    EXPECT_GT(m_shown, 200);
    for (const OrderStatus status : {OrderStatus::ToBeSent, OrderStatus::Sent, OrderStatus::Reported,
                                     OrderStatus::PartlyFilled, OrderStatus::Filled, OrderStatus::ToBeCancelled,
                                     OrderStatus::PartlyCancelled, OrderStatus::Cancelled, OrderStatus::Rejected})
        EXPECT_GT(m_states[status], 0) << int(status);
    int late = 0;
    for (const Order &order : m_world.desk.read()->orders())
        late += order.status == OrderStatus::Filled && !order.remark.isEmpty() ? 1 : 0;
    EXPECT_GT(late, 0) << "no cancel came too late";
}
