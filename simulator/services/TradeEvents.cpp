#include "services/TradeEvents.h"

#include "Tessar_Fields.h"
#include "platform/Faults.h"
#include "platform/MessageBus.h"
#include "platform/SimulatedClock.h"
#include "services/TradeRecords.h"

#include <algorithm>

namespace sim {

namespace {

// Ids that the terminal's interface fixes.
enum EventId {
    OrdersLoadedEvent = 0x30001,
    OrderEnteredEvent = 0x30003,
    PersonExecutionEvent = 0x30004,
    OrderChangedEvent = 0x30005,
    StrategyExecutionEvent = 0x30006,
    AssetEvent = 0x300A0,
    PositionEvent = 0x31002,
};

} // namespace

TradeEvents::TradeEvents(MessageBus &bus, const Accounts &accounts, const Faults &faults, const Clock &clock,
                         const QDateTime &firstChange)
    : m_bus(bus), m_accounts(accounts), m_faults(faults), m_clock(clock), m_firstChange(firstChange)
{
    const QPair<EventId, QString> names[] = {
        {OrdersLoadedEvent, QStringLiteral("OrdersLoaded")},
        {OrderEnteredEvent, QStringLiteral("OrderEntered")},
        {PersonExecutionEvent, QStringLiteral("PersonExecution")},
        {OrderChangedEvent, QStringLiteral("OrderChanged")},
        {StrategyExecutionEvent, QStringLiteral("StrategyExecution")},
        {AssetEvent, QStringLiteral("Asset")},
        {PositionEvent, QStringLiteral("Position")},
    };
    for (const auto &[id, name] : names)
        m_bus.nameEvent(id, name);
}

void TradeEvents::announce(const DeskEvents &events)
{
    for (const DeskEvent &event : events) {
        if (event.time >= m_firstChange)
            announceOrdersLoaded();
        const FrozenTime time(std::min(event.time, m_clock.now()));
        std::visit([this](const auto &one) { announce(one); }, event.what);
    }
}

void TradeEvents::announce(int eventId, const QVariantMap &row)
{
    m_lastDue = m_bus.announceLate(eventId, row, m_faults.delay(Fault::LatePushes), m_lastDue);
}

void TradeEvents::announceOrdersLoaded()
{
    std::call_once(m_ordersLoaded, [this] {
        const FrozenTime time(std::min(m_firstChange, m_clock.now()));
        m_bus.announce(OrdersLoadedEvent, {});
    });
}

void TradeEvents::announce(const OrderEntered &event)
{
    announce(OrderEnteredEvent, recordOf(orderFields(), OrderSource{m_accounts, event.order}));
}

void TradeEvents::announce(const OrderChanged &event)
{
    announce(OrderChangedEvent, recordOf(orderFields(), OrderSource{m_accounts, event.order}));
}

void TradeEvents::announce(const OrderExecuted &event)
{
    announce(event.order.algoId.isEmpty() ? PersonExecutionEvent : StrategyExecutionEvent,
             recordOf(executionFields(), ExecutionSource{m_accounts, event.order, event.execution}));
}

void TradeEvents::announce(const PositionChanged &event)
{
    const FundAccount &fund = *m_accounts.fundAccountOf(event.tradingAccount);
    announce(PositionEvent, recordOf(positionFields(), PositionSource{fund, event.tradingAccount, event.position}));
}

void TradeEvents::announce(const DayBegan &)
{
    m_bus.announce(OrdersLoadedEvent, {});
}

void TradeEvents::announce(const AssetChanged &event)
{
    announce(AssetEvent, {{Tessar_Fields::UserAccount::tradingAccount, event.tradingAccount}});
}

} // namespace sim
