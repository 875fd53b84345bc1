#include "books/Ledger.h"
#include "exchange/MarketRules.h"

#include <gtest/gtest.h>

using namespace sim;

namespace {

Instrument instrument(SecurityKind kind, const char *symbol)
{
    Instrument instrument;
    for (const SecurityClass &each : standardClasses()) {
        if (each.kind == kind)
            each.applyTo(instrument);
    }
    instrument.symbol = QLatin1String(symbol);
    instrument.price = 10;
    instrument.lot = 100;
    instrument.minQty = 100;
    instrument.maxQty = 100000;
    instrument.limitRate = 0.1;
    return instrument;
}

class LedgerTest : public testing::Test {
protected:
    LedgerTest()
    {
        future.price = 4000;
        future.tick = 0.2;
        future.decimals = 1;
        future.lot = 1;
        future.minQty = 1;
        future.multiplier = 300;
    }

    static Order order(const Instrument &instrument, Side side, double price, qint64 qty)
    {
        Order order;
        order.instrument = &instrument;
        order.side = side;
        order.price = price;
        order.qty = qty;
        return order;
    }

    static Prices at(double price)
    {
        return [price](const QString &) { return price; };
    }

    Instrument share = instrument(SecurityKind::Share, "S");
    Instrument bond = instrument(SecurityKind::Bond, "B");
    Instrument future = instrument(SecurityKind::Future, "F");
};

} // namespace

TEST_F(LedgerTest, BuyingCostsTheAmountAndTheFee)
{
    Ledger ledger(100000);
    const double fee = ledger.fill(order(share, Side::Buy, 10, 1000), 10, 1000).yuan();
    EXPECT_DOUBLE_EQ(2.5, fee);
    EXPECT_DOUBLE_EQ(89997.5, ledger.cash().yuan());
    const Valuation value = ledger.value(at(11));
    EXPECT_DOUBLE_EQ(11000, value.marketValue.yuan());
    EXPECT_DOUBLE_EQ(10000, value.holdingCost.yuan());
    EXPECT_DOUBLE_EQ(100997.5, value.totalAsset.yuan());
}

TEST_F(LedgerTest, SharesBoughtTodayCannotBeSoldToday)
{
    Ledger ledger(100000);
    ledger.holdFromBefore(share, false, 500, 9);
    ledger.fill(order(share, Side::Buy, 10, 1000), 10, 1000);
    EXPECT_EQ(500, ledger.closableQty(share.symbol, false));
    EXPECT_EQ(QString(), ledger.shortage(order(share, Side::Sell, 10, 500), ledger.value(at(10)).available));
    EXPECT_NE(QString(), ledger.shortage(order(share, Side::Sell, 10, 501), ledger.value(at(10)).available));

    ledger.fill(order(bond, Side::Buy, 10, 100), 10, 100);
    EXPECT_EQ(100, ledger.closableQty(bond.symbol, false));
}

TEST_F(LedgerTest, SellingReducesTheCostAndItsProceedsCannotBeWithdrawnToday)
{
    Ledger ledger;
    ledger.holdFromBefore(share, false, 1000, 8);
    const double fee = ledger.fill(order(share, Side::Sell, 10, 250), 10, 250).yuan();
    EXPECT_DOUBLE_EQ(1.88, fee); // 0.625 and 1.25 of tax
    EXPECT_DOUBLE_EQ(2498.12, ledger.cash().yuan());
    EXPECT_DOUBLE_EQ(500, ledger.closeProfitByTrade().yuan());
    const Valuation value = ledger.value(at(10));
    EXPECT_DOUBLE_EQ(6000, value.holdingCost.yuan());
    EXPECT_DOUBLE_EQ(2498.12, value.available.yuan());
    EXPECT_DOUBLE_EQ(0, value.withdrawable.yuan());
}

