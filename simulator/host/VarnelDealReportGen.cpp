#include "VarnelDealReportGen.h"

#include "Tessar_Fields.h"
#include "Varnel_Fields.h"
#include "host/ReportCells.h"
#include "services/TradeRecords.h"
#include "traffic/Log.h"

using namespace sim;
using namespace Tessar_Fields;

bool VarnelDealReportGen::fillLineData(const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                                       const QStringList &fields, ShowType showType, bool)
{
    traffic::log().hostCall("VarnelDealReportGen::fillLineData");
    static const ReportColumns columns{
        {QStringLiteral("deal_time"), {RecordField::dealTime, CellFormat::Time}},
        {QStringLiteral("security_id"), {Security::securityID, CellFormat::Text}},
        {QStringLiteral("security_name"), {Security::chineseName, CellFormat::Text}},
        {QStringLiteral("side"), {Security::side, CellFormat::Direction}},
        {QStringLiteral("side_union"), {Security::side, CellFormat::Side}},
        {QStringLiteral("deal_price"), {RecordField::dealPrice, CellFormat::Price}},
        {QStringLiteral("deal_qty"), {RecordField::dealQty, CellFormat::Qty}},
        {QStringLiteral("deal_amount"), {RecordField::dealAmount, CellFormat::Money}},
        {QStringLiteral("fundaccount_name"), {RecordField::fundAccountName, CellFormat::Text}},
        {QStringLiteral("fundaccount"), {Varnel_Fields::FastFocus::fundAccount, CellFormat::Text}},
        {QStringLiteral("exec_id"), {Security::execID, CellFormat::Text}},
        {QStringLiteral("exchange_order_id"), {RecordField::exchangeOrderID, CellFormat::Text}},
        {QStringLiteral("order_id"), {Security::orderID, CellFormat::Text}},
        {QStringLiteral("trader_name"), {UserAccount::loginUserId, CellFormat::Trader}},
        {QStringLiteral("user_ref_3"), {Varnel_Fields::ETF::UserReference3, CellFormat::Text}},
        {QStringLiteral("algo_id"), {Security::algoOrderID, CellFormat::Text}},
    };
    fillCells(lineData, fields, columns, record, showType);
    return true;
}
