import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import {
  connect,
  FailedCallError,
  NotSentError,
  type Connection,
  type Tick,
  type Update,
  type Vocabulary,
} from '../src/index.js';
import { ScriptedBridge } from '../src/testing/index.js';

let bridge: ScriptedBridge;
let sdk: Connection;
let watchErrors: unknown[];

beforeEach(() => {
  vi.useFakeTimers();
  bridge = new ScriptedBridge().answer('getCurrentTick', ({ symbol }) => tick(symbol, 1));
  watchErrors = [];
  sdk = connect(bridge, { onWatchError: (error) => watchErrors.push(error) });
});

afterEach(() => {
  sdk.close();
  expect(vi.getTimerCount()).toBe(0);
  vi.useRealTimers();
});

/** The calls about quotes that the terminal got, each with its symbols. */
const asked = () => bridge.calls.map(({ call, args }) => `${call} ${String(args.symbols ?? args.symbol ?? '')}`.trim());
const settled = () => vi.advanceTimersByTimeAsync(0);
const tick = (symbol: string, last: number) => ({ symbol, last }) as Tick;

function recorded(): [string[], (update: Update<Tick>) => void] {
  const told: string[] = [];
  return [
    told,
    ({ kind, changed }) => told.push(`${kind} ${changed.map(({ symbol, last }) => `${symbol} ${last}`).join(', ')}`),
  ];
}

describe('a watch of quotes', () => {
  it('subscribes first, then brings the current quote of each symbol, then each push', async () => {
    const [told, listener] = recorded();
    const watch = sdk.watchQuotes(['a', 'b', 'a'], listener);
    await watch.ready;
    expect(asked()).toEqual(['subscribe a,b', 'getCurrentTick a', 'getCurrentTick b']);
    expect(told).toEqual(['snapshot a 1', 'snapshot b 1']);
    bridge.push('tick', tick('a', 2));
    bridge.push('tick', tick('c', 3)); // nobody asked for it
    expect(told).toEqual(['snapshot a 1', 'snapshot b 1', 'change a 2']);
    expect([...watch.items]).toEqual([
      ['a', tick('a', 2)],
      ['b', tick('b', 1)],
    ]);
  });

  it('finds the symbol in the field that the terminal has for it', async () => {
    const own = connect<Vocabulary & { tick: { code: string } }>(bridge, { symbolField: 'code' });
    const watch = own.watchQuotes(['a']);
    await watch.ready;
    bridge.push('tick', { code: 'a' } as never);
    bridge.push('tick', { symbol: 'a' } as never);
    expect(watch.items.get('a')).toEqual({ code: 'a' });
    own.close();
  });

  it('has no snapshot of a symbol whose tick came earlier', async () => {
    const current = bridge.defer('getCurrentTick');
    const [told, listener] = recorded();
    const watch = sdk.watchQuotes(['a'], listener);
    await current.called;
    bridge.push('tick', tick('a', 2));
    await watch.ready;
    current.answer(tick('a', 1));
    await settled();
    expect(told).toEqual(['change a 2']);
  });

  it('loses no tick that comes with the answer to the subscription', async () => {
    bridge.answer('subscribe', () => {
      bridge.push('tick', tick('a', 5));
      return undefined;
    });
    const watch = sdk.watchQuotes(['a']);
    await watch.ready;
    expect(watch.items.get('a')).toEqual(tick('a', 5));
    expect(asked()).toEqual(['subscribe a']); // and needs no current quote then
  });

  it('of an unknown symbol has no quote, and is ready', async () => {
    bridge.answer('getCurrentTick', {});
    const watch = sdk.watchQuotes(['nothing']);
    await watch.ready;
    expect(watch.items.size).toBe(0);
  });

  it('of no symbol is ready, and asks for nothing', async () => {
    await sdk.watchQuotes([]).ready;
    expect(bridge.calls).toEqual([]);
  });

  it('with an unusable symbol is refused at once', () => {
    expect(() => sdk.watchQuotes(['a,b'])).toThrow(RangeError);
    expect(() => sdk.watchQuotes([1 as never])).toThrow(TypeError);
    expect(bridge.calls).toEqual([]);
  });

  it('tells when a quote cannot be had, and goes on with the pushes', async () => {
    bridge.refuse('getCurrentTick', { msg: 'no' });
    const watch = sdk.watchQuotes(['a']);
    await expect(watch.ready).rejects.toBeInstanceOf(FailedCallError);
    expect(watchErrors).toHaveLength(1);
    bridge.push('tick', tick('a', 2));
    expect(watch.items.get('a')).toEqual(tick('a', 2));
  });
});

describe('several watches', () => {
  it('share the subscription of a symbol, and the last one ends it', async () => {
    const [one, other] = [sdk.watchQuotes(['a', 'b']), sdk.watchQuotes(['b'])];
    await Promise.all([one.ready, other.ready]);
    expect(asked()).toEqual(['subscribe a,b', 'getCurrentTick a', 'getCurrentTick b']);
    one.stop();
    await settled();
    expect(asked().slice(3)).toEqual(['unsubscribe a']);
    bridge.push('tick', tick('b', 7));
    expect([one.items.get('b'), other.items.get('b')]).toEqual([tick('b', 1), tick('b', 7)]);
    other.stop();
    other.stop();
    await settled();
    expect(asked().slice(4)).toEqual(['unsubscribe b']);
  });

  it('begin with the latest quote that another one has', async () => {
    await sdk.watchQuotes(['a']).ready;
    bridge.push('tick', tick('a', 9));
    const [told, listener] = recorded();
    await sdk.watchQuotes(['a'], listener).ready;
    expect(told).toEqual(['snapshot a 9']);
    expect(asked()).toEqual(['subscribe a', 'getCurrentTick a']);
  });

  it('that change places in one moment make no call', async () => {
    const one = sdk.watchQuotes(['a']);
    await one.ready;
    one.stop();
    sdk.watchQuotes(['a']);
    await settled();
    expect(asked()).toEqual(['subscribe a', 'getCurrentTick a', 'getCurrentTick a']);
  });

  it('end with their signal', async () => {
    const ending = new AbortController();
    const watch = sdk.watchQuotes(['a'], undefined, { signal: ending.signal });
    await watch.ready;
    ending.abort();
    await settled();
    expect(asked().at(-1)).toBe('unsubscribe a');
    const reason = new Error('too late');
    const late = sdk.watchQuotes(['a'], undefined, { signal: AbortSignal.abort(reason) });
    await expect(late.ready).rejects.toBe(reason);
    await settled();
    expect(asked().at(-1)).toBe('unsubscribe a');
  });
});

