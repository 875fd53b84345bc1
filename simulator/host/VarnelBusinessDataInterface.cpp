#include "VarnelBusinessDataInterface.h"

#include "Varnel_Values.h"
#include "terminal/Terminal.h"
#include "traffic/Log.h"

namespace {

QList<tagUserAccountInfo> infos(const sim::FundAccount *fund, const QStringList &tradingAccounts)
{
    QList<tagUserAccountInfo> list;
    for (const QString &tradingAccount : tradingAccounts)
        list.append({fund->account, fund->name, tradingAccount});
    return list;
}

} // namespace

// The flags are unnamed: the library always passes the same values.

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetAccountInfoListFromFund(QString fundAccount, bool)
{
    sim::traffic::log().hostCall("VarnelBusinessDataInterface::GetAccountInfoListFromFund");
    const sim::FundAccount *fund = sim::Terminal::instance().accounts().fundAccount(fundAccount);
    return fund ? infos(fund, fund->tradingAccounts) : QList<tagUserAccountInfo>();
}

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetAccountInfoListFromTrade(QString tradingAccount, bool)
{
    sim::traffic::log().hostCall("VarnelBusinessDataInterface::GetAccountInfoListFromTrade");
    const sim::FundAccount *fund = sim::Terminal::instance().accounts().fundAccountOf(tradingAccount);
    return fund ? infos(fund, {tradingAccount}) : QList<tagUserAccountInfo>();
}

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetFundAccountListByFundProp(int fundProp, int, bool,
                                                                                    const QStringList &, bool)
{
    sim::traffic::log().hostCall("VarnelBusinessDataInterface::GetFundAccountListByFundProp");
    QList<tagUserAccountInfo> list;
    const QVector<sim::FundAccount> funds = sim::Terminal::instance().accounts().fundAccounts(fundProp);
    for (const sim::FundAccount &fund : funds)
        list.append({fund.account, fund.name, fund.tradingAccounts.first()});
    return list;
}

QMap<QString, QString> VarnelBusinessDataInterface::GetOrganTraderList()
{
    sim::traffic::log().hostCall("VarnelBusinessDataInterface::GetOrganTraderList");
    return sim::Terminal::instance().accounts().traders();
}

QString VarnelBusinessDataInterface::GetVarnelOrderStation(QString information)
{
    sim::traffic::log().hostCall("VarnelBusinessDataInterface::GetVarnelOrderStation");
    const QString &station = sim::Terminal::instance().station();
    return information.isEmpty() ? station : station + QLatin1Char(';') + information;
}

QString VarnelBusinessDataInterface::GetAccountAssetPropByTradingAccount(const QString &tradingAccount)
{
    sim::traffic::log().hostCall("VarnelBusinessDataInterface::GetAccountAssetPropByTradingAccount");
    const sim::FundAccount *fund = sim::Terminal::instance().accounts().fundAccountOf(tradingAccount);
    if (!fund)
        return {};
    return fund->property == sim::FuturesFund ? Varnel_Values::FundAccountType::Future : QStringLiteral("stock");
}

VarnelMarketValueInfo VarnelBusinessDataInterface::GetMarketValueByTradingAccount(const QString &tradingAccount)
{
    sim::traffic::log().hostCall("VarnelBusinessDataInterface::GetMarketValueByTradingAccount");
    const sim::Terminal &terminal = sim::Terminal::instance();
    const std::optional<sim::Ledger> ledger = terminal.desk().ledger(tradingAccount);
    if (!ledger)
        return {};
    const sim::Valuation value = ledger->value(terminal.latestPrices());
    return {value.marketValue.yuan(), value.holdingCost.yuan()};
}

int VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(const QString &eventName)
{
    sim::traffic::log().hostCall("VarnelBusinessDataInterface::GetOrloEventMsgIdByStr");
    return sim::Terminal::instance().bus()->eventId(eventName);
}
