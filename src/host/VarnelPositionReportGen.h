#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QMap>
#include <QStringList>
#include <QVariantMap>

/// Formats position records as the terminal's own position table shows them.
class VARNEL_HOST_API VarnelPositionReportGen {
public:
    /// As VarnelEntrustReportGen::fillLineData; quote is the current snapshot of the position's security,
    /// possibly empty. The library passes 0 first, an empty text and false last.
    static bool fillLineData(int kind, const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                             const QStringList &fields, ShowType showType, const QVariantMap &quote,
                             const QString &text, bool flag);
};
