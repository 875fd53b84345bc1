#pragma once

#include "books/DeskEvents.h"

#include <mutex>

namespace sim {

class Accounts;
class MessageBus;

/// Tells the bus what has happened at the trading desk, in the records that the list queries answer.
/// Made and destroyed by the Terminal. Any thread; the bus delivers on its own. It asks nobody for anything: all that
/// it tells is in what it is given.
class TradeEvents {
public:
    /// Both must outlive it.
    TradeEvents(MessageBus &bus, const Accounts &accounts) : m_bus(bus), m_accounts(accounts) {}

    void tell(const DeskEvents &events);

    /// The day's orders are there. Told once, however often it is called.
    void tellOrdersLoaded();

private:
    void tell(const OrderEntered &event);
    void tell(const OrderChanged &event);
    void tell(const OrderExecuted &event);
    void tell(const PositionChanged &event);
    void tell(const AssetChanged &event);

    MessageBus &m_bus;
    const Accounts &m_accounts;
    std::once_flag m_ordersLoaded;
};

} // namespace sim
