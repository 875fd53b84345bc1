#include "TerminalTest.h"

#include "CBusinessDataBase.h"
#include "QvCore.h"
#include "Tessar_Fields.h"
#include "VarnelBusinessDataInterface.h"
#include "Varnel_Fields.h"

using namespace sim;
using Host = VarnelBusinessDataInterface;

namespace {

class AccountsTest : public TerminalTest {
protected:
    QList<tagUserAccountInfo> ofProperty(int property)
    {
        return Host::GetFundAccountListByFundProp(property, 16, false, QStringList(), true);
    }

    const FundAccount &first = scenario.fundAccounts.first();
};

} // namespace

TEST_F(AccountsTest, TheLoginIsTheOneOfTheTerminal)
{
    EXPECT_EQ(scenario.logins[0].account, CBusinessDataBase::GetInstance()->GetLoginAccount());
    EXPECT_EQ(scenario.logins[0].token, QvCore::instance()->getCurrentToken());
}

TEST_F(AccountsTest, TradersHaveIdentifiersAndNames)
{
    EXPECT_EQ(scenario.traders, Host::GetOrganTraderList());
    EXPECT_FALSE(scenario.traders.isEmpty());
}

TEST_F(AccountsTest, FundAccountsAreListedByPropertyWithTheirFirstTradingAccount)
{
    const QList<tagUserAccountInfo> stocks = ofProperty(StockFund);
    ASSERT_EQ(3, stocks.size());
    EXPECT_EQ(first.account, stocks[0].fundAccount);
    EXPECT_EQ(first.name, stocks[0].fundAccountName);
    EXPECT_EQ(first.tradingAccounts[0], stocks[0].tradingAccount);
    EXPECT_EQ(2, ofProperty(FuturesFund).size());
    EXPECT_EQ(5, ofProperty(AllFunds).size());
    EXPECT_TRUE(ofProperty(99).isEmpty());
}

TEST_F(AccountsTest, TheTradingAccountsOfAFundAccountKeepTheirOrder)
{
    const QList<tagUserAccountInfo> infos = Host::GetAccountInfoListFromFund(first.account, true);
    ASSERT_EQ(2, infos.size());
    EXPECT_EQ(first.tradingAccounts[0], infos[0].tradingAccount);
    EXPECT_EQ(first.tradingAccounts[1], infos[1].tradingAccount);
    EXPECT_EQ(first.name, infos[1].fundAccountName);
    EXPECT_TRUE(Host::GetAccountInfoListFromFund(QStringLiteral("nobody"), true).isEmpty());
}

TEST_F(AccountsTest, TheFundAccountOfATradingAccountIsFound)
{
    const QString second = first.tradingAccounts[1];
    const QList<tagUserAccountInfo> infos = Host::GetAccountInfoListFromTrade(second, true);
    ASSERT_EQ(1, infos.size());
    EXPECT_EQ(first.account, infos[0].fundAccount);
    EXPECT_EQ(second, infos[0].tradingAccount);
    EXPECT_TRUE(Host::GetAccountInfoListFromTrade(first.account, true).isEmpty());
}

TEST_F(AccountsTest, DetailsContainBothAccounts)
{
    const QString second = first.tradingAccounts[1];
    const QVariantMap details = CBusinessDataBase::GetInstance()->GetAccountDetailsByTradinngAccount(second);
    EXPECT_EQ(QVariant(second), details.value(Tessar_Fields::UserAccount::tradingAccount));
    EXPECT_EQ(QVariant(first.account), details.value(Varnel_Fields::FastFocus::fundAccount));
    EXPECT_TRUE(CBusinessDataBase::GetInstance()->GetAccountDetailsByTradinngAccount(QString()).isEmpty());
}

TEST_F(AccountsTest, ClientOrderIdsDiffer)
{
    CBusinessDataBase *data = CBusinessDataBase::GetInstance();
    const QString one = data->getClientOrderID();
    EXPECT_NE(one, data->getClientOrderID());
}

TEST_F(AccountsTest, TheStationIsTheMachineAndTheInformation)
{
    EXPECT_EQ(scenario.station, Host::GetVarnelOrderStation(QString()));
    EXPECT_EQ(scenario.station + QStringLiteral(";A;B"), Host::GetVarnelOrderStation(QStringLiteral("A;B")));
}
