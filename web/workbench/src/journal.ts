import {
  answeredCalls,
  methods,
  oneWayMethods,
  pushEvents,
  reservedEvents,
  unansweredCalls,
  type BreakableBridge,
  type BridgeListener,
  type CallBridge,
  type ConnectionState,
} from '@varnel/web-client';
import { BoundedList } from './boundedList';
import { envelopeOf, type Envelope } from './envelope';
import { bytesOf, kept } from './keptText';

interface EntryBase {
  id: number;
  at: Date;
  name: string;
  args: readonly unknown[];
}

export type Outcome = 'ok' | 'failed' | 'empty';

export interface CallEntry extends EntryBase {
  kind: 'call';
  uuid: string;
  /** Set when the terminal never replies to this call. */
  oneWay: boolean;
  /** Missing until the answer comes. */
  answer?: { outcome: Outcome; afterMs: number };
}

export interface EventEntry extends EntryBase {
  kind: 'event';
  /** Whether it is a push. */
  isPush: boolean;
  /** Set when the event answers a call of this page. */
  afterMs?: number;
}

export interface ConnectionEntry extends EntryBase {
  kind: 'connection';
}

export type Entry = CallEntry | EventEntry | ConnectionEntry;

const knownEvents = [
  ...Object.values(answeredCalls),
  ...Object.values(unansweredCalls),
  ...pushEvents,
  ...reservedEvents,
];

/** Calls that are answered by the empty reply. */
const answerEmpty = new Set<string>(
  Object.values(methods).flatMap((call) => ('answersEmpty' in call ? [call.method] : [])),
);

const oneWay = new Set<string>(Object.values(oneWayMethods).map(({ method }) => method));
const pushes = new Set<string>(pushEvents);

/** The text that the terminal makes of a call identifier. */
function asText(value: unknown): string {
  return typeof value === 'string'
    ? value
    : value === undefined || value === null || typeof value === 'object'
      ? ''
      : String(value);
}

function canBreak(bridge: CallBridge): bridge is BreakableBridge {
  return typeof (bridge as Partial<BreakableBridge>).onConnectionChange === 'function';
}

function replyOf(method: string): string {
  return method.replace(/_REQ$/, '_RES');
}

/** What the journal shows at a moment. */
export interface Snapshot {
  /** The latest entries, oldest first. */
  entries: readonly Entry[];
  /** Calls of the entries that wait for their answer. */
  unanswered: number;
  /** All calls and events since the journal began or was cleared, also those that are no longer kept. */
  total: number;
  /** Bytes of the texts that are kept. */
  bytes: number;
}

export interface Bounds {
  /** Entries of each kind: pushes are one kind, everything else is the other. */
  entries: number;
  /** Bytes of the texts of each kind. */
  bytes: number;
  /** Characters of a text. Longer ones are cut. */
  text: number;
}

const usualBounds: Bounds = { entries: 1000, bytes: 4 * 2 ** 20, text: 2 ** 16 };

const bytesOfEntry = 300; // without its texts

/** Events come in bursts; the page is told of them at most four times a second. */
const fourTimesASecond = (task: () => void) => void setTimeout(task, 250);

/**
 * Records every call and every event between page and bridge, in order, and changes none of them. It keeps only the
 * latest entries. Pushes have bounds of their own, so that quotes do not displace the calls.
 */
export class Journal implements CallBridge {
  private readonly called: BoundedList<Entry>; // all but pushes
  private readonly pushed: BoundedList<Entry>;
  private shown: Snapshot = { entries: [], unanswered: 0, total: 0, bytes: 0 };
  private stale = false; // whether something changed since `shown`
  private nextId = 1;
  private total = 0;
  private readonly started = new Map<CallEntry, number>();
  private readonly unanswered = new Map<string, Set<CallEntry>>(); // by reply event, oldest first
  private readonly heard = new Set<string>();
  private readonly watchers = new Set<() => void>();
  private announced = false;

  constructor(
    private readonly bridge: CallBridge,
    private readonly bounds = usualBounds,
    private readonly schedule: (task: () => void) => void = fourTimesASecond,
  ) {
    this.called = new BoundedList(bounds.entries, bounds.bytes, (old) => old.kind === 'call' && this.forget(old));
    this.pushed = new BoundedList(bounds.entries, bounds.bytes);
    if (canBreak(bridge)) this.onConnectionChange = (listener) => bridge.onConnectionChange(listener);
    knownEvents.forEach((name) => this.hear(name));
  }

