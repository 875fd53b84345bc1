import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import {
  ClosedError,
  connect,
  NotSentError,
  type Connection,
  type Execution,
  type Tick,
  type Update,
} from '../src/index.js';
import { ScriptedBridge } from '../src/testing/index.js';
import { execution as anyExecution } from './samples.js';

let bridge: ScriptedBridge;
let sdk: Connection;

beforeEach(() => {
  bridge = new ScriptedBridge()
    .answer('getCurrentTick', ({ symbol }) => ({ symbol, last: 0 }))
    .answer('getExecutionList', { totalSize: 0, size: 0, executionInfoList: [] });
  sdk = connect(bridge);
});

afterEach(() => sdk.close());

const push = (symbol: string, last: number) => bridge.push('tick', { symbol, last });
const executions = (...ids: string[]) =>
  bridge.push(
    'executions',
    ids.map((id) => ({ ...anyExecution, execId: { displayRole: id, userRole: id } })),
  );
const told = ({ kind, changed, removed }: Update<Tick>) => [kind, changed.map(({ last }) => last), removed];

describe('a loop over a watch', () => {
  it('gets the state, and then what came since the last round as one update', async () => {
    const watch = sdk.watchQuotes(['a', 'b']);
    const rounds: unknown[] = [];
    await watch.ready;
    for await (const update of watch) {
      rounds.push(told(update));
      expect(update.items).toBe(watch.items);
      if (rounds.length === 1) for (let last = 1; last <= 1000; ++last) push('a', last);
      else if (rounds.length === 2) queueMicrotask(() => push('b', 7));
      else break;
    }
    expect(rounds).toEqual([
      ['snapshot', [0, 0], []],
      ['change', [1000], []],
      ['change', [7], []],
    ]);
  });

  it('is not told of what came and left between two rounds', async () => {
    const watch = sdk.watchExecutions({ limit: 2 });
    const loop = watch[Symbol.asyncIterator]();
    await watch.ready;
    await loop.next();
    executions('1', '2');
    await loop.next();
    for (let id = 3; id <= 1000; ++id) executions(String(id));
    const { value } = (await loop.next()) as { value: Update<Execution> };
    expect(value.changed.map(({ execId }) => execId.userRole)).toEqual(['999', '1000']);
    expect(value.removed).toEqual(['1', '2']);
  });

  it('ends with the watch', async () => {
    const watch = sdk.watchQuotes(['a']);
    const loop = watch[Symbol.asyncIterator]();
    const waiting = [loop.next(), loop.next()];
    watch.stop();
    expect(await Promise.all(waiting)).toEqual([
      { done: true, value: undefined },
      { done: true, value: undefined },
    ]);
    for await (const update of watch) throw new Error(`told after the end: ${update.kind}`);
  });

  it('that is left stops a watch without listener', async () => {
    const watch = sdk.watchQuotes(['a']);
    const other = watch[Symbol.asyncIterator]();
    for await (const update of watch) if (update) break;
    push('a', 1);
    expect(watch.items.get('a')).toMatchObject({ last: 1 }); // another loop uses it
    await other.return!();
    push('a', 2);
    expect(watch.items.get('a')).toMatchObject({ last: 1 });
  });

  it('that is left does not stop a watch with a listener', async () => {
    const watch = sdk.watchQuotes(['a'], () => {});
    for await (const update of watch) if (update) break;
    push('a', 1);
    expect(watch.items.get('a')).toMatchObject({ last: 1 });
  });

  it('throws when the connection has ended for good', async () => {
    const watch = sdk.watchQuotes(['a']);
    await watch.ready;
    const loop = watch[Symbol.asyncIterator]();
    await loop.next();
    const waiting = loop.next();
    bridge.close();
    await expect(waiting).rejects.toBeInstanceOf(ClosedError);
    expect(await loop.next()).toEqual({ done: true, value: undefined });
  });
});

describe('a watch', () => {
  it('that is stopped tells nothing more, and keeps its last state', async () => {
    const listener = vi.fn();
    const watch = sdk.watchQuotes(['a'], listener);
    await watch.ready;
    watch.stop();
    push('a', 1);
    expect(listener).toHaveBeenCalledOnce();
    expect(watch.items.get('a')).toMatchObject({ last: 0 });
  });

  it('that is stopped before its first snapshot was never ready', async () => {
    const watch = sdk.watchExecutions();
    watch.stop();
    await expect(watch.ready).rejects.toThrow('stopped before its first snapshot');
  });

  it.each([
    ['quotes', () => sdk.watchQuotes(['a'])],
    ['orders', () => sdk.watchOrders()],
  ])('of %s cannot begin after the close', async (_, begin) => {
    sdk.close();
    const watch = begin();
    await expect(watch.ready).rejects.toBeInstanceOf(NotSentError);
    expect(bridge.calls).toEqual([]);
  });

  it('ends quietly with close()', async () => {
    const watch = sdk.watchQuotes(['a']);
    await watch.ready;
    const loop = watch[Symbol.asyncIterator]();
    await loop.next();
    const waiting = loop.next();
    sdk.close();
    expect(await waiting).toEqual({ done: true, value: undefined });
  });

  it('goes on when its listener throws, and the error is uncaught', async () => {
    vi.useFakeTimers();
    let heard = 0;
    const watch = sdk.watchQuotes(['a'], () => {
      heard++;
      throw new Error('of the page');
    });
    await watch.ready;
    push('a', 1);
    expect(heard).toBe(2);
    expect(() => vi.runAllTimers()).toThrow('of the page');
    vi.clearAllTimers();
    vi.useRealTimers();
  });

  it('takes a push in a time that does not grow with the list', async () => {
    // Counted instead of timed: what a push costs must not walk through the records.
    const watch = sdk.watchExecutions({}, () => {});
    await watch.ready;
    executions(...Array.from({ length: 5000 }, (_, index) => String(index)));
    const walked = ['keys', 'values', 'entries', 'forEach', Symbol.iterator].map((walk) =>
      vi.spyOn(watch.items as Map<string, unknown>, walk as 'keys'),
    );
    executions('5000');
    expect(walked.map(({ mock }) => mock.calls.length)).toEqual([0, 0, 0, 0, 0]);
    expect(watch.items.size).toBe(5001);
  });
});
