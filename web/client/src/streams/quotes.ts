import { ClosedError, NotSentError } from '../errors.js';
import { argumentList } from '../methods.js';
import { stopWithConnection } from './lists.js';
import type { Tick } from '../vocabulary.js';
import { Stream } from './stream.js';
import type { Terminal } from './terminal.js';
import type { Watch, WatchListener, WatchOptions } from './watch.js';

/** A symbol that at least one watch needs. */
interface Quoted {
  readonly watches: Set<QuoteWatch>;
  /** The latest quote in this connection. */
  tick?: Tick;
  /** Stands for the call that asks for the current quote. */
  asking?: object;
}

interface QuoteWatch {
  readonly stream: Stream<Tick>;
  /** Symbols for which the terminal has not answered yet. */
  readonly missing: Set<string>;
}

/** Brings each quote to the watches of its symbol. */
export class Quotes {
  private readonly quoted = new Map<string, Quoted>();
  private stopListening = () => {};
  private settling = false;

  constructor(
    private readonly terminal: Terminal,
    /** Field of a quote that has its symbol. */
    private readonly symbolField: string,
  ) {
    terminal.opened.add(() => this.askForMissing());
    terminal.closed.add(() => {
      for (const quoted of this.quoted.values()) {
        delete quoted.tick; // it may be out of date when the connection is open again
        delete quoted.asking;
      }
    });
  }

  readonly watch = (
    symbols: readonly string[],
    listener?: WatchListener<Tick>,
    options?: WatchOptions,
  ): Watch<Tick> => {
    const own = [...new Set(symbols)];
    if (own.length > 0) argumentList('subscribe', '', { symbols: own });
    const stream = new Stream<Tick>(listener, options);
    if (stream.isStopped) return stream;
    if (this.terminal.link.state === 'closed') {
      stream.breakOff(new NotSentError('watchQuotes', '', 'the connection is closed'));
      return stream;
    }
    const watch: QuoteWatch = { stream, missing: new Set(own) };
    for (const symbol of own) this.add(symbol, watch);
    stream.onStop(() => own.forEach((symbol) => this.remove(symbol, watch)));
    stopWithConnection(this.terminal, stream, 'watchQuotes');
    if (own.length === 0) stream.isReady();
    queueMicrotask(() => this.showKnown(watch));
    return stream;
  };

  private add(symbol: string, watch: QuoteWatch): void {
    if (this.quoted.size === 0) this.stopListening = this.terminal.on('on_tickUpdate', (tick) => this.take(tick));
    const quoted = this.quoted.get(symbol);
    if (quoted) {
      quoted.watches.add(watch);
      return;
    }
    this.quoted.set(symbol, { watches: new Set([watch]) });
    this.terminal.subscriptions.need(symbol, true);
    this.settleSoon();
  }

  private remove(symbol: string, watch: QuoteWatch): void {
    const { watches } = this.quoted.get(symbol)!;
    watches.delete(watch);
    if (watches.size > 0) return;
    this.quoted.delete(symbol);
    this.terminal.subscriptions.need(symbol, false);
    if (this.quoted.size === 0) this.stopListening();
    this.settleSoon();
  }

  /** Changes of one moment share a call, and a symbol that is dropped and added again makes none. */
  private settleSoon(): void {
    if (this.settling) return;
    this.settling = true;
    queueMicrotask(() => {
      this.settling = false;
      this.terminal.subscriptions.settle();
      this.askForMissing();
    });
  }

  /** The next push comes at the next change. Until then the current quote is the latest. */
  private askForMissing(): void {
    if (this.terminal.link.state !== 'open') return;
    for (const [symbol, quoted] of this.quoted) if (!quoted.tick && !quoted.asking) void this.ask(symbol, quoted);
  }

  private async ask(symbol: string, quoted: Quoted): Promise<void> {
    const asking = (quoted.asking = {});
    const isOver = () => quoted.asking !== asking || this.quoted.get(symbol) !== quoted;
    try {
      const tick = (await this.terminal.calls.ask('getCurrentTick', { symbol })) as Tick;
      if (isOver() || quoted.tick) return; // a push was earlier
      const isKnown = Object.keys(tick).length > 0; // an unknown symbol has an empty quote
      if (isKnown) quoted.tick = tick;
      for (const watch of quoted.watches) {
        if (isKnown) watch.stream.put(symbol, tick);
        if (isKnown) watch.stream.tellSnapshot();
        settle(watch, symbol);
      }
    } catch (error) {
      if (isOver() || error instanceof ClosedError) return; // asked again when the connection is open
      for (const { stream } of quoted.watches) stream.isNotReady(error);
      this.terminal.onError(error);
    } finally {
      if (quoted.asking === asking) delete quoted.asking;
    }
  }

  private take(tick: Tick): void {
    const symbol = String((tick as Readonly<Record<string, unknown>>)[this.symbolField]);
    const quoted = this.quoted.get(symbol);
    if (!quoted) return; // subscribed by the page itself, or sent before the subscription ended
    quoted.tick = tick;
    for (const watch of quoted.watches) {
      watch.stream.put(symbol, tick);
      watch.stream.tell();
      settle(watch, symbol);
    }
  }

  /** Shows a new watch what other watches of its symbols know already. */
  private showKnown({ stream, missing }: QuoteWatch): void {
    if (stream.isStopped) return;
    const known = [...missing].filter((symbol) => this.quoted.get(symbol)?.tick);
    for (const symbol of known) stream.put(symbol, this.quoted.get(symbol)!.tick!);
    if (known.length > 0) stream.tellSnapshot();
    for (const symbol of known) settle({ stream, missing }, symbol);
  }
}

/** The symbol has its quote, or the terminal has none. */
function settle({ stream, missing }: QuoteWatch, symbol: string): void {
  missing.delete(symbol);
  if (missing.size === 0) stream.isReady();
}