TEST_F(LedgerTest, OpenOrdersFreezeMoneyAndPositions)
{
    Ledger ledger(10000);
    Order buy = order(share, Side::Buy, 9, 1000);
    EXPECT_EQ(QString(), ledger.shortage(buy, ledger.value(at(10)).available));
    ledger.reserve(buy);
    EXPECT_DOUBLE_EQ(9002.25, ledger.frozenCash().yuan());
    EXPECT_DOUBLE_EQ(997.75, ledger.value(at(10)).available.yuan());
    EXPECT_NE(QString(), ledger.shortage(buy, ledger.value(at(10)).available));
    ledger.release(buy);
    EXPECT_DOUBLE_EQ(0, ledger.frozenCash().yuan());

    ledger.holdFromBefore(share, false, 500, 9);
    const Order sell = order(share, Side::Sell, 10, 300);
    ledger.reserve(sell);
    EXPECT_EQ(200, ledger.closableQty(share.symbol, false));
    ledger.release(sell);
    EXPECT_EQ(500, ledger.closableQty(share.symbol, false));
}

TEST_F(LedgerTest, AnOrderAtMarketPriceFreezesMoneyAtTheHighestPriceOfTheDay)
{
    Ledger ledger(10000);
    Order buy = order(share, Side::Buy, 0, 100);
    buy.priceType = PriceType::Market;
    buy.highestPrice = 11;
    ledger.reserve(buy);
    EXPECT_DOUBLE_EQ(1100.28, ledger.frozenCash().yuan()); // with the fee
}

TEST_F(LedgerTest, OpeningAFutureBindsMarginAndCostsOnlyTheFee)
{
    Ledger ledger(1000000);
    const double fee = ledger.fill(order(future, Side::SellOpen, 4000, 2), 4000, 2).yuan();
    EXPECT_DOUBLE_EQ(55.2, fee);
    EXPECT_DOUBLE_EQ(1000000 - fee, ledger.cash().yuan());
    const Valuation value = ledger.value(at(3990)); // a short position gains when the price falls
    EXPECT_DOUBLE_EQ(-2394000, value.marketValue.yuan());
    EXPECT_DOUBLE_EQ(-2400000, value.openCost.yuan());
    EXPECT_DOUBLE_EQ(1006000 - fee, value.totalAsset.yuan());
    EXPECT_DOUBLE_EQ(1006000 - fee - 288000, value.available.yuan());
    EXPECT_DOUBLE_EQ(1000000 - fee - 288000, value.withdrawable.yuan());
    EXPECT_EQ(2, ledger.closableQty(future.symbol, true));
    EXPECT_EQ(0, ledger.closableQty(future.symbol, false));
}

TEST_F(LedgerTest, FuturesFromBeforeTodayCountAtThePreviousClose)
{
    Ledger ledger(0);
    ledger.holdFromBefore(future, true, 2, 4100);
    EXPECT_DOUBLE_EQ(-2400000, ledger.value(at(4000)).holdingCost.yuan());
    EXPECT_DOUBLE_EQ(-2460000, ledger.value(at(4000)).openCost.yuan());
    const double fee = ledger.fill(order(future, Side::BuyClose, 3950, 1), 3950, 1).yuan();
    EXPECT_DOUBLE_EQ(15000, ledger.closeProfitByDate().yuan());  // since the previous close: 50 points
    EXPECT_DOUBLE_EQ(45000, ledger.closeProfitByTrade().yuan()); // since it was opened: 150
    EXPECT_DOUBLE_EQ(15000 - fee, ledger.cash().yuan());
    EXPECT_EQ(1, ledger.closableQty(future.symbol, true));
}

struct Rule {
    const char *name;
    Side side;
    double price;
    qint64 qty;
    bool kept;
};

class OrderRules : public testing::TestWithParam<Rule> {};

