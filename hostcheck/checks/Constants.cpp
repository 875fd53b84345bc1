#include "hostcheck/checks/Tables.h"

#include "Algo_Fields.h"
#include "Algo_Values.h"
#include "Orlo_Keys.h"
#include "SearchConstants.h"
#include "Tessar_Fields.h"
#include "Tessar_Values.h"
#include "Varnel_Fields.h"
#include "Varnel_MsgType.h"
#include "Varnel_Values.h"
#include "common/WebConstants.h"

#include <QMap>

namespace HostCheck {

namespace {

using namespace Tessar_Fields;
using namespace Varnel_Fields;
namespace TesSecurity = Tessar_Fields::Security;
namespace Own = WebConstants;

struct Constant {
    const char *name;
    const QString &text;
};

/// Field names that stand in one record, one message or one query together.
struct Group {
    const char *name;
    std::vector<Constant> constants;
};

std::vector<Group> records()
{
    return {
        {"the conditions of an order query",
         {{"UserAccount::tradingAccount", UserAccount::tradingAccount},
          {"Security::symbol", TesSecurity::symbol},
          {"UserAccount::loginUserId", UserAccount::loginUserId},
          {"Security::orderStatus", TesSecurity::orderStatus},
          {"ETF::UserReference3", ETF::UserReference3},
          {"Security::algoOrderID", TesSecurity::algoOrderID}}},
        {"an order or execution",
         {{"Security::orderID", TesSecurity::orderID},
          {"Security::execID", TesSecurity::execID},
          {"Security::clOrdID", TesSecurity::clOrdID},
          {"UserAccount::tradingAccount", UserAccount::tradingAccount}}},
        {"the response to an order",
         {{"Security::symbol", TesSecurity::symbol},
          {"Security::side", TesSecurity::side},
          {"CustomField::priceType", CustomField::priceType},
          {"Security::price", TesSecurity::price},
          {"Security::orderQty", TesSecurity::orderQty},
          {"UserAccount::securityExchange", UserAccount::securityExchange},
          {"Security::orderID", TesSecurity::orderID},
          {"System::requestExeStatus", System::requestExeStatus},
          {"System::textDescription", System::textDescription}}},
        {"an account's details and parameters",
         {{"UserAccount::tradingAccount", UserAccount::tradingAccount},
          {"Security::positionFlag", TesSecurity::positionFlag},
          {"NormalFundEx::marketValue", NormalFundEx::marketValue},
          {"NormalFundEx::assetBalance", NormalFundEx::assetBalance},
          {"Futures::HoldingCost", Futures::HoldingCost},
          {"Futures::OpenCost", Futures::OpenCost},
          {"Futures::ClosePosProfitDate", Futures::ClosePosProfitDate},
          {"Futures::ClosePosProfitTrade", Futures::ClosePosProfitTrade},
          {"AssetView::profitAndLoss", AssetView::profitAndLoss},
          {"AssetView::returnRate", AssetView::returnRate},
          {"Security::tradeableCash", TesSecurity::tradeableCash},
          {"Security::withDrawQuota", Varnel_Fields::Security::withDrawQuota}}},
        {"a security's details",
         {{"Security::symbol", TesSecurity::symbol},
          {"Security::securityID", TesSecurity::securityID},
          {"UserAccount::securityExchange", UserAccount::securityExchange},
          {"Security::chineseName", TesSecurity::chineseName},
          {"Security::spellCode", TesSecurity::spellCode},
          {"Security::priceLimitType", TesSecurity::priceLimitType},
          {"MDCFieldDefine::mdcSecurityType", MDCFieldDefine::mdcSecurityType}}},
        {"the permission query and its records",
         {{"UserAccount::userID", UserAccount::userID},
          {"VarnelStrategy::supportType", Algo_Fields::VarnelStrategy::supportType},
          {"FastFocus::fundAccount", FastFocus::fundAccount}}},
        {"a strategy message",
         {{"VeloxFields::msgSubEventType", VeloxFields::msgSubEventType},
          {"System::msgType", System::msgType},
          {"System::clientMsgID", System::clientMsgID},
          {"System::textDescription", System::textDescription},
          {"Strategy::strategyBasicParam", Strategy::strategyBasicParam},
          {"Strategy::strategyID", Strategy::strategyID},
          {"Strategy::strategyStatus", Strategy::strategyStatus},
          {"VeloxFields::strategyCustomMsgID", VeloxFields::strategyCustomMsgID},
          {"VeloxFields::strategyCustomMsg", VeloxFields::strategyCustomMsg},
          {"the library's file path", Own::Strategy::filePath},
          {"the library's language", Own::Strategy::language},
          {"the library's fund accounts", Own::Strategy::fundAccountList},
          {"the library's extension", Own::Strategy::extField},
          {"the library's subscription type", Own::Strategy::subType},
          {"the library's view", Own::Strategy::panelPtr},
          {"the library's call identifier", Own::Strategy::uuid}}},
        {"a K-line request",
         {{"System::msgType", System::msgType},
          {"System::clientMsgID", System::clientMsgID},
          {"the library's symbol", Own::KLine::symbol},
          {"the library's start time", Own::KLine::startTime},
          {"the library's stop time", Own::KLine::stopTime},
          {"the library's ex-rights type", Own::KLine::exRightsType},
          {"the library's period", Own::KLine::periodType}}},
    };
}

const Group &strategyMessages()
{
    static const Group group{"the kinds of strategy messages",
                             {{"MSEventStartStrategyReq", VeloxValues::MSEventStartStrategyReq},
                              {"MSEventStopStrategyReq", VeloxValues::MSEventStopStrategyReq},
                              {"MSEventQueryStrategyStatusReq", VeloxValues::MSEventQueryStrategyStatusReq},
                              {"MSEventStrategyCustomMsg", VeloxValues::MSEventStrategyCustomMsg},
                              {"MSEventSubStrategyMsg", VeloxValues::MSEventSubStrategyMsg},
                              {"MSEventStartStrategyRsp", VeloxValues::MSEventStartStrategyRsp},
                              {"MSEventStopStrategyRsp", VeloxValues::MSEventStopStrategyRsp},
                              {"MSEventQueryStrategyStatusRsp", VeloxValues::MSEventQueryStrategyStatusRsp},
                              {"MSEventStrategyStatusUpdate", VeloxValues::MSEventStrategyStatusUpdate}}};
    return group;
}

void expectDistinct(const Group &group)
{
    QMap<QString, QString> names;
    for (const Constant &constant : group.constants) {
        const QString name = QString::fromLatin1(constant.name);
        if (constant.text.isEmpty())
            continue; // constants.present tells
        expect(!names.contains(constant.text), "the texts are different from each other",
               QStringLiteral("in %1, %2 and %3 are both \"%4\"")
                   .arg(QString::fromLatin1(group.name), names.value(constant.text), name, constant.text));
        names.insert(constant.text, name);
    }
}

void present(const KnownValues &)
{
    const Group values{
        "values",
        {{"MdcSecurityType::BondType", Tessar_Values::MdcSecurityType::BondType},
         {"PositionFalg::shortPosition", Tessar_Values::PositionFalg::shortPosition},
         {"Currency::CNY", Tessar_Values::Currency::CNY},
         {"FundAccountType::Future", Varnel_Values::FundAccountType::Future},
         {"PriceType::shEntrustAfterHours", Varnel_Values::PriceType::shEntrustAfterHours},
         {"SideUnion::pfpBuy", Varnel_Values::SideUnion::pfpBuy},
         {"SideUnion::pfpSell", Varnel_Values::SideUnion::pfpSell},
         {"SupprotType::KFZ_SNB", Algo_Values::SupprotType::KFZ_SNB},
         {"QueryAlgoPermissionsByConditionRequest", Varnel_MsgType::QueryAlgoPermissionsByConditionRequest},
         {"EventMsgName::VELOX_TRANS_MSG_IN", Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_IN},
         {"EventMsgName::VELOX_TRANS_MSG_OUT", Orlo_Keys::EventMsgName::VELOX_TRANS_MSG_OUT},
         {"Constants::SymbolSearch_Split", Constants::SymbolSearch_Split}}};
    std::vector<Group> groups = records();
    groups.push_back(strategyMessages());
    groups.push_back(values);
    QStringList empty;
    for (const Group &group : groups) {
        for (const Constant &constant : group.constants) {
            const QString name = QString::fromLatin1(constant.name);
            if (constant.text.isEmpty() && !empty.contains(name))
                empty.append(name);
        }
    }
    expect(empty.isEmpty(), "every constant has a text",
           QStringLiteral("empty: %1").arg(empty.join(QStringLiteral(", "))));
}

void recordsDistinct(const KnownValues &)
{
    for (const Group &group : records())
        expectDistinct(group);
}

void strategyMessagesDistinct(const KnownValues &)
{
    expectDistinct(strategyMessages());
}

void afterHoursSides(const KnownValues &)
{
    using namespace Varnel_Values;
    expectDistinct({"the sides of orders after hours",
                    {{"SideUnion::pfpBuy", SideUnion::pfpBuy}, {"SideUnion::pfpSell", SideUnion::pfpSell}}});
}

void buySides(const KnownValues &)
{
    const QStringList &sides = Varnel_Values::SideUnion::buyItemList;
    expect(!sides.isEmpty() && !sides.contains(QString()) && !sides.contains(Varnel_Values::SideUnion::pfpSell),
           "SideUnion::buyItemList has the sides that buy, no empty one and not pfpSell", shown(sides));
}

} // namespace

CheckTable constantChecks()
{
    return {
        {"constants.present",
         "The library reads and writes fields under these texts; what stands under an empty one is lost.", present},
        {"constants.fields-distinct", "One field of a record overwrites another.", recordsDistinct},
        {"constants.strategy-messages-distinct",
         "A page gets the answer to another strategy call than the one that it made.", strategyMessagesDistinct},
        {"constants.after-hours-sides", "An order after hours that should sell buys, or the other way round.",
         afterHoursSides},
        {"constants.buy-sides", "Orders after hours that should buy sell, or the other way round.", buySides},
    };
}

} // namespace HostCheck
