import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import { connect, TimeoutError, type Connection, type Entrust, type Execution, type Update } from '../src/index.js';
import { ScriptedBridge } from '../src/testing/index.js';
import { execution as anyExecution, order as anyOrder } from './samples.js';

let bridge: ScriptedBridge;
let sdk: Connection;
let books: Entrust[]; // of the terminal, newest first
let watchErrors: unknown[];

beforeEach(() => {
  vi.useFakeTimers();
  books = [];
  bridge = new ScriptedBridge().answer('getEntrustList', ({ count }) => {
    const entrustInfoList = books.slice(0, count);
    return { totalSize: books.length, size: entrustInfoList.length, entrustInfoList };
  });
  watchErrors = [];
  sdk = connect(bridge, { onWatchError: (error) => watchErrors.push(error) });
});

afterEach(() => {
  sdk.close();
  expect(vi.getTimerCount()).toBe(0);
  vi.useRealTimers();
});

const cell = (value: string) => ({ displayRole: `shown ${value}`, userRole: value });

function order(id: string, { status = 'Reported', fundAccount = 'f', tag = '' } = {}): Entrust {
  return {
    ...anyOrder,
    orderId: cell(id),
    status: cell(status),
    fundAccount: cell(fundAccount),
    orderSource: cell(tag),
  } as Entrust;
}

const text = ({ orderId, status }: Entrust) => `${String(orderId.userRole)} ${String(status.userRole)}`;
const settled = () => vi.advanceTimersByTimeAsync(0);

function recorded(): [string[], (update: Update<Entrust>) => void] {
  const told: string[] = [];
  return [
    told,
    ({ kind, changed, removed }) =>
      told.push([kind, ...changed.map(text), ...removed.map((id) => `-${id}`)].join(', ')),
  ];
}