INSTANTIATE_TEST_SUITE_P(
    All, OrderRules,
    testing::Values(Rule{"Usual", Side::Buy, 10, 300, true}, Rule{"AtTheUpperLimit", Side::Buy, 11, 300, true},
                    Rule{"OverTheUpperLimit", Side::Buy, 11.01, 300, false},
                    Rule{"AtTheLowerLimit", Side::Sell, 9, 300, true},
                    Rule{"UnderTheLowerLimit", Side::Sell, 8.99, 300, false},
                    Rule{"BetweenTicks", Side::Buy, 10.005, 300, false}, Rule{"NoPrice", Side::Buy, 0, 300, false},
                    Rule{"OddLotBought", Side::Buy, 10, 150, false}, Rule{"OddLotSold", Side::Sell, 10, 150, true},
                    Rule{"Nothing", Side::Sell, 10, 0, false}, Rule{"TooMany", Side::Buy, 10, 100100, false}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_P(OrderRules, AreApplied)
{
    const Instrument share = instrument(SecurityKind::Share, "S");
    Order order;
    order.instrument = &share;
    order.side = GetParam().side;
    order.price = GetParam().price;
    order.qty = GetParam().qty;
    const QString violated = violatedRule(order, MarketRules().limits(share, share.ticksOf(share.price)));
    EXPECT_EQ(GetParam().kept, violated.isEmpty()) << qPrintable(violated);
}

TEST_F(LedgerTest, AnOrderPaysTheMinimumOnceAndThenWhatItsFeeExceedsIt)
{
    share.minFee = 5;
    Ledger ledger(100000);
    Order buy = order(share, Side::Buy, 10, 4000); // 0.025 % of 40,000 are 10
    ledger.reserve(buy);
    EXPECT_DOUBLE_EQ(40010, ledger.frozenCash().yuan());
    const struct {
        qint64 qty;
        double fee;
    } fills[] = {{1000, 5}, {500, 0}, {1000, 1.25}, {1500, 3.75}};
    double left = 100000;
    for (const auto &[qty, fee] : fills) {
        ledger.release(buy);
        EXPECT_DOUBLE_EQ(fee, ledger.fill(buy, 10, qty).yuan());
        buy.filledQty += qty;
        buy.feeByRate += feeByRate(share, Side::Buy, buy.amount(10, qty));
        ledger.reserve(buy);
        left -= fee + 10 * double(qty);
        EXPECT_DOUBLE_EQ(left, ledger.cash().yuan());
        EXPECT_DOUBLE_EQ(59990, (ledger.cash() - ledger.frozenCash()).yuan()) << "what is set aside pays for the rest";
    }
    EXPECT_DOUBLE_EQ(10, ledger.fees().yuan());
}

TEST_F(LedgerTest, ASettlementEndsTheDay)
{
    Ledger ledger(1000000);
    ledger.holdFromBefore(share, false, 500, 9);
    ledger.holdFromBefore(future, true, 2, 4100);
    ledger.fill(order(share, Side::Buy, 10, 1000), 10, 1000);
    ledger.fill(order(future, Side::BuyOpen, 4010, 1), 4010, 1);
    ledger.fill(order(future, Side::BuyClose, 3990, 1), 3990, 1);
    const double cash = ledger.cash().yuan();
    ledger.settle([&](const QString &symbol) { return symbol == future.symbol ? 4020.0 : 11.0; });
    EXPECT_DOUBLE_EQ(cash + 300 * (4020 - 4010) - 300 * (4020 - 4000), ledger.cash().yuan());
    EXPECT_EQ(1500, ledger.closableQty(share.symbol, false));
    const auto position = [&](const Instrument &of, bool isShort) { return ledger.positions()[{of.symbol, isShort}]; };
    EXPECT_DOUBLE_EQ(14500, position(share, false).holdingCost.yuan());
    EXPECT_DOUBLE_EQ(300 * 4020, position(future, true).holdingCost.yuan());
    EXPECT_DOUBLE_EQ(300 * 4010, position(future, false).openCost.yuan());
    EXPECT_EQ(Money(), ledger.fees());
    EXPECT_EQ(Money(), ledger.closeProfitByDate());
    const Valuation value = ledger.value(at(4020));
    EXPECT_DOUBLE_EQ(2 * 300 * 4020 * future.marginRate, value.margin.yuan());

    Ledger closed(1000);
    closed.holdFromBefore(share, false, 500, 9);
    closed.fill(order(share, Side::Sell, 10, 500), 10, 500);
    closed.settle(at(10));
    EXPECT_TRUE(closed.positions().isEmpty());
    EXPECT_EQ(closed.value(at(10)).available, closed.value(at(10)).withdrawable);
}
