// The terminal must put here: the columns of its execution table. A column that is left out reaches pages as null.
#include "VarnelDealReportGen.h"

bool VarnelDealReportGen::fillLineData(const QVariantMap &, QMap<int, QVariantMap> &, const QStringList &, ShowType,
                                       bool)
{
    return false;
}
