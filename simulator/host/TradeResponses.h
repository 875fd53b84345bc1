#pragma once

#include "Tessar_Fields.h"

#include <QVariantMap>

namespace sim {

/// The answer of the trade services for one order. reason: why it was refused, as a text for its owner; empty when it
/// was accepted.
inline QVariantMap tradeResponse(const QString &orderId, const QString &reason)
{
    return {{Tessar_Fields::Security::orderID, orderId},
            {Tessar_Fields::System::requestExeStatus, reason.isEmpty() ? QStringLiteral("0") : QStringLiteral("-1")},
            {Tessar_Fields::System::textDescription, reason}};
}

} // namespace sim
