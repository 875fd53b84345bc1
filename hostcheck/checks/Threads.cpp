#include "hostcheck/Waiting.h"
#include "hostcheck/checks/Records.h"
#include "hostcheck/checks/Tables.h"

#include "CBusinessDataBase.h"
#include "CommonQuotaHandler.h"
#include "QvCore.h"
#include "VarnelBusiUtils.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelEntrustReportGen.h"
#include "common/WebConstants.h"

#include <functional>

// A dispatcher without a view answers its page on a thread of its own. The host must give the same answers there, to
// several threads at once. What changes with time, as amounts and quotes, is compared by its fields.

namespace HostCheck {

namespace {

using Host = VarnelBusinessDataInterface;
using Ask = std::function<QVariant()>;

QVariant fieldsOf(const QVariantMap &fields)
{
    return QVariant(QStringList(fields.keys()));
}

QVariant accountsOf(const QList<tagUserAccountInfo> &accounts)
{
    QStringList texts;
    for (const tagUserAccountInfo &account : accounts)
        texts.append({account.fundAccount, account.fundAccountName, account.tradingAccount});
    return texts;
}

void expectSameOnThreads(const std::vector<Ask> &questions)
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 5;
    std::vector<QVariant> wanted;
    wanted.reserve(questions.size());
    for (const Ask &ask : questions)
        wanted.push_back(ask());
    std::vector<std::pair<QVariant, QVariant>> differences(kThreads);
    onThreads(kThreads, [&](int number) {
        for (int round = 0; round < kRounds; ++round) {
            for (size_t i = 0; i < questions.size(); ++i) {
                const QVariant seen = questions[i]();
                if (seen != wanted[i])
                    differences[size_t(number)] = {wanted[i], seen};
            }
        }
    });
    for (const auto &[mine, theirs] : differences)
        expect(mine == theirs, "the host gives the same answers on every thread, to several threads at once",
               QStringLiteral("%1 on the user-interface thread, %2 on another").arg(shown(mine), shown(theirs)));
}

void login(const KnownValues &)
{
    CBusinessDataBase &data = present(CBusinessDataBase::GetInstance());
    QvCore &core = present(QvCore::instance());
    expectSameOnThreads({[&] { return QVariant(data.GetLoginAccount()); },
                         [&] { return QVariant(core.getCurrentToken()); },
                         [] { return QVariant(Host::GetVarnelOrderStation(QString())); },
                         [] { return QVariant(QStringList(Host::GetOrganTraderList().keys())); }});
}

void accounts(const KnownValues &known)
{
    CBusinessDataBase &data = present(CBusinessDataBase::GetInstance());
    expectSameOnThreads({[&] { return accountsOf(Host::GetAccountInfoListFromTrade(known.tradingAccount, true)); },
                         [&] { return accountsOf(Host::GetAccountInfoListFromFund(kUnknown, true)); },
                         [&] { return QVariant(Host::GetAccountAssetPropByTradingAccount(known.tradingAccount)); },
                         [&] { return fieldsOf(data.GetAccountDetailsByTradinngAccount(known.tradingAccount)); },
                         [&] { return QVariant(somePositions(known).isEmpty()); }});
}

void securities(const KnownValues &known)
{
    expectSameOnThreads({[&] { return QVariant(Host::GetSecurityDetailsBySymbol(known.symbol)); },
                         [&] { return QVariant(Host::GetPricePrecisionBySymbol(known.symbol, QString())); },
                         [&] { return QVariant(Host::GetPriceUnitBySymbol(known.symbol, 0.0, QString())); },
                         [&] { return QVariant(Host::GetQtyStepBySymbol(known.symbol)); },
                         [&] { return QVariant(Host::GetMaxQtyPerOrderBySymbol(known.symbol, {})); },
                         [&] { return QVariant(Host::GetSecurityTypeBySymbol(known.symbol)); }});
}

void quotes(const KnownValues &known)
{
    CommonQuotaHandler &handler = present(CommonQuotaHandler::instance());
    expectSameOnThreads({[&] { return fieldsOf(handler.GetQuotaSnapshot(known.symbol, 0)); },
                         [&] { return QVariant(handler.GetQtyUnit(known.symbol)); }});
}

void orders(const KnownValues &)
{
    const QVariantMap order = someOrders().records.value(0);
    expectSameOnThreads({[] { return QVariant(someOrders().records.isEmpty()); },
                         [] { return QVariant(someExecutions().records.isEmpty()); },
                         [&] {
                             QMap<int, QVariantMap> lineData;
                             VarnelEntrustReportGen::fillLineData(
                                 order, lineData, {WebConstants::Column::orderId, WebConstants::Column::securityId},
                                 PlainShowType, false);
                             return QVariant(QVariantList{lineData.value(0), lineData.value(1)});
                         }});
}

} // namespace

CheckTable threadChecks()
{
    return {
        {"threads.login", "Pages whose dispatcher has no view get no login, or the terminal crashes.", login,
         Part::Login},
        {"threads.accounts", "Pages whose dispatcher has no view get no accounts, or the terminal crashes.", accounts,
         Part::Basic, TradingAccount},
        {"threads.securities", "Pages whose dispatcher has no view get no securities, or the terminal crashes.",
         securities, Part::Basic, Symbol},
        {"threads.quotes", "Pages whose dispatcher has no view get no quotes, or the terminal crashes.", quotes,
         Part::Basic, Symbol},
        {"threads.orders", "Pages whose dispatcher has no view get no orders, or the terminal crashes.", orders,
         Part::Login},
    };
}

} // namespace HostCheck
