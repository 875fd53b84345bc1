#include "dataservice/DataProcess.h"

#include "common/Reply.h"
#include "dataservice/BondInterest.h"
#include "dataservice/CellTable.h"

#include "CommonQuotaHandler.h"
#include "Tessar_Fields.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelDealReportGen.h"
#include "VarnelEntrustReportGen.h"
#include "VarnelPositionReportGen.h"

using namespace WebConstants;

namespace {

/// The symbol of a position, for which some records have only the security identifier.
QString positionSymbol(const QVariantMap &record)
{
    using namespace Tessar_Fields;
    QString symbol = record.value(Security::symbol).toString();
    if (!symbol.isEmpty())
        return symbol;
    const QString securityId = record.value(Security::securityID).toString();
    symbol = VarnelBusinessDataInterface::GetSymbolBySecurityIDAndExchange(
        securityId, record.value(UserAccount::securityExchange).toString());
    return symbol.isEmpty() ? securityId : symbol;
}

template <typename ReportGen>
LineData filledLine(const QVariantMap &record, const QStringList &columns, ShowType showType)
{
    LineData lineData;
    ReportGen::fillLineData(record, lineData, columns, showType, false);
    return lineData;
}

} // namespace

QVariantMap DataProcess::packageEntrustOrderMsg(const QVariantMap &record)
{
    return entrustCells->toMap(filledLine<VarnelEntrustReportGen>(record, entrustFieldList, showType));
}

QVariantMap DataProcess::packageExecutionOrderMsg(const QVariantMap &record)
{
    return executionCells->toMap(filledLine<VarnelDealReportGen>(record, executionFieldList, showType));
}

void DataProcess::writeEntrustOrder(JsonWriter &json, const QVariantMap &record) const
{
    entrustCells->write(json, filledLine<VarnelEntrustReportGen>(record, entrustFieldList, showType));
}

void DataProcess::writeExecutionOrder(JsonWriter &json, const QVariantMap &record) const
{
    executionCells->write(json, filledLine<VarnelDealReportGen>(record, executionFieldList, showType));
}

QVariantMap DataProcess::packagePositionMsg(const QVariantMap &record)
{
    const QString symbol = positionSymbol(record);
    const QVariantMap quote = CommonQuotaHandler::instance()->GetQuotaSnapshot(symbol, 0);
    LineData lineData;
    VarnelPositionReportGen::fillLineData(0, record, lineData, positionFieldList, showType, quote, QString(), false);

    QVariantMap packaged;
    for (int i = 0; i < positionFieldList.size(); ++i) {
        const QString &column = positionFieldList.at(i);
        const QString &role = positionIdentityFieldList.contains(column) ? LineDataRole::display : LineDataRole::user;
        packaged.insert(positionFieldMap.value(column), lineData.value(i).value(role));
    }
    const QVariantMap details = VarnelBusinessDataInterface::GetSecurityDetailsBySymbol(symbol);
    packaged.insert(Key::stockInterest, bondInterest(symbol, details));
    return packaged;
}

QString DataProcess::getEntrustOrderMsg(const QVariantMap &record)
{
    JsonWriter json;
    writeEntrustOrder(json, record);
    return json.take();
}

QString DataProcess::getExecutionOrderMsg(const QVariantMap &record)
{
    JsonWriter json;
    writeExecutionOrder(json, record);
    return json.take();
}

QString DataProcess::getPositionMsg(const QVariantMap &record)
{
    return Reply::toText(packagePositionMsg(record), QtWarningMsg, VARNEL_OPERATION(DataProcess, getPositionMsg));
}

QString DataProcess::getAssetMsg(const QString &fundAccount)
{
    // Meant: unlike the others, an empty record is the text "{}".
    return Reply::toText(packageAsset(fundAccount), QtDebugMsg, VARNEL_OPERATION(DataProcess, getAssetMsg));
}
