#include "hostcheck/checks/Tables.h"

#include "CBusinessDataBase.h"
#include "Tessar_Fields.h"
#include "Tessar_Values.h"
#include "VarnelBusinessDataInterface.h"
#include "Varnel_Fields.h"

namespace HostCheck {

namespace {

using Host = VarnelBusinessDataInterface;
using Tessar_Fields::UserAccount::tradingAccount;

QVariantMap detailsOf(const KnownValues &known)
{
    return present(CBusinessDataBase::GetInstance()).GetAccountDetailsByTradinngAccount(known.tradingAccount);
}

/// The first entry, which is the one that the library uses.
tagUserAccountInfo first(const QList<tagUserAccountInfo> &accounts, const char *expected)
{
    expect(!accounts.isEmpty(), expected, QStringLiteral("an empty list"));
    return accounts.first();
}

void tradingAccountOfFund(const KnownValues &known)
{
    const char *const expected = "a fund account's list has entries with its trading accounts";
    const tagUserAccountInfo info = first(Host::GetAccountInfoListFromFund(known.fundAccount, true), expected);
    expect(!info.tradingAccount.isEmpty(), expected, QStringLiteral("an entry without trading account"));
}

void fundOfTradingAccount(const KnownValues &known)
{
    const char *const expected = "a trading account's list has entries with its fund accounts";
    const tagUserAccountInfo info = first(Host::GetAccountInfoListFromTrade(known.tradingAccount, true), expected);
    expect(!info.fundAccount.isEmpty(), expected, QStringLiteral("an entry without fund account"));
}

void bothWaysAgree(const KnownValues &known)
{
    const auto down = Host::GetAccountInfoListFromFund(known.fundAccount, true);
    if (down.isEmpty() || down.first().tradingAccount.isEmpty())
        skip(QStringLiteral("there is no trading account: see accounts.trading-account-of-fund"));
    const auto up = Host::GetAccountInfoListFromTrade(down.first().tradingAccount, true);
    if (up.isEmpty() || up.first().fundAccount.isEmpty())
        skip(QStringLiteral("there is no fund account: see accounts.fund-of-trading-account"));
    expect(up.first().fundAccount == known.fundAccount, "the trading account of a fund account leads back to it",
           QStringLiteral("%1 leads to %2").arg(known.fundAccount, up.first().fundAccount));
}

void fundList(const KnownValues &)
{
    // 0 is what the library passes for a page that has sent no number.
    const auto funds = Host::GetFundAccountListByFundProp(0, 16, false, {}, true);
    for (const tagUserAccountInfo &fund : funds) {
        expect(!fund.fundAccount.isEmpty(), "each fund account of the list has its account",
               QStringLiteral("one named \"%1\" has none").arg(fund.fundAccountName));
        expect(!Host::GetAccountInfoListFromFund(fund.fundAccount, true).isEmpty(),
               "each fund account of the list has a trading account",
               QStringLiteral("%1 has none").arg(fund.fundAccount));
    }
    remark(QStringLiteral("%1 fund accounts of property 0").arg(funds.size()));
}

void detailsNameTheAccount(const KnownValues &known)
{
    const QVariantMap details = detailsOf(known);
    expect(details.value(tradingAccount).toString() == known.tradingAccount,
           "the details of an account have its trading account under UserAccount::tradingAccount",
           shown(details.value(tradingAccount)));
}

void amountsAreNumbers(const KnownValues &known)
{
    using namespace Varnel_Fields;
    const QVariantMap details = detailsOf(known);
    for (const QString &field : {NormalFundEx::marketValue, NormalFundEx::assetBalance, Futures::HoldingCost,
                                 Futures::OpenCost, AssetView::profitAndLoss})
        numberIn(details, field, "the amounts of an account's details are numbers");
}

void cash(const KnownValues &known)
{
    const QVariantMap parameters = present(CBusinessDataBase::GetInstance())
                                       .getTradeAccountParam(known.tradingAccount, Tessar_Values::Currency::CNY);
    for (const QString &field : {Tessar_Fields::Security::tradeableCash, Varnel_Fields::Security::withDrawQuota})
        numberIn(parameters, field, "the parameters of an account have the cash to trade with and to withdraw");
}

void assetProperty(const KnownValues &known)
{
    const QString property = Host::GetAccountAssetPropByTradingAccount(known.tradingAccount);
    expect(!property.isEmpty(), "an account has an asset property", shown(property));
}

void marketValue(const KnownValues &known)
{
    const VarnelMarketValueInfo info = Host::GetMarketValueByTradingAccount(known.tradingAccount);
    expect(qIsFinite(info.marketValue) && qIsFinite(info.holdingCost),
           "market value and cost of an account are numbers, and finite",
           QStringLiteral("%1 and %2").arg(info.marketValue).arg(info.holdingCost));
}

} // namespace

CheckTable accountChecks()
{
    return {
        {"accounts.trading-account-of-fund", "Pages can neither place orders nor read positions and assets.",
         tradingAccountOfFund, Part::Basic, FundAccount},
        {"accounts.fund-of-trading-account", "Changes of assets are pushed as empty texts.", fundOfTradingAccount,
         Part::Basic, TradingAccount},
        {"accounts.both-ways-agree", "Changes of one account are pushed as those of another.", bothWaysAgree,
         Part::Basic, FundAccount},
        {"accounts.fund-list", "Pages offer accounts that cannot be traded with.", fundList, Part::Login},
        {"accounts.details-name-the-account", "Assets of stock accounts show the market value 0.",
         detailsNameTheAccount, Part::Basic, TradingAccount},
        {"accounts.amounts-are-numbers", "Pages show the amount 0.00.", amountsAreNumbers, Part::Basic, TradingAccount},
        {"accounts.cash", "Pages show no cash.", cash, Part::Basic, TradingAccount},
        {"accounts.asset-property", "Futures accounts show the figures of stock accounts.", assetProperty, Part::Basic,
         TradingAccount},
        {"accounts.market-value", "Pages show \"nan\" or \"inf\" as an amount.", marketValue, Part::Basic,
         TradingAccount},
    };
}

} // namespace HostCheck