describe("the page's own subscriptions", () => {
  it('do not take the symbols of a watch, and outlive it', async () => {
    const watch = sdk.watchQuotes(['a', 'b']);
    await watch.ready;
    await sdk.unsubscribe({ symbols: ['a'] }); // nothing to send
    await sdk.unsubscribe({ symbols: ['b', 'c'] });
    expect(asked().slice(3)).toEqual(['unsubscribe c']);
    await sdk.subscribe({ symbols: ['a'] });
    watch.stop();
    await settled();
    expect(asked().slice(4)).toEqual(['subscribe a', 'unsubscribe b']);
    await sdk.unsubscribe({ symbols: ['a'] });
    expect(asked().at(-1)).toBe('unsubscribe a');
  });

  it('all end together, but for those that a watch needs', async () => {
    await sdk.subscribe({ symbols: ['a', 'b'] });
    const watch = sdk.watchQuotes(['b']);
    await watch.ready;
    await sdk.unsubscribeAll();
    expect(asked().slice(1)).toEqual(['getCurrentTick b', 'unsubscribe a']);
    watch.stop();
    await settled();
    expect(asked().at(-1)).toBe('unsubscribe b');
    await sdk.unsubscribeAll();
    expect(asked().at(-1)).toBe('unsubscribeAll');
  });

  it('with unusable symbols change nothing', async () => {
    await expect(sdk.subscribe({ symbols: 'a' as never })).rejects.toThrow('subscribe: symbols must be');
    await expect(sdk.unsubscribe({ symbols: [] })).rejects.toThrow('unsubscribe: symbols must not be empty');
    expect(bridge.calls).toEqual([]);
  });
});

describe('after a break of the connection', () => {
  it('everything is subscribed again, and the current quotes are asked for', async () => {
    const opened = vi.fn();
    sdk.onOpen(opened);
    await sdk.subscribe({ symbols: ['own', 'gone'] });
    await sdk.unsubscribe({ symbols: ['gone'] });
    await sdk.subStrategyMsg({ customMsgID: 'S1', subscribed: true });
    await sdk.subStrategyMsg({ customMsgID: 'S2', subscribed: true });
    await sdk.subStrategyMsg({ customMsgID: 'S2', subscribed: false });
    const [told, listener] = recorded();
    await sdk.watchQuotes(['a'], listener).ready;
    bridge.calls.length = 0;
    bridge.close({ willReconnect: true });
    expect(sdk.state).toBe('connecting');
    bridge.answer('getCurrentTick', ({ symbol }) => tick(symbol, 8));
    bridge.open();
    await settled();
    expect(opened.mock.calls).toEqual([[{ again: true, resubscribed: ['own', 'a', 'S1'] }]]);
    expect(asked()).toEqual(['subscribe own,a', 'subStrategyMsg', 'getCurrentTick a']);
    expect(told).toEqual(['snapshot a 1', 'snapshot a 8']);
  });

  it('watches that began or ended meanwhile are taken into account', async () => {
    const one = sdk.watchQuotes(['a']);
    await one.ready;
    bridge.close({ willReconnect: true });
    one.stop();
    const other = sdk.watchQuotes(['b']);
    await settled();
    bridge.calls.length = 0;
    bridge.open();
    await other.ready;
    expect(asked()).toEqual(['subscribe b', 'getCurrentTick b']);
  });

  it('a watch keeps its symbols although the page unsubscribes from them at the same time', async () => {
    await sdk.subscribe({ symbols: ['a'] });
    bridge.close({ willReconnect: true });
    const left = sdk.unsubscribe({ symbols: ['a'] });
    const watch = sdk.watchQuotes(['a']);
    bridge.calls.length = 0;
    bridge.open();
    await Promise.all([left, watch.ready]);
    const last = asked().filter((call) => call.includes('subscribe'));
    expect(last.at(-1)).toBe('subscribe a');
  });

  it('a subscription that was not sent is not subscribed again', async () => {
    bridge.close({ willReconnect: true });
    const lost = sdk.subscribe({ symbols: ['a'] }, { timeoutMs: 10 });
    const refused = expect(lost).rejects.toBeInstanceOf(NotSentError);
    await vi.advanceTimersByTimeAsync(10);
    await refused;
    const opened = vi.fn();
    sdk.onOpen(opened);
    bridge.open();
    expect(opened).toHaveBeenCalledWith({ again: true, resubscribed: [] });
    expect(bridge.calls).toEqual([]);
    const watch = sdk.watchQuotes(['a']);
    await watch.ready;
    watch.stop();
    await settled();
    expect(asked().at(-1)).toBe('unsubscribe a'); // the page has no share in it
  });
});
