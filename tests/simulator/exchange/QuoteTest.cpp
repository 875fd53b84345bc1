#include "exchange/Exchange.h"

#include "exchange/TestClock.h"

#include <thread>

#include <gtest/gtest.h>

using namespace sim;

namespace {

const QString kStock = QStringLiteral("600001.SH");

Instrument stock()
{
    Instrument stock;
    stock.symbol = kStock;
    stock.securityId = QStringLiteral("600001");
    stock.exchange = QStringLiteral("SH");
    stock.price = 18.36;
    stock.limitRate = 0.1;
    stock.volatility = 0.6;
    stock.dailyVolume = 2000000;
    stock.listed = QDate(2010, 1, 4);
    return stock;
}

qint64 volumeOf(const Exchange &exchange, qint64 step)
{
    return exchange.trades(kStock, step).value_or(StepTrades()).volume;
}

class QuoteTest : public testing::Test {
protected:
    Quote quoteAt(const QDateTime &time, const Exchange &of)
    {
        clock.set(time);
        const std::optional<Quote> quote = of.quote(kStock);
        EXPECT_TRUE(quote.has_value());
        return quote.value_or(Quote());
    }

    Quote quoteAt(const char *time) { return quoteAt(at(time), exchange); }

    Exchange exchangeOf(const Instrument &instrument) const { return {{instrument}, 7, QDate(2025, 3, 3), clock}; }

    TestClock clock{at("2025-03-03 10:00:30")}; // a Monday
    const Exchange exchange = exchangeOf(stock());
};

void expectSame(const Quote &expected, const Quote &actual)
{
    EXPECT_EQ(expected.time, actual.time);
    EXPECT_EQ(expected.last, actual.last);
    EXPECT_EQ(expected.high, actual.high);
    EXPECT_EQ(expected.volume, actual.volume);
    EXPECT_EQ(expected.amount, actual.amount);
    for (int level = 0; level < 5; ++level) {
        EXPECT_EQ(expected.bids[level].price, actual.bids[level].price);
        EXPECT_EQ(expected.asks[level].qty, actual.asks[level].qty);
    }
}

} // namespace

TEST_F(QuoteTest, IsTheSumOfTheCandlesOfTheDay)
{
    const Quote quote = quoteAt("2025-03-03 13:10:00");
    const QVector<Candle> candles =
        exchange.candles(kStock, at("2025-03-03 09:31:00"), QDateTime(), CandlePeriod::Minute);
    ASSERT_EQ(130, candles.size());
    double high = 0;
    double low = 1e9;
    double amount = 0;
    qint64 volume = 0;
    for (const Candle &candle : candles) {
        high = std::max(high, candle.high);
        low = std::min(low, candle.low);
        amount += candle.amount;
        volume += candle.volume;
    }
    EXPECT_EQ(candles.first().open, quote.open);
    EXPECT_EQ(candles.last().close, quote.last);
    EXPECT_EQ(high, quote.high);
    EXPECT_EQ(low, quote.low);
    EXPECT_EQ(volume, quote.volume);
    EXPECT_NEAR(amount, quote.amount, 130 * 0.005 + 0.005); // each was rounded to the cent
    EXPECT_EQ(at("2025-03-03 13:10:00"), quote.time);
}

TEST_F(QuoteTest, TheStepsOfAMinuteLeadFromItsOpenToItsClose)
{
    // In the first minute of a day the high and the low of the quote are those of the candle.
    for (QDateTime begin = at("2025-02-03 09:30:00"); begin <= at("2025-02-28 09:30:00"); begin = begin.addDays(1)) {
        clock.set(begin.addSecs(60));
        const QVector<Candle> candles = exchange.candles(kStock, clock.now(), clock.now(), CandlePeriod::Minute);
        if (candles.isEmpty())
            continue; // a weekend
        const Candle &candle = candles[0];

        Quote before;
        for (int second = 3; second <= 60; second += 3) {
            const Quote quote = quoteAt(begin.addSecs(second), exchange);
            EXPECT_EQ(begin.addSecs(second), quote.time);
            EXPECT_EQ(candle.open, quote.open);
            EXPECT_LE(candle.low, quote.last);
            EXPECT_GE(candle.high, quote.last);
            EXPECT_LE(quote.low, quote.last);
            EXPECT_GE(quote.high, quote.last);
            EXPECT_GE(quote.volume, before.volume);
            EXPECT_EQ(0, quote.volume % 100);
            EXPECT_GE(quote.amount, before.amount);
            if (quote.volume > 0) {
                const double average = quote.amount / double(quote.volume);
                EXPECT_GE(average, quote.low - 1e-4); // the amount is rounded to the cent
                EXPECT_LE(average, quote.high + 1e-4);
            }
            if (second == 57) { // high and low were reached before the last step
                EXPECT_EQ(candle.high, quote.high);
                EXPECT_EQ(candle.low, quote.low);
            }
            before = quote;
        }
        EXPECT_EQ(candle.close, before.last);
        EXPECT_EQ(candle.high, before.high);
        EXPECT_EQ(candle.low, before.low);
        EXPECT_EQ(candle.volume, before.volume);
        EXPECT_EQ(candle.amount, before.amount);
    }
}

