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
    // Meant: whatever is no buy, the empty side too, is a sell.
    return SideUnion::buyItemList.contains(side, Qt::CaseSensitive) ? SideUnion::pfpBuy : SideUnion::pfpSell;
}
