#include "DataServiceTest.h"

#include "Tessar_Fields.h"
#include "Tessar_Values.h"
#include "Varnel_Fields.h"
#include "Varnel_Values.h"

using testing::InSequence;
using testing::Return;

namespace {

namespace Tessar = Tessar_Fields;
using namespace Varnel_Fields;

const QList<tagUserAccountInfo> accounts{{u"not looked at"_qs, u"账户一"_qs, u"t1"_qs},
                                         {u"f1"_qs, u"second"_qs, u"t-second"_qs}};

QVariantMap position(const QVariant &symbol)
{
    return {{Tessar::Security::symbol, symbol}};
}

class PositionsTest : public DataServiceTest {
protected:
    void expectPositions(const QString &tradingAccount, const QString &symbol, const QList<QVariantMap> &positions)
    {
        const QVariantMap details{{u"details of"_qs, tradingAccount}};
        EXPECT_CALL(host, CBusinessDataBase_GetAccountDetailsByTradinngAccount(tradingAccount))
            .WillOnce(Return(details));
        EXPECT_CALL(host, BusinessDataInterface_GetPositionListByAccount(Identical(details), QString(), symbol,
                                                                         QString(), QString(), QString(), QString()))
            .WillOnce(Return(positions));
    }
};

TEST_F(PositionsTest, AllPositionsOfEachFundAccountComeInTheHostsOrder)
{
    const InSequence order;
    expectAccounts(host, u"f1"_qs, accounts);
    expectPositions(u"t1"_qs, QString(), {position(u"B"_qs), position(u"A"_qs)});
    expectPosition(host, position(u"B"_qs), u"B"_qs, {{u"quote"_qs, 1}});
    expectPosition(host, position(u"A"_qs), u"A"_qs);
    expectAccounts(host, u"unknown"_qs, {});
    expectAccounts(host, u"f2"_qs, {{u"f2"_qs, u"name"_qs, u"t2"_qs}});
    expectPositions(u"t2"_qs, QString(), {position(u"C"_qs)});
    expectPosition(host, position(u"C"_qs), u"C"_qs, {}, bondDetails());
    expectBond(host, u"C"_qs, u"0"_qs, 2.5);

    const QString reply = process->processPositionList(u"u1"_qs, {u"f1"_qs, u"unknown"_qs, u"f2"_qs}, QString());
    const QJsonArray records = resultOf(reply).toArray();
    ASSERT_EQ(records.size(), 3);
    EXPECT_EQ(records.at(0).toObject().size(), 19);
    EXPECT_EQ(records.at(1).toObject().value(u"stockInterest"_qs), 0.0);
    EXPECT_EQ(records.at(2).toObject().value(u"stockInterest"_qs), 2.5);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(PositionsTest, SymbolKeepsOnlyThePositionsThatHaveExactlyIt)
{
    const InSequence order;
    expectAccounts(host, u"f1"_qs, accounts);
    expectPositions(u"t1"_qs, u"7"_qs,
                    {position(u"7 "_qs), position(u"7"_qs), position(QString()), {}, position(u"77"_qs), position(7)});
    expectPosition(host, position(u"7"_qs), u"7"_qs);
    expectPosition(host, position(7), u"7"_qs);
    EXPECT_EQ(resultOf(process->processPositionList(u"u1"_qs, {u"f1"_qs}, u"7"_qs)).toArray().size(), 2);
}

TEST_F(PositionsTest, SymbolIsComparedInItsCase)
{
    expectAccounts(host, u"f1"_qs, accounts);
    expectPositions(u"t1"_qs, u"abc"_qs, {position(u"ABC"_qs)});
    EXPECT_EQ(process->processPositionList(u"u1"_qs, {u"f1"_qs}, u"abc"_qs), successReply(u"[]"_qs));
}

TEST_F(PositionsTest, NoFundAccountAndAnUnknownOneHaveNoPositions)
{
    EXPECT_EQ(process->processPositionList(u"u1"_qs, {}, QString()), successReply(u"[]"_qs));
    expectAccounts(host, QString(), {});
    EXPECT_EQ(process->processPositionList(u"u1"_qs, {QString()}, QString()), successReply(u"[]"_qs));
}

class AssetsTest : public DataServiceTest {
protected:
    /// The calls for the fund account "f1", in this order.
    void expectAsset(const QVariantMap &details, const QVariantMap &parameters,
                     const QString &assetProperty = u"stock"_qs)
    {
        expectAccounts(host, u"f1"_qs, accounts);
        EXPECT_CALL(host, CBusinessDataBase_GetAccountDetailsByTradinngAccount(u"t1"_qs)).WillOnce(Return(details));
        EXPECT_CALL(host, CBusinessDataBase_getTradeAccountParam(u"t1"_qs, Tessar_Values::Currency::CNY))
            .WillOnce(Return(parameters));
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountAssetPropByTradingAccount(u"t1"_qs))
            .WillOnce(Return(assetProperty));
    }

    void expectMarketValue(const QString &tradingAccount, double marketValue, double holdingCost)
    {
        VarnelMarketValueInfo info;
        info.marketValue = marketValue;
        info.holdingCost = holdingCost;
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetMarketValueByTradingAccount(tradingAccount))
            .WillOnce(Return(info));
    }

