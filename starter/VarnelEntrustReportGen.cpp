// The terminal must put here: the columns of its order table. A column that is left out reaches pages as null.
#include "VarnelEntrustReportGen.h"

bool VarnelEntrustReportGen::fillLineData(const QVariantMap &, QMap<int, QVariantMap> &, const QStringList &, ShowType,
                                          bool)
{
    return false;
}
