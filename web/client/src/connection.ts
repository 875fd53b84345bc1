import type { CallBridge, ConnectionState } from './bridge.js';
import { Calls, type Values } from './calls.js';
import { NoBridgeError } from './errors.js';
import { Link, type CloseEvent, type OpenEvent } from './link.js';
import { methods, type Call } from './methods.js';
import { insertOrder, insertOrderList } from './outcomes.js';
import type { CallOptions } from './pendingCall.js';
import type { PushEvent, PushName } from './protocol/pushes.js';
import { PushHub, type OnUnreadable, type PushListener } from './pushes.js';
import type { Asset, Entrust, Execution, Position } from './records.js';
import { Listeners } from './safely.js';
import { watchAssets, watchPositions, type AssetSelection, type PositionSelection } from './streams/holdings.js';
import {
  findOrders,
  watchExecutions,
  watchOrders,
  type ExecutionSelection,
  type OrderSelection,
  type TaggedOrders,
} from './streams/orders.js';
import { Quotes } from './streams/quotes.js';
import type { Terminal } from './streams/terminal.js';
import type { Watch, WatchListener, WatchOptions } from './streams/watch.js';
import { Subscriptions } from './subscriptions.js';
import type { Calls as CallFunctions, OneWayCalls } from './types.js';
import { quoteFields, type SimulatorVocabulary, type Tick, type Vocabulary } from './vocabulary.js';

export interface ConnectOptions {
  /** How long a call waits for connection and answer together, in milliseconds. 10,000 unless you say otherwise. */
  timeoutMs?: number;
  /** Called for every reply without a waiting call: late replies, and replies to calls made elsewhere. */
  onUnpaired?: (event: string, reply: unknown) => void;
  /** Called for every push of an unexpected form. Without it such pushes go to the console. */
  onUnreadable?: OnUnreadable;
  /** Field of a quote that has its symbol, for `watchQuotes`. "symbol" unless your terminal names it otherwise. */
  symbolField?: string;
  /** Called when a watch could not subscribe, or could not have its list. Without it such errors go to the console. */
  onWatchError?: (error: unknown) => void;
}

/** One function for each call, watches of the terminal's records, pushes, and the state of the connection. */
export type Connection<V extends Vocabulary = SimulatorVocabulary> = CallFunctions<V> & OneWayCalls<V> & Rest<V>;

/** What a connection offers beside the calls. */
interface Rest<V extends Vocabulary> {
  /**
   * Looks up by its tag what became of an order whose outcome is unknown. The newest order comes first. An empty list is no
   * proof: the order may still be under way, and some terminals keep no tags.
   */
  findOrders(values: TaggedOrders, options?: CallOptions): Promise<Entrust<V>[]>;

  /**
   * Follows the quotes of the symbols: subscribes, brings the current quote of each, then every push. A symbol stays
   * subscribed while any watch, or the page's own `subscribe`, needs it. Identifiers are symbols.
   */
  watchQuotes(symbols: readonly string[], listener?: WatchListener<Tick<V>>, options?: WatchOptions): Watch<Tick<V>>;
  /** Follows the orders. Identifiers are order numbers (`orderId`). */
  watchOrders(
    selection?: OrderSelection<V>,
    listener?: WatchListener<Entrust<V>>,
    options?: WatchOptions,
  ): Watch<Entrust<V>>;
  /** Follows the executions. Identifiers are those of the executions (`execId`). */
  watchExecutions(
    selection?: ExecutionSelection<V>,
    listener?: WatchListener<Execution<V>>,
    options?: WatchOptions,
  ): Watch<Execution<V>>;
  /** Follows the positions of the accounts. Closed positions leave. `positionId` tells the identifier of a position. */
  watchPositions(
    selection: PositionSelection,
    listener?: WatchListener<Position>,
    options?: WatchOptions,
  ): Watch<Position>;
  /** Follows the asset summaries of the accounts. Identifiers are fund accounts. */
  watchAssets(selection: AssetSelection, listener?: WatchListener<Asset>, options?: WatchOptions): Watch<Asset>;

