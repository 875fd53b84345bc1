#include "TerminalTest.h"

#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "Tessar_Fields.h"
#include "Tessar_Values.h"
#include "VarnelBusinessDataInterface.h"
#include "Varnel_Fields.h"
#include "Varnel_Values.h"

using namespace sim;
using namespace Varnel_Fields;

namespace {

class AssetsTest : public StandingTerminalTest {
protected:
    static QVariantMap details(const QString &account)
    {
        return CBusinessDataBase::GetInstance()->GetAccountDetailsByTradinngAccount(account);
    }

    static QVariantMap parameters(const QString &account, const QString &currency = Tessar_Values::Currency::CNY)
    {
        return CBusinessDataBase::GetInstance()->getTradeAccountParam(account, currency);
    }

    static QList<QVariantMap> positions(const QString &account, const QString &symbol = QString())
    {
        return BusinessDataInterface::GetPositionListByAccount(details(account), QString(), symbol, QString(),
                                                               QString(), QString(), QString());
    }

    static double sum(const QList<QVariantMap> &records, const QString &field)
    {
        double sum = 0;
        for (const QVariantMap &record : records)
            sum += record.value(field).toDouble();
        return sum;
    }

    double number(const QVariantMap &map, const QString &field) const
    {
        EXPECT_TRUE(map.contains(field)) << qPrintable(field);
        return map.value(field).toDouble();
    }

    QStringList firstAccounts(FundProperty property)
    {
        QStringList accounts;
        for (const FundAccount &fund : terminal.accounts().fundAccounts(property))
            accounts.append(fund.tradingAccounts.first());
        return accounts;
    }
};

} // namespace

TEST_F(AssetsTest, TheAssetsOfAStockAccountAreItsCashAndItsPositions)
{
    for (const QString &account : firstAccounts(StockFund)) {
        const QVariantMap account_details = details(account);
        const VarnelMarketValueInfo info = VarnelBusinessDataInterface::GetMarketValueByTradingAccount(account);
        const Ledger ledger = terminal.desk().ledger(account).value();
        EXPECT_GT(info.marketValue, 0);
        EXPECT_NEAR(info.marketValue, number(account_details, NormalFundEx::marketValue), 0.001);
        EXPECT_NEAR(ledger.cash().yuan() + info.marketValue, number(account_details, NormalFundEx::assetBalance),
                    0.001);
        EXPECT_NEAR(info.holdingCost, sum(positions(account), Futures::HoldingCost), 0.001);
        EXPECT_NEAR(info.marketValue - info.holdingCost, number(account_details, AssetView::profitAndLoss), 0.001);

        const QVariantMap money = parameters(account);
        const double tradable = number(money, Tessar_Fields::Security::tradeableCash);
        EXPECT_NEAR((ledger.cash() - ledger.frozenCash()).yuan(), tradable, 0.001);
        EXPECT_LE(number(money, Varnel_Fields::Security::withDrawQuota), tradable);
        EXPECT_NE(Varnel_Values::FundAccountType::Future,
                  VarnelBusinessDataInterface::GetAccountAssetPropByTradingAccount(account));
    }
}

TEST_F(AssetsTest, TheFiguresOfAFuturesAccountAreTheSumsOfItsPositions)
{
    QStringList flags;
    for (const QString &account : firstAccounts(FuturesFund)) {
        const QVariantMap figures = details(account);
        const bool isShort = figures.value(Tessar_Fields::Security::positionFlag).toString() ==
                             Tessar_Values::PositionFalg::shortPosition;
        flags.append(figures.value(Tessar_Fields::Security::positionFlag).toString());
        const int sign = isShort ? -1 : 1;
        double floating = 0;
        double marketValue = 0;
        const Ledger ledger = terminal.desk().ledger(account).value();
        for (const Position &position : ledger.positions()) {
            const double value = position.marketValue(terminal.latestPrices()(position.instrument->symbol)).yuan();
            const double openCost = position.openCost.yuan();
            floating += position.isShort ? openCost - value : value - openCost;
            marketValue += position.isShort ? -value : value;
        }
        EXPECT_GE(number(figures, NormalFundEx::marketValue), 0);
        EXPECT_NEAR(sign * marketValue, number(figures, NormalFundEx::marketValue), 0.001);
        // As the library reads it: negated when the account is short.
        EXPECT_NEAR(floating, sign * (number(figures, NormalFundEx::marketValue) - number(figures, Futures::OpenCost)),
                    0.001);
        EXPECT_NEAR(number(figures, AssetView::profitAndLoss),
                    sign * (number(figures, NormalFundEx::marketValue) - number(figures, Futures::HoldingCost)), 0.001);
        EXPECT_NEAR(ledger.cash().yuan() + number(figures, AssetView::profitAndLoss),
                    number(figures, NormalFundEx::assetBalance), 0.001);
        EXPECT_NE(0, number(figures, Futures::ClosePosProfitDate));
        EXPECT_NE(number(figures, Futures::ClosePosProfitDate), number(figures, Futures::ClosePosProfitTrade));
        EXPECT_EQ(Varnel_Values::FundAccountType::Future,
                  VarnelBusinessDataInterface::GetAccountAssetPropByTradingAccount(account));
    }
    EXPECT_EQ(QStringList({Tessar_Values::PositionFalg::shortPosition, QStringLiteral("Long")}), flags);
}

TEST_F(AssetsTest, PositionsBelongToTheAccountAndToListedSecurities)
{
    const QString account = firstAccounts(StockFund).first();
    const QList<QVariantMap> all = positions(account);
    ASSERT_GE(all.size(), 3);
    for (const QVariantMap &record : all) {
        const QString symbol = record.value(Tessar_Fields::Security::symbol).toString();
        EXPECT_TRUE(terminal.exchange().instrument(symbol));
        EXPECT_EQ(account, record.value(Tessar_Fields::UserAccount::tradingAccount).toString());
        const QList<QVariantMap> one = positions(account, symbol);
        ASSERT_EQ(1, one.size());
        EXPECT_EQ(record, one.first());
    }
    EXPECT_TRUE(positions(account, QStringLiteral("nothing")).isEmpty());
}

TEST_F(AssetsTest, OnlyTheFirstTradingAccountHoldsPositions)
{
    const QString second = scenario.fundAccounts.first().tradingAccounts[1];
    EXPECT_TRUE(positions(second).isEmpty());
    EXPECT_EQ(0, number(details(second), NormalFundEx::assetBalance));
    EXPECT_EQ(0, number(parameters(second), Tessar_Fields::Security::tradeableCash));
}

TEST_F(AssetsTest, UnknownAccountsAndCurrenciesGiveEmptyAnswers)
{
    const QString unknown = QStringLiteral("nobody");
    EXPECT_TRUE(details(unknown).isEmpty());
    EXPECT_TRUE(parameters(unknown).isEmpty());
    EXPECT_TRUE(parameters(firstAccounts(StockFund).first(), QStringLiteral("XXX")).isEmpty());
    EXPECT_TRUE(positions(unknown).isEmpty());
    EXPECT_EQ(QString(), VarnelBusinessDataInterface::GetAccountAssetPropByTradingAccount(unknown));
    EXPECT_EQ(0, VarnelBusinessDataInterface::GetMarketValueByTradingAccount(unknown).marketValue);
}
