#include "CBusinessDataBase.h"

#include "Tessar_Fields.h"
#include "Tessar_Values.h"
#include "Varnel_Fields.h"
#include "services/TradeRecords.h"
#include "terminal/Terminal.h"
#include "traffic/Log.h"

using namespace sim;

CBusinessDataBase *CBusinessDataBase::GetInstance()
{
    static CBusinessDataBase instance;
    return &instance;
}

QString CBusinessDataBase::GetLoginAccount() const
{
    traffic::log().hostCall("CBusinessDataBase::GetLoginAccount");
    return Terminal::instance().login().account;
}

QVariantMap CBusinessDataBase::GetAccountDetailsByTradinngAccount(const QString &tradingAccount)
{
    traffic::log().hostCall("CBusinessDataBase::GetAccountDetailsByTradinngAccount");
    using namespace Varnel_Fields;
    const Terminal &terminal = Terminal::instance();
    const FundAccount *fund = terminal.accounts().fundAccountOf(tradingAccount);
    const std::optional<Ledger> ledger = terminal.desk().ledger(tradingAccount);
    if (!fund || !ledger)
        return {};
    const Valuation value = ledger->value(terminal.latestPrices());

    // An account whose balance is short reports its figures with the opposite sign, and the position flag "Short".
    const bool isShort = value.marketValue < Money();
    const int sign = isShort ? -1 : 1;
    const double profit = (value.marketValue - value.holdingCost).yuan();
    QVariantMap details{
        {Tessar_Fields::UserAccount::tradingAccount, tradingAccount},
        {FastFocus::fundAccount, fund->account},
        {Tessar_Fields::Security::positionFlag, positionFlag(isShort)},
        {NormalFundEx::marketValue, sign * value.marketValue.yuan()},
        {NormalFundEx::assetBalance, value.totalAsset.yuan()},
        {Futures::HoldingCost, sign * value.holdingCost.yuan()},
        {Futures::OpenCost, sign * value.openCost.yuan()},
        {Futures::ClosePosProfitDate, ledger->closeProfitByDate().yuan()},
        {Futures::ClosePosProfitTrade, ledger->closeProfitByTrade().yuan()},
        {AssetView::profitAndLoss, profit},
    };
    if (value.holdingCost != Money())
        details.insert(AssetView::returnRate, profit / (sign * value.holdingCost.yuan()));
    return details;
}

QVariantMap CBusinessDataBase::getTradeAccountParam(const QString &account, const QString &currency)
{
    traffic::log().hostCall("CBusinessDataBase::getTradeAccountParam");
    const Terminal &terminal = Terminal::instance();
    const std::optional<Ledger> ledger = terminal.desk().ledger(account);
    if (!ledger || currency != Tessar_Values::Currency::CNY)
        return {};
    const Valuation value = ledger->value(terminal.latestPrices());
    return {{Tessar_Fields::Security::tradeableCash, value.available.yuan()},
            {Varnel_Fields::Security::withDrawQuota, value.withdrawable.yuan()}};
}

QString CBusinessDataBase::getClientOrderID()
{
    traffic::log().hostCall("CBusinessDataBase::getClientOrderID");
    return Terminal::instance().desk().nextClientOrderId();
}
