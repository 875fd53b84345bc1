#include "books/TradableQty.h"

#include "exchange/MarketRules.h"

#include <gtest/gtest.h>

using namespace sim;

namespace {

Instrument listed(const char *subType, double price, double multiplier = 1)
{
    Instrument instrument;
    instrument.symbol = QLatin1String(subType);
    MarketRules().securityClass(instrument.symbol)->applyTo(instrument);
    instrument.price = price;
    instrument.multiplier = multiplier;
    return instrument;
}

class TradableQtyTest : public testing::Test {
protected:
    Order order(const Instrument &instrument, Side side, double price) const
    {
        Order order;
        order.instrument = &instrument;
        order.side = side;
        order.priceType = price > 0 ? PriceType::Limit : PriceType::Market;
        order.price = price;
        return order;
    }

    static PriceLimits limitsOf(const Instrument &instrument)
    {
        return MarketRules().limits(instrument, instrument.ticksOf(instrument.price));
    }

    qint64 most(const Ledger &ledger, const Order &order) const
    {
        return tradableQty(ledger, order, limitsOf(*order.instrument), prices);
    }

    /// The order can be entered with that quantity, but not with one lot more.
    void expectTight(const Ledger &ledger, Order order, qint64 qty)
    {
        const PriceLimits limits = limitsOf(*order.instrument);
        EXPECT_EQ(qty, most(ledger, order));
        order.highestPrice = limits.highest;
        order.qty = qty;
        EXPECT_EQ(QString(), violatedRule(order, limits));
        EXPECT_EQ(QString(), ledger.shortage(order, ledger.value(prices).available));
        order.qty = qty + order.instrument->lot;
        EXPECT_NE(QString(), ledger.shortage(order, ledger.value(prices).available));
    }

    const Instrument main = listed("MainShare", 10);
    const Instrument growth = listed("GrowthShare", 10);
    const Instrument bond = listed("ConvertibleBond", 100);
    const Instrument future = listed("IndexFuture", 4000, 300);
    const Prices prices = [this](const QString &symbol) {
        return symbol == future.symbol ? future.price : symbol == bond.symbol ? bond.price : main.price;
    };
};

} // namespace

TEST_F(TradableQtyTest, BuyingIsLimitedByTheMoneyInWholeLots)
{
    expectTight(Ledger(100000), order(main, Side::Buy, 10), 9900); // 10,000 shares without the fee
    expectTight(Ledger(100025), order(main, Side::Buy, 10), 10000);
    expectTight(Ledger(100000), order(growth, Side::Buy, 10), 9997);
    expectTight(Ledger(100000), order(bond, Side::Buy, 100), 990);
    expectTight(Ledger(5000000), order(future, Side::SellOpen, 4000), 34);
}

TEST_F(TradableQtyTest, LessThanTheSmallestOrderIsZero)
{
    EXPECT_EQ(0, most(Ledger(1000), order(main, Side::Buy, 10)));
    EXPECT_EQ(100, most(Ledger(1001), order(main, Side::Buy, 10)));
    EXPECT_EQ(0, most(Ledger(2000), order(growth, Side::Buy, 10)));
    EXPECT_EQ(200, most(Ledger(2001), order(growth, Side::Buy, 10)));
    EXPECT_EQ(0, most(Ledger(0), order(main, Side::Buy, 10)));
    EXPECT_EQ(0, most(Ledger(-50), order(main, Side::Buy, 10)));
}

TEST_F(TradableQtyTest, AnOrderNeverExceedsItsLargestQuantity)
{
    EXPECT_EQ(1000000, most(Ledger(1e12), order(main, Side::Buy, 10)));
    EXPECT_EQ(50, most(Ledger(1e12), order(future, Side::BuyOpen, 4000)));
}

TEST_F(TradableQtyTest, AMarketOrderIsCountedAtTheHighestPriceOfTheDay)
{
    expectTight(Ledger(110100), order(main, Side::Buy, 0), 10000);
}

TEST_F(TradableQtyTest, FrozenMoneyIsNotAvailable)
{
    Ledger ledger(100025);
    Order other = order(main, Side::Buy, 10);
    other.qty = 6000;
    ledger.reserve(other);
    expectTight(ledger, order(main, Side::Buy, 10), 4000);
}

TEST_F(TradableQtyTest, SellingIsLimitedByThePosition)
{
    Ledger ledger(0);
    EXPECT_EQ(0, most(ledger, order(main, Side::Sell, 10)));
    ledger.holdFromBefore(main, false, 1234, 9);
    expectTight(ledger, order(main, Side::Sell, 10), 1234); // also an odd lot
    Order other = order(main, Side::Sell, 10);
    other.qty = 200;
    ledger.reserve(other);
    expectTight(ledger, order(main, Side::Sell, 10), 1034);
    EXPECT_EQ(0, most(ledger, order(main, Side::AfterHoursSell, 10))); // its board has no trading after hours
    const Instrument growth = listed("GrowthShare", 10);
    ledger.holdFromBefore(growth, false, 1234, 9);
    EXPECT_EQ(1234, most(ledger, order(growth, Side::AfterHoursSell, 10)));
}

TEST_F(TradableQtyTest, ClosingUsesThePositionOfItsDirection)
{
    Ledger ledger(0);
    ledger.holdFromBefore(future, true, 3, 4000);
    ledger.holdFromBefore(future, false, 2, 4000);
    EXPECT_EQ(3, most(ledger, order(future, Side::BuyClose, 4000)));
    EXPECT_EQ(2, most(ledger, order(future, Side::SellClose, 4000)));
}

TEST_F(TradableQtyTest, ARefusedPriceGivesZero)
{
    EXPECT_EQ(0, most(Ledger(100000), order(main, Side::Buy, 11.01)));
    EXPECT_EQ(0, most(Ledger(100000), order(main, Side::Buy, 10.005)));
    EXPECT_GT(most(Ledger(100000), order(main, Side::Buy, 11)), 0);
}
