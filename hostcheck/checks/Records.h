#pragma once

#include "hostcheck/Check.h"

/// The host's own records, for the checks that look at some.
namespace HostCheck {

struct RecordPage {
    QList<QVariantMap> records;
    int total = -1; ///< what the host has set; -1 when it has not
};

/// The page of the orders, or executions, that meet the conditions. What the two page numbers mean is the host's:
/// several pairs are tried until one gives records.
RecordPage ordersWhere(const QVariantMap &conditions);
RecordPage executionsWhere(const QVariantMap &conditions);

/// At most fifty.
RecordPage someOrders();
RecordPage someExecutions();

/// The positions of the known trading account; none when it is not given.
QList<QVariantMap> somePositions(const KnownValues &known);

/// Those of one security.
QList<QVariantMap> positionsOf(const KnownValues &known, const QString &symbol);

} // namespace HostCheck
