#include "Algo_Fields.h"
#include "BaseBusinessDataInterface.h"
#include "Bus.h"
#include "CBusinessDataBase.h"
#include "Fault.h"
#include "Orlo_Keys.h"
#include "QvCore.h"
#include "Tessar_Fields.h"
#include "Tessar_Values.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelUtils.h"
#include "Varnel_Fields.h"
#include "Varnel_MsgType.h"
#include "World.h"

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <limits>

using namespace Varnel_Fields;

CBusinessDataBase *CBusinessDataBase::GetInstance()
{
    static CBusinessDataBase instance;
    return &instance;
}

QString CBusinessDataBase::GetLoginAccount() const
{
    if (hasFault("NoLoginAccount") || isLostOnThisThread("LoginLostOnOtherThreads"))
        return {};
    return hasFault("LoginAccountWithSlash") ? QStringLiteral("desk/7") : QStringLiteral("user7");
}

QVariantMap CBusinessDataBase::GetAccountDetailsByTradinngAccount(const QString &tradingAccount)
{
    if ((!isTradingAccount(tradingAccount) && !hasFault("UnknownAccountHasDetails")) ||
        isLostOnThisThread("AccountsLostOnOtherThreads"))
        return {};
    QVariantMap details{{NormalFundEx::marketValue, 1234.5},
                        {NormalFundEx::assetBalance, 9000.0},
                        {Futures::HoldingCost, 1200.0},
                        {Futures::OpenCost, 1200.0},
                        {AssetView::profitAndLoss, 34.5}};
    if (!hasFault("DetailsWithoutAccount"))
        details.insert(Tessar_Fields::UserAccount::tradingAccount, tradingAccount);
    if (hasFault("AmountsAsGroupedTexts"))
        details.insert(NormalFundEx::marketValue, QStringLiteral("1,234.50"));
    return details;
}

QVariantMap CBusinessDataBase::getTradeAccountParam(const QString &account, const QString &currency)
{
    const bool isKnown = isTradingAccount(account) || hasFault("UnknownAccountHasCash");
    if (!isKnown || currency != Tessar_Values::Currency::CNY)
        return {};
    QVariantMap parameters{{Varnel_Fields::Security::withDrawQuota, 100.0}};
    if (!hasFault("NoCash"))
        parameters.insert(Tessar_Fields::Security::tradeableCash, 200.0);
    return parameters;
}

QString CBusinessDataBase::getClientOrderID()
{
    static std::atomic<int> last{0};
    thread_local int lastOfThread = 0;
    return QString::number(hasFault("ClientOrderIdsOfEachThread") ? ++lastOfThread : ++last);
}

QvCore *QvCore::instance()
{
    static QvCore core;
    return &core;
}

QString QvCore::getCurrentToken()
{
    return hasFault("NoToken") ? QString() : QStringLiteral("token");
}

namespace {

using Accounts = QList<tagUserAccountInfo>;

Accounts knownAccount()
{
    return {{kFundAccount, QStringLiteral("基金"), kTradingAccount}};
}

} // namespace

using Host = VarnelBusinessDataInterface;

Accounts Host::GetAccountInfoListFromFund(QString fundAccount, bool)
{
    const bool isKnown = fundAccount == kFundAccount || (fundAccount.isEmpty() && hasFault("EmptyFundAccountKnown")) ||
                         (!fundAccount.isEmpty() && hasFault("UnknownFundAccountKnown"));
    if (!isKnown)
        return {};
    Accounts accounts = knownAccount();
    if (hasFault("FundWithoutTradingAccount"))
        accounts.first().tradingAccount.clear();
    return accounts;
}

Accounts Host::GetAccountInfoListFromTrade(QString tradingAccount, bool)
{
    if (!isTradingAccount(tradingAccount) && !hasFault("UnknownTradingAccountKnown"))
        return {};
    Accounts accounts = knownAccount();
    if (hasFault("TradingAccountWithoutFund"))
        accounts.first().fundAccount.clear();
    if (hasFault("AccountsDisagree"))
        accounts.first().fundAccount = QStringLiteral("another");
    return accounts;
}

Accounts Host::GetFundAccountListByFundProp(int, int, bool, const QStringList &, bool)
{
    Accounts accounts = knownAccount();
    if (hasFault("FundListHasEmptyAccount"))
        accounts.append(tagUserAccountInfo());
    return accounts;
}

QMap<QString, QString> Host::GetOrganTraderList()
{
    return {{hasFault("TraderWithoutId") ? QString() : QStringLiteral("user7"), QStringLiteral("交易员")}};
}

QString Host::GetVarnelOrderStation(QString information)
{
    return hasFault("NoStation") ? information : QStringLiteral("station;") + information;
}

QString Host::GetAccountAssetPropByTradingAccount(const QString &tradingAccount)
{
    const bool isKnown = isTradingAccount(tradingAccount);
    if (isKnown ? hasFault("NoAssetProperty") : !hasFault("UnknownAccountHasProperty"))
        return {};
    return QStringLiteral("stock");
}

VarnelMarketValueInfo Host::GetMarketValueByTradingAccount(const QString &tradingAccount)
{
    if (!isTradingAccount(tradingAccount) && !hasFault("UnknownAccountHasMarketValue"))
        return {};
    const double value = hasFault("MarketValueIsNoNumber") ? std::numeric_limits<double>::quiet_NaN() : 1234.5;
    return {value, 1200};
}

int Host::GetOrloEventMsgIdByStr(const QString &eventName)
{
    if (isLostOnThisThread("EventIdsOtherOnOtherThreads"))
        return 0x60000;
    if (eventName == Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_IN)
        return kStrategyCalls;
    return strategyAnswers();
}

void BaseBusinessDataInterface::OpenMenuTabByMenuID(const QString &)
{
    if (hasFault("UnknownMenuCrashes"))
        std::abort();
}

ShowType VarnelUtils::GetCurrentShowType()
{
    return PlainShowType;
}

QList<QVariantMap> VarnelUtils::QueryDatasFromServer(QvPresenterClass *, const QString &msgType,
                                                     const QVariantMap &conditions, QueryDataMode, QString &error)
{
    const bool isKnown = msgType == Varnel_MsgType::QueryAlgoPermissionsByConditionRequest;
    if (!isKnown && !hasFault("FailedQueryWithoutError"))
        error = QStringLiteral("查询失败");
    if (isKnown && hasFault("PermissionQueryFails"))
        error = QStringLiteral("没有应答");
    if (hasFault("PermissionQueryNeedsTheUserInterface"))
        askTheUserInterface();
    if (hasFault("PermissionQueryTurnsTheLoop"))
        QCoreApplication::processEvents();
    if (!isKnown || !error.isEmpty())
        return {};
    using Algo_Fields::VarnelStrategy::supportType;
    QVariantMap permission{{supportType, conditions.value(supportType)}};
    if (!hasFault("PermissionWithoutFundAccount"))
        permission.insert(FastFocus::fundAccount, kFundAccount);
    return {permission};
}