TEST_F(QuoteTest, ChangesEveryThreeSeconds)
{
    const Quote quote = quoteAt("2025-03-03 10:00:03");
    expectSame(quote, quoteAt("2025-03-03 10:00:05"));
    EXPECT_NE(quote.volume, quoteAt("2025-03-03 10:00:06").volume);
}

TEST_F(QuoteTest, StaysUntilTheNextTradingDayBegins)
{
    const Quote friday = quoteAt("2025-02-28 15:00:00");
    EXPECT_EQ(18.36, friday.last);
    EXPECT_EQ(at("2025-02-28 15:00:00"), friday.time);
    for (const char *later : {"2025-02-28 23:00:00", "2025-03-01 11:00:00", "2025-03-03 08:59:59"})
        expectSame(friday, quoteAt(later));

    const Quote monday = quoteAt("2025-03-03 09:30:03");
    EXPECT_EQ(at("2025-03-03 09:30:03"), monday.time);
    EXPECT_EQ(18.36, monday.previousClose);
    EXPECT_LT(monday.volume, friday.volume);
    EXPECT_EQ(at("2025-03-03 11:30:00"), quoteAt("2025-03-03 12:15:00").time);
}

TEST_F(QuoteTest, ThePreviousCloseIsTheCloseOfTheDayBefore)
{
    const QVector<Candle> thursday =
        exchange.candles(kStock, at("2025-02-27 15:00:00"), at("2025-02-27 15:00:00"), CandlePeriod::Day);
    ASSERT_EQ(1, thursday.size());
    EXPECT_EQ(thursday[0].close, quoteAt("2025-02-28 14:00:00").previousClose);
}

TEST_F(QuoteTest, FiveLevelsOnEachSideAreOneTickApart)
{
    const Instrument instrument = stock();
    for (int second = 0; second < 60; second += 3) {
        const Quote quote = quoteAt(at("2025-03-03 10:20:00").addSecs(second), exchange);
        ASSERT_EQ(5, quote.bids.size());
        ASSERT_EQ(5, quote.asks.size());
        const qint64 best = instrument.ticksOf(quote.bids[0].price);
        EXPECT_TRUE(quote.last == quote.bids[0].price || quote.last == quote.asks[0].price);
        for (int level = 0; level < 5; ++level) {
            EXPECT_EQ(instrument.priceOf(best - level), quote.bids[level].price);
            EXPECT_EQ(instrument.priceOf(best + 1 + level), quote.asks[level].price);
            for (const qint64 qty : {quote.bids[level].qty, quote.asks[level].qty}) {
                EXPECT_GT(qty, 0);
                EXPECT_EQ(0, qty % instrument.lot);
            }
        }
    }
}

TEST_F(QuoteTest, LimitsAreRoundedToTheTick)
{
    EXPECT_EQ(20.2, quoteAt("2025-03-03 10:00:00").upperLimit);
    EXPECT_EQ(16.52, quoteAt("2025-03-03 10:00:00").lowerLimit);

    Instrument unlimited = stock();
    unlimited.limitRate = 0;
    const Exchange other = exchangeOf(unlimited);
    EXPECT_EQ(0, quoteAt(clock.now(), other).upperLimit);
    EXPECT_EQ(0, quoteAt(clock.now(), other).lowerLimit);
}

