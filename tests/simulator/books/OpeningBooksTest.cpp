#include "books/OpeningBooks.h"
#include "books/Books.h"
#include "exchange/Exchange.h"
#include "exchange/Listing.h"
#include "exchange/TestClock.h"

#include <gtest/gtest.h>

#include <QMap>
#include <QSet>

using namespace sim;

namespace {

FundAccount fund(const char *account, FundProperty property, const QStringList &tradingAccounts)
{
    return {QLatin1String(account), QStringLiteral("基金"), property, tradingAccounts};
}

/// A market of generated securities and the books of some accounts, opened at a time.
struct World {
    explicit World(const char *start = "2025-03-03 10:15:20", quint64 seed = 7, const OpeningTerms &terms = {})
        : clock(at(start)), exchange(listing({}, 120, seed, clock.now().date()), seed, clock.now().date(), clock)
    {
        openBooks(books, exchange, seed, clock.now(), terms);
    }

    const TestClock clock;
    const Exchange exchange;
    const Accounts accounts{
        {{QStringLiteral("T1"), QStringLiteral("甲")}, {QStringLiteral("T2"), QStringLiteral("乙")}},
        {fund("S1", StockFund, {QStringLiteral("A1"), QStringLiteral("A2")}),
         fund("S2", StockFund, {QStringLiteral("B1")}), fund("F1", FuturesFund, {QStringLiteral("C1")}),
         fund("F2", FuturesFund, {QStringLiteral("D1")})}};
    Books books{accounts, QStringLiteral("20250303")};
};

class OpeningBooksTest : public testing::Test {
protected:
    Prices closes() const
    {
        return [this](const QString &symbol) {
            return exchange.candles(symbol, at("2025-03-03 00:00:00"), clock.now(), CandlePeriod::Minute).last().close;
        };
    }

    const World world;
    const Clock &clock = world.clock;
    const Exchange &exchange = world.exchange;
    const Books &books = world.books;
};

QStringList summary(const Books &books)
{
    QStringList lines;
    for (const Order &order : books.orders()) {
        lines.append(QStringLiteral("%1 %2 %3 %4 %5 %6")
                         .arg(order.id, order.tradingAccount, order.instrument->symbol)
                         .arg(order.price)
                         .arg(order.filledAmount.yuan())
                         .arg(int(order.status)));
    }
    return lines;
}

} // namespace

TEST_F(OpeningBooksTest, OrdersOfEveryStatusExist)
{
    EXPECT_EQ(320u, books.orders().size());
    QMap<OrderStatus, int> count;
    for (const Order &order : books.orders())
        ++count[order.status];
    for (const OrderStatus status : {OrderStatus::Reported, OrderStatus::PartlyFilled, OrderStatus::Filled,
                                     OrderStatus::PartlyCancelled, OrderStatus::Cancelled, OrderStatus::Rejected})
        EXPECT_GE(count[status], 5) << int(status);
}

TEST_F(OpeningBooksTest, OrdersBelongToKnownAccountsTradersAndSecurities)
{
    QSet<QString> ids;
    QDateTime last = at("2025-03-03 09:30:00");
    for (const Order &order : books.orders()) {
        const FundAccount *fund = world.accounts.fundAccountOf(order.tradingAccount);
        ASSERT_TRUE(fund);
        EXPECT_EQ(fund->tradingAccounts.first(), order.tradingAccount);
        EXPECT_EQ(fund->property == FuturesFund, order.instrument->kind == SecurityKind::Future);
        EXPECT_EQ(order.instrument, exchange.instrument(order.instrument->symbol));
        EXPECT_TRUE(world.accounts.traders().contains(order.trader));
        EXPECT_FALSE(order.tag.isEmpty());
        EXPECT_GE(order.entered, last);
        EXPECT_LE(order.changed, clock.now());
        last = order.entered;
        ids.insert(order.id);
        ids.insert(order.clientId);
    }
    EXPECT_EQ(2 * int(books.orders().size()), ids.size());
}

TEST_F(OpeningBooksTest, OnlyValidOrdersReachTheExchange)
{
    for (const Order &order : books.orders()) {
        const bool rejected = order.status == OrderStatus::Rejected;
        EXPECT_EQ(rejected, order.exchangeOrderId.isEmpty()) << qPrintable(order.id);
        EXPECT_EQ(rejected, !order.remark.isEmpty()) << qPrintable(order.id);
        if (rejected)
            EXPECT_EQ(0, order.filledQty);
        else
            EXPECT_EQ(QString(),
                      violatedRule(order, exchange.limits(order.instrument->symbol, exchange.stepAt(clock.now()))));
    }
}