describe('a watch of orders', () => {
  it('brings the list, the oldest first, and then each push as one update', async () => {
    books = [order('2'), order('1')];
    const [told, listener] = recorded();
    const watch = sdk.watchOrders({}, listener);
    await watch.ready;
    expect([...watch.items.keys()]).toEqual(['1', '2']);
    bridge.push('orders', [order('1', { status: 'Filled' }), order('3')]);
    expect(told).toEqual(['snapshot, 1 Reported, 2 Reported', 'change, 1 Filled, 3 Reported']);
    expect([...watch.items.values()].map(text)).toEqual(['1 Filled', '2 Reported', '3 Reported']);
  });

  it('listens before it asks, and takes the later arrival as the newer state', async () => {
    const list = bridge.defer('getEntrustList');
    const watch = sdk.watchOrders();
    await list.called;
    bridge.push('orders', [order('1', { status: 'PartlyFilled' })]);
    expect([...watch.items.values()].map(text)).toEqual(['1 PartlyFilled']);
    list.answer({ totalSize: 1, size: 1, entrustInfoList: [order('1', { status: 'Filled' })] });
    await watch.ready;
    expect([...watch.items.values()].map(text)).toEqual(['1 Filled']);
  });

  it('asks for the whole list, however the terminal counts its pages', async () => {
    books = Array.from({ length: 2500 }, (_, index) => order(String(2500 - index)));
    const watch = sdk.watchOrders();
    await watch.ready;
    expect(watch.items.size).toBe(2500);
    expect(bridge.calls.map(({ args }) => args)).toEqual([
      { filter: {}, start: 0, count: 1000 },
      { filter: {}, start: 0, count: 5000 },
    ]);
  });

  it('takes what it gets from a terminal that gives no more in one answer', async () => {
    books = Array.from({ length: 30 }, (_, index) => order(String(index)));
    bridge.answer('getEntrustList', { totalSize: 30, size: 20, entrustInfoList: books.slice(0, 20) });
    const watch = sdk.watchOrders();
    await watch.ready;
    expect(watch.items.size).toBe(20);
    expect(bridge.calls).toHaveLength(2);
  });

  it('is asked for again after "orders loaded" and after a break, and tells what has left', async () => {
    books = [order('2'), order('1')];
    const [told, listener] = recorded();
    await sdk.watchOrders({}, listener).ready;
    books = [order('2', { status: 'Filled' })];
    bridge.push('ordersLoaded');
    await settled();
    books = [];
    bridge.close({ willReconnect: true });
    bridge.open();
    await settled();
    expect(told.slice(1)).toEqual(['snapshot, 2 Filled, -1', 'snapshot, -2']);
  });

  it('asks once at a time, and once more if that was wanted meanwhile', async () => {
    const list = bridge.defer('getEntrustList');
    const watch = sdk.watchOrders();
    await list.called;
    for (let i = 0; i < 5; ++i) bridge.push('ordersLoaded');
    await settled();
    expect(bridge.calls).toHaveLength(1);
    list.answer({ totalSize: 0, size: 0, entrustInfoList: [] });
    await watch.ready;
    await settled();
    expect(bridge.calls).toHaveLength(2);
  });

  it('asks again after a break during the call, without an error', async () => {
    const list = bridge.defer('getEntrustList');
    const watch = sdk.watchOrders();
    await list.called;
    bridge.close({ willReconnect: true });
    bridge.open();
    await watch.ready;
    expect([bridge.calls.length, watchErrors]).toEqual([2, []]);
  });

  it('that is stopped while it waits for its list leaves nothing behind', async () => {
    const watch = sdk.watchOrders();
    const list = bridge.defer('getEntrustList');
    const other = sdk.watchOrders();
    await list.called;
    await watch.ready;
    other.stop();
    await settled();
    expect([vi.getTimerCount(), watchErrors]).toEqual([0, []]);
  });

  it('that began while the connection was not open waits for it', async () => {
    bridge.close({ willReconnect: true });
    books = [order('1')];
    const watch = sdk.watchOrders();
    await vi.advanceTimersByTimeAsync(60_000);
    bridge.open();
    await watch.ready;
    expect(watch.items.size).toBe(1);
    expect(bridge.calls).toHaveLength(1);
  });

  it('that cannot have its list says so, and has it the next time', async () => {
    bridge.ignore('getEntrustList');
    const watch = sdk.watchOrders();
    const failed = expect(watch.ready).rejects.toBeInstanceOf(TimeoutError);
    await vi.advanceTimersByTimeAsync(10_000);
    await failed;
    expect(watchErrors).toEqual([expect.any(TimeoutError)]);
    bridge.answer('getEntrustList', { totalSize: 1, size: 1, entrustInfoList: [order('1')] });
    bridge.push('ordersLoaded');
    await settled();
    expect(watch.items.size).toBe(1);
  });
});

