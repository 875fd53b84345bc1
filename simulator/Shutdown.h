#pragma once

namespace sim {

/// From now on the first SIGINT or SIGTERM (on Windows: Ctrl-C or closing the console) ends the application's event
/// loop with status 0. A second one ends the process at once, with status 128 + its number, for a shutdown that hangs.
/// Needs the QCoreApplication.
void quitOnSignals();

} // namespace sim
