#include "dataservice/DataProcess.h"

#include "common/ReportColumns.h"
#include "common/WebConstants.h"
#include "dataservice/CellTable.h"

using namespace WebConstants;

// The vocabulary of page records: the page key of each column of the host's report generators. The maps rename only;
// values are the generators' own.

void DataProcess::initOrderField()
{
    orderFieldMap = {
        {Column::entrustTime, Key::entrustTime},
        {Column::securityId, Key::securityId},
        {Column::securityName, Key::securityName},
        {Column::side, Key::side},
        {Column::sideUnion, Key::sideUnion},
        {Column::status, Key::status},
        {Column::priceType, Key::priceType},
        {Column::price, Key::price},
        {Column::entrustQty, Key::entrustQty},
        {Column::leaveQty, Key::leaveQty},
        {Column::dealQty, Key::dealQty},
        {Column::dealPrice, Key::dealPrice},
        {Column::entrustAmount, Key::entrustAmount},
        {Column::dealAmount, Key::dealAmount},
        {Column::fundAccountName, Key::fundAccountName},
        {Column::fundAccount, Key::fundAccount},
        {Column::exchangeOrderId, Key::exchangeOrderId},
        {Column::orderId, Key::orderId},
        {Column::traderName, Key::traderName},
        {Column::remark, Key::remark},
        {Column::dealTime, Key::dealTime},
        {Column::execId, Key::execId},
        {Column::userRef3, Key::orderSource}, // meant: the third user reference carries an order's source
        {Column::algoId, Key::instanceID},    // meant: the strategy instance that placed the order
    };

    entrustFieldList = ReportColumns::entrust();
    executionFieldList = ReportColumns::execution();
    entrustCells = std::make_unique<const CellTable>(entrustFieldList, orderFieldMap);
    executionCells = std::make_unique<const CellTable>(executionFieldList, orderFieldMap);
}

void DataProcess::initPositionField()
{
    positionFieldMap = {
        {Column::fundAccountName, Key::fundAccountName},
        {Column::fundAccount, Key::fundAccount},
        {Column::securityAccount, Key::securityAccount},
        {Column::securityName, Key::securityName},
        {Column::securityId, Key::securityId},
        {Column::exchange, Key::exchange},
        {Column::lastPrice, Key::lastPrice},
        {Column::riseDownRate, Key::riseDownRate},
        {Column::currentQty, Key::currentQty},
        {Column::tradableQty, Key::tradableQty},
        {Column::costPrice, Key::costPrice},
        {Column::cost, Key::cost},
        {Column::costCNY, Key::costCNY},
        {Column::marketValue, Key::marketValue},
        {Column::marketValueCNY, Key::marketValueCNY},
        {Column::totalCost, Key::totalCost},
        {Column::profit, Key::profit},
        {Column::profitRate, Key::profitRate},
    };

    positionFieldList = ReportColumns::position();
    positionIdentityFieldList = QStringList{
        Column::fundAccountName, Column::fundAccount, Column::securityAccount, Column::securityName, Column::exchange,
    };
}