describe('a filter', () => {
  const filter = { fundAccount: ['f'], orderStatus: ['Reported', 'PartlyFilled'] };

  it('goes to the terminal, and holds for its answers too, because it ignores unknown accounts', async () => {
    books = [order('2', { fundAccount: 'another' }), order('1')];
    const watch = sdk.watchOrders({ filter });
    await watch.ready;
    expect(bridge.calls[0]!.args).toEqual({ filter, start: 0, count: 1000 });
    expect([...watch.items.keys()]).toEqual(['1']);
  });

  it('removes an order that no longer meets it', async () => {
    books = [order('2'), order('1')];
    const [told, listener] = recorded();
    await sdk.watchOrders({ filter }, listener).ready;
    bridge.push('orders', [order('1', { status: 'Filled' }), order('3'), order('4', { fundAccount: 'another' })]);
    bridge.push('orders', [order('1', { status: 'Filled' })]); // no longer of interest
    expect(told.slice(1)).toEqual(['change, 3 Reported, -1']);
  });

  it('tells a loop only of what it knows', async () => {
    books = [order('1')];
    const watch = sdk.watchOrders({ filter });
    const loop = watch[Symbol.asyncIterator]();
    await watch.ready;
    await loop.next();
    books = [order('2'), order('1')];
    bridge.push('ordersLoaded');
    await settled();
    bridge.push('orders', [order('2', { status: 'Filled' })]); // came and left
    expect(((await loop.next()) as { value: Update<Entrust> }).value.removed).toEqual([]);
    books = [order('1')];
    bridge.push('ordersLoaded');
    await settled();
    for (const status of ['Filled', 'Reported', 'Filled']) bridge.push('orders', [order('1', { status })]);
    expect(((await loop.next()) as { value: Update<Entrust> }).value.removed).toEqual(['1']);
    bridge.push('orders', [order('1')]);
    await loop.next();
    for (const status of ['Filled', 'Reported']) bridge.push('orders', [order('1', { status })]); // left and came back
    const { changed, removed } = ((await loop.next()) as { value: Update<Entrust> }).value;
    expect([changed.map(text), removed]).toEqual([['1 Reported'], []]);
  });

  it('may be empty, and then sets no condition', async () => {
    books = [order('1')];
    const watch = sdk.watchOrders({ filter: { orderStatus: [], orderSource: [] } });
    await watch.ready;
    expect(watch.items.size).toBe(1);
  });

  it('can only name what a record shows', () => {
    expect(() => sdk.watchOrders({ filter: { symbol: ['s'] } as never })).toThrow('a record does not show "symbol"');
    expect(() => sdk.watchExecutions({ filter: { orderStatus: ['x'] } as never })).toThrow('"orderStatus"');
    expect(() => sdk.watchOrders({ filter: { orderStatus: 'x' } as never })).toThrow(TypeError);
    expect(bridge.calls).toEqual([]);
  });

  it('can be a condition of the page', async () => {
    books = [order('3'), order('2'), order('1')];
    const isOdd = ({ orderId }: Entrust) => Number(orderId.userRole) % 2 === 1;
    const watch = sdk.watchOrders({ matches: isOdd, limit: 2 });
    await watch.ready;
    expect([...watch.items.keys()]).toEqual(['1', '3']);
    expect(bridge.calls[0]!.args).toMatchObject({ count: 1000 }); // the terminal does not know the condition
    bridge.push('orders', [order('4'), order('5')]);
    expect([...watch.items.keys()]).toEqual(['3', '5']);
  });
});

describe('a limit', () => {
  it('asks for the newest only, and drops the oldest', async () => {
    books = [order('3'), order('2'), order('1')];
    const [told, listener] = recorded();
    const watch = sdk.watchOrders({ limit: 2 }, listener);
    await watch.ready;
    expect(bridge.calls[0]!.args).toMatchObject({ count: 2 });
    bridge.push('orders', [order('4'), order('5'), order('6')]);
    expect(told).toEqual(['snapshot, 2 Reported, 3 Reported', 'change, 5 Reported, 6 Reported, -2, -3']);
    expect([...watch.items.keys()]).toEqual(['5', '6']);
  });

  it.each([0, -1, 1.5, NaN])('cannot be %s', (limit) => {
    expect(() => sdk.watchOrders({ limit })).toThrow(RangeError);
    expect(() => sdk.watchExecutions({ limit })).toThrow(RangeError);
  });
});

describe('a watch of executions', () => {
  it('merges by the identifier of the execution', async () => {
    const execution = (id: string): Execution => ({ ...anyExecution, execId: cell(id) }) as Execution;
    bridge.answer('getExecutionList', { totalSize: 1, size: 1, executionInfoList: [execution('E1')] });
    const watch = sdk.watchExecutions();
    await watch.ready;
    bridge.push('executions', [execution('E1'), execution('E2')]);
    expect([...watch.items.keys()]).toEqual(['E1', 'E2']);
  });
});

describe('findOrders', () => {
  it('finds the orders with the tag', async () => {
    books = [order('3', { tag: 'mine' }), order('2', { tag: 'other' }), order('1', { tag: 'mine', fundAccount: 'g' })];
    expect((await sdk.findOrders({ orderTag: 'mine' })).map(text)).toEqual(['3 Reported', '1 Reported']);
    expect(bridge.calls[0]!.args.filter).toEqual({ orderSource: ['mine'] });
    expect((await sdk.findOrders({ orderTag: 'mine', fundAccount: 'g' })).map(text)).toEqual(['1 Reported']);
    expect(bridge.calls[1]!.args.filter).toEqual({ orderSource: ['mine'], fundAccount: ['g'] });
  });

  it('needs a tag', async () => {
    await expect(sdk.findOrders({ orderTag: '' })).rejects.toBeInstanceOf(RangeError);
    expect(bridge.calls).toEqual([]);
  });
});
