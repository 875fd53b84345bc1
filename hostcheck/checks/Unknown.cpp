#include "hostcheck/checks/Tables.h"

#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "CommonQuotaHandler.h"
#include "OrderRequestList.h"
#include "QvBondDataMgr.h"
#include "Tessar_Values.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelTradeLogic.h"

// What the host does not know gives an empty answer. Pages send such names by mistake.

namespace HostCheck {

namespace {

using Host = VarnelBusinessDataInterface;

const char *const kEmpty = "what is unknown gives an empty answer";

void expectNone(int size)
{
    expect(size == 0, kEmpty, QStringLiteral("%1 entries").arg(size));
}

void expectNoText(const QString &text)
{
    expect(text.isEmpty(), kEmpty, shown(text));
}

void expectNoNumber(double number)
{
    expect(!(number != 0), kEmpty, QString::number(number));
}

void fundAccount(const KnownValues &)
{
    expectNone(Host::GetAccountInfoListFromFund(kUnknown, true).size());
}

void emptyFundAccount(const KnownValues &)
{
    expectNone(Host::GetAccountInfoListFromFund(QString(), true).size());
}

void tradingAccount(const KnownValues &)
{
    expectNone(Host::GetAccountInfoListFromTrade(kUnknown, true).size());
}

void accountDetails(const KnownValues &)
{
    expectNone(present(CBusinessDataBase::GetInstance()).GetAccountDetailsByTradinngAccount(kUnknown).size());
}

void accountParameters(const KnownValues &)
{
    expectNone(
        present(CBusinessDataBase::GetInstance()).getTradeAccountParam(kUnknown, Tessar_Values::Currency::CNY).size());
}

void assetProperty(const KnownValues &)
{
    expectNoText(Host::GetAccountAssetPropByTradingAccount(kUnknown));
}

void marketValue(const KnownValues &)
{
    const VarnelMarketValueInfo info = Host::GetMarketValueByTradingAccount(kUnknown);
    expectNoNumber(info.marketValue);
    expectNoNumber(info.holdingCost);
}

void positions(const KnownValues &)
{
    // The details of an unknown account, as the library passes them on.
    expectNone(BusinessDataInterface::GetPositionListByAccount({}, {}, {}, {}, {}, {}, {}).size());
}

void order(const KnownValues &)
{
    expectNone(BusinessDataInterface::GetOrderDetailByOrderID(kUnknown).size());
}

void securityDetails(const KnownValues &)
{
    expectNone(Host::GetSecurityDetailsBySymbol(kUnknown).size());
}

void securityId(const KnownValues &)
{
    expectNoText(Host::GetSymbolBySecurityIDAndExchange(kUnknown, kUnknown));
}

void securityTypes(const KnownValues &)
{
    expectNoText(Host::GetSecurityTypeBySymbol(kUnknown));
    expectNoText(Host::GetSecuritySubTypeBySymbol(kUnknown));
}

void securityNumbers(const KnownValues &)
{
    expectNoNumber(Host::GetPricePrecisionBySymbol(kUnknown, QString()));
    expectNoNumber(Host::GetQtyStepBySymbol(kUnknown));
    expectNoNumber(double(Host::GetMinQtyPerOrderBySymbol(kUnknown)));
    expectNoNumber(double(Host::GetMaxQtyPerOrderBySymbol(kUnknown, {})));
}

void priceUnit(const KnownValues &)
{
    const double unit = Host::GetPriceUnitBySymbol(kUnknown, 0.0, QString());
    expect(!(unit != 0), "an unknown symbol has the price unit that the caller names as default",
           QString::number(unit));
}

void snapshot(const KnownValues &)
{
    expectNone(present(CommonQuotaHandler::instance()).GetQuotaSnapshot(kUnknown, 0).size());
}

void bond(const KnownValues &)
{
    stuBaseInfo info;
    const QString result = present(QvBondDataMgr::instance()).GetSingelBondBaseInfo(kUnknown, info);
    expect(result != QLatin1String("0"), "for an unknown bond the result is another text than \"0\"", shown(result));
}

void tradableQty(const KnownValues &)
{
    OrderRequestList orders(kUnknown, QString());
    orders.AddSymbol(kUnknown, 0, kUnknown, QString(), kUnknown, QString());
    const QString qty = present(VarnelTradeLogic::instance()).queryMaxTradableQty(orders);
    expect(qty.toDouble() <= 0, "nothing can be traded with an unknown account", shown(qty));
}

} // namespace

CheckTable unknownChecks()
{
    return {
        {"unknown.fund-account", "An order for a mistyped account goes to another account.", fundAccount},
        {"unknown.empty-fund-account", "An order without an account goes to an account that nobody has chosen.",
         emptyFundAccount},
        {"unknown.trading-account", "Changes of an unknown account are pushed as those of another.", tradingAccount},
        {"unknown.account-details", "Pages show the assets of another account.", accountDetails},
        {"unknown.account-parameters", "Pages show the cash of another account.", accountParameters},
        {"unknown.asset-property", "Pages show the assets of another kind of account.", assetProperty},
        {"unknown.market-value", "Pages show the market value of another account.", marketValue},
        {"unknown.positions", "Pages show the positions of another account.", positions},
        {"unknown.order", "The cancellation of a mistyped order goes to the account of another order.", order},
        {"unknown.security-details", "Pages show the details of another security.", securityDetails},
        {"unknown.security-id", "Positions show the quotes of another security.", securityId},
        {"unknown.security-types", "Pages show a type for a security that does not exist.", securityTypes},
        {"unknown.security-numbers", "Pages offer orders for a security that does not exist.", securityNumbers},
        {"unknown.price-unit", "Pages show a price unit for a security that does not exist.", priceUnit},
        {"unknown.snapshot", "Pages show the quote of another security.", snapshot},
        {"unknown.bond", "Pages show an interest for securities that have none.", bond},
        {"unknown.tradable-qty", "Pages offer a quantity that cannot be traded.", tradableQty},
    };
}

} // namespace HostCheck
