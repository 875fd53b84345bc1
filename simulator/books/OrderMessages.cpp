#include "books/OrderMessages.h"

namespace sim {

qint64 OrderMessages::whenAfter(qint64 time, const Delay &delay)
{
    return time + m_chance.whole(delay.shortest, delay.longest);
}

void OrderMessages::sendOrders(const std::vector<int> &orders, const QDateTime &now)
{
    const qint64 sent = whenAfter(now.toMSecsSinceEpoch(), m_delays.send);
    m_lastOrders = qMax(m_lastOrders, whenAfter(sent, m_delays.accept));
    m_messages.emplace(sent, Message{OrderIsSent, orders});
    m_messages.emplace(m_lastOrders, Message{OrderReachesExchange, orders});
}

void OrderMessages::sendCancels(const std::vector<int> &orders, bool mayOvertake, const QDateTime &now)
{
    const qint64 arrives = whenAfter(now.toMSecsSinceEpoch(), m_delays.cancel);
    m_messages.emplace(mayOvertake ? arrives : qMax(arrives, m_lastOrders), Message{CancelReachesExchange, orders});
}

std::optional<QDateTime> OrderMessages::next() const
{
    if (m_messages.empty())
        return std::nullopt;
    return QDateTime::fromMSecsSinceEpoch(m_messages.begin()->first, Qt::UTC);
}

OrderMessages::Message OrderMessages::take()
{
    const auto first = m_messages.begin();
    Message message = std::move(first->second);
    m_messages.erase(first);
    return message;
}

} // namespace sim
