#include "services/TradeEvents.h"

#include "Tessar_Fields.h"
#include "platform/MessageBus.h"
#include "services/TradeRecords.h"

namespace sim {

namespace {

// The terminal's own events have fixed ids.
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

void TradeEvents::tell(const DeskEvents &events)
{
    for (const DeskEvent &event : events)
        std::visit([this](const auto &one) { tell(one); }, event);
}

void TradeEvents::tellOrdersLoaded()
{
    std::call_once(m_ordersLoaded, [this] { m_bus.announce(OrdersLoadedEvent, {}); });
}

void TradeEvents::tell(const OrderEntered &event)
{
    m_bus.announce(OrderEnteredEvent, recordOf(orderFields(), OrderSource{m_accounts, event.order}));
}

void TradeEvents::tell(const OrderChanged &event)
{
    m_bus.announce(OrderChangedEvent, recordOf(orderFields(), OrderSource{m_accounts, event.order}));
}

void TradeEvents::tell(const OrderExecuted &event)
{
    m_bus.announce(event.order.algoId.isEmpty() ? PersonExecutionEvent : StrategyExecutionEvent,
                   recordOf(executionFields(), ExecutionSource{m_accounts, event.order, event.execution}));
}

void TradeEvents::tell(const PositionChanged &event)
{
    const FundAccount &fund = *m_accounts.fundAccountOf(event.tradingAccount);
    m_bus.announce(PositionEvent,
                   recordOf(positionFields(), PositionSource{fund, event.tradingAccount, event.position}));
}

void TradeEvents::tell(const AssetChanged &event)
{
    m_bus.announce(AssetEvent, {{Tessar_Fields::UserAccount::tradingAccount, event.tradingAccount}});
}

} // namespace sim
