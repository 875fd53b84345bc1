#include "books/DeskTest.h"

#include <algorithm>

using namespace sim;

using MatchingTest = DeskTest;

namespace {

const QDateTime kEntered = at("2025-03-03 10:00:00");

const qint64 kEnteredStep = steps::at({}, kEntered);

struct Part {
    qint64 step;
    double price;
    qint64 qty;

    friend bool operator==(const Part &a, const Part &b)
    {
        return a.step == b.step && a.price == b.price && a.qty == b.qty;
    }
    friend void PrintTo(const Part &part, std::ostream *out)
    {
        *out << part.qty << " at " << part.price << " in step " << part.step;
    }
};

using Parts = std::vector<Part>;

Parts partsOf(const DeskWorld &world, const Order &order)
{
    Parts parts;
    for (const Execution &execution : world.executionsOf(order))
        parts.push_back({world.exchange.stepAt(execution.time), execution.price, execution.qty});
    return parts;
}

/// What must fill a buy that is alone, up to the last step: from the rules in docs/vocabulary.md.
Parts expectedParts(const DeskWorld &world, const Order &order, qint64 accepted, qint64 last)
{
    const Instrument &instrument = *order.instrument;
    const QString &symbol = instrument.symbol;
    Parts parts;
    qint64 left = order.qty;
    qint64 before = 0;
    const StepTrades displayed = *world.exchange.trades(symbol, accepted);
    for (const QuoteLevel &level : displayed.bids)
        before += level.price == order.price ? level.qty : 0;
    for (qint64 step = accepted + 1; step <= last && left > 0; ++step) {
        const StepTrades trades = *world.exchange.trades(symbol, step);
        qint64 ours = std::max(instrument.lot, trades.volume / 2 / instrument.lot * instrument.lot);
        ours = std::min(ours, trades.volume);
        const auto take = [&](double price, qint64 offered) {
            const qint64 qty = std::min({left, offered, ours});
            if (qty > 0)
                parts.push_back({step, price, qty});
            left -= qty;
            ours -= qty;
        };
        if (trades.asks[0].price <= order.price) {
            before = 0;
            for (const QuoteLevel &level : trades.asks) {
                if (level.price <= order.price)
                    take(level.price, level.qty);
            }
        } else if (trades.last == order.price) {
            const qint64 ofOthers = std::min(before, trades.volume);
            before -= ofOthers;
            take(trades.last, trades.volume - ofOthers);
        }
    }
    return parts;
}

bool isSorted(const QVector<QuoteLevel> &levels, int sign)
{
    for (int i = 1; i < levels.size(); ++i) {
        const bool isEmpty = levels[i].qty == 0;
        if (!isEmpty && (levels[i - 1].qty == 0 || sign * levels[i].price <= sign * levels[i - 1].price))
            return false;
    }
    return true;
}

qint64 qtyAt(const QVector<QuoteLevel> &levels, double price)
{
    for (const QuoteLevel &level : levels) {
        if (level.qty > 0 && level.price == price)
            return level.qty;
    }
    return 0;
}

} // namespace

TEST_F(MatchingTest, AnOrderTakesTheLevelsThatItReachesAndWaitsBehindWhatWasThere)
{
    int taken = 0;
    int waited = 0;
    int never = 0;
    for (int number = 0; number < 12; ++number) {
        for (int away = -6; away <= 6; ++away) {
            DeskWorld alone(kMorning);
            const Instrument &instrument = alone.any(SecurityKind::Share, number);
            const qint64 qty = std::min(instrument.maxQty, instrument.minQty * 40);
            const Order order = alone.placeAtExchange(
                alone.order(instrument, Side::Buy, qty, alone.price(instrument, kEntered, away)), kEntered);
            if (order.status == OrderStatus::Rejected)
                continue;
            const QDateTime end = at("2025-03-03 10:05:00");
            const Parts expected = expectedParts(alone, order, kEnteredStep, alone.exchange.stepAt(end));
            alone.desk.advance(end);
            EXPECT_EQ(expected, partsOf(alone, order)) << qPrintable(instrument.symbol) << " " << away;
            if (expected.empty())
                ++never;
            else
                ++(away > 0 ? taken : waited);
        }
    }
    EXPECT_GT(taken, 30);
    EXPECT_GT(waited, 10);
    EXPECT_GT(never, 3);
}

TEST_F(MatchingTest, AnOrderAtMarketPriceTakesTheLevelsAndItsRestIsCancelled)
{
    const QVector<Instrument> &listed = world.exchange.instruments();
    const Instrument &thin = *std::min_element(listed.begin(), listed.end(), [](const auto &a, const auto &b) {
        const auto turnover = [](const Instrument &one) {
            return one.kind == SecurityKind::Future ? 1e18 : double(one.dailyVolume) * one.price;
        };
        return turnover(a) < turnover(b);
    });
    constexpr int kSteps = Matching::kMarketOrderSteps;
    qint64 volume = 0;
    for (int step = 1; step <= kSteps; ++step)
        volume += world.exchange.trades(thin.symbol, kEnteredStep + step)->volume;
    ASSERT_GT(volume, 0);
    const Order order = world.placeAtExchange(world.order(thin, Side::Buy, volume), kEntered);
    ASSERT_EQ(OrderStatus::Reported, order.status) << qPrintable(order.remark);

    desk.advance(world.exchange.timeOfStep(kEnteredStep + kSteps - 1));
    const Parts parts = partsOf(world, order);
    ASSERT_FALSE(parts.empty());
    EXPECT_EQ(world.exchange.trades(thin.symbol, parts[0].step)->asks[0].price, parts[0].price);
    EXPECT_EQ(OrderStatus::PartlyFilled, world.now(order).status);
    desk.advance(world.exchange.timeOfStep(kEnteredStep + kSteps));
    EXPECT_EQ(OrderStatus::PartlyCancelled, world.now(order).status);
    EXPECT_EQ(QStringLiteral("对手方数量不足，市价委托剩余部分撤销"), world.now(order).remark);
    EXPECT_EQ(Money(), desk.ledger(order.tradingAccount)->frozenCash());
}

