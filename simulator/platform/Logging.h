#pragma once

#include <QLoggingCategory>

/// Log of the simulated terminal, for page developers.
Q_DECLARE_LOGGING_CATEGORY(terminalLog)
