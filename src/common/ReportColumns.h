#pragma once

#include "common/WebConstants.h"

#include <QStringList>

/// The columns that the library asks the host's report generators for, in their order.
namespace ReportColumns {

inline QStringList entrust()
{
    using namespace WebConstants;
    return {
        Column::entrustTime,     Column::securityId, Column::securityName,    Column::side,
        Column::sideUnion,       Column::status,     Column::priceType,       Column::price,
        Column::entrustQty,      Column::leaveQty,   Column::dealQty,         Column::dealPrice,
        Column::entrustAmount,   Column::dealAmount, Column::fundAccountName, Column::fundAccount,
        Column::exchangeOrderId, Column::orderId,    Column::traderName,      Column::remark,
        Column::userRef3,        Column::algoId,
    };
}

/// Meant: the price stands before the quantity here, unlike in the order list.
inline QStringList execution()
{
    using namespace WebConstants;
    return {
        Column::dealTime,        Column::securityId,  Column::securityName, Column::side,
        Column::sideUnion,       Column::dealPrice,   Column::dealQty,      Column::dealAmount,
        Column::fundAccountName, Column::fundAccount, Column::execId,       Column::exchangeOrderId,
        Column::orderId,         Column::traderName,  Column::userRef3,     Column::algoId,
    };
}

inline QStringList position()
{
    using namespace WebConstants;
    return {
        Column::fundAccountName, Column::fundAccount, Column::securityAccount, Column::securityName,
        Column::securityId,      Column::exchange,    Column::lastPrice,       Column::riseDownRate,
        Column::currentQty,      Column::tradableQty, Column::costPrice,       Column::cost,
        Column::costCNY,         Column::marketValue, Column::marketValueCNY,  Column::totalCost,
        Column::profit,          Column::profitRate,
    };
}

} // namespace ReportColumns
