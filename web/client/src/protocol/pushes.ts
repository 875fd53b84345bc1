import { entrust, execution, asset, position } from '../records.js';
import type { Asset, Entrust, Execution, Position } from '../records.js';
import { list, type Shape } from '../shapes.js';
import { tick, type SimulatorVocabulary, type Tick, type Vocabulary } from '../vocabulary.js';

/** What a listener gets, by the name of the push. */
export interface PushArguments<V extends Vocabulary = SimulatorVocabulary> {
  tick: [tick: Tick<V>];
  orders: [orders: Entrust<V>[]];
  executions: [executions: Execution<V>[]];
  position: [position: Position];
  asset: [asset: Asset | undefined];
  ordersLoaded: [];
  strategyMessage: [customMsgID: string, message: string];
  strategyStatus: [strategyID: string, status: string];
}

/** A row of the table of pushes. */
export interface Push {
  /** The name of its event. */
  readonly event: `on_${string}`;
  /** What the JSON text holds that is the event's argument. */
  readonly json?: Shape<unknown>;
  /** The event's arguments, when they are plain texts. */
  readonly texts?: readonly string[];
  /** The empty text and the empty object are heard as undefined. */
  readonly mayBeEmpty?: true;
}

/** Events without a call. docs/openrpc.json and the tables of the documents derive from this table. */
export const pushes = {
  /** A quote of a symbol to which the page has subscribed. */
  tick: { event: 'on_tickUpdate', json: tick },
  /** Orders that are new or have changed: a batch of 200 ms, each order once, with its last state. */
  orders: { event: 'on_entrustUpdate', json: list(entrust) },
  /** New executions: a batch of 200 ms. */
  executions: { event: 'on_executionUpdate', json: list(execution) },
  /** A position that has changed. */
  position: { event: 'on_positionUpdate', json: position },
  /** The money of a fund account has changed. The summary is missing when the terminal cannot tell of which account. */
  asset: { event: 'on_AssetUpdate', json: asset, mayBeEmpty: true },
  /** The terminal has loaded its orders: ask again for the lists that you show. */
  ordersLoaded: { event: 'on_orderLoaded' },
  /** A custom message to which the page has subscribed. */
  strategyMessage: { event: 'on_vlxRcvCustomInfo', texts: ['customMsgID', 'message'] },
  /** The state of a strategy has changed. */
  strategyStatus: { event: 'on_vlxStrategyStatusUpdate', texts: ['strategyID', 'status'] },
} as const satisfies Record<keyof PushArguments, Push>;

export type PushName = keyof typeof pushes;

/** Name of the event of a push. */
export type PushEvent = (typeof pushes)[PushName]['event'];
