#include "VarnelBusinessDataInterface.h"

#include "platform/Terminal.h"

namespace {

QList<tagUserAccountInfo> infos(const sim::FundAccount *fund, const QStringList &tradingAccounts)
{
    QList<tagUserAccountInfo> list;
    for (const QString &tradingAccount : tradingAccounts)
        list.append({fund->account, fund->name, tradingAccount});
    return list;
}

} // namespace

// The flags whose values the library fixes have no other meaning here: they are left unnamed.

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetAccountInfoListFromFund(QString fundAccount, bool)
{
    const sim::FundAccount *fund = sim::Terminal::instance().books().fundAccount(fundAccount);
    return fund ? infos(fund, fund->tradingAccounts) : QList<tagUserAccountInfo>();
}

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetAccountInfoListFromTrade(QString tradingAccount, bool)
{
    const sim::FundAccount *fund = sim::Terminal::instance().books().fundAccountOf(tradingAccount);
    return fund ? infos(fund, {tradingAccount}) : QList<tagUserAccountInfo>();
}

QList<tagUserAccountInfo> VarnelBusinessDataInterface::GetFundAccountListByFundProp(int fundProp, int, bool,
                                                                                    const QStringList &, bool)
{
    QList<tagUserAccountInfo> list;
    const QVector<sim::FundAccount> funds = sim::Terminal::instance().books().fundAccounts(fundProp);
    for (const sim::FundAccount &fund : funds)
        list.append({fund.account, fund.name, fund.tradingAccounts.first()});
    return list;
}

QMap<QString, QString> VarnelBusinessDataInterface::GetOrganTraderList()
{
    return sim::Terminal::instance().books().traders();
}

QString VarnelBusinessDataInterface::GetVarnelOrderStation(QString information)
{
    const QString &station = sim::Terminal::instance().station();
    return information.isEmpty() ? station : station + QLatin1Char(';') + information;
}

int VarnelBusinessDataInterface::GetOrloEventMsgIdByStr(const QString &eventName)
{
    return sim::Terminal::instance().bus()->eventId(eventName);
}
