export * from './bridge.js';
export { connect, type CallOptions, type ConnectOptions, type Connection } from './connection.js';
export * from './errors.js';
export { methods, type Answer, type Arguments, type Call } from './methods.js';
export * from './protocol.js';
export type { Candle, FundAccount, Json, JsonObject } from './readings.js';
export * from './vocabulary.js';