TEST_F(OpeningBooksTest, ExecutionsAddUpToTheFilledQuantities)
{
    QMap<int, qint64> qty;
    QMap<int, double> amount;
    QSet<QString> ids;
    QDateTime last;
    for (const Execution &execution : books.executions()) {
        const Order &order = books.orders()[execution.order];
        qty[execution.order] += execution.qty;
        amount[execution.order] += execution.amount.yuan();
        EXPECT_GT(execution.time, order.entered);
        EXPECT_LE(execution.time, order.changed);
        EXPECT_TRUE(!last.isValid() || execution.time >= last);
        last = execution.time;
        ids.insert(execution.id);
    }
    EXPECT_EQ(int(books.executions().size()), ids.size());
    EXPECT_GT(books.executions().size(), 100u);
    for (int i = 0; i < int(books.orders().size()); ++i) {
        EXPECT_EQ(qty.value(i), books.orders()[i].filledQty) << i;
        EXPECT_NEAR(amount.value(i), books.orders()[i].filledAmount.yuan(), 0.005) << i;
    }
}

TEST_F(OpeningBooksTest, FillsAreWithinTheLimitAndTheCandleOfTheirMinute)
{
    for (const Execution &execution : books.executions()) {
        const Order &order = books.orders()[execution.order];
        if (order.priceType == PriceType::Limit) {
            if (isBuy(order.side))
                EXPECT_LE(execution.price, order.price);
            else
                EXPECT_GE(execution.price, order.price);
        }
        const QVector<Candle> candles = exchange.candles(order.instrument->symbol, execution.time,
                                                         execution.time.addSecs(59), CandlePeriod::Minute);
        ASSERT_EQ(1, candles.size()) << qPrintable(execution.time.toString());
        EXPECT_GE(execution.price, candles[0].low);
        EXPECT_LE(execution.price, candles[0].high);
        EXPECT_LE(execution.qty, candles[0].volume);
    }
}

TEST_F(OpeningBooksTest, OrdersWithoutAFillNeverHadAMatchingPrice)
{
    for (const Order &order : books.orders()) {
        if (order.status != OrderStatus::Reported || order.priceType == PriceType::Market)
            continue;
        const QVector<Candle> candles =
            exchange.candles(order.instrument->symbol, order.entered.addSecs(1), clock.now(), CandlePeriod::Minute);
        for (const Candle &candle : candles) {
            if (candle.volume < order.instrument->lot)
                continue;
            if (isBuy(order.side))
                EXPECT_GT(candle.low, order.price) << qPrintable(order.id);
            else
                EXPECT_LT(candle.high, order.price) << qPrintable(order.id);
        }
    }
}

TEST_F(OpeningBooksTest, PositionsAreTheOpeningPositionsPlusTheExecutions)
{
    using Key = QPair<QString, QPair<QString, bool>>; // account; symbol, short
    QMap<Key, qint64> opened;
    QMap<Key, qint64> closed;
    QMap<Key, qint64> frozen;
    for (const Execution &execution : books.executions()) {
        const Order &order = books.orders()[execution.order];
        const Key key{order.tradingAccount, {order.instrument->symbol, isOfShort(order.side)}};
        (opens(order.side) ? opened : closed)[key] += execution.qty;
    }
    for (const Order &order : books.orders()) {
        if (!opens(order.side))
            frozen[{order.tradingAccount, {order.instrument->symbol, isOfShort(order.side)}}] += order.leaveQty();
    }
    QMap<SecurityKind, int> kinds;
    bool anyShort = false;
    bool anyLongFuture = false;
    for (const QString &account :
         {QStringLiteral("A1"), QStringLiteral("B1"), QStringLiteral("C1"), QStringLiteral("D1")}) {
        const auto &positions = books.ledger(account)->positions();
        EXPECT_GE(positions.size(), 4);
        for (auto position = positions.begin(); position != positions.end(); ++position) {
            const Key key{account, position.key()};
            EXPECT_EQ(opened.take(key), position->openedQty);
            EXPECT_EQ(closed.take(key), position->closedQty);
            EXPECT_EQ(frozen.take(key), position->frozenQty);
            EXPECT_GE(position->qty(), 0);
            EXPECT_GE(position->closableQty(), 0);
            EXPECT_LE(position->closableQty(), position->qty());
            EXPECT_LE(Money(), position->openCost);
            ++kinds[position->instrument->kind];
            anyShort = anyShort || position->isShort;
            anyLongFuture = anyLongFuture || (account >= QStringLiteral("C1") && !position->isShort);
        }
    }
    EXPECT_TRUE(opened.isEmpty()); // every execution was in some position
    EXPECT_TRUE(closed.isEmpty());
    EXPECT_EQ(4, kinds.size());
    EXPECT_TRUE(anyShort);
    EXPECT_TRUE(anyLongFuture);
}

