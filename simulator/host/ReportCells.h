#pragma once

#include "HostTypes.h"

#include <QHash>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

namespace sim {

/// How a table cell writes the value of a field.
enum class CellFormat {
    Text,
    Time,      ///< shows the time of day
    Qty,       ///< a whole number
    Price,     ///< with the decimals of the security
    Limit,     ///< the price of an order, which may have none
    Money,     ///< two decimals
    Rate,      ///< a part of 1, shown in percent
    Exchange,  ///< the code, shown as its name
    Trader,    ///< the identifier, shown as the name
    Direction, ///< of a side: the code of buying or selling
    Side,
    Status,
    PriceType,
};

/// A column of a report: where its value comes from and how it is written.
struct ReportColumn {
    QString field;
    CellFormat format;
};

using ReportColumns = QHash<QString, ReportColumn>; ///< by column identifier

/// Sets lineData[i] to the display text and the value of column fields[i]. A column that the report does not have,
/// or whose field the record lacks, is left out.
void fillCells(QMap<int, QVariantMap> &lineData, const QStringList &fields, const ReportColumns &columns,
               const QVariantMap &record, ShowType showType);

} // namespace sim
