import {
  answeredCalls,
  methods,
  oneWayMethods,
  pushEvents,
  reservedEvents,
  unansweredCalls,
  type BridgeListener,
  type CallBridge,
} from '@varnel/web-client';

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

function replyOf(method: string): string {
  return method.replace(/_REQ$/, '_RES');
}

/**
 * Records every call and every event between page and bridge, in order, and changes none of them. It keeps only the
 * latest entries. Pushes have a limit of their own, so that quotes do not displace the calls.
 */
export class Journal implements CallBridge {
  private list: Entry[] = []; // all but pushes
  private pushes: Entry[] = [];
  private shown: readonly Entry[] = [];
  private nextId = 1;
  private readonly started = new Map<CallEntry, number>();
  private readonly unanswered = new Map<string, Set<CallEntry>>(); // by reply event, oldest first
  private readonly heard = new Set<string>();
  private readonly watchers = new Set<() => void>();
  private announced = false;

  constructor(
    private readonly bridge: CallBridge,
    private readonly limit = 500,
    /** Events come in bursts; the page renders at most once for each frame. */
    private readonly schedule: (task: () => void) => void = (task) => requestAnimationFrame(task),
  ) {
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
    this.list = [];
    this.pushes = [];
    this.started.clear();
    this.unanswered.clear();
    this.changed();
  }

  /** The entries, oldest first; the same array until something changes. */
  readonly entries = (): readonly Entry[] => this.shown;

  readonly watch = (watcher: () => void): (() => void) => {
    this.watchers.add(watcher);
    return () => this.watchers.delete(watcher);
  };

  private stamp(name: string, args: readonly unknown[]): EntryBase {
    return { id: this.nextId++, at: new Date(), name, args };
  }

  private hear(event: string): void {
    if (this.heard.has(event)) return;
    this.heard.add(event);
    this.bridge.addEventListener(event, (...args) => this.onEvent(event, args));
  }

  private onEvent(name: string, args: unknown[]): void {
    const entry: EventEntry = { ...this.stamp(name, args), kind: 'event', isPush: pushes.has(name) };
    const reply = entry.isPush ? undefined : envelope(args[0]); // a push answers no call, and may be large
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
    const list = entry.kind === 'event' && entry.isPush ? this.pushes : this.list;
    list.push(entry);
    if (list.length >= 2 * this.limit) {
      for (const old of list.splice(0, list.length - this.limit)) if (old.kind === 'call') this.forget(old);
    }
    this.changed();
  }

  private changed(): void {
    if (this.announced) return;
    this.announced = true;
    this.schedule(() => {
      this.announced = false;
      const latest = [...this.list.slice(-this.limit), ...this.pushes.slice(-this.limit)];
      this.shown = latest.sort((one, other) => one.id - other.id);
      this.watchers.forEach((watcher) => watcher());
    });
  }
}

interface Envelope {
  code?: unknown;
  uuid?: unknown;
}

function envelope(reply: unknown): Envelope | undefined {
  if (typeof reply !== 'string') return undefined;
  try {
    return (JSON.parse(reply) as Envelope | null) ?? undefined;
  } catch {
    return undefined;
  }
}
