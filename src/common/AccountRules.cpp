#include "common/AccountRules.h"

#include "VarnelBusinessDataInterface.h"
#include "Varnel_Values.h"

std::optional<tagUserAccountInfo> firstTradingAccount(const QString &fundAccount)
{
    const QList<tagUserAccountInfo> accounts =
        VarnelBusinessDataInterface::GetAccountInfoListFromFund(fundAccount, true);
    if (accounts.isEmpty())
        return std::nullopt;
    return accounts.first();
}

QString effectiveSide(const QString &side, const QString &priceType)
{
    using namespace Varnel_Values;
    if (priceType != PriceType::shEntrustAfterHours)
        return side;
    // Meant: every side that is not a buy counts as a sell, the empty one too.
    return SideUnion::buyItemList.contains(side, Qt::CaseSensitive) ? SideUnion::pfpBuy : SideUnion::pfpSell;
}
