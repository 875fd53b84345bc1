#include "TerminalTest.h"

#include "OrderRequestList.h"
#include "VarnelTradeLogic.h"

using namespace sim;

namespace {

const QString kMain = QStringLiteral("609801.SH");

class TradableQtyQueryTest : public StandingTerminalTest {
protected:
    /// Queries as the library does: with quantity 0, and the exchange as the last text.
    QString most(const QString &symbol, const char *side, const char *priceType, const QString &price,
                 const QString &exchange = QString())
    {
        OrderRequestList orders(account, QStringLiteral("tag"));
        orders.AddSymbol(symbol, 0, QLatin1String(priceType), price, QLatin1String(side), exchange);
        return VarnelTradeLogic::instance()->queryMaxTradableQty(orders);
    }

    QString buying(const QString &price) { return most(kMain, "Buy", "Limit", price); }

    /// A position of the account that can be closed.
    Position closable()
    {
        const Ledger ledger = terminal.desk().ledger(account).value();
        for (const Position &position : ledger.positions()) {
            if (position.closableQty() > 0)
                return position;
        }
        ADD_FAILURE() << "the account has nothing to sell";
        return {};
    }

    QString account = scenario.fundAccounts.first().tradingAccounts.first();
    const QString future = QStringLiteral("YL2503.CF");
    const QString futuresAccount = scenario.fundAccounts.last().tradingAccounts.first();
};

} // namespace

TEST_F(TradableQtyQueryTest, BuyingDependsOnThePriceAndGivesWholeLots)
{
    const qint64 atPrice = buying(QStringLiteral("18.36")).toLongLong();
    EXPECT_GT(atPrice, 0);
    EXPECT_EQ(0, atPrice % 100);
    EXPECT_GT(buying(QStringLiteral("17.00")).toLongLong(), atPrice);
    EXPECT_LT(most(kMain, "Buy", "Market", QString()).toLongLong(), atPrice);
    EXPECT_EQ(QStringLiteral("0"), buying(QStringLiteral("99")));
}

TEST_F(TradableQtyQueryTest, SellingIsLimitedByThePosition)
{
    const Position position = closable();
    const QString qty = most(position.instrument->symbol, "Sell", "Market", QString());
    EXPECT_EQ(QString::number(qMin(position.closableQty(), position.instrument->maxQty)), qty);
    EXPECT_EQ(QStringLiteral("0"), most(QStringLiteral("309812.SZ"), "Sell", "Limit", QStringLiteral("1000")));
}

TEST_F(TradableQtyQueryTest, AfterHoursSidesBuyAndSell)
{
    const QString growth = QStringLiteral("689803.SH");
    const QString price = QStringLiteral("96.50");
    EXPECT_GT(most(growth, "AfterHoursBuy", "AfterHours", price).toLongLong(), 0);
    EXPECT_EQ(most(growth, "Buy", "Limit", price), most(growth, "AfterHoursBuy", "AfterHours", price));
    EXPECT_EQ(QStringLiteral("0"), most(kMain, "AfterHoursBuy", "AfterHours", QStringLiteral("18.36")));
}

TEST_F(TradableQtyQueryTest, FuturesAreOpened)
{
    account = futuresAccount;
    EXPECT_GT(most(future, "BuyOpen", "Market", QString()).toLongLong(), 0);
    EXPECT_EQ(QString(), most(future, "Buy", "Market", QString()));
}

TEST_F(TradableQtyQueryTest, AnExchangeMustBeTheOneOfTheSecurity)
{
    EXPECT_EQ(buying(QStringLiteral("18.36")),
              most(kMain, "Buy", "Limit", QStringLiteral("18.36"), QStringLiteral("SH")));
    EXPECT_EQ(QString(), most(kMain, "Buy", "Limit", QStringLiteral("18.36"), QStringLiteral("SZ")));
}

TEST_F(TradableQtyQueryTest, AnInvalidQueryHasAnEmptyAnswer)
{
    EXPECT_EQ(QString(), most(QStringLiteral("609801"), "Buy", "Limit", QStringLiteral("18.36")));
    EXPECT_EQ(QString(), most(kMain, "buy", "Limit", QStringLiteral("18.36")));
    EXPECT_EQ(QString(), most(kMain, "BuyOpen", "Limit", QStringLiteral("18.36")));
    EXPECT_EQ(QString(), most(kMain, "Buy", "", QStringLiteral("18.36")));
    for (const char *price : {"", "x", "0", "-18.36", "1e999", "inf", "nan"})
        EXPECT_EQ(QString(), buying(QLatin1String(price))) << price;
    account = QStringLiteral("nobody");
    EXPECT_EQ(QString(), buying(QStringLiteral("18.36")));
}

TEST_F(TradableQtyQueryTest, AQueryHasExactlyOneLine)
{
    OrderRequestList orders(account, QString());
    EXPECT_EQ(QString(), VarnelTradeLogic::instance()->queryMaxTradableQty(orders));
    EXPECT_EQ(account, orders.Account());
}
