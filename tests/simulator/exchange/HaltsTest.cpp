#include "exchange/Exchange.h"
#include "exchange/TestClock.h"

#include <gtest/gtest.h>

using namespace sim;

namespace {

const QString kStock = QStringLiteral("600001.SH");
const QString kOther = QStringLiteral("600002.SH");

QVector<Instrument> stocks()
{
    Instrument stock;
    stock.symbol = kStock;
    stock.securityId = QStringLiteral("600001");
    stock.price = 18.36;
    stock.limitRate = 0.1;
    stock.volatility = 0.6;
    stock.dailyVolume = 2000000;
    stock.listed = QDate(2010, 1, 4);
    Instrument other = stock;
    other.symbol = kOther;
    other.securityId = QStringLiteral("600002");
    return {stock, other};
}

class HaltsTest : public testing::Test {
protected:
    std::unique_ptr<Exchange> market(const QVector<Halt> &halts = {},
                                     const QVector<Instrument> &listed = stocks()) const
    {
        return std::make_unique<Exchange>(listed, 7, QDate(2025, 3, 3), clock, MarketRules(), halts);
    }

    static double last(const Exchange &exchange, const char *time) { return exchange.quote(kStock, at(time))->last; }

    /// The candles of a day; the quote at the close is their sum.
    QVector<Candle> candlesOf(const Exchange &exchange, const char *close)
    {
        const QVector<Candle> candles =
            exchange.candles(kStock, at(close).addSecs(-330 * 60 + 60), at(close), CandlePeriod::Minute);
        const Candle day = exchange.candles(kStock, at(close), at(close), CandlePeriod::Day).value(0);
        EXPECT_EQ(240, candles.size());
        qint64 volume = 0;
        double high = 0;
        for (const Candle &candle : candles) {
            volume += candle.volume;
            high = candle.volume > 0 ? qMax(high, candle.high) : high;
        }
        EXPECT_EQ(volume, day.volume);
        EXPECT_EQ(candles.last().close, day.close);
        const Quote quote = *exchange.quote(kStock, at(close));
        EXPECT_EQ(day.volume, quote.volume);
        if (day.volume > 0) {
            EXPECT_EQ(high, day.high);
            EXPECT_EQ(day.open, quote.open);
            EXPECT_EQ(day.high, quote.high);
            EXPECT_EQ(day.low, quote.low);
        }
        EXPECT_EQ(day.close, quote.last);
        return candles;
    }

    TestClock clock{at("2025-03-31 20:00:00")};
};

} // namespace

TEST_F(HaltsTest, AHaltedSecurityDoesNotTradeAndItsQuoteStays)
{
    const auto usual = market();
    const auto exchange = market({{kStock, at("2025-03-03 10:00:30"), at("2025-03-03 10:30:00")}});
    const Quote before = *exchange->quote(kStock, at("2025-03-03 10:00:30"));
    EXPECT_EQ(usual->quote(kStock, at("2025-03-03 10:00:30"))->volume, before.volume);
    for (const char *time : {"2025-03-03 10:00:33", "2025-03-03 10:01:00", "2025-03-03 10:29:59"}) {
        const Quote halted = *exchange->quote(kStock, at(time));
        const qint64 step = exchange->stepAt(at(time));
        EXPECT_EQ(before.time, halted.time);
        EXPECT_EQ(before.last, halted.last);
        EXPECT_EQ(before.volume, halted.volume);
        EXPECT_EQ(before.bids[0].qty, halted.bids[0].qty);
        EXPECT_EQ(before.last, *exchange->lastPrice(kStock, step));
        EXPECT_FALSE(exchange->trades(kStock, step));
        EXPECT_TRUE(exchange->isHalted(kStock, step));
        EXPECT_FALSE(exchange->isHalted(kOther, step));
        EXPECT_EQ(usual->quote(kOther, at(time))->last, exchange->quote(kOther, at(time))->last);
    }
    const Quote after = *exchange->quote(kStock, at("2025-03-03 10:30:03"));
    EXPECT_EQ(at("2025-03-03 10:30:03"), after.time);
    EXPECT_EQ(last(*usual, "2025-03-03 10:30:03"), after.last);
    EXPECT_GT(after.volume, before.volume);
    EXPECT_LT(after.volume, usual->quote(kStock, at("2025-03-03 10:30:03"))->volume);
    EXPECT_EQ(last(*usual, "2025-03-04 11:00:00"), last(*exchange, "2025-03-04 11:00:00"));
}

