#pragma once

#include "HostApi.h"
#include "HostTypes.h"

#include <QMap>
#include <QStringList>
#include <QVariantMap>

/// Formats position records as the terminal's own position table shows them.
class VARNEL_HOST_API VarnelPositionReportGen {
public:
    /// As VarnelEntrustReportGen::fillLineData, with columns such as "current_qty"; quote is the current snapshot of
    /// the position's security, possibly empty. The library passes kind 0, an empty text and false. Pages get the
    /// display texts of accounts, name and exchange, and the underlying values of the other columns.
    static bool fillLineData(int kind, const QVariantMap &record, QMap<int, QVariantMap> &lineData,
                             const QStringList &fields, ShowType showType, const QVariantMap &quote,
                             const QString &text, bool flag);
};
