import type { BreakableBridge, BridgeListener, ConnectionChange, ConnectionState } from '../bridge.js';
import type { Call, Methods } from '../protocol/calls.js';
import { pushes, type Push, type PushEvent, type PushName } from '../protocol/pushes.js';
import type { Answer, Arguments } from '../types.js';
import type { SimulatorVocabulary, Vocabulary } from '../vocabulary.js';
import { callNamed, namedArguments, type AnyCall } from './namedArguments.js';

/** A call that the page has made. */
export interface RecordedCall {
  readonly call: AnyCall;
  /** The name of the call on the wire. */
  readonly method: string;
  readonly uuid: string;
  /** The arguments by their names, as the page passed them. */
  readonly args: Readonly<Record<string, unknown>>;
}

/** A refusal by the terminal: code "-1" unless another one is given. */
export interface Refusal {
  readonly msg: string;
  readonly code?: string;
  readonly resultData?: unknown;
}

export interface AnswerOptions {
  /** Answers after this time, in milliseconds. Without it the answer comes before the call returns. */
  readonly afterMs?: number;
}

/** The next call of a name, whose answer the test gives later. */
export interface Deferred<Result> {
  /** Resolved when the page has made the call. */
  readonly called: Promise<RecordedCall>;
  answer(resultData: Result): void;
  refuse(refusal: Refusal): void;
  answerEmpty(): void;
}

/**
 * The `resultData` of an answer, or a function that makes it. Orders are answered with what the terminal sends; the client
 * makes the outcome of it.
 */
export type Script<C extends Call, V extends Vocabulary = SimulatorVocabulary> =
  Answer<C, V> | ((args: Arguments<C, V>, call: RecordedCall) => Answer<C, V>);

/** The name of a call in the client or on the wire. */
type NameOf<C extends Call> = C | Methods[C]['method'];

type Respond = (call: RecordedCall) => void;

/**
 * A terminal for tests. It records what the page calls, answers as the test says, and has no market of its own. A call
 * about which the test has said nothing is not taken, so that it fails at once; subscriptions succeed.
 */
export class ScriptedBridge<V extends Vocabulary = SimulatorVocabulary> implements BreakableBridge {
  /** The calls that reached the terminal, the oldest first. */
  readonly calls: RecordedCall[] = [];
  private readonly listeners = new Map<string, Set<BridgeListener>>();
  private readonly watchers = new Set<(change: ConnectionChange) => void>();
  private readonly scripts = new Map<AnyCall, Respond>();
  private readonly once = new Map<AnyCall, Respond[]>();
  private connection = 0; // an answer is heard only in the connection of its call

  constructor(private state: ConnectionState = 'open') {
    for (const call of ['subscribe', 'unsubscribe', 'unsubscribeAll'] as const) this.answer(call, undefined);
    for (const call of ['sendCustomInfo', 'subStrategyMsg'] as const) this.ignore(call);
  }

  /** Answers all calls of this name. */
  answer<C extends Call>(name: NameOf<C>, script: Script<C, V>, options: AnswerOptions = {}): this {
    return this.script(name, options, (call) => {
      const resultData: unknown =
        typeof script === 'function' ? (script as (...args: unknown[]) => unknown)(call.args, call) : script;
      return { code: '0', msg: '', resultData };
    });
  }

  /** Refuses all calls of this name. */
  refuse(name: string, refusal: Refusal | ((call: RecordedCall) => Refusal), options: AnswerOptions = {}): this {
    return this.script(name, options, (call) => refused(typeof refusal === 'function' ? refusal(call) : refusal));
  }

  /** Answers all calls of this name with the empty reply, which names no call. */
  answerEmpty(name: string, options: AnswerOptions = {}): this {
    return this.script(name, options, () => '');
  }

  /** Leaves all calls of this name without an answer. */
  ignore(name: string): this {
    this.scripts.set(callNamed(name), () => {});
    return this;
  }