TEST_F(OpeningBooksTest, MoneyAddsUp)
{
    const World morning("2025-03-03 09:20:00"); // the same accounts before their first order
    for (const QString &account : {QStringLiteral("A1"), QStringLiteral("B1")}) {
        const Ledger &ledger = *books.ledger(account);
        Money cash = morning.books.ledger(account)->cash();
        Money frozen;
        Money fees;
        for (const Execution &execution : books.executions()) {
            const Order &order = books.orders()[execution.order];
            if (order.tradingAccount != account)
                continue;
            cash += isBuy(order.side) ? -execution.amount : execution.amount;
            fees += execution.fee;
        }
        for (const Order &order : books.orders()) {
            if (order.tradingAccount == account && isBuy(order.side)) {
                const Money amount = order.amount(order.reservePrice(), order.leaveQty());
                frozen += amount + feeOf(order, amount);
            }
        }
        Money held;
        for (const Position &position : ledger.positions())
            held += position.marketValue(closes()(position.instrument->symbol));

        EXPECT_LT(Money(), fees);
        EXPECT_LT(Money(), frozen);
        EXPECT_EQ(fees, ledger.fees());
        EXPECT_EQ(cash - fees, ledger.cash());
        EXPECT_EQ(frozen, ledger.frozenCash());
        const Valuation value = ledger.value(closes());
        EXPECT_EQ(held, value.marketValue);
        EXPECT_EQ(ledger.cash() + held, value.totalAsset);
        EXPECT_EQ(ledger.cash() - frozen, value.available);
        EXPECT_LT(Money(), value.available);
        EXPECT_LE(value.withdrawable, value.available);
    }
}

TEST_F(OpeningBooksTest, TheAssetsOfAFuturesAccountAreItsCashAndItsFloatingProfit)
{
    const World morning("2025-03-03 09:20:00");
    for (const QString &account : {QStringLiteral("C1"), QStringLiteral("D1")}) {
        const Ledger &ledger = *books.ledger(account);
        const Money before = morning.books.ledger(account)->cash();
        EXPECT_EQ(before + ledger.closeProfitByDate() - ledger.fees(), ledger.cash());
        const Valuation value = ledger.value(closes());
        EXPECT_EQ(ledger.cash() + value.marketValue - value.holdingCost, value.totalAsset);
        EXPECT_LT(value.available, value.totalAsset); // margin
        EXPECT_LT(Money(), value.available);
    }
    EXPECT_LT(books.ledger(QStringLiteral("C1"))->value(closes()).marketValue,
              Money()); // one account is short, the other long
    EXPECT_LT(Money(), books.ledger(QStringLiteral("D1"))->value(closes()).marketValue);
}

TEST_F(OpeningBooksTest, TradingAccountsAfterTheFirstAreEmpty)
{
    const Ledger *ledger = books.ledger(QStringLiteral("A2"));
    ASSERT_TRUE(ledger);
    EXPECT_EQ(Money(), ledger->cash());
    EXPECT_TRUE(ledger->positions().isEmpty());
    EXPECT_FALSE(books.ledger(QStringLiteral("nobody")));
}

TEST_F(OpeningBooksTest, TheSameSeedGivesTheSameBooks)
{
    EXPECT_EQ(summary(books), summary(World().books));
    EXPECT_NE(summary(books), summary(World("2025-03-03 10:15:20", 8).books));
}

TEST_F(OpeningBooksTest, BeforeTheFirstMinuteThereArePositionsButNoOrders)
{
    for (const char *start : {"2025-03-03 09:30:59", "2025-03-01 12:00:00"}) { // the second is a Saturday
        const World early(start);
        EXPECT_TRUE(early.books.orders().empty());
        EXPECT_FALSE(early.books.ledger(QStringLiteral("A1"))->positions().isEmpty());
    }
    EXPECT_EQ(320u, World("2025-03-03 09:31:00").books.orders().size());
    EXPECT_EQ(320u, World("2025-03-03 23:00:00").books.orders().size());
}

TEST(OpeningTermsTest, SayHowManyOrdersAndPositionsThereAre)
{
    OpeningTerms terms;
    terms.orders = 3;
    terms.positions = {{SecurityKind::Share, 2}, {SecurityKind::Bond, 1}, {SecurityKind::Future, 1}};
    const World world("2025-03-03 10:15:20", 7, terms);
    EXPECT_EQ(12u, world.books.orders().size());
    const World early("2025-03-03 09:20:00", 7, terms);
    EXPECT_EQ(3, early.books.ledger(QStringLiteral("A1"))->positions().size());
    EXPECT_EQ(1, early.books.ledger(QStringLiteral("C1"))->positions().size());
}