  invokeMethod(method: string, ...args: unknown[]): void {
    const event = replyOf(method);
    this.hear(event);
    const entry: CallEntry = {
      ...this.stamp(method, args),
      kind: 'call',
      uuid: asText(args[0]),
      oneWay: oneWay.has(method),
    };
    if (!entry.oneWay) {
      const waiting = this.unanswered.get(event) ?? new Set();
      this.unanswered.set(event, waiting.add(entry));
      this.started.set(entry, performance.now());
    }
    this.add(entry);
    this.bridge.invokeMethod(method, ...args);
  }

  addEventListener(name: string, listener: BridgeListener): void {
    this.bridge.addEventListener(name, listener);
  }

  removeEventListener(name: string, listener: BridgeListener): void {
    this.bridge.removeEventListener(name, listener);
  }

  /** Notes that the connection opened or closed. */
  noteConnection(name: string, ...args: unknown[]): void {
    this.add({ ...this.stamp(name, args), kind: 'connection' });
  }

  clear(): void {
    this.called.clear();
    this.pushed.clear();
    this.started.clear();
    this.unanswered.clear();
    this.total = 0;
    this.changed();
  }

  /** The same object until the watchers are told. Nothing is made while nobody watches or asks. */
  readonly current = (): Snapshot => {
    if (this.stale && !this.announced) this.renew();
    return this.shown;
  };

  /** Passed on where the bridge has it: the client learns from it that the connection has ended. */
  readonly onConnectionChange?: BreakableBridge['onConnectionChange'];

  get connectionState(): ConnectionState {
    return canBreak(this.bridge) ? this.bridge.connectionState : 'open';
  }

  readonly watch = (watcher: () => void): (() => void) => {
    this.watchers.add(watcher);
    return () => this.watchers.delete(watcher);
  };

  private stamp(name: string, args: readonly unknown[]): EntryBase {
    return { id: this.nextId++, at: new Date(), name, args: args.map((arg) => kept(arg, this.bounds.text)) };
  }

  private hear(event: string): void {
    if (this.heard.has(event)) return;
    this.heard.add(event);
    this.bridge.addEventListener(event, (...args) => this.onEvent(event, args));
  }

  private onEvent(name: string, args: unknown[]): void {
    const entry: EventEntry = { ...this.stamp(name, args), kind: 'event', isPush: pushes.has(name) };
    const reply = entry.isPush ? undefined : envelopeOf(args[0]); // a push answers no call
    const call = this.callAnsweredBy(name, args, reply);
    if (call) {
      const afterMs = performance.now() - this.started.get(call)!;
      const succeeded = reply ? reply.code === '0' : answerEmpty.has(call.name);
      call.answer = { outcome: succeeded ? 'ok' : reply ? 'failed' : 'empty', afterMs };
      entry.afterMs = afterMs;
      this.forget(call);
    }
    this.add(entry);
  }

  private callAnsweredBy(event: string, args: readonly unknown[], reply: Envelope | undefined): CallEntry | undefined {
    // An empty reply names no call, but the answers of one method come in the order of the calls.
    const isEmpty = args[0] === '';
    for (const call of this.unanswered.get(event) ?? []) if (isEmpty || call.uuid === reply?.uuid) return call;
    return undefined;
  }

  private forget(call: CallEntry): void {
    this.started.delete(call);
    this.unanswered.get(replyOf(call.name))?.delete(call);
  }

  private add(entry: Entry): void {
    const list = entry.kind === 'event' && entry.isPush ? this.pushed : this.called;
    list.push(
      entry,
      entry.args.reduce((sum: number, arg) => sum + bytesOf(arg), bytesOfEntry),
    );
    this.total += 1;
    this.changed();
  }

  private changed(): void {
    this.stale = true;
    if (this.announced || this.watchers.size === 0) return;
    this.announced = true;
    this.schedule(() => {
      this.announced = false;
      this.renew();
      this.watchers.forEach((watcher) => watcher());
    });
  }

  private renew(): void {
    this.stale = false;
    const entries = [...this.called.items, ...this.pushed.items].sort((one, other) => one.id - other.id);
    const bytes = this.called.bytes + this.pushed.bytes;
    this.shown = { entries, unanswered: this.started.size, total: this.total, bytes };
  }
}