TEST_F(QuoteTest, LevelsBeyondALimitAreEmpty)
{
    Instrument narrow = stock();
    narrow.volatility = 0;
    narrow.limitRate = 0.001; // two ticks
    const Exchange other = exchangeOf(narrow);
    for (int second = 0; second < 60; second += 3) {
        const Quote quote = quoteAt(at("2025-03-03 10:20:00").addSecs(second), other);
        EXPECT_EQ(18.38, quote.upperLimit);
        EXPECT_EQ(18.34, quote.lowerLimit);
        for (const QVector<QuoteLevel> &side : {quote.bids, quote.asks}) {
            for (const QuoteLevel &level : side) {
                EXPECT_EQ(level.price > 0, level.qty > 0);
                EXPECT_TRUE(level.price == 0 || (level.price >= 18.34 && level.price <= 18.38)) << level.price;
            }
        }
        EXPECT_EQ(0, quote.asks.last().qty);
        EXPECT_EQ(0, quote.bids.last().qty);
    }
}

TEST_F(QuoteTest, NoLevelHasAPriceBelowOneTick)
{
    Instrument penny = stock();
    penny.price = 0.01;
    const Exchange other = exchangeOf(penny);
    const Quote quote = quoteAt(clock.now(), other);
    EXPECT_EQ(0.01, quote.lowerLimit);
    EXPECT_EQ(0.02, quote.upperLimit);
    EXPECT_EQ(0, quote.bids.last().price);
}

TEST_F(QuoteTest, DoesNotDependOnEarlierCalls)
{
    const Quote late = quoteAt("2025-03-03 14:31:27");
    const Exchange other = exchangeOf(stock());
    quoteAt(at("2025-03-03 10:00:00"), other);
    expectSame(late, quoteAt(at("2025-03-03 14:31:27"), other));
}

TEST_F(QuoteTest, BeforeTheListingAndForUnknownSymbolsThereIsNone)
{
    clock.set(at("2010-01-03 12:00:00"));
    EXPECT_FALSE(exchange.quote(kStock));
    clock.set(at("2010-01-04 12:00:00"));
    EXPECT_TRUE(exchange.quote(kStock));
    EXPECT_FALSE(exchange.quote(QStringLiteral("600001")));
    EXPECT_FALSE(exchange.quote(QString()));
}

TEST_F(QuoteTest, InstrumentsAreFoundBySymbolAndByCodeAndExchange)
{
    ASSERT_TRUE(exchange.instrument(kStock));
    EXPECT_EQ(kStock, exchange.instrument(kStock)->symbol);
    EXPECT_FALSE(exchange.instrument(QStringLiteral("600001")));
    EXPECT_EQ(exchange.instrument(kStock), exchange.instrumentOf(QStringLiteral("600001"), QStringLiteral("SH")));
    EXPECT_FALSE(exchange.instrumentOf(QStringLiteral("600001"), QStringLiteral("SZ")));
    EXPECT_FALSE(exchange.instrumentOf(QString(), QString()));
}

TEST_F(QuoteTest, AnEarlierTimeGivesTheQuoteOfThatTime)
{
    const Quote then = quoteAt("2025-03-03 10:00:30");
    clock.set(at("2025-03-03 14:30:00"));
    expectSame(then, *exchange.quote(kStock, at("2025-03-03 10:00:30")));
    EXPECT_FALSE(exchange.quote(QStringLiteral("nothing"), at("2025-03-03 10:00:30")));
}

TEST_F(QuoteTest, DoesNotDependOnTheQuotesAskedForBefore)
{
    // Later and earlier ones, of the same minute and of other days, the close and the time before the opening.
    for (const char *time : {"2025-03-03 14:30:00", "2025-03-03 14:30:03", "2025-03-03 10:00:30", "2025-03-03 10:00:57",
                             "2025-03-03 10:01:00", "2025-03-03 10:01:03", "2025-03-03 15:00:00", "2025-03-04 09:29:00",
                             "2025-03-04 09:30:03", "2025-03-04 09:31:00", "2025-03-04 11:30:00", "2025-03-03 09:30:03",
                             "2025-03-03 09:31:03", "2025-02-28 15:00:00", "2025-03-03 15:00:00"}) {
        const Quote expected = *exchangeOf(stock()).quote(kStock, at(time));
        const Quote actual = *exchange.quote(kStock, at(time));
        expectSame(expected, actual);
        EXPECT_EQ(expected.open, actual.open) << time;
        EXPECT_EQ(expected.low, actual.low) << time;
        EXPECT_EQ(expected.previousClose, actual.previousClose) << time;
    }
}

