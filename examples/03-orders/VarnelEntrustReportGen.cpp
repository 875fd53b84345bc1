// The columns of the terminal's order table.
#include "VarnelEntrustReportGen.h"

#include "Tessar_Fields.h"

#include <QHash>

bool VarnelEntrustReportGen::fillLineData(const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                                          const QStringList &fields, ShowType, bool)
{
    using namespace Tessar_Fields;
    static const QHash<QString, QString> fieldOfColumn{
        {"order_id", Security::orderID},     {"security_id", Security::symbol},   {"side", Security::side},
        {"price", Security::price},          {"entrust_qty", Security::orderQty}, {"status", Security::orderStatus},
        {"remark", System::textDescription},
    };
    for (int i = 0; i < fields.size(); ++i) {
        const auto field = fieldOfColumn.constFind(fields[i]);
        if (field == fieldOfColumn.cend())
            continue; // pages get null
        const QVariant value = record.value(*field);
        lineData[i] = {{"0", value.toString()}, {"256", value}}; // the shown text, and the value behind it
    }
    return true;
}
