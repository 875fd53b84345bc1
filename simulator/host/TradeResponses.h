#pragma once

#include "Tessar_Fields.h"

#include <QVariantMap>

namespace sim {

/// What the trade services answer for one order: its identifier, and why not, for its owner to read; without a reason
/// it went well.
inline QVariantMap tradeResponse(const QString &orderId, const QString &reason)
{
    return {{Tessar_Fields::Security::orderID, orderId},
            {Tessar_Fields::System::requestExeStatus, reason.isEmpty() ? QStringLiteral("0") : QStringLiteral("-1")},
            {Tessar_Fields::System::textDescription, reason}};
}

} // namespace sim
