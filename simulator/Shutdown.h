#pragma once

namespace sim {

/// From now on SIGINT and SIGTERM (on Windows: Ctrl-C and closing the console) end the application's event loop with
/// status 0. Needs the QCoreApplication.
void quitOnSignals();

} // namespace sim