TEST_F(HaltsTest, QuotesAndCandlesAgree)
{
    const auto exchange = market({{kStock, at("2025-03-03 10:00:30"), at("2025-03-03 10:30:00")},
                                  {kStock, at("2025-03-03 13:20:00"), at("2025-03-05 14:00:00")}});
    const QVector<Candle> monday = candlesOf(*exchange, "2025-03-03 15:00:00");
    EXPECT_EQ(at("2025-03-03 10:02:00"), monday[31].end);
    EXPECT_EQ(0, monday[31].volume);
    EXPECT_EQ(monday[30].close, monday[31].open);
    EXPECT_EQ(0, monday[59].volume);
    EXPECT_GT(monday[60].volume, 0);
    EXPECT_EQ(0, monday.last().volume);

    const QVector<Candle> tuesday = candlesOf(*exchange, "2025-03-04 15:00:00");
    for (const Candle &candle : tuesday) {
        EXPECT_EQ(monday.last().close, candle.open);
        EXPECT_EQ(monday.last().close, candle.close);
        EXPECT_EQ(0, candle.volume);
    }
    const Quote quote = *exchange->quote(kStock, at("2025-03-04 11:00:00"));
    EXPECT_EQ(monday.last().close, quote.last);
    EXPECT_EQ(monday.last().close, quote.previousClose);
    EXPECT_EQ(0, quote.open);
    EXPECT_EQ(0, quote.volume);
    EXPECT_EQ(0, quote.bids[0].qty);

    const QVector<Candle> wednesday = candlesOf(*exchange, "2025-03-05 15:00:00");
    EXPECT_EQ(0, wednesday[179].volume);
    EXPECT_GT(wednesday[180].volume, 0);
    EXPECT_EQ(exchange->quote(kStock, at("2025-03-05 15:00:00"))->open, wednesday[180].open);
    EXPECT_EQ(wednesday.last().close, exchange->quote(kStock, at("2025-03-06 10:00:00"))->previousClose);
}

TEST_F(HaltsTest, AfterALongHaltThePriceStaysInsideTheLimits)
{
    int atLimit = 0;
    for (int year = 2012; year < 2025; ++year) { // over years the price goes far
        const QDateTime from(QDate(year, 3, 1), QTime(10, 0), Qt::UTC);
        const auto exchange = market({{kStock, from, at("2025-03-20 10:00:00")}});
        for (QDateTime time = at("2025-03-20 15:00:00"); time < at("2025-03-26 00:00:00"); time = time.addDays(1)) {
            const Quote quote = *exchange->quote(kStock, time);
            if (quote.time != time)
                continue; // a weekend
            EXPECT_LE(quote.last, quote.upperLimit);
            EXPECT_GE(quote.last, quote.lowerLimit);
            EXPECT_EQ(exchange->quote(kStock, time.addDays(-1))->last, quote.previousClose);
            atLimit += quote.last == quote.upperLimit || quote.last == quote.lowerLimit;
            candlesOf(*exchange, qPrintable(time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))));
        }
    }
    EXPECT_GT(atLimit, 0);
}

TEST_F(HaltsTest, ASecurityCanBeHaltedWhileTheMarketRuns)
{
    clock.set(at("2025-03-03 10:00:31"));
    const auto exchange = market();
    const double stands = exchange->quote(kStock)->last;
    exchange->halt(kStock, at("2025-03-03 09:00:00")); // not before now
    exchange->halt(QStringLiteral("nothing"), at("2025-03-03 09:00:00"));
    EXPECT_FALSE(exchange->isHalted(kStock, exchange->stepAt(at("2025-03-03 10:00:30"))));
    EXPECT_TRUE(exchange->isHalted(kStock, exchange->stepAt(at("2025-03-03 10:00:33"))));
    EXPECT_TRUE(exchange->isHalted(kStock, exchange->stepAt(at("2026-03-03 10:00:33"))));
    clock.set(at("2025-03-03 10:05:10"));
    EXPECT_EQ(stands, exchange->quote(kStock)->last);
    exchange->resume(kStock, clock.now());
    EXPECT_TRUE(exchange->isHalted(kStock, exchange->stepAt(at("2025-03-03 10:06:00"))));
    EXPECT_FALSE(exchange->isHalted(kStock, exchange->stepAt(at("2025-03-03 10:06:03"))));
    EXPECT_EQ(market()->quote(kStock, at("2025-03-03 10:06:03"))->last, last(*exchange, "2025-03-03 10:06:03"));
}

