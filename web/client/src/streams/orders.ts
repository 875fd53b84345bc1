import { argumentList } from '../methods.js';
import type { CallOptions } from '../pendingCall.js';
import type { OrderFilter } from '../readings.js';
import type { Cell, Entrust, EntrustList, Execution, ExecutionList } from '../records.js';
import type { SimulatorVocabulary, Vocabulary } from '../vocabulary.js';
import { watchList, type ListSource } from './lists.js';
import type { Terminal } from './terminal.js';
import type { Watch, WatchListener, WatchOptions } from './watch.js';

/** Conditions that an order itself shows. Each is a list of accepted values; a missing or empty one sets no condition. */
export type WatchedOrderFilter<V extends Vocabulary = SimulatorVocabulary> = Pick<
  OrderFilter<V>,
  'fundAccount' | 'orderStatus' | 'orderSource' | 'instanceID'
>;

/** Conditions that an execution itself shows. It does not show the status of its order. */
export type WatchedExecutionFilter = Omit<WatchedOrderFilter, 'orderStatus'>;

interface Selection<Filter, Item> {
  /** A record that no longer meets the conditions leaves the watch. */
  readonly filter?: Filter;
  /**
   * How many records are kept, the newest. An older one that changes counts as the newest again. When a record leaves
   * because of the filter, those that the limit has displaced come back with the next snapshot.
   */
  readonly limit?: number;
  /** A condition of the page's own. */
  readonly matches?: (record: Item) => boolean;
}

export type OrderSelection<V extends Vocabulary = SimulatorVocabulary> = Selection<WatchedOrderFilter<V>, Entrust<V>>;
export type ExecutionSelection<V extends Vocabulary = SimulatorVocabulary> = Selection<
  WatchedExecutionFilter,
  Execution<V>
>;

/** What orders and executions do not have in common. */
interface Kind<Item> {
  readonly name: string;
  readonly call: 'getEntrustList' | 'getExecutionList';
  readonly push: 'on_entrustUpdate' | 'on_executionUpdate';
  readonly idOf: (record: Item) => string;
  /** Where a record shows the value of each condition. */
  readonly columns: Partial<Record<keyof OrderFilter, (record: Item) => Cell>>;
  readonly read: (answer: unknown) => { readonly totalSize: number; readonly records: readonly Item[] };
}

const orders: Kind<Entrust> = {
  name: 'watchOrders',
  call: 'getEntrustList',
  push: 'on_entrustUpdate',
  idOf: ({ orderId }) => valueOf(orderId),
  columns: {
    fundAccount: ({ fundAccount }) => fundAccount,
    orderStatus: ({ status }) => status,
    orderSource: ({ orderSource }) => orderSource,
    instanceID: ({ instanceID }) => instanceID,
  },
  read: (answer) => {
    const { totalSize, entrustInfoList: records } = answer as EntrustList;
    return { totalSize, records };
  },
};

const executions: Kind<Execution> = {
  name: 'watchExecutions',
  call: 'getExecutionList',
  push: 'on_executionUpdate',
  idOf: ({ execId }) => valueOf(execId),
  columns: {
    fundAccount: ({ fundAccount }) => fundAccount,
    orderSource: ({ orderSource }) => orderSource,
    instanceID: ({ instanceID }) => instanceID,
  },
  read: (answer) => {
    const { totalSize, executionInfoList: records } = answer as ExecutionList;
    return { totalSize, records };
  },
};

export function watchOrders(
  terminal: Terminal,
  selection?: OrderSelection,
  listener?: WatchListener<Entrust>,
  options?: WatchOptions,
): Watch<Entrust> {
  return watchList(terminal, sourceOf(terminal, orders, selection), listener, options);
}

export function watchExecutions(
  terminal: Terminal,
  selection?: ExecutionSelection,
  listener?: WatchListener<Execution>,
  options?: WatchOptions,
): Watch<Execution> {
  return watchList(terminal, sourceOf(terminal, executions, selection), listener, options);
}

