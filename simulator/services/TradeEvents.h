#pragma once

#include "books/DeskEvents.h"

#include <QVariantMap>

#include <mutex>

namespace sim {

class Accounts;
class Faults;
class MessageBus;

/// Announces the events of the trading desk on the bus, as the records that the list queries return.
/// Made and destroyed by the Terminal. May be called from any thread, one at a time; the bus delivers on its own
/// thread. It makes the records from the events alone.
class TradeEvents {
public:
    /// All must outlive it.
    TradeEvents(MessageBus &bus, const Accounts &accounts, const Faults &faults);

    void announce(const DeskEvents &events);

    /// The orders of the day are loaded. Only the first call has an effect.
    void announceOrdersLoaded();

private:
    void announce(int eventId, const QVariantMap &row);
    void announce(const OrderEntered &event);
    void announce(const OrderChanged &event);
    void announce(const OrderExecuted &event);
    void announce(const PositionChanged &event);
    void announce(const AssetChanged &event);
    void announce(const DayBegan &event);

    MessageBus &m_bus;
    const Accounts &m_accounts;
    const Faults &m_faults;
    std::once_flag m_ordersLoaded;
    QDateTime m_lastDue; ///< of the desk's events, which keep their order. The desk reports on one thread at a time.
};

} // namespace sim
