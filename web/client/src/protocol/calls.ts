import type { AnswerTypes, ArgumentTypes } from '../readings.js';
import { dataCalls } from './dataCalls.js';
import { oneWayMethods, tradeCalls } from './tradeCalls.js';

/** A row of the table of calls. */
export interface OneWayMethod {
  readonly method: `${string}_REQ`;
  /** The reading of each argument after the call identifier, in the order in which they are sent. */
  readonly parameters: Readonly<Record<string, keyof ArgumentTypes>>;
}

export interface Method extends OneWayMethod {
  readonly answer: keyof AnswerTypes;
  /** The terminal asks elsewhere first: answers may overtake each other, and one may never come. */
  readonly deferred?: true;
  /** The empty reply is the answer here, not a rejection. */
  readonly answersEmpty?: true;
  /** The call trades, starts or stops something. Without an answer its outcome is unknown. */
  readonly hasSideEffects?: true;
}

/**
 * The calls that a connection offers. Types, argument lists, answers, the description in docs/openrpc.json and the tables
 * of the documents derive from this table. What a call gives stands under `@returns`, and under
 * `@wire` what the terminal answers, where that differs.
 */
export const methods: typeof dataCalls & typeof tradeCalls = { ...dataCalls, ...tradeCalls };

export { oneWayMethods };

export type Methods = typeof methods;
export type OneWayMethods = typeof oneWayMethods;
export type Call = keyof Methods;
export type OneWayCall = keyof OneWayMethods;
