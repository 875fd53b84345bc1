#pragma once

#include <QLoggingCategory>

/// Log of the connections.
Q_DECLARE_LOGGING_CATEGORY(gatewayLog)