    /// The amounts of a futures account, taken from the details unchanged.
    QVariantMap packagedFuture(const QVariantMap &details)
    {
        expectAsset(details, {}, Varnel_Values::FundAccountType::Future);
        return process->packageAsset(u"f1"_qs);
    }

    const InSequence m_order;
};

TEST_F(AssetsTest, RecordOfAFuturesAccountIsTheHostsFigures)
{
    const QVariantMap details{{NormalFundEx::marketValue, 1000.0},
                              {Futures::HoldingCost, 2000},
                              {AssetView::profitAndLoss, u"3000.5"_qs},
                              {Security::withDrawQuota, 4000.25},
                              {NormalFundEx::assetBalance, 5000},
                              {Tessar::Security::tradeableCash, 6000},
                              {Futures::ClosePosProfitDate, -7000},
                              {Futures::ClosePosProfitTrade, 8000},
                              {Futures::OpenCost, 900},
                              {Tessar::UserAccount::tradingAccount, u"t1"_qs},
                              {Tessar::Security::positionFlag, u"long"_qs}};
    EXPECT_THAT(packagedFuture(details), Identical(QVariantMap{{u"fundAccount"_qs, u"f1"_qs},
                                                               {u"fundAccountName"_qs, u"账户一"_qs},
                                                               {u"marketValue"_qs, u"1000.00"_qs},
                                                               {u"holdingCost"_qs, u"2000.00"_qs},
                                                               {u"profit"_qs, u"3000.50"_qs},
                                                               {u"fetchableCash"_qs, u"4000.25"_qs},
                                                               {u"totalAsset"_qs, u"5000.00"_qs},
                                                               {u"tradableCash"_qs, u"6000.00"_qs},
                                                               {u"closePosProfitDate"_qs, u"-7000.00"_qs},
                                                               {u"closePosProfitTrade"_qs, u"8000.00"_qs},
                                                               {u"floatingProfit"_qs, u"100.00"_qs}}));
}

TEST_F(AssetsTest, ParametersOverwriteDetails)
{
    expectAsset({{NormalFundEx::assetBalance, 1}, {Security::withDrawQuota, 2}},
                {{NormalFundEx::assetBalance, 3}, {Tessar::Security::tradeableCash, 4}},
                Varnel_Values::FundAccountType::Future);
    const QVariantMap asset = process->packageAsset(u"f1"_qs);
    EXPECT_EQ(asset.value(u"totalAsset"_qs), u"3.00"_qs);
    EXPECT_EQ(asset.value(u"fetchableCash"_qs), u"2.00"_qs);
    EXPECT_EQ(asset.value(u"tradableCash"_qs), u"4.00"_qs);
}

