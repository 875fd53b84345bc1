#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QMap>
#include <QStringList>
#include <QVariantMap>

/// Formats order (entrust) records as the terminal's own order table shows them.
class VARNEL_HOST_API VarnelEntrustReportGen {
public:
    /// For column i of fields, sets lineData[i]["0"] to the display text and lineData[i]["256"] to the underlying
    /// value; what it leaves out reads as null. record: from BusinessDataInterface or from the row of a bus event.
    /// lineData is empty on entry. fields: the host's column identifiers, such as "entrust_time", always the same ones
    /// in the same order. The library passes false last and ignores the result. Called once for each record, on threads
    /// of page calls and on the message center's thread, possibly at once: lists have thousands of records.
    static bool fillLineData(const QVariantMap &record, QMap<int, QVariantMap> &lineData, const QStringList &fields,
                             ShowType showType, bool flag);
};
