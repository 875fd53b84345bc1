export * from './bridge.js';
export { connect, type CallOptions, type ConnectOptions, type Connection } from './connection.js';
export * from './errors.js';
export { methods, type Answer, type Arguments, type Call } from './methods.js';
export * from './protocol.js';
export { orderFilterKeys, type OrderFilter, type SecurityClass } from './readings.js';
export { assetKeys, entrustKeys, executionKeys, positionKeys } from './records.js';
export type {
  Asset,
  Candle,
  Cell,
  Entrust,
  EntrustList,
  Execution,
  ExecutionList,
  FundAccount,
  Position,
  SecurityDetail,
  SecurityEntry,
  Tick,
  TradableQty,
} from './records.js';
export type { Json, JsonObject } from './shapes.js';
export * from './vocabulary.js';
