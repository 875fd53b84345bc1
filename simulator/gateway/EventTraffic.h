#pragma once

#include "traffic/Entry.h"

class QCefEvent;

namespace sim {

/// Enters the event for a page in the log, on the thread that broadcasts it. Returns the entry of its delivery.
traffic::Entry logEvent(int page, const QCefEvent &event);

/// Enters that the page has received the event. size: bytes of its frame. Any thread.
void logDelivery(traffic::Entry delivery, qint64 size);

} // namespace sim