  /** Takes the next call of this name out of the script: the test answers it later, or never. */
  defer<C extends Call>(name: NameOf<C>): Deferred<Answer<C, V>> {
    const call = callNamed(name);
    let respond: (reply: Reply) => void = () => {
      throw new Error(`ScriptedBridge: the page has not called ${call} yet`);
    };
    const called = new Promise<RecordedCall>((resolve) => {
      const waiting = this.once.get(call) ?? [];
      waiting.push((recorded) => {
        respond = this.replyTo(recorded);
        resolve(recorded);
      });
      this.once.set(call, waiting);
    });
    return {
      called,
      answer: (resultData) => respond({ code: '0', msg: '', resultData }),
      refuse: (refusal) => respond(refused(refusal)),
      answerEmpty: () => respond(''),
    };
  }

  /**
   * Sends a push. Records become JSON texts as on the wire; a text is sent as it is. `strategyMessage` and
   * `strategyStatus` have two texts, `ordersLoaded` has nothing, and an `asset` without a record tells of no account.
   */
  push(name: PushName | PushEvent, ...values: unknown[]): void {
    const push = Object.entries<Push>(pushes).find(([known, { event }]) => known === name || event === name)?.[1];
    if (!push) throw new TypeError(`there is no push "${name}"`);
    const args = push.mayBeEmpty && values[0] === undefined ? [''] : values;
    this.emit(push.event, ...args.map((value) => (typeof value === 'string' ? value : JSON.stringify(value))));
  }

  /** The calls of this name. */
  callsOf(name: string): RecordedCall[] {
    const wanted = callNamed(name);
    return this.calls.filter(({ call }) => call === wanted);
  }

  /** Opens the connection, for the first time or again. */
  open(): void {
    this.change({ state: 'open' });
  }

  /** Ends the connection: by default for good, as if it broke. */
  close({ code = 1006, reason = '', willReconnect = false } = {}): void {
    this.connection++;
    this.change({ state: 'closed', code, reason, willReconnect });
    if (willReconnect) this.change({ state: 'connecting' });
  }

  get connectionState(): ConnectionState {
    return this.state;
  }

  onConnectionChange(listener: (change: ConnectionChange) => void): () => void {
    const own = (change: ConnectionChange) => listener(change);
    this.watchers.add(own);
    return () => void this.watchers.delete(own);
  }

  invokeMethod(method: string, ...[uuid, ...args]: unknown[]): void {
    if (this.state !== 'open') throw new Error(`ScriptedBridge: the connection is ${this.state}`);
    const call = callNamed(method);
    const respond = this.once.get(call)?.shift() ?? this.scripts.get(call);
    if (!respond) throw new Error(`ScriptedBridge: the test says nothing about ${call}`);
    const recorded = { call, method, uuid: String(uuid), args: namedArguments(call, args) };
    this.calls.push(recorded);
    respond(recorded);
  }

  addEventListener(name: string, listener: BridgeListener): void {
    const listeners = this.listeners.get(name) ?? new Set();
    this.listeners.set(name, listeners.add(listener));
  }

  removeEventListener(name: string, listener: BridgeListener): void {
    this.listeners.get(name)?.delete(listener);
  }

  /** Sends an event as it is, for texts that the terminal should never send. */
  emit(name: string, ...args: unknown[]): void {
    for (const listener of [...(this.listeners.get(name) ?? [])]) listener(...args);
  }

  private script(name: string, { afterMs }: AnswerOptions, reply: (call: RecordedCall) => Reply): this {
    this.scripts.set(callNamed(name), (call) => {
      const respond = this.replyTo(call);
      if (afterMs === undefined) respond(reply(call));
      else setTimeout(() => respond(reply(call)), afterMs);
    });
    return this;
  }

  private replyTo({ method, uuid }: RecordedCall): (reply: Reply) => void {
    const { connection } = this;
    return (reply) => {
      if (connection !== this.connection) return;
      this.emit(replyEventOf(method), reply === '' ? '' : JSON.stringify({ ...reply, uuid }));
    };
  }

  private change(change: ConnectionChange): void {
    this.state = change.state;
    for (const watcher of [...this.watchers]) watcher(change);
  }
}

/** An envelope without its identifier, or the empty reply. */
type Reply = { readonly code: string; readonly msg: string; readonly resultData: unknown } | '';

function refused({ msg, code = '-1', resultData }: Refusal): Reply {
  return { code, msg, resultData };
}

function replyEventOf(method: string): string {
  return method.replace(/_REQ$/, '_RES');
}
