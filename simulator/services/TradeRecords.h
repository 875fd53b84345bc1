#pragma once

#include "books/Accounts.h"
#include "books/Orders.h"
#include "books/Positions.h"

#include <QHash>
#include <QString>
#include <QVariantMap>

#include <functional>

namespace sim {

/// Fields of the terminal's records for which src/host has no constant.
namespace RecordField {
inline const QString fundAccountName = QStringLiteral("fundAccountName");

inline const QString orderTime = QStringLiteral("orderTime");
inline const QString orderAmount = QStringLiteral("orderAmount");
inline const QString leaveQty = QStringLiteral("leaveQty");
inline const QString exchangeOrderID = QStringLiteral("exchangeOrderID");
inline const QString remark = QStringLiteral("remark");

// For an order: of all its fills. For an execution: of that fill.
inline const QString dealTime = QStringLiteral("dealTime");
inline const QString dealPrice = QStringLiteral("dealPrice");
inline const QString dealQty = QStringLiteral("dealQty");
inline const QString dealAmount = QStringLiteral("dealAmount");
inline const QString fee = QStringLiteral("fee");

inline const QString currentQty = QStringLiteral("currentQty");
inline const QString tradableQty = QStringLiteral("tradableQty");

// A position valued at a quote
inline const QString lastPrice = QStringLiteral("lastPrice");
inline const QString riseDownRate = QStringLiteral("riseDownRate");
inline const QString costPrice = QStringLiteral("costPrice");
inline const QString marketValue = QStringLiteral("marketValue");
inline const QString profit = QStringLiteral("profit");
inline const QString profitRate = QStringLiteral("profitRate");
} // namespace RecordField

/// How each field of a record is read from the books. Records are made of these fields, and queries select by them.
template <typename Source>
using RecordFields = QHash<QString, std::function<QVariant(const Source &)>>;

struct OrderSource {
    const Accounts &accounts;
    const Order &order;
};

struct ExecutionSource {
    const Accounts &accounts;
    const Order &order; ///< of the execution
    const Execution &execution;
};

struct PositionSource {
    const FundAccount &fund;
    const QString &tradingAccount;
    const Position &position;
};

/// The position flag of a long or short position.
QString positionFlag(bool isShort);

const RecordFields<OrderSource> &orderFields();
const RecordFields<ExecutionSource> &executionFields();
const RecordFields<PositionSource> &positionFields();

template <typename Source>
QVariantMap recordOf(const RecordFields<Source> &fields, const Source &source)
{
    QVariantMap record;
    for (auto field = fields.cbegin(); field != fields.cend(); ++field)
        record.insert(field.key(), field.value()(source));
    return record;
}

} // namespace sim
