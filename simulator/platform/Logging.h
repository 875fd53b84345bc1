#pragma once

#include <QLoggingCategory>

/// What the simulated terminal says of itself to whoever develops a page.
Q_DECLARE_LOGGING_CATEGORY(terminalLog)