TEST_F(AssetsTest, OtherAccountsGetMarketValueCostAndProfitAnew)
{
    // The account that is asked about is the one in the details, after the parameters.
    expectAsset({{Tessar::UserAccount::tradingAccount, u"t1"_qs},
                 {NormalFundEx::marketValue, 1},
                 {Futures::HoldingCost, 2},
                 {AssetView::profitAndLoss, 3},
                 {Futures::OpenCost, 1000}},
                {{Tessar::UserAccount::tradingAccount, u"t-parameter"_qs}});
    expectMarketValue(u"t-parameter"_qs, 1234.5, 1000.25);
    const QVariantMap asset = process->packageAsset(u"f1"_qs);
    EXPECT_EQ(asset.value(u"marketValue"_qs), u"1234.50"_qs);
    EXPECT_EQ(asset.value(u"holdingCost"_qs), u"1000.25"_qs);
    EXPECT_EQ(asset.value(u"profit"_qs), u"234.25"_qs);
    EXPECT_EQ(asset.value(u"floatingProfit"_qs), u"234.50"_qs);
}

TEST_F(AssetsTest, ProfitIsTheMarketValueWhenNothingWasPaid)
{
    expectAsset({}, {});
    expectMarketValue(QString(), 50, 0);
    const QVariantMap asset = process->packageAsset(u"f1"_qs);
    EXPECT_EQ(asset.value(u"marketValue"_qs), u"50.00"_qs);
    EXPECT_EQ(asset.value(u"profit"_qs), u"50.00"_qs);
    EXPECT_EQ(asset.value(u"holdingCost"_qs), u"0.00"_qs);
}

TEST_F(AssetsTest, AssetPropertyIsComparedExactly)
{
    for (const QString &property : {QString(), Varnel_Values::FundAccountType::Future.toUpper()}) {
        expectAsset({}, {}, property);
        expectMarketValue(QString(), 1, 3);
        EXPECT_EQ(process->packageAsset(u"f1"_qs).value(u"profit"_qs), u"-2.00"_qs);
    }
}

TEST_F(AssetsTest, FloatingProfitIsNegatedWhenShort)
{
    const auto floatingProfit = [this](double marketValue, double openCost, const QVariant &flag) {
        return packagedFuture({{NormalFundEx::marketValue, marketValue},
                               {Futures::OpenCost, openCost},
                               {Tessar::Security::positionFlag, flag}})
            .value(u"floatingProfit"_qs);
    };
    const QString isShort = Tessar_Values::PositionFalg::shortPosition;
    EXPECT_EQ(floatingProfit(100, 120, isShort), u"20.00"_qs);
    EXPECT_EQ(floatingProfit(100, 120, u"long"_qs), u"-20.00"_qs);
    EXPECT_EQ(floatingProfit(100, 120, QVariant()), u"-20.00"_qs);
    EXPECT_EQ(floatingProfit(100, 100, isShort), u"0.00"_qs);
}

TEST_F(AssetsTest, AmountsAreTextsWithTwoDecimals)
{
    const struct {
        QVariant amount;
        const char16_t *text;
    } amounts[] = {
        {1234.5, u"1234.50"},           {0.005, u"0.01"},
        {1e15, u"1000000000000000.00"}, {qlonglong(9007199254740993), u"9007199254740992.00"},
        {u"12.345678"_qs, u"12.35"},    {u"1e3"_qs, u"1000.00"},
        {u"1,000"_qs, u"0.00"},         {u"无"_qs, u"0.00"},
        {QVariant(), u"0.00"},          {QVariantMap(), u"0.00"},
    };
    for (const auto &amount : amounts) {
        EXPECT_EQ(packagedFuture({{NormalFundEx::assetBalance, amount.amount}}).value(u"totalAsset"_qs).toString(),
                  QString::fromUtf16(amount.text));
    }
}

