import type { Connection, Tick } from '@varnel/web-client';
import { nextFrame, Watchers, type Schedule } from './frame';

type Sdk = Pick<Connection, 'on' | 'subscribe' | 'unsubscribe' | 'getCurrentTick'>;

/**
 * The desk's quote subscriptions. A subscription belongs to the whole page, so panels that watch the same symbol share
 * it, and the last panel ends it.
 */
export class TickFeed {
  private readonly ticks = new Map<string, Partial<Tick>>();
  private readonly counts = new Map<string, number>();
  private readonly subscribed = new Set<string>();
  private readonly watchers: Watchers;
  private settling = false;

  constructor(
    private readonly sdk: Sdk,
    schedule: Schedule = nextFrame,
    /** Called when a subscription fails. */
    private readonly onError: (error: Error) => void = (error) => console.error(error),
  ) {
    this.watchers = new Watchers(schedule);
    sdk.on('on_tickUpdate', (tick) => this.take(tick));
  }

  /** Subscribes to the symbols until the returned function is called. */
  readonly subscribe = (symbols: readonly string[]): (() => void) => {
    const own = [...new Set(symbols)];
    for (const symbol of own) this.counts.set(symbol, (this.counts.get(symbol) ?? 0) + 1);
    this.settleSoon();
    let active = true;
    return () => {
      if (!active) return;
      active = false;
      for (const symbol of own) this.counts.set(symbol, this.counts.get(symbol)! - 1);
      this.settleSoon();
    };
  };

  /** The latest quote since the subscription, if there was one. */
  readonly tick = (symbol: string): Partial<Tick> | undefined => this.ticks.get(symbol);

  readonly watch = (watcher: () => void): (() => void) => this.watchers.add(watcher);

  private take(tick: Tick): void {
    const symbol = tick.symbol;
    if (typeof symbol !== 'string' || !this.subscribed.has(symbol)) return; // sent before the subscription ended
    this.ticks.set(symbol, tick);
    this.changed();
  }

  private changed(): void {
    this.watchers.announce(() => {});
  }

  /** Changes of one moment share a call, and a symbol that is dropped and added again makes none. */
  private settleSoon(): void {
    if (this.settling) return;
    this.settling = true;
    queueMicrotask(() => {
      this.settling = false;
      this.settle();
    });
  }

  private settle(): void {
    const gained: string[] = [];
    const lost: string[] = [];
    for (const [symbol, count] of this.counts) {
      if (count > 0 && !this.subscribed.has(symbol)) gained.push(symbol);
      if (count > 0) continue;
      this.counts.delete(symbol);
      if (this.subscribed.has(symbol)) lost.push(symbol);
    }
    for (const symbol of lost) {
      this.subscribed.delete(symbol);
      this.ticks.delete(symbol);
    }
    for (const symbol of gained) this.subscribed.add(symbol);
    if (lost.length > 0) this.sdk.unsubscribe({ symbols: lost }).catch(this.onError);
    if (gained.length > 0) this.sdk.subscribe({ symbols: gained }).catch(this.onError);
    for (const symbol of gained) this.fetchCurrent(symbol);
  }

  /** A push comes at the next change. Until then the current quote is shown. */
  private fetchCurrent(symbol: string): void {
    this.sdk.getCurrentTick({ symbol }).then((tick) => {
      if (!this.subscribed.has(symbol) || this.ticks.has(symbol)) return;
      this.ticks.set(symbol, tick);
      this.changed();
    }, this.onError);
  }
}
