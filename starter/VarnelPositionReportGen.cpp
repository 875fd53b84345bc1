// The terminal must put here: the columns of its position table. A column that is left out reaches pages as null.
#include "VarnelPositionReportGen.h"

bool VarnelPositionReportGen::fillLineData(int, const QVariantMap &, QMap<int, QVariantMap> &, const QStringList &,
                                           ShowType, const QVariantMap &, const QString &, bool)
{
    return false;
}
