export * from './bridge.js';
export { connect, type ConnectOptions, type Connection } from './connection.js';
export * from './errors.js';
export type { CloseEvent, OpenEvent } from './link.js';
export { methods, oneWayMethods, type Answer, type Arguments, type Call, type OneWayCall } from './methods.js';
export type { OrderOutcome } from './outcomes.js';
export type { CallOptions } from './pendingCall.js';
export * from './protocol.js';
export { type PushListener } from './pushes.js';
export { orderFilterKeys, orderLineKeys, type OrderFilter, type OrderLine, type SecurityClass } from './readings.js';
export { assetKeys, entrustKeys, executionKeys, positionKeys } from './records.js';
export type {
  Asset,
  CancelledOrder,
  Candle,
  Cell,
  Entrust,
  EntrustList,
  Execution,
  ExecutionList,
  FundAccount,
  ListedOrder,
  PlacedOrder,
  Position,
  SecurityDetail,
  SecurityEntry,
  StrategyAnswer,
  Tick,
  TradableQty,
} from './records.js';
export type { Json, JsonObject } from './shapes.js';
export { positionId, type AssetSelection, type PositionSelection } from './streams/holdings.js';
export type {
  ExecutionSelection,
  OrderSelection,
  TaggedOrders,
  WatchedExecutionFilter,
  WatchedOrderFilter,
} from './streams/orders.js';
export type { Update, Watch, WatchListener, WatchOptions } from './streams/watch.js';
export * from './vocabulary.js';
