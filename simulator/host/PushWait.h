#pragma once

#include <QString>

namespace sim {

class Terminal;

/// Spins the event loop until a page has got a push with that order. Exchange time runs on meanwhile. Gives up after
/// some seconds, because there may be no page, or time may stand still. User-interface thread only.
void awaitPushOf(const QString &orderId, Terminal &terminal);

} // namespace sim
