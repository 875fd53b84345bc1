#include "VarnelPositionReportGen.h"

#include "Tessar_Fields.h"
#include "Varnel_Fields.h"
#include "terminal/Terminal.h"
#include "services/QuoteFields.h"
#include "host/ReportCells.h"
#include "services/TradeRecords.h"

#include <cmath>

using namespace sim;
using namespace Tessar_Fields;
using namespace Varnel_Fields;

namespace {

/// Adds what the position is worth at the quote. Nothing is added that cannot be known.
void valuate(QVariantMap &record, const QVariantMap &quote)
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

// The numbers and texts whose values the library fixes have no other meaning here: they are left unnamed.

bool VarnelPositionReportGen::fillLineData(int, const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                                           const QStringList &fields, ShowType showType, const QVariantMap &quote,
                                           const QString &, bool)
{
    // All money is in yuan, so that a column and its twin in yuan are the same.
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
    QVariantMap valuated = record;
    valuate(valuated, quote);
    fillCells(lineData, fields, columns, valuated, showType);
    return true;
}
