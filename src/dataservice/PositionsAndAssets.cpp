#include "dataservice/DataProcess.h"

#include "common/AccountRules.h"
#include "common/Reply.h"

#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "Tessar_Fields.h"
#include "Tessar_Values.h"
#include "VarnelBusinessDataInterface.h"
#include "Varnel_Fields.h"
#include "Varnel_Values.h"

using namespace Varnel_Fields;
using namespace WebConstants;

namespace {

/// An amount as pages get it: always a text with two decimals.
QString amountText(double amount)
{
    return QString::number(amount, 'f', 2);
}

} // namespace

QString DataProcess::processPositionList(const QString &uuid, const QStringList &fundAccounts, const QString &symbol)
{
    QVariantList positions;
    for (const QString &fundAccount : fundAccounts) {
        const auto account = firstTradingAccount(fundAccount);
        if (!account)
            continue;
        const QVariantMap details =
            CBusinessDataBase::GetInstance()->GetAccountDetailsByTradinngAccount(account->tradingAccount);
        const QList<QVariantMap> records = BusinessDataInterface::GetPositionListByAccount(
            details, QString(), symbol, QString(), QString(), QString(), QString());
        for (const QVariantMap &record : records) {
            if (symbol.isEmpty() || record.value(Tessar_Fields::Security::symbol).toString() == symbol)
                positions.append(packagePositionMsg(record));
        }
    }
    return Reply::text(uuid, positions);
}

QString DataProcess::processAsset(const QString &uuid, const QString &fundAccounts)
{
    QVariantList assets;
    const QStringList parts = fundAccounts.split(QLatin1Char(','), Qt::KeepEmptyParts, Qt::CaseSensitive);
    for (const QString &fundAccount : parts) {
        const QVariantMap asset = packageAsset(fundAccount);
        if (!asset.isEmpty())
            assets.append(asset);
    }
    return Reply::text(uuid, assets);
}

QVariantMap DataProcess::packageAsset(const QString &fundAccount)
{
    const auto account = firstTradingAccount(fundAccount);
    if (!account)
        return QVariantMap();

    CBusinessDataBase *data = CBusinessDataBase::GetInstance();
    QVariantMap details = data->GetAccountDetailsByTradinngAccount(account->tradingAccount);
    const QVariantMap parameters = data->getTradeAccountParam(account->tradingAccount, Tessar_Values::Currency::CNY);
    for (auto parameter = parameters.cbegin(); parameter != parameters.cend(); ++parameter)
        details.insert(parameter.key(), parameter.value());
    refillMarketRelaData(details,
                         VarnelBusinessDataInterface::GetAccountAssetPropByTradingAccount(account->tradingAccount));

    const auto amount = [&details](const QString &field) { return details.value(field).toDouble(); };
    const bool isShort =
        details.value(Tessar_Fields::Security::positionFlag).toString() == Tessar_Values::PositionFalg::shortPosition;
    const double marketValue = amount(NormalFundEx::marketValue);
    const double openCost = amount(Futures::OpenCost);
    return QVariantMap{
        {Key::fundAccount, fundAccount},
        {Key::fundAccountName, account->fundAccountName},
        {Key::marketValue, amountText(marketValue)},
        {Key::holdingCost, amountText(amount(Futures::HoldingCost))},
        {Key::profit, amountText(amount(AssetView::profitAndLoss))},
        {Key::fetchableCash, amountText(amount(Varnel_Fields::Security::withDrawQuota))},
        {Key::totalAsset, amountText(amount(NormalFundEx::assetBalance))},
        {Key::tradableCash, amountText(amount(Tessar_Fields::Security::tradeableCash))},
        {Key::closePosProfitDate, amountText(amount(Futures::ClosePosProfitDate))},
        {Key::closePosProfitTrade, amountText(amount(Futures::ClosePosProfitTrade))},
        {Key::floatingProfit, amountText(isShort ? openCost - marketValue : marketValue - openCost)},
    };
}

void DataProcess::refillMarketRelaData(QVariantMap &details, const QString &assetProp)
{
    if (assetProp == Varnel_Values::FundAccountType::Future)
        return; // futures accounts keep the host's figures

    const QString tradingAccount = details.value(Tessar_Fields::UserAccount::tradingAccount).toString();
    const VarnelMarketValueInfo info = VarnelBusinessDataInterface::GetMarketValueByTradingAccount(tradingAccount);
    const double profit = info.marketValue - info.holdingCost;
    details.insert(NormalFundEx::marketValue, info.marketValue);
    details.insert(Futures::HoldingCost, info.holdingCost);
    details.insert(AssetView::profitAndLoss, profit);
    if (info.holdingCost > 1e-10)
        details.insert(AssetView::returnRate, profit / info.holdingCost);
}
