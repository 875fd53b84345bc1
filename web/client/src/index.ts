export * from './bridge.js';
export { connect, type CallOptions, type ConnectOptions, type Connection } from './connection.js';
export * from './errors.js';
export { methods, oneWayMethods, type Answer, type Arguments, type Call, type OneWayCall } from './methods.js';
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
export * from './vocabulary.js';
