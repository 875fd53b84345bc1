#include "VarnelEntrustReportGen.h"

#include "Tessar_Fields.h"
#include "Varnel_Fields.h"
#include "host/ReportCells.h"
#include "services/TradeRecords.h"
#include "traffic/Log.h"

using namespace sim;
using namespace Tessar_Fields;

bool VarnelEntrustReportGen::fillLineData(const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                                          const QStringList &fields, ShowType showType, bool)
{
    traffic::log().hostCall("VarnelEntrustReportGen::fillLineData");
    static const ReportColumns columns{
        {QStringLiteral("entrust_time"), {RecordField::orderTime, CellFormat::Time}},
        {QStringLiteral("security_id"), {Security::securityID, CellFormat::Text}},
        {QStringLiteral("security_name"), {Security::chineseName, CellFormat::Text}},
        {QStringLiteral("side"), {Security::side, CellFormat::Direction}},
        {QStringLiteral("side_union"), {Security::side, CellFormat::Side}},
        {QStringLiteral("status"), {Security::orderStatus, CellFormat::Status}},
        {QStringLiteral("price_type"), {CustomField::priceType, CellFormat::PriceType}},
        {QStringLiteral("price"), {Security::price, CellFormat::Limit}},
        {QStringLiteral("entrust_qty"), {Security::orderQty, CellFormat::Qty}},
        {QStringLiteral("leave_qty"), {RecordField::leaveQty, CellFormat::Qty}},
        {QStringLiteral("deal_qty"), {RecordField::dealQty, CellFormat::Qty}},
        {QStringLiteral("deal_price"), {RecordField::dealPrice, CellFormat::Price}},
        {QStringLiteral("entrust_amount"), {RecordField::orderAmount, CellFormat::Money}},
        {QStringLiteral("deal_amount"), {RecordField::dealAmount, CellFormat::Money}},
        {QStringLiteral("fundaccount_name"), {RecordField::fundAccountName, CellFormat::Text}},
        {QStringLiteral("fundaccount"), {Varnel_Fields::FastFocus::fundAccount, CellFormat::Text}},
        {QStringLiteral("exchange_order_id"), {RecordField::exchangeOrderID, CellFormat::Text}},
        {QStringLiteral("order_id"), {Security::orderID, CellFormat::Text}},
        {QStringLiteral("trader_name"), {UserAccount::loginUserId, CellFormat::Trader}},
        {QStringLiteral("remark"), {RecordField::remark, CellFormat::Text}},
        {QStringLiteral("user_ref_3"), {Varnel_Fields::ETF::UserReference3, CellFormat::Text}},
        {QStringLiteral("algo_id"), {Security::algoOrderID, CellFormat::Text}},
    };
    fillCells(lineData, fields, columns, record, showType);
    return true;
}
