#include "services/TradeCodes.h"

#include "Varnel_Values.h"

namespace sim {

const CodeTable<Side> &sideCodes()
{
    static const CodeTable<Side> table({
        {Side::Buy, QStringLiteral("Buy"), QStringLiteral("买入")},
        {Side::Sell, QStringLiteral("Sell"), QStringLiteral("卖出")},
        {Side::BuyOpen, QStringLiteral("BuyOpen"), QStringLiteral("买入开仓")},
        {Side::SellOpen, QStringLiteral("SellOpen"), QStringLiteral("卖出开仓")},
        {Side::BuyClose, QStringLiteral("BuyClose"), QStringLiteral("买入平仓")},
        {Side::SellClose, QStringLiteral("SellClose"), QStringLiteral("卖出平仓")},
        {Side::AfterHoursBuy, Varnel_Values::SideUnion::pfpBuy, QStringLiteral("盘后买入")},
        {Side::AfterHoursSell, Varnel_Values::SideUnion::pfpSell, QStringLiteral("盘后卖出")},
    });
    return table;
}

const CodeTable<OrderStatus> &orderStatusCodes()
{
    static const CodeTable<OrderStatus> table({
        {OrderStatus::ToBeSent, QStringLiteral("ToBeSent"), QStringLiteral("待报")},
        {OrderStatus::Sent, QStringLiteral("Sent"), QStringLiteral("正报")},
        {OrderStatus::Reported, QStringLiteral("Reported"), QStringLiteral("已报")},
        {OrderStatus::PartlyFilled, QStringLiteral("PartlyFilled"), QStringLiteral("部分成交")},
        {OrderStatus::Filled, QStringLiteral("Filled"), QStringLiteral("全部成交")},
        {OrderStatus::ToBeCancelled, QStringLiteral("ToBeCancelled"), QStringLiteral("待撤")},
        {OrderStatus::PartlyCancelled, QStringLiteral("PartlyCancelled"), QStringLiteral("部成部撤")},
        {OrderStatus::Cancelled, QStringLiteral("Cancelled"), QStringLiteral("已撤")},
        {OrderStatus::Rejected, QStringLiteral("Rejected"), QStringLiteral("废单")},
    });
    return table;
}

const CodeTable<PriceType> &priceTypeCodes()
{
    static const CodeTable<PriceType> table({
        {PriceType::Limit, QStringLiteral("Limit"), QStringLiteral("限价")},
        {PriceType::Market, QStringLiteral("Market"), QStringLiteral("市价")},
        {PriceType::AfterHours, Varnel_Values::PriceType::shEntrustAfterHours, QStringLiteral("盘后定价")},
    });
    return table;
}

} // namespace sim
