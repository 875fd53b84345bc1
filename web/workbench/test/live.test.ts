import type { Connection, Tick } from '@varnel/web-client';
import { beforeEach, describe, expect, it } from 'vitest';
import { Refetch } from '../src/live/Refetch';
import { TickFeed } from '../src/live/TickFeed';

let frames: (() => void)[];
const schedule = (task: () => void) => void frames.push(task);
const draw = () => frames.splice(0).forEach((task) => task());
/** Lets all waiting promises settle. */
const settle = () => new Promise<void>((resolve) => setTimeout(resolve));

beforeEach(() => {
  frames = [];
});

describe('asking again', () => {
  it('makes one call at a time, and one more for all changes during a call', async () => {
    const ends: (() => void)[] = [];
    const refetch = new Refetch(() => new Promise<void>((resolve) => ends.push(resolve)));
    for (let change = 0; change < 1000; ++change) refetch.trigger();
    expect(ends).toHaveLength(1);
    ends[0]!();
    await settle();
    expect(ends).toHaveLength(2);
    ends[1]!();
    await settle();
    expect(ends).toHaveLength(2);
    refetch.trigger();
    expect(ends).toHaveLength(3);
  });

  it('goes on after a call that failed', async () => {
    let calls = 0;
    const refetch = new Refetch(() => {
      ++calls;
      return Promise.reject(new Error('no'));
    });
    refetch.trigger();
    refetch.trigger();
    await settle();
    expect(calls).toBe(2);
  });
});

describe('the feed of quotes', () => {
  class FakeTerminal {
    readonly calls: string[] = [];
    snapshots: Record<string, Partial<Tick>> = {};
    failing = false;
    push: (tick: Partial<Tick>) => void = () => {};

    readonly sdk = {
      on: (_: string, listener: (tick: Partial<Tick>) => void) => {
        this.push = listener;
        return () => {};
      },
      subscribe: ({ symbols }: { symbols: string[] }) => this.call(`+${symbols.join()}`),
      unsubscribe: ({ symbols }: { symbols: string[] }) => this.call(`-${symbols.join()}`),
      getCurrentTick: ({ symbol }: { symbol: string }) => Promise.resolve(this.snapshots[symbol] ?? {}),
    } as unknown as Connection;

    private call(text: string): Promise<void> {
      this.calls.push(text);
      return this.failing ? Promise.reject(new Error(text)) : Promise.resolve();
    }
  }

  let terminal: FakeTerminal;
  let complaints: Error[];
  let feed: TickFeed;

  beforeEach(() => {
    terminal = new FakeTerminal();
    complaints = [];
    feed = new TickFeed(terminal.sdk, schedule, (error) => complaints.push(error));
  });

  it('makes one call for symbols that are added together', async () => {
    feed.subscribe(['a']);
    feed.subscribe(['b', 'a', 'b']);
    await settle();
    expect(terminal.calls).toEqual(['+a,b']);
  });

  it('ends a subscription with its last watcher', async () => {
    const [first, second] = [feed.subscribe(['a']), feed.subscribe(['a'])];
    await settle();
    first();
    first(); // a second call does nothing
    await settle();
    expect(terminal.calls).toEqual(['+a']);
    second();
    await settle();
    expect(terminal.calls).toEqual(['+a', '-a']);
    feed.subscribe(['a']);
    await settle();
    expect(terminal.calls).toEqual(['+a', '-a', '+a']);
  });

  it('makes no call for a symbol that is dropped and added again', async () => {
    const stop = feed.subscribe(['a']);
    await settle();
    stop();
    feed.subscribe(['a']);
    feed.subscribe(['b'])();
    await settle();
    expect(terminal.calls).toEqual(['+a']);
  });

  it('shows the current quote until one is pushed', async () => {
    terminal.snapshots = { a: { symbol: 'a', last: 1 } };
    feed.subscribe(['a']);
    expect(feed.tick('a')).toBeUndefined();
    await settle();
    expect(feed.tick('a')).toEqual({ symbol: 'a', last: 1 });
    terminal.push({ symbol: 'a', last: 2 });
    expect(feed.tick('a')).toEqual({ symbol: 'a', last: 2 });
  });

  it('does not replace a pushed quote by an older answer', async () => {
    terminal.snapshots = { a: { symbol: 'a', last: 1 } };
    feed.subscribe(['a']);
    await Promise.resolve(); // subscribed, not yet answered
    terminal.push({ symbol: 'a', last: 2 });
    await settle();
    expect(feed.tick('a')).toEqual({ symbol: 'a', last: 2 });
  });

  it('forgets symbols without watchers, and ignores their late quotes', async () => {
    const stop = feed.subscribe(['a']);
    await settle();
    terminal.push({ symbol: 'a', last: 1 });
    stop();
    await settle();
    expect(feed.tick('a')).toBeUndefined();
    terminal.push({ symbol: 'a', last: 2 });
    terminal.push({ last: 3 });
    expect(feed.tick('a')).toBeUndefined();
  });

  it('notifies its watchers once for each frame', async () => {
    let told = 0;
    feed.watch(() => ++told);
    feed.subscribe(['a', 'b']);
    await settle();
    draw();
    told = 0;
    for (let last = 0; last < 100; ++last) terminal.push({ symbol: 'a', last });
    draw();
    expect(told).toBe(1);
    expect(feed.tick('a')).toEqual({ symbol: 'a', last: 99 });
  });

  it('reports subscriptions that fail', async () => {
    terminal.failing = true;
    feed.subscribe(['a']);
    await settle();
    expect(complaints.map(({ message }) => message)).toEqual(['+a']);
  });
});
