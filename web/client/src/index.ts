export * from './bridge.js';
export { connect, type ConnectOptions, type Connection } from './connection.js';
export * from './errors.js';
export type { CloseEvent, OpenEvent } from './link.js';
export { methods, oneWayMethods, type Call, type OneWayCall } from './methods.js';
export type { OrderOutcome } from './outcomes.js';
export type { CallOptions } from './pendingCall.js';
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
export { positionId, type AssetSelection, type PositionSelection } from './streams/holdings.js';
export type {
  ExecutionSelection,
  OrderSelection,
  TaggedOrders,
  WatchedExecutionFilter,
  WatchedOrderFilter,
} from './streams/orders.js';
export type { Update, Watch, WatchListener, WatchOptions } from './streams/watch.js';
export type { Answer, Arguments, PushListener } from './types.js';
export {
  addAmounts,
  compareAmounts,
  displayText,
  formatAmount,
  rawNumber,
  rawValue,
  type AmountFormat,
} from './values.js';
export {
  candleFields,
  fundProperties,
  klinePeriods,
  openOrderStatuses,
  orderStatuses,
  priceTypes,
  quoteFields,
  securityTypes,
  sides,
  strategyLanguages,
  strategyStatuses,
} from './vocabulary.js';
export type {
  Candle,
  Code,
  SimulatorCandle,
  SimulatorTick,
  SimulatorVocabulary,
  Tick,
  Vocabulary,
} from './vocabulary.js';