TEST_F(MatchingTest, TheLastSharesOfAPositionNeedNoWholeLot)
{
    qint64 held = 0;
    const Instrument *instrument = nullptr;
    const Ledger ledger = desk.ledger(QStringLiteral("A1")).value();
    for (const Position &position : ledger.positions()) {
        if (position.instrument->lot == 100 && position.closableQty() >= 200) {
            instrument = position.instrument;
            held = position.closableQty();
        }
    }
    ASSERT_TRUE(instrument);
    const Order odd = world.place(world.order(*instrument, Side::Sell, 130), kEntered);
    const Order next = world.place(world.order(*instrument, Side::Sell, std::min<qint64>(held - 130, 370)), kEntered);
    desk.advance(at("2025-03-03 10:01:00"));
    EXPECT_EQ(OrderStatus::Filled, world.now(odd).status);
    EXPECT_EQ(OrderStatus::Filled, world.now(next).status);
    for (const Order &order : {odd, next}) {
        const Parts parts = partsOf(world, order);
        for (size_t i = 0; i + 1 < parts.size(); ++i)
            EXPECT_EQ(0, parts[i].qty % instrument->lot);
    }
}

TEST_F(MatchingTest, OrdersThatWaitShowInTheFiveLevelsOfTheQuote)
{
    const Quote market = *world.exchange.quote(share.symbol, kEntered);
    const auto shown = [&] {
        Quote quote = market;
        desk.addOrdersTo(quote);
        EXPECT_TRUE(isSorted(quote.bids, -1));
        EXPECT_TRUE(isSorted(quote.asks, 1));
        EXPECT_LT(quote.bids[0].price, quote.asks[0].price);
        EXPECT_EQ(5, quote.bids.size());
        EXPECT_EQ(5, quote.asks.size());
        return quote;
    };
    const double price = market.bids[2].price;
    EXPECT_EQ(market.bids[2].qty, qtyAt(shown().bids, price));
    const Order first = world.place(world.order(share, Side::Buy, 300, price), kEntered);
    EXPECT_EQ(market.bids[2].qty, qtyAt(shown().bids, price)) << "it is not at the exchange yet";
    desk.advance(soonAfter(kEntered));
    EXPECT_EQ(market.bids[2].qty + 300, qtyAt(shown().bids, price));
    world.placeAtExchange(world.order(share, Side::Buy, 500, price), soonAfter(kEntered));
    EXPECT_EQ(market.bids[2].qty + 800, qtyAt(shown().bids, price));
    EXPECT_EQ(market.asks[2].qty, shown().asks[2].qty);

    // Neither what is farther away than five levels nor what reaches the other side.
    const Quote before = shown();
    world.placeAtExchange(world.order(share, Side::Buy, 300, world.price(share, kEntered, -9)), soonAfter(kEntered));
    world.placeAtExchange(world.order(share, Side::Buy, 300, market.asks[0].price), soonAfter(kEntered));
    world.placeAtExchange(world.order(share, Side::Buy, 300), soonAfter(kEntered));
    for (int level = 0; level < 5; ++level) {
        EXPECT_EQ(before.bids[level].price, shown().bids[level].price);
        EXPECT_EQ(before.bids[level].qty, shown().bids[level].qty);
        EXPECT_EQ(before.asks[level].qty, shown().asks[level].qty);
    }

    desk.cancel({{first.id, first.tradingAccount}}, soonAfter(kEntered));
    EXPECT_EQ(market.bids[2].qty + 800, qtyAt(shown().bids, price)) << "it is still there";
    desk.advance(kEntered.addMSecs(1500));
    EXPECT_EQ(market.bids[2].qty + 500, qtyAt(shown().bids, price));
}

TEST_F(MatchingTest, WhereTheMarketShowsNothingAnOrderMakesALevel)
{
    Quote quote = *world.exchange.quote(share.symbol, kEntered);
    const double best = quote.bids[0].price;
    quote.bids[1] = quote.bids[3] = QuoteLevel(); // as if nobody bid there
    std::sort(quote.bids.begin(), quote.bids.end(),
              [](const QuoteLevel &a, const QuoteLevel &b) { return a.price > b.price; });
    const double between = share.priceOf(share.ticksOf(best) - 1);
    world.placeAtExchange(world.order(share, Side::Buy, 300, between), kEntered);
    desk.addOrdersTo(quote);
    EXPECT_EQ(best, quote.bids[0].price);
    EXPECT_EQ(between, quote.bids[1].price);
    EXPECT_EQ(300, quote.bids[1].qty);
    EXPECT_TRUE(isSorted(quote.bids, -1));
    EXPECT_EQ(0, quote.bids[4].qty);
}
