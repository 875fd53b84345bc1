export * from './bridge.js';
export { connect, type CallOptions, type ConnectOptions, type Connection } from './connection.js';
export * from './errors.js';
export { methods, oneWayMethods, type Call, type OneWayCall } from './methods.js';
export * from './protocol.js';
export { pushes, type PushArguments, type PushName } from './protocol/pushes.js';
export {
  orderFilterKeys,
  orderLineKeys,
  type AnswerTypes,
  type ArgumentTypes,
  type OrderFilter,
  type OrderLine,
  type SecurityClass,
} from './readings.js';
export { assetKeys, entrustKeys, executionKeys, positionKeys } from './records.js';
export type {
  Asset,
  CancelledOrder,
  Cell,
  Entrust,
  EntrustList,
  Execution,
  ExecutionList,
  ListedOrder,
  PlacedOrder,
  Position,
  StrategyAnswer,
  TradableQty,
} from './records.js';
export type { FundAccount, SecurityDetail, SecurityEntry } from './securities.js';
export type { Json, JsonObject, JsonSchema } from './shapes.js';
export type { Answer, Arguments, PushListener } from './types.js';
export * from './vocabulary.js';