export interface TaggedOrders {
  /** The tag that the order was placed with: its `orderTag`, which the order list shows as `orderSource`. */
  readonly orderTag: string;
  readonly fundAccount?: string;
}

/** The orders with this tag, newest first. */
export async function findOrders(
  terminal: Terminal,
  { orderTag, fundAccount }: TaggedOrders,
  options?: CallOptions,
): Promise<Entrust[]> {
  if (orderTag === '') throw new RangeError('findOrders: orderTag must not be empty');
  const filter = { orderSource: [orderTag], ...(fundAccount !== undefined && { fundAccount: [fundAccount] }) };
  const holds = conditionsOf(orders, filter);
  return (await loadRecords(terminal, orders, filter, Infinity, options)).filter(holds);
}

function sourceOf<Item>(
  terminal: Terminal,
  kind: Kind<Item>,
  { filter = {}, limit = Infinity, matches }: Selection<OrderFilter, Item> = {},
): ListSource<Item> {
  const isLimit = limit === Infinity || (Number.isInteger(limit) && limit >= 1);
  if (!isLimit) throw new RangeError(`${kind.name}: limit must be a whole number of at least 1`);
  const meetsFilter = conditionsOf(kind, filter);
  const holds = (record: Item) => meetsFilter(record) && (matches === undefined || matches(record));
  // The terminal does not know the page's own condition, so the newest records that meet it may be anywhere.
  const wanted = matches === undefined ? limit : Infinity;

  return {
    name: kind.name,
    async load(options) {
      const newestFirst = (await loadRecords(terminal, kind, filter, wanted, options)).filter(holds).slice(0, limit);
      return new Map(newestFirst.reverse().map((record) => [kind.idOf(record), record]));
    },
    follow(stream) {
      const take = (batch: readonly Item[]) => {
        for (const record of batch) {
          const id = kind.idOf(record);
          if (holds(record)) stream.put(id, record);
          else stream.drop(id);
        }
        stream.limitTo(limit);
        stream.tell();
      };
      return terminal.on(kind.push, take as never);
    },
  };
}

const enoughForMost = 1000;
const largestCount = 2 ** 31 - 1;

/**
 * The newest records, newest first. Terminals count pages or rows, so only a list that begins at 0 means the same
 * everywhere: when it is too short, the whole list is asked for again, with room for what is entered meanwhile.
 */
async function loadRecords<Item>(
  { calls }: Terminal,
  kind: Kind<Item>,
  filter: OrderFilter,
  wanted: number,
  options?: CallOptions,
): Promise<readonly Item[]> {
  let count = Math.min(wanted, enoughForMost);
  for (let before = -1; ;) {
    const { totalSize, records } = kind.read(await calls.ask(kind.call, { filter, start: 0, count }, options));
    const isWhole = records.length >= Math.min(totalSize, wanted);
    if (isWhole || records.length <= before) return records; // or this is all that the terminal gives at once
    before = records.length;
    count = Math.min(2 * totalSize, wanted, largestCount);
  }
}

/**
 * Whether a record meets the conditions. The answers of the terminal need this check too: when it knows none of the fund
 * accounts, it answers with the orders of all.
 */
function conditionsOf<Item>(kind: Kind<Item>, filter: OrderFilter): (record: Item) => boolean {
  argumentList(kind.call, '', { filter, start: 0, count: 0 });
  const conditions = (Object.keys(filter) as (keyof OrderFilter)[]).flatMap((key) => {
    const column = kind.columns[key];
    if (!column) throw new TypeError(`${kind.name}: a record does not show "${key}"`);
    const accepted = filter[key];
    return accepted?.length ? [(record: Item) => accepted.includes(valueOf(column(record)))] : [];
  });
  return (record) => conditions.every((holds) => holds(record));
}

/** The value behind what a cell shows, as the text that a filter compares it with. */
function valueOf({ userRole, displayRole }: Cell): string {
  return String(userRole ?? displayRole ?? '');
}
