#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QMap>
#include <QStringList>
#include <QVariantMap>

/// Formats execution (deal) records as the terminal's own execution table shows them.
class VARNEL_HOST_API VarnelDealReportGen {
public:
    /// As VarnelEntrustReportGen::fillLineData, with columns such as "deal_time".
    static bool fillLineData(const QVariantMap &record, QMap<int, QVariantMap> &lineData, const QStringList &fields,
                             ShowType showType, bool flag);
};
