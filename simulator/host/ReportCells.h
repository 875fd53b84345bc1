#pragma once

#include "HostTypes.h"

#include <QHash>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

namespace sim {

/// The format of a table cell.
enum class CellFormat {
    Text,
    Time,      ///< shows the time of day
    Qty,       ///< a whole number
    Price,     ///< with the decimals of the security
    Limit,     ///< the price of an order, or the words for "market price"
    Money,     ///< two decimals
    Rate,      ///< a part of 1, shown in percent
    Exchange,  ///< the code, shown as its name
    Trader,    ///< the identifier, shown as the name
    Direction, ///< buy or sell, from a side
    Side,
    Status,
    PriceType,
};

/// A column of a report: its field and its format.
struct ReportColumn {
    QString field;
    CellFormat format;
};

using ReportColumns = QHash<QString, ReportColumn>; ///< by column identifier

/// Sets lineData[i] to the display text and the value of column fields[i]. Columns that the report does not have, and
/// columns whose field the record does not have, are left out.
void fillCells(QMap<int, QVariantMap> &lineData, const QStringList &fields, const ReportColumns &columns,
               const QVariantMap &record, ShowType showType);

} // namespace sim
