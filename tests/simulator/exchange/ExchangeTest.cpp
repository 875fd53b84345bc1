#include "exchange/Exchange.h"

#include "exchange/TestClock.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace sim;

namespace {

const QString kStock = QStringLiteral("600001.SH");
const QString kFuture = QStringLiteral("F1.CF");

QVector<Instrument> instruments()
{
    Instrument stock;
    stock.symbol = kStock;
    stock.price = 18.36;
    stock.dailyVolume = 2000000;
    stock.listed = QDate(2010, 1, 4);
    Instrument future = stock;
    future.symbol = kFuture;
    future.price = 3886.4;
    future.tick = 0.2;
    future.decimals = 1;
    future.lot = 1;
    future.multiplier = 300;
    future.dailyVolume = 72000;
    future.listed = QDate(2025, 2, 26);
    return {stock, future};
}

class ExchangeTest : public testing::Test {
protected:
    QVector<Candle> all(CandlePeriod period, const QString &symbol = kStock) const
    {
        return exchange.candles(symbol, QDateTime(), QDateTime(), period);
    }

    QVector<Candle> range(const char *start, const char *stop, CandlePeriod period) const
    {
        return exchange.candles(kStock, at(start), at(stop), period);
    }

    const TestClock clock{at("2025-03-03 10:00:30")}; // a Monday
    const Exchange exchange{instruments(), 7, QDate(2025, 3, 3), clock};
};

bool operator==(const Candle &a, const Candle &b)
{
    return a.end == b.end && a.open == b.open && a.high == b.high && a.low == b.low && a.close == b.close &&
           a.volume == b.volume && a.amount == b.amount;
}

void expectSame(const QVector<Candle> &expected, const QVector<Candle> &actual)
{
    ASSERT_EQ(expected.size(), actual.size());
    for (int i = 0; i < expected.size(); ++i)
        ASSERT_TRUE(expected[i] == actual[i]) << i;
}

void expectConsistent(const QVector<Candle> &candles, const Instrument &instrument)
{
    const auto isTick = [&](double price) {
        return price > 0 && price == instrument.priceOf(instrument.ticksOf(price));
    };
    QDateTime last;
    for (const Candle &candle : candles) {
        EXPECT_TRUE(!last.isValid() || last < candle.end);
        last = candle.end;
        EXPECT_LE(candle.low, std::min(candle.open, candle.close));
        EXPECT_GE(candle.high, std::max(candle.open, candle.close));
        EXPECT_TRUE(isTick(candle.open) && isTick(candle.high) && isTick(candle.low) && isTick(candle.close));
        EXPECT_GT(candle.volume, 0);
        EXPECT_EQ(0, candle.volume % instrument.lot);
        const double average = candle.amount / (double(candle.volume) * instrument.multiplier);
        EXPECT_GE(average, candle.low - 0.005);
        EXPECT_LE(average, candle.high + 0.005);
    }
}

} // namespace

TEST_F(ExchangeTest, MinuteCandlesAreConsistent)
{
    expectConsistent(all(CandlePeriod::Minute), instruments()[0]);
    expectConsistent(all(CandlePeriod::Minute, kFuture), instruments()[1]);
}

TEST_F(ExchangeTest, DayCandlesAreConsistent)
{
    expectConsistent(all(CandlePeriod::Day), instruments()[0]);
    expectConsistent(all(CandlePeriod::Day, kFuture), instruments()[1]);
}

TEST_F(ExchangeTest, TheLastDayBeforeTheStartClosesAtTheScenarioPrice)
{
    EXPECT_EQ(at("2025-02-28 15:00:00"), all(CandlePeriod::Day).last().end);
    EXPECT_EQ(18.36, all(CandlePeriod::Day).last().close);
    EXPECT_EQ(3886.4, all(CandlePeriod::Day, kFuture).last().close);
}

TEST_F(ExchangeTest, ADayIsTheSumOfItsMinutes)
{
    const QVector<Candle> days = range("2025-02-27 15:00:00", "2025-02-27 15:00:00", CandlePeriod::Day);
    ASSERT_EQ(1, days.size());
    const QVector<Candle> minutes = range("2025-02-27 09:31:00", "2025-02-27 15:00:00", CandlePeriod::Minute);
    ASSERT_EQ(240, minutes.size());

    double high = minutes.first().high;
    double low = minutes.first().low;
    qint64 volume = 0;
    double amount = 0;
    for (const Candle &minute : minutes) {
        high = std::max(high, minute.high);
        low = std::min(low, minute.low);
        volume += minute.volume;
        amount += minute.amount;
    }
    EXPECT_EQ(minutes.first().open, days.first().open);
    EXPECT_EQ(minutes.last().close, days.first().close);
    EXPECT_EQ(high, days.first().high);
    EXPECT_EQ(low, days.first().low);
    EXPECT_EQ(volume, days.first().volume);
    EXPECT_NEAR(amount, days.first().amount, 240 * 0.005 + 0.005); // each amount was rounded to the cent
}

