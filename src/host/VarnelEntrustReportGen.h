#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QMap>
#include <QStringList>
#include <QVariantMap>

/// Formats order (entrust) records as the terminal's own order table shows them.
class VARNEL_HOST_API VarnelEntrustReportGen {
public:
    /// For column i of fields, sets lineData[i]["0"] to the display text and lineData[i]["256"] to the
    /// underlying value; what it leaves out reads as null. The library passes false last and ignores the
    /// result. Called on threads of page calls and on the message center's thread, possibly at once.
    static bool fillLineData(const QVariantMap &record, QMap<int, QVariantMap> &lineData, const QStringList &fields,
                             ShowType showType, bool flag);
};
