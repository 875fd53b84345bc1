#pragma once

#include "exchange/Random.h"

#include <QDateTime>

#include <map>
#include <optional>
#include <vector>

namespace sim {

/// A time between two others, in milliseconds of exchange time.
struct Delay {
    int shortest;
    int longest;
};

/// How long what happens to an order takes. A plain value.
struct OrderDelays {
    Delay send{1, 3};      ///< until the broker has sent it
    Delay accept{5, 50};   ///< from there until the exchange has accepted or refused it
    Delay cancel{10, 100}; ///< from the wish to cancel it until the exchange does so
};

/// The messages about orders that have not arrived yet, by the time at which they do.
/// A plain value; the TradingDesk has one and guards it.
class OrderMessages {
public:
    enum Kind { OrderIsSent, OrderReachesExchange, CancelReachesExchange };

    /// The orders of a list travel together.
    struct Message {
        Kind kind;
        std::vector<int> orders; ///< their numbers
    };

    /// key: of the random numbers.
    OrderMessages(const OrderDelays &delays, quint64 key) : m_delays(delays), m_chance(key) {}

    /// The orders are sent to the exchange. They do not overtake those that were sent before.
    void sendOrders(const std::vector<int> &orders, const QDateTime &now);

    /// mayOvertake: none of the orders is still on its way to the exchange.
    void sendCancels(const std::vector<int> &orders, bool mayOvertake, const QDateTime &now);

    /// When the next message arrives; nothing when there is none.
    std::optional<QDateTime> next() const;

    /// Takes the next one. Messages of one time come in the order in which they were sent.
    Message take();

private:
    qint64 whenAfter(qint64 time, const Delay &delay);

    const OrderDelays m_delays;
    random::Sequence m_chance;
    std::multimap<qint64, Message> m_messages; ///< by time in milliseconds
    qint64 m_lastOrders = 0;                   ///< when the orders that were sent last reach the exchange
};

} // namespace sim
