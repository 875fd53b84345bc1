#include "common/AccountRules.h"

#include "HostTest.h"

#include "Varnel_Values.h"

using testing::Return;

namespace {

using namespace Varnel_Values;

class AccountRulesTest : public HostTest {
protected:
    void expectAccounts(const QList<tagUserAccountInfo> &accounts)
    {
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetAccountInfoListFromFund(QStringLiteral("f"), true))
            .WillOnce(Return(accounts));
    }
};

TEST_F(AccountRulesTest, FirstRecordOfTheHostStandsForTheFundAccount)
{
    expectAccounts({{QStringLiteral("f1"), QStringLiteral("n1"), QStringLiteral("t1")},
                    {QStringLiteral("f"), QStringLiteral("n2"), QStringLiteral("t2")}});
    const auto account = firstTradingAccount(QStringLiteral("f"));
    ASSERT_TRUE(account);
    EXPECT_EQ(account->fundAccount, QStringLiteral("f1"));
    EXPECT_EQ(account->fundAccountName, QStringLiteral("n1"));
    EXPECT_EQ(account->tradingAccount, QStringLiteral("t1"));
}

TEST_F(AccountRulesTest, FundAccountThatTheHostDoesNotKnowHasNone)
{
    expectAccounts({});
    EXPECT_FALSE(firstTradingAccount(QStringLiteral("f")));
}

TEST_F(AccountRulesTest, RecordIsAskedForEachTime)
{
    expectAccounts({{QString(), QString(), QString()}});
    EXPECT_TRUE(firstTradingAccount(QStringLiteral("f"))); // an empty record is one
    testing::Mock::VerifyAndClearExpectations(&host);
    expectAccounts({});
    EXPECT_FALSE(firstTradingAccount(QStringLiteral("f")));
}

TEST(EffectiveSide, IsThePagesExceptAfterHours)
{
    for (const QString &side : SideUnion::buyItemList + QStringList{QString(), QStringLiteral("any")}) {
        EXPECT_EQ(effectiveSide(side, QString()), side);
        EXPECT_EQ(effectiveSide(side, QStringLiteral("limit")), side);
        EXPECT_EQ(effectiveSide(side, PriceType::shEntrustAfterHours + QLatin1Char(' ')), side);
    }
}

TEST(EffectiveSide, IsABuyAfterHoursWhenTheHostCallsItOne)
{
    ASSERT_GT(SideUnion::buyItemList.size(), 1);
    for (const QString &side : SideUnion::buyItemList)
        EXPECT_EQ(effectiveSide(side, PriceType::shEntrustAfterHours), SideUnion::pfpBuy) << qPrintable(side);
}

TEST(EffectiveSide, IsASellAfterHoursOtherwise)
{
    const QString &aBuy = SideUnion::buyItemList.first();
    for (const QString &side : {QString(), QStringLiteral("any"), aBuy.toUpper(), aBuy + QLatin1Char(' '),
                                aBuy.chopped(1), SideUnion::pfpBuy, SideUnion::pfpSell})
        EXPECT_EQ(effectiveSide(side, PriceType::shEntrustAfterHours), SideUnion::pfpSell) << qPrintable(side);
}

} // namespace
