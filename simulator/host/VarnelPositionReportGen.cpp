#include "VarnelPositionReportGen.h"

#include "Tessar_Fields.h"
#include "Varnel_Fields.h"
#include "host/ReportCells.h"
#include "services/QuoteFields.h"
#include "services/TradeRecords.h"
#include "terminal/Terminal.h"
#include "traffic/Log.h"

#include <cmath>

using namespace sim;
using namespace Tessar_Fields;
using namespace Varnel_Fields;

namespace {

/// Adds the fields that depend on the quote. Without a price, a quantity or a cost the fields that need it are left
/// out.
void addValues(QVariantMap &record, const QVariantMap &quote)
{
    const QString symbol = record.value(Tessar_Fields::Security::symbol).toString();
    const Instrument *instrument = Terminal::instance().exchange().instrument(symbol);
    if (!instrument || !record.contains(RecordField::currentQty))
        return;
    const double units = record.value(RecordField::currentQty).toDouble() * instrument->multiplier;
    const double cost = record.value(Futures::HoldingCost).toDouble();
    if (units != 0)
        record.insert(RecordField::costPrice, cost / units);

    const double last = quote.value(QuoteFields::last).toDouble();
    const double previousClose = quote.value(QuoteFields::previousClose).toDouble();
    if (last <= 0 || previousClose <= 0)
        return;
    const double profit = last * units - cost;
    record.insert(RecordField::lastPrice, last);
    record.insert(RecordField::riseDownRate, last / previousClose - 1);
    record.insert(RecordField::marketValue, last * units);
    record.insert(RecordField::profit, profit);
    if (cost != 0)
        record.insert(RecordField::profitRate, profit / std::abs(cost));
}

} // namespace

// Some numbers and texts are unnamed: the library always passes the same values.

bool VarnelPositionReportGen::fillLineData(int, const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                                           const QStringList &fields, ShowType showType, const QVariantMap &quote,
                                           const QString &, bool)
{
    traffic::log().hostCall("VarnelPositionReportGen::fillLineData");
    // All money is in yuan, so that the columns in yuan repeat the others.
    static const ReportColumns columns{
        {QStringLiteral("fundaccount_name"), {RecordField::fundAccountName, CellFormat::Text}},
        {QStringLiteral("fundaccount"), {FastFocus::fundAccount, CellFormat::Text}},
        {QStringLiteral("security_account"), {UserAccount::tradingAccount, CellFormat::Text}},
        {QStringLiteral("security_name"), {Tessar_Fields::Security::chineseName, CellFormat::Text}},
        {QStringLiteral("security_id"), {Tessar_Fields::Security::securityID, CellFormat::Text}},
        {QStringLiteral("exchange"), {UserAccount::securityExchange, CellFormat::Exchange}},
        {QStringLiteral("last_price"), {RecordField::lastPrice, CellFormat::Price}},
        {QStringLiteral("rise_down_rate"), {RecordField::riseDownRate, CellFormat::Rate}},
        {QStringLiteral("current_qty"), {RecordField::currentQty, CellFormat::Qty}},
        {QStringLiteral("tradable_qty"), {RecordField::tradableQty, CellFormat::Qty}},
        {QStringLiteral("cost_price"), {RecordField::costPrice, CellFormat::Price}},
        {QStringLiteral("cost"), {Futures::HoldingCost, CellFormat::Money}},
        {QStringLiteral("cost_cny"), {Futures::HoldingCost, CellFormat::Money}},
        {QStringLiteral("market_value"), {RecordField::marketValue, CellFormat::Money}},
        {QStringLiteral("market_value_cny"), {RecordField::marketValue, CellFormat::Money}},
        {QStringLiteral("total_cost"), {Futures::OpenCost, CellFormat::Money}},
        {QStringLiteral("profit"), {RecordField::profit, CellFormat::Money}},
        {QStringLiteral("profit_rate"), {RecordField::profitRate, CellFormat::Rate}},
    };
    QVariantMap valued = record;
    addValues(valued, quote);
    fillCells(lineData, fields, columns, valued, showType);
    return true;
}
