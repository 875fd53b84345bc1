#pragma once

#include <QLoggingCategory>

/// What the simulator says of its connections.
Q_DECLARE_LOGGING_CATEGORY(gatewayLog)