TEST_F(ExchangeTest, CandlesDoNotDependOnRangeOrOrderOfRequests)
{
    const QVector<Candle> wide = range("2025-02-20 00:00:00", "2025-02-28 23:59:59", CandlePeriod::Minute);
    EXPECT_EQ(7 * 240, wide.size());

    const Exchange other(instruments(), 7, QDate(2025, 3, 3), clock);
    const auto ofOther = [&](const char *start, const char *stop) {
        return other.candles(kStock, at(start), at(stop), CandlePeriod::Minute);
    };
    const QVector<Candle> late = ofOther("2025-02-25 00:00:00", "2025-02-28 23:59:59"); // the later part first
    other.candles(kFuture, QDateTime(), QDateTime(), CandlePeriod::Day);
    const QVector<Candle> early = ofOther("2025-02-20 00:00:00", "2025-02-24 23:59:59");
    expectSame(wide, early + late);
}

TEST_F(ExchangeTest, OtherSeedsAndSymbolsGiveOtherCandles)
{
    const Exchange other(instruments(), 8, QDate(2025, 3, 3), clock);
    const QVector<Candle> ours = all(CandlePeriod::Day);
    const QVector<Candle> theirs = other.candles(kStock, QDateTime(), QDateTime(), CandlePeriod::Day);
    ASSERT_EQ(ours.size(), theirs.size());
    int same = 0;
    for (int i = 0; i < ours.size(); ++i)
        same += ours[i].open == theirs[i].open;
    EXPECT_LT(same, ours.size() / 20);

    const Candle future = all(CandlePeriod::Day, kFuture).last();
    EXPECT_GT(std::abs(future.open / future.close - ours.last().open / ours.last().close), 1e-4);
}

TEST_F(ExchangeTest, CandlesDoNotDependOnTheTimeOfTheClock)
{
    const TestClock later(at("2025-03-05 14:00:00"));
    const Exchange inTwoDays(instruments(), 7, QDate(2025, 3, 3), later);
    expectSame(range("2025-02-24 00:00:00", "2025-03-03 23:59:59", CandlePeriod::Minute),
               inTwoDays.candles(kStock, at("2025-02-24 00:00:00"), at("2025-03-03 10:00:00"), CandlePeriod::Minute));
}

TEST_F(ExchangeTest, OnlyFinishedCandlesAreReturned)
{
    EXPECT_EQ(at("2025-03-03 10:00:00"), all(CandlePeriod::Minute).last().end);
    EXPECT_EQ(at("2025-03-03 10:00:00"),
              range("2025-03-03 00:00:00", "2025-03-09 00:00:00", CandlePeriod::Minute).last().end);
    EXPECT_TRUE(range("2025-03-03 00:00:00", "2025-03-03 23:59:59", CandlePeriod::Day).isEmpty());
}

TEST_F(ExchangeTest, BothEndsOfTheRangeAreIncluded)
{
    const QVector<Candle> candles = range("2025-02-28 14:59:00", "2025-03-03 09:31:00", CandlePeriod::Minute);
    ASSERT_EQ(3, candles.size());
    EXPECT_EQ(at("2025-02-28 14:59:00"), candles[0].end);
    EXPECT_EQ(at("2025-02-28 15:00:00"), candles[1].end);
    EXPECT_EQ(at("2025-03-03 09:31:00"), candles[2].end);
    EXPECT_EQ(2, range("2025-02-28 14:59:01", "2025-03-03 09:31:59", CandlePeriod::Minute).size());
}

TEST_F(ExchangeTest, AnAnswerHasAtMostTheLatestTwoThousandCandles)
{
    EXPECT_EQ(2000, Exchange::kMaxCandles);
    const QVector<Candle> days = all(CandlePeriod::Day);
    EXPECT_EQ(2000, days.size());
    EXPECT_EQ(at("2025-02-28 15:00:00"), days.last().end);
    const QVector<Candle> minutes = range("0001-01-01 00:00:00", "9999-12-31 23:59:59", CandlePeriod::Minute);
    EXPECT_EQ(2000, minutes.size());
    EXPECT_EQ(at("2025-03-03 10:00:00"), minutes.last().end);
}

TEST_F(ExchangeTest, ThereAreNoCandlesBeforeTheListing)
{
    const QVector<Candle> days = all(CandlePeriod::Day, kFuture);
    ASSERT_EQ(3, days.size());
    EXPECT_EQ(at("2025-02-26 15:00:00"), days.first().end);
    EXPECT_EQ(at("2025-02-26 09:31:00"), all(CandlePeriod::Minute, kFuture).first().end);
}

TEST_F(ExchangeTest, EmptyRangesAndUnknownSymbolsGiveNoCandles)
{
    EXPECT_TRUE(range("2025-02-28 15:00:00", "2025-02-28 14:00:00", CandlePeriod::Minute).isEmpty());
    EXPECT_TRUE(range("2025-03-01 00:00:00", "2025-03-02 23:59:59", CandlePeriod::Minute).isEmpty()); // a weekend
    EXPECT_TRUE(range("2026-01-01 00:00:00", "2026-12-31 00:00:00", CandlePeriod::Day).isEmpty());
    EXPECT_TRUE(all(CandlePeriod::Day, QStringLiteral("600001")).isEmpty());
    EXPECT_TRUE(all(CandlePeriod::Day, QString()).isEmpty());
}

TEST_F(ExchangeTest, PricesNeverReachZero)
{
    QVector<Instrument> penny = instruments();
    penny[0].price = 0.01;
    const Exchange cheap(penny, 7, QDate(2025, 3, 3), clock);
    const QVector<Candle> candles = cheap.candles(kStock, QDateTime(), QDateTime(), CandlePeriod::Day);
    ASSERT_EQ(2000, candles.size());
    for (const Candle &candle : candles)
        ASSERT_GE(candle.low, 0.01);
}