TEST_F(QuoteTest, MayBeAskedForByTwoThreads)
{
    const auto sumOf = [this](int from, int by) {
        double sum = 0;
        for (int i = from; i >= 0 && i < 400; i += by)
            sum += exchange.quote(kStock, at("2025-03-03 09:30:03").addSecs(qint64{17} * i))->amount;
        return sum;
    };
    const double expected = sumOf(0, 1);
    double forward = 0;
    std::thread other([&] { forward = sumOf(0, 1); });
    const double backward = sumOf(399, -1);
    other.join();
    EXPECT_EQ(expected, forward);
    EXPECT_NEAR(expected, backward, expected * 1e-9); // added in another order
}

TEST_F(QuoteTest, LimitsOfAStepAreThoseOfItsQuote)
{
    for (const char *time :
         {"2025-03-03 09:30:03", "2025-03-03 15:00:00", "2025-03-04 09:20:00", "2025-03-04 09:30:03"}) {
        const PriceLimits limits = exchange.limits(kStock, exchange.stepAt(at(time)));
        EXPECT_EQ(quoteAt(time).upperLimit, limits.upper) << time;
        EXPECT_EQ(quoteAt(time).lowerLimit, limits.lower) << time;
    }
    EXPECT_FALSE(exchange.limits(QStringLiteral("nothing"), exchange.stepAt(clock.now())).areSet());
}

TEST_F(QuoteTest, RulesDecideTheLimits)
{
    Instrument unlimited = stock();
    unlimited.limitRate = 0;
    MarketRules rules;
    rules.unlimitedRise = 0.5;
    const Exchange other({unlimited}, 7, QDate(2025, 3, 3), clock, rules);
    const PriceLimits limits = other.limits(kStock, exchange.stepAt(clock.now()));
    EXPECT_FALSE(limits.areSet());
    EXPECT_DOUBLE_EQ(27.54, limits.highest);
}

TEST_F(QuoteTest, EveryStepHasItsTimeAndItsLastPrice)
{
    for (const char *time : {"2025-03-03 09:30:03", "2025-03-03 11:30:00", "2025-03-03 13:00:03", "2025-03-03 15:00:00",
                             "2025-03-04 09:30:03"})
        EXPECT_EQ(at(time), exchange.timeOfStep(exchange.stepAt(at(time)))) << time;

    const qint64 close = exchange.stepAt(at("2025-03-03 15:04:59"));
    EXPECT_EQ(at("2025-03-03 15:00:00"), exchange.timeOfStep(close));
    for (qint64 step = close - 45; step <= close + 1000; ++step) {
        EXPECT_EQ(exchange.quote(kStock, exchange.timeOfStep(step))->last, *exchange.lastPrice(kStock, step));
    }
    EXPECT_FALSE(exchange.lastPrice(QStringLiteral("nothing"), close));
    EXPECT_FALSE(exchange.lastPrice(kStock, exchange.stepAt(at("2009-12-30 10:00:00"))));
}

TEST_F(QuoteTest, TheDayOpensWithACallAuction)
{
    const Quote before = quoteAt("2025-03-03 09:00:00");
    EXPECT_EQ(at("2025-03-03 09:00:00"), before.time);
    EXPECT_EQ(18.36, before.previousClose);
    EXPECT_EQ(18.36, before.last);
    EXPECT_EQ(20.2, before.upperLimit);
    EXPECT_EQ(0, before.open);
    EXPECT_EQ(0, before.volume);
    ASSERT_EQ(5, before.bids.size());
    EXPECT_EQ(0, before.bids[0].qty);

    const double open = quoteAt("2025-03-03 09:30:03").open;
    qint64 offered = 0;
    for (const char *time : {"2025-03-03 09:17:00", "2025-03-03 09:20:00", "2025-03-03 09:24:57"}) {
        const Quote call = quoteAt(time);
        EXPECT_EQ(at(time), call.time);
        EXPECT_EQ(18.36, call.last);
        EXPECT_EQ(0, call.open);
        EXPECT_EQ(0, call.volume);
        EXPECT_EQ(call.bids[0].price, call.asks[0].price);
        EXPECT_EQ(call.bids[0].qty, call.asks[0].qty);
        EXPECT_NEAR(open, call.bids[0].price, 0.005 * open);
        EXPECT_GT(call.bids[0].qty, offered);
        offered = call.bids[0].qty;
        EXPECT_EQ(0, call.bids[1].qty);
    }

    const Quote match = quoteAt("2025-03-03 09:25:00");
    EXPECT_EQ(open, match.open);
    EXPECT_EQ(open, match.last);
    EXPECT_EQ(open, match.high);
    EXPECT_EQ(open, match.low);
    EXPECT_GE(match.volume, offered);
    EXPECT_NEAR(open * double(match.volume), match.amount, 0.01);
    expectSame(match, quoteAt("2025-03-03 09:30:02"));
    EXPECT_GT(quoteAt("2025-03-03 09:30:03").volume, match.volume);
}

