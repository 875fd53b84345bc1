import type { Calls } from './calls.js';
import { ClosedError } from './errors.js';
import type { Link } from './link.js';
import { argumentList, type Arguments } from './methods.js';
import type { CallOptions } from './pendingCall.js';

/**
 * What the page has subscribed. The terminal knows one set of symbols for the whole page, but the page's parts share
 * them: a symbol stays subscribed while the page's own `subscribe` or a watch needs it.
 */
export class Subscriptions {
  /** Needed by the page's own calls. */
  private readonly own = new Set<string>();
  /** Needed by watches. */
  private readonly watched = new Set<string>();
  /** What the terminal was asked for, in this connection or in the one that broke. */
  private readonly sent = new Set<string>();
  private readonly customMessages = new Set<string>();

  constructor(
    private readonly calls: Calls,
    private readonly link: Pick<Link, 'state'>,
    private readonly onError: (error: unknown) => void,
  ) {}

  readonly subscribe = async (values: Arguments<'subscribe'>, options?: CallOptions): Promise<void> => {
    argumentList('subscribe', '', values);
    const added = values.symbols.filter((symbol) => !this.own.has(symbol));
    added.forEach((symbol) => this.own.add(symbol));
    const undo = () => added.forEach((symbol) => this.own.delete(symbol));
    await this.change('subscribe', values.symbols, options, undo);
  };

  readonly unsubscribe = async (values: Arguments<'unsubscribe'>, options?: CallOptions): Promise<void> => {
    argumentList('unsubscribe', '', values);
    await this.drop(values.symbols, options);
  };

  /** Symbols that a watch needs stay: then the others are unsubscribed by name. */
  readonly unsubscribeAll = async (_values?: Record<string, never>, options?: CallOptions): Promise<void> => {
    if (this.watched.size > 0) return this.drop([...new Set([...this.own, ...this.sent])], options);
    const removed = [...this.own];
    this.own.clear();
    const undo = () => removed.forEach((symbol) => this.own.add(symbol));
    await this.change('unsubscribeAll', [...removed, ...this.sent], options, undo);
  };

  readonly subStrategyMsg = (values: Arguments<'subStrategyMsg'>, options?: CallOptions): Promise<void> =>
    this.calls.tell('subStrategyMsg', { ...values }, options, () => {
      if (values.subscribed) this.customMessages.add(values.customMsgID);
      else this.customMessages.delete(values.customMsgID);
    });

  /** Notes that watches need the symbol, or no longer do. `settle` tells the terminal. */
  need(symbol: string, needed: boolean): void {
    if (needed) this.watched.add(symbol);
    else this.watched.delete(symbol);
  }

  /** Subscribes to what watches need, and ends what nobody needs any more. */
  settle(): void {
    if (this.link.state !== 'open') return;
    const lost = [...this.sent].filter((symbol) => !this.isNeeded(symbol));
    const gained = [...this.watched].filter((symbol) => !this.sent.has(symbol));
    if (lost.length > 0) this.request('unsubscribe', lost);
    if (gained.length > 0) this.request('subscribe', gained);
  }

  /** Subscribes again after a break, and tells to what. */
  restore(): string[] {
    const symbols = [...this.sent].filter((symbol) => this.isNeeded(symbol));
    this.sent.clear();
    if (symbols.length > 0) this.request('subscribe', symbols);
    for (const customMsgID of this.customMessages)
      this.calls.tell('subStrategyMsg', { customMsgID, subscribed: true }).catch(this.onError);
    return [...symbols, ...this.customMessages];
  }

  private isNeeded(symbol: string): boolean {
    return this.own.has(symbol) || this.watched.has(symbol);
  }

  private async drop(symbols: readonly string[], options?: CallOptions): Promise<void> {
    const removed = symbols.filter((symbol) => this.own.delete(symbol));
    const free = symbols.filter((symbol) => !this.watched.has(symbol));
    const undo = () => removed.forEach((symbol) => this.own.add(symbol));
    if (free.length > 0) await this.change('unsubscribe', free, options, undo);
  }

  /** A call that was not sent has changed nothing, so it is undone here too. */
  private async change(call: SymbolCall, symbols: readonly string[], options: CallOptions = {}, undo = () => {}) {
    let reached = false;
    const onSent = () => {
      reached = true;
      for (const symbol of symbols) {
        if (call === 'subscribe') this.sent.add(symbol);
        else this.sent.delete(symbol);
      }
    };
    try {
      await this.calls.ask(call, call === 'unsubscribeAll' ? {} : { symbols }, options, { onSent });
    } catch (error) {
      if (!reached) undo();
      throw error;
    }
  }

  private request(call: 'subscribe' | 'unsubscribe', symbols: readonly string[]): void {
    this.change(call, symbols).catch((error: unknown) => {
      if (!(error instanceof ClosedError)) this.onError(error); // after a break everything is subscribed again
    });
  }
}

type SymbolCall = 'subscribe' | 'unsubscribe' | 'unsubscribeAll';
