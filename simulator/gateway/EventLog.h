#pragma once

#include "QCefEvent.h"
#include "traffic/Entry.h"

namespace sim {

/// Enters the event in the log of the traffic. Returns the entry of its delivery, for logDelivery.
traffic::Entry logEvent(int page, const QCefEvent &event);

/// Enters that the event has been handed over to the page. size: bytes of its frame.
void logDelivery(traffic::Entry delivery, qint64 size);

} // namespace sim
