#include "gateway/Outbox.h"

namespace sim {

bool Outbox::add(const EventFrame &frame, const traffic::Entry &delivery)
{
    const auto place = m_ticks.constFind(frame.tickOf);
    if (place != m_ticks.cend()) {
        Sent &waiting = (*place)->event;
        m_bytes += frame.text.size() - waiting.text.size();
        waiting = {frame.text, delivery};
        return true;
    }
    // Only what waits already counts, so that one long answer does not end the connection.
    if (m_bytes > kMaxBytes)
        return false;
    m_waiting.push_back({{frame.text, delivery}, frame.tickOf});
    m_bytes += frame.text.size();
    if (!frame.tickOf.isEmpty())
        m_ticks.insert(frame.tickOf, std::prev(m_waiting.end()));
    if (frame.holdsTicksBack)
        m_ticks.clear();
    return true;
}

Outbox::Sent Outbox::take()
{
    const auto first = m_waiting.begin();
    const auto place = m_ticks.find(first->tickOf);
    if (place != m_ticks.end() && *place == first)
        m_ticks.erase(place);
    Sent event = std::move(first->event);
    m_bytes -= event.text.size();
    m_waiting.erase(first);
    return event;
}

} // namespace sim
