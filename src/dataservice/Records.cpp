#include "dataservice/DataProcess.h"

#include "common/Reply.h"
#include "dataservice/BondInterest.h"

#include "CommonQuotaHandler.h"
#include "Tessar_Fields.h"
#include "VarnelBusinessDataInterface.h"
#include "VarnelDealReportGen.h"
#include "VarnelEntrustReportGen.h"
#include "VarnelPositionReportGen.h"

using namespace WebConstants;

namespace {

using LineData = QMap<int, QVariantMap>;

/// Each column's cell as the pair of its two roles; what the generator did not fill is null.
QVariantMap cellPairs(const LineData &lineData, const QStringList &columns, const QMap<QString, QString> &pageKeys)
{
    QVariantMap record;
    for (int i = 0; i < columns.size(); ++i) {
        const QVariantMap cell = lineData.value(i);
        record.insert(pageKeys.value(columns.at(i)), QVariantMap{{Key::displayRole, cell.value(LineDataRole::display)},
                                                                 {Key::userRole, cell.value(LineDataRole::user)}});
    }
    return record;
}

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

QString pushText(const QVariantMap &packaged, const Operation &operation)
{
    return packaged.isEmpty() ? QString() : Reply::toText(packaged, QtWarningMsg, operation);
}

} // namespace

QVariantMap DataProcess::packageEntrustOrderMsg(const QVariantMap &record)
{
    LineData lineData;
    VarnelEntrustReportGen::fillLineData(record, lineData, entrustFieldList, showType, false);
    return cellPairs(lineData, entrustFieldList, orderFieldMap);
}

QVariantMap DataProcess::packageExecutionOrderMsg(const QVariantMap &record)
{
    LineData lineData;
    VarnelDealReportGen::fillLineData(record, lineData, executionFieldList, showType, false);
    return cellPairs(lineData, executionFieldList, orderFieldMap);
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
    return pushText(packageEntrustOrderMsg(record), VARNEL_OPERATION(DataProcess, getEntrustOrderMsg));
}

QString DataProcess::getExecutionOrderMsg(const QVariantMap &record)
{
    return pushText(packageExecutionOrderMsg(record), VARNEL_OPERATION(DataProcess, getExecutionOrderMsg));
}

QString DataProcess::getPositionMsg(const QVariantMap &record)
{
    return pushText(packagePositionMsg(record), VARNEL_OPERATION(DataProcess, getPositionMsg));
}

QString DataProcess::getAssetMsg(const QString &fundAccount)
{
    // Meant: unlike the others, an empty record is the text "{}".
    return Reply::toText(packageAsset(fundAccount), QtDebugMsg, VARNEL_OPERATION(DataProcess, getAssetMsg));
}
