#pragma once

#include "hostcheck/Probe.h"
#include "hostcheck/Waiting.h"

#include "CEventMessageCommon.h"
#include "CMessageCommon.h"

#include <atomic>
#include <memory>

/// What several topics say on the bus.
namespace HostCheck {

/// Counts the deletions of a message; shared with it, because the bus may delete it late.
using Deletions = std::shared_ptr<std::atomic<int>>;

/// A message that tells when it is deleted: the host deletes it through the base class.
template <typename Message>
class Tracked : public Message {
public:
    explicit Tracked(const Deletions &deletions) : m_deletions(deletions) {}
    ~Tracked() override
    {
        ++*m_deletions;
        wakeMainThread();
    }

private:
    const Deletions m_deletions;
};

/// The id of the events that carry the library's strategy calls.
int strategyCallEvent();

/// Publishes an event of that id that no strategy platform knows. The marker names it.
void publish(Probe &sender, const QString &marker, const Deletions &deletions = {});

/// The marker of an event that publish() has sent.
QString markerOf(const Probe::Delivery &delivery);

/// The markers of the deliveries, whatever operation the bus has called, in their order.
QStringList markersAt(const Probe &probe);

/// A request of that type with an empty body, for the bus to delete.
CMessageCommon *makeRequest(const Probe &sender, const QString &type, const Deletions &deletions = {});

} // namespace HostCheck
