#include "gateway/EventLog.h"

#include "gateway/EventFrame.h"
#include "traffic/Log.h"
#include "traffic/Scope.h"

namespace sim {

traffic::Entry logEvent(int page, const QCefEvent &event)
{
    traffic::Entry entry;
    entry.kind = traffic::Entry::Event;
    entry.page = page;
    entry.name = event.eventName();
    entry.isReply = isReply(event);
    if (entry.isReply)
        entry.uuid = uuidOf(event);
    traffic::Entry delivery = entry;
    delivery.kind = traffic::Entry::EventDelivered;
    delivery.time = traffic::log().now();
    delivery.call = traffic::CallScope::current();
    entry.args = event.arguments();
    delivery.of = traffic::log().add(std::move(entry));
    return delivery;
}

void logDelivery(traffic::Entry delivery, qint64 size)
{
    delivery.size = size;
    delivery.duration = traffic::log().now() - delivery.time;
    traffic::log().add(std::move(delivery));
}

} // namespace sim
