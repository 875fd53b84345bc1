#pragma once

#include "books/DeskEvents.h"

#include <QVariantMap>

#include <mutex>

namespace sim {

class Accounts;
class Clock;
class Faults;
class MessageBus;

/// Announces the events of the trading desk on the bus, as the records that the list queries return.
/// Made and destroyed by the Terminal. May be called from any thread, one at a time; the bus delivers on its own
/// thread. It makes the records from the events alone, and they are due a moment after the event happened at the
/// exchange, however late that is found out.
class TradeEvents {
public:
    /// All must outlive it. firstChange: when the quotes change for the first time.
    TradeEvents(MessageBus &bus, const Accounts &accounts, const Faults &faults, const Clock &clock,
                const QDateTime &firstChange);

    void announce(const DeskEvents &events);

    /// The orders of the day are loaded, at the first change of the quotes. Only the first call has an effect.
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
    const Clock &m_clock;
    const QDateTime m_firstChange;
    std::once_flag m_ordersLoaded;
    QDateTime m_lastDue; ///< of the desk's events, which keep their order. The desk reports on one thread at a time.
};

} // namespace sim