  /** Calls the listener for each push until the returned function is called. The name of the event works too. */
  on<P extends PushName | PushEvent>(push: P, listener: PushListener<P, V>): () => void;

  /** `connecting` also between a break and the next connection. The terminal's own bridge is always open. */
  readonly state: ConnectionState;
  /** Called when the connection opens, after everything was subscribed again. Returns a function that ends this. */
  onOpen(listener: (event: OpenEvent) => void): () => void;
  /** Called when the connection ends, and when an attempt to connect fails. Returns a function that ends this. */
  onClose(listener: (event: CloseEvent) => void): () => void;
  /** Stops watches and listeners, and gives up waiting calls. Nothing is sent afterwards. */
  close(): void;
}

/**
 * Gives typed access to calls, watches and pushes. Use one connection for each page, so that empty replies find their call
 * and the page's parts share their subscriptions. A call is never repeated: a repeated order is a second order.
 *
 * @throws NoBridgeError when the page has no bridge.
 */
export function connect<V extends Vocabulary = SimulatorVocabulary>(
  bridge: CallBridge | undefined = globalThis.window?.CallBridge,
  options: ConnectOptions = {},
): Connection<V> {
  if (typeof bridge?.invokeMethod !== 'function') throw new NoBridgeError();
  const onError = options.onWatchError ?? ((error: unknown) => console.error('a watch has failed:', error));
  const [onOpen, onClose] = [new Listeners<OpenEvent>(), new Listeners<CloseEvent>()];
  const [opened, closed, ended] = [new Listeners<void>(), new Listeners<CloseEvent>(), new Listeners<void>()];

  const link = new Link(bridge, {
    opened(again) {
      const resubscribed = subscriptions.restore();
      calls.release();
      subscriptions.settle();
      opened.tell();
      onOpen.tell({ again, resubscribed });
    },
    closed(event) {
      calls.interrupt(event.willReconnect);
      closed.tell(event);
      onClose.tell(event);
    },
  });
  const calls = new Calls(bridge, link, options);
  const subscriptions = new Subscriptions(calls, link, onError);
  const hub = new PushHub(bridge, options.onUnreadable);
  const terminal: Terminal = { calls, link, on: hub.on, subscriptions, opened, closed, ended, onError };
  const quotes = new Quotes(terminal, options.symbolField ?? quoteFields.symbol);
  const { subscribe, unsubscribe, unsubscribeAll, subStrategyMsg } = subscriptions;
  const plainCalls = (Object.keys(methods) as Call[]).map((call) => [
    call,
    (values?: Values, callOptions?: CallOptions) => calls.ask(call, values, callOptions),
  ]);

  const connection: Connection = {
    ...(Object.fromEntries(plainCalls) as Omit<CallFunctions<SimulatorVocabulary>, 'insertOrder' | 'insertOrderList'>),
    ...{ subscribe, unsubscribe, unsubscribeAll, subStrategyMsg },
    sendCustomInfo: (values, callOptions) => calls.tell('sendCustomInfo', { ...values }, callOptions),
    insertOrder: (values, callOptions) => insertOrder(calls, values, callOptions),
    insertOrderList: (values, callOptions) => insertOrderList(calls, values, callOptions),
    findOrders: (values, callOptions) => findOrders(terminal, values, callOptions),
    watchQuotes: quotes.watch,
    watchOrders: (...args) => watchOrders(terminal, ...args),
    watchExecutions: (...args) => watchExecutions(terminal, ...args),
    watchPositions: (...args) => watchPositions(terminal, ...args),
    watchAssets: (...args) => watchAssets(terminal, ...args),
    on: hub.on,
    get state() {
      return link.state;
    },
    onOpen: onOpen.add,
    onClose: onClose.add,
    close() {
      link.close();
      calls.close();
      ended.tell();
      hub.close();
      onOpen.clear();
      onClose.clear();
    },
  };
  return connection as unknown as Connection<V>; // vocabularies are types and nothing else
}