TEST_F(HaltsTest, TheSameHaltGivesTheSameMarketWhenEverItIsEntered)
{
    const Halt halt{kStock, at("2025-03-03 10:00:30"), at("2025-03-03 13:10:00")};
    const auto fromTheStart = market({halt});
    clock.set(at("2025-03-03 10:00:30"));
    const auto whileItRuns = market();
    whileItRuns->quote(kStock, at("2025-03-03 11:00:00")); // what it remembers of the day must not stay
    whileItRuns->halt(halt.symbol, halt.from, halt.until);
    for (const char *time :
         {"2025-03-03 10:00:30", "2025-03-03 11:00:00", "2025-03-03 13:11:00", "2025-03-03 15:00:00"}) {
        const Quote expected = *fromTheStart->quote(kStock, at(time));
        const Quote quote = *whileItRuns->quote(kStock, at(time));
        EXPECT_EQ(expected.last, quote.last) << time;
        EXPECT_EQ(expected.volume, quote.volume) << time;
        EXPECT_EQ(expected.amount, quote.amount) << time;
        EXPECT_EQ(expected.high, quote.high) << time;
    }
}

TEST_F(HaltsTest, TheOpeningMatchIsLeftOutIfTheSecurityIsHaltedThen)
{
    const auto exchange = market({{kStock, at("2025-03-03 09:20:00"), at("2025-03-03 09:25:30")},
                                  {kStock, at("2025-03-04 09:27:00"), at("2025-03-04 10:00:00")}});
    const auto volumeAt = [&](const char *time) {
        return exchange->trades(kStock, exchange->stepAt(at(time))).value_or(StepTrades()).volume;
    };
    EXPECT_EQ(0, volumeAt("2025-03-03 09:25:00"));
    EXPECT_EQ(0, exchange->quote(kStock, at("2025-03-03 09:30:00"))->open);
    EXPECT_GT(exchange->quote(kStock, at("2025-03-03 09:30:03"))->open, 0);

    EXPECT_GT(volumeAt("2025-03-04 09:25:00"), 0);
    const Quote tuesday = *exchange->quote(kStock, at("2025-03-04 09:45:00"));
    EXPECT_EQ(at("2025-03-04 09:25:00"), tuesday.time);
    EXPECT_EQ(tuesday.open, tuesday.last);
    EXPECT_EQ(volumeAt("2025-03-04 09:25:00"), tuesday.volume);
    candlesOf(*exchange, "2025-03-04 15:00:00");
}

TEST_F(HaltsTest, SpansThatTouchBecomeOne)
{
    Halts halts;
    EXPECT_TRUE(halts.isEmpty());
    halts.add(1, {10, 20});
    halts.add(1, {40, 50});
    halts.add(1, {20, 30});
    halts.add(1, {60, 60}); // empty
    EXPECT_FALSE(halts.isEmpty());
    EXPECT_EQ(10, halts.at(1, 29)->first);
    EXPECT_FALSE(halts.at(1, 30));
    EXPECT_FALSE(halts.at(2, 15));
    EXPECT_EQ(30, halts.begunBy(1, 35)->end);
    EXPECT_FALSE(halts.begunBy(1, 9));
    halts.add(1, {5, 70});
    EXPECT_EQ(5, halts.at(1, 69)->first);
    halts.cut(1, 33);
    EXPECT_TRUE(halts.at(1, 32));
    EXPECT_FALSE(halts.at(1, 33));
}