TEST_F(QuoteTest, TheVolumesOfTheStepsAddUpToTheDay)
{
    qint64 sum = 0;
    const qint64 first = exchange.stepAt(at("2025-03-03 09:00:00"));
    const qint64 close = exchange.stepAt(at("2025-03-03 15:00:00"));
    for (qint64 step = first; step <= close; ++step) {
        const qint64 volume = volumeOf(exchange, step);
        EXPECT_EQ(0, volume % 100);
        EXPECT_GE(volume, 0);
        sum += volume;
    }
    EXPECT_EQ(quoteAt("2025-03-03 15:00:00").volume, sum);
    EXPECT_FALSE(exchange.trades(QStringLiteral("nothing"), close));
}

TEST_F(QuoteTest, OnlySecuritiesWithTradingAfterHoursAreTradedThen)
{
    Instrument growth = stock();
    growth.afterHours = true;
    const Exchange other = exchangeOf(growth);
    const qint64 first = other.stepAt(at("2025-03-03 15:05:03"));
    EXPECT_EQ(Phase::AfterHours, Exchange::phase(first));
    EXPECT_NE(Phase::AfterHours, Exchange::phase(first - 1));
    const qint64 last = other.stepAt(at("2025-03-03 15:30:00"));
    EXPECT_EQ(499, last - first);
    const double close = quoteAt(at("2025-03-03 15:00:00"), other).last;
    qint64 sum = 0;
    for (qint64 step = first; step <= last; ++step) {
        EXPECT_EQ(0, volumeOf(exchange, step));
        EXPECT_EQ(close, *other.lastPrice(kStock, step));
        sum += volumeOf(other, step);
    }
    EXPECT_GT(sum, growth.dailyVolume / 200);
    EXPECT_LT(sum, growth.dailyVolume / 20);
}

TEST_F(QuoteTest, AfterTheTradingTheLimitsForOrdersAreThoseOfTheNextDay)
{
    const double today = quoteAt("2025-03-03 10:00:00").upperLimit;
    const double tomorrow = quoteAt("2025-03-04 10:00:00").upperLimit;
    ASSERT_NE(today, tomorrow);
    const auto limitAt = [&](const char *time) { return exchange.limits(kStock, exchange.stepAt(at(time))).upper; };
    EXPECT_EQ(today, limitAt("2025-03-03 15:29:59"));
    EXPECT_EQ(tomorrow, limitAt("2025-03-03 15:30:00"));
    EXPECT_EQ(tomorrow, limitAt("2025-03-03 23:00:00"));
    EXPECT_EQ(tomorrow, limitAt("2025-03-04 09:00:00"));
}

TEST_F(QuoteTest, TheTradesOfAStepHaveTheLevelsOfItsQuote)
{
    for (const char *time : {"2025-03-03 09:30:03", "2025-03-03 11:17:06", "2025-03-03 15:00:00"}) {
        const Quote quote = quoteAt(time);
        const StepTrades trades = exchange.trades(kStock, exchange.stepAt(at(time))).value();
        EXPECT_EQ(quote.last, trades.last);
        for (int level = 0; level < Quote::kLevels; ++level) {
            EXPECT_EQ(quote.bids[level].price, trades.bids[level].price);
            EXPECT_EQ(quote.bids[level].qty, trades.bids[level].qty);
            EXPECT_EQ(quote.asks[level].price, trades.asks[level].price);
            EXPECT_EQ(quote.asks[level].qty, trades.asks[level].qty);
        }
    }
    for (const char *time :
         {"2025-03-03 09:00:00", "2025-03-03 09:20:00", "2025-03-03 15:20:00", "2025-03-03 16:00:00"})
        EXPECT_FALSE(exchange.trades(kStock, exchange.stepAt(at(time)))) << time;
    const StepTrades opening = exchange.trades(kStock, exchange.stepAt(at("2025-03-03 09:25:00"))).value();
    EXPECT_EQ(quoteAt("2025-03-03 09:25:00").last, opening.last);
    EXPECT_TRUE(opening.bids.isEmpty());
}