TEST_F(AssetsTest, FundAccountsAreSplitAtCommasAndUnknownOnesLeftOut)
{
    expectAccounts(host, QString(), {});
    expectAsset({}, {}, Varnel_Values::FundAccountType::Future);
    expectAccounts(host, u" f2"_qs, {});
    const QString reply = process->processAsset(u"u1"_qs, u",f1, f2"_qs);
    EXPECT_EQ(reply, successReply(uR"([{"closePosProfitDate":"0.00","closePosProfitTrade":"0.00",)"
                                  uR"("fetchableCash":"0.00","floatingProfit":"0.00","fundAccount":"f1",)"
                                  uR"("fundAccountName":"账户一","holdingCost":"0.00","marketValue":"0.00",)"
                                  uR"("profit":"0.00","totalAsset":"0.00","tradableCash":"0.00"}])"_qs));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(AssetsTest, RecordsComeInTheOrderInWhichTheirFundAccountsAreNamed)
{
    QStringList shown;
    expectAsset({}, {}, Varnel_Values::FundAccountType::Future);
    expectAccounts(host, u"unknown"_qs, {});
    expectAccounts(host, u"a"_qs, {{u"a"_qs, u"name"_qs, u"t2"_qs}});
    EXPECT_CALL(host, CBusinessDataBase_GetAccountDetailsByTradinngAccount(u"t2"_qs)).WillOnce(Return(QVariantMap()));
    EXPECT_CALL(host, CBusinessDataBase_getTradeAccountParam(u"t2"_qs, Tessar_Values::Currency::CNY))
        .WillOnce(Return(QVariantMap()));
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountAssetPropByTradingAccount(u"t2"_qs))
        .WillOnce(Return(Varnel_Values::FundAccountType::Future));
    const QJsonArray records = resultOf(process->processAsset(u"u1"_qs, u"f1,unknown,a"_qs)).toArray();
    for (const QJsonValue &record : records)
        shown << record.toObject().value(u"fundAccount"_qs).toString();
    EXPECT_EQ(shown, (QStringList{u"f1"_qs, u"a"_qs})); // not by name
}

TEST_F(AssetsTest, TwoCommasInARowAskForAnEmptyFundAccount)
{
    expectAccounts(host, u"a"_qs, {});
    expectAccounts(host, QString(), {});
    expectAccounts(host, u"b"_qs, {});
    EXPECT_EQ(process->processAsset(u"u1"_qs, u"a,,b"_qs), successReply(u"[]"_qs));
}

TEST_F(AssetsTest, NoFundAccountAsksForTheEmptyOne)
{
    expectAccounts(host, QString(), {});
    EXPECT_EQ(process->processAsset(u"u1"_qs, QString()), successReply(u"[]"_qs));
}

TEST_F(AssetsTest, PushTextIsTheBareRecordAndAnEmptyObjectForAnUnknownFundAccount)
{
    expectAsset({{NormalFundEx::assetBalance, 3}}, {}, Varnel_Values::FundAccountType::Future);
    const QString text = process->getAssetMsg(u"f1"_qs);
    EXPECT_TRUE(text.startsWith(uR"({"closePosProfitDate":"0.00",)"_qs)) << qPrintable(text);
    EXPECT_EQ(QJsonDocument::fromJson(text.toUtf8()).object().size(), 11);

    expectAccounts(host, u"unknown"_qs, {});
    EXPECT_TRUE(process->packageAsset(u"unknown"_qs).isEmpty());
    expectAccounts(host, u"unknown"_qs, {});
    EXPECT_EQ(process->getAssetMsg(u"unknown"_qs), u"{}"_qs);
    EXPECT_TRUE(log.lines().isEmpty());
}

} // namespace
