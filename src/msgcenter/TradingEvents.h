#pragma once

/// The host's trading events that the message center takes in.
enum TradingEvent : int {
    AssetEvent = 0x300A0,
    EntrustEvent = 0x30003,
    EntrustChangedEvent = 0x30005,
    ExecutionEvent = 0x30004,
    ExecutionChangedEvent = 0x30006,
    PositionEvent = 0x31002,
    OrdersLoadedEvent = 0x30001,
};

/// All of them, in the order in which they are subscribed to and an event's id is compared with them. The one of
/// the strategy platform comes last; its id is the host's.
constexpr TradingEvent tradingEvents[] = {
    AssetEvent,    EntrustEvent,      EntrustChangedEvent, ExecutionEvent, ExecutionChangedEvent,
    PositionEvent, OrdersLoadedEvent,
};

/// The id of the events in which the strategy platform answers; asked of the host each time.
int strategyEventId();
