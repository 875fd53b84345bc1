import type { CallBridge } from './bridge.js';
import { CallError, FailedCallError, NotSentError, RejectedCallError, UnexpectedReplyError } from './errors.js';
import type { Link } from './link.js';
import { argumentList, describe, methods, oneWayMethods, type Call, type OneWayCall } from './methods.js';
import { PendingCall, type CallOptions } from './pendingCall.js';
import { answeredCalls } from './protocol.js';
import { reasonOf } from './signals.js';
import { uuidSource } from './uuid.js';

/** The values of a call by the names of its parameters. */
export type Values = Readonly<Record<string, unknown>>;

interface CallsOptions {
  readonly timeoutMs?: number;
  readonly onUnpaired?: (event: string, reply: unknown) => void;
}

/** Makes a page's result of a checked answer. What it throws rejects the call. */
export type ReadAnswer = (answer: unknown, unexpected: (reason: string) => UnexpectedReplyError) => unknown;

interface Asking {
  /** Called when the bridge has taken the call. */
  readonly onSent?: () => void;
  readonly read?: ReadAnswer;
}

interface Waiting {
  readonly pending: PendingCall;
  readonly read: ReadAnswer | undefined;
}

type Queue = Map<string, Waiting>; // by uuid, oldest first

const defaultTimeoutMs = 10_000;

/**
 * Sends each call once and gives it its answer. Calls that are made before the connection is open are held back until
 * then.
 */
export class Calls {
  private readonly nextUuid = uuidSource();
  private readonly waiting = new Map<Call, Queue>();
  private readonly held = new Map<PendingCall, () => void>(); // with the task that sends it, oldest first
  private readonly stopListening: (() => void)[] = [];

  constructor(
    private readonly bridge: CallBridge,
    private readonly link: Pick<Link, 'state'>,
    private readonly options: CallsOptions,
  ) {
    for (const call of Object.keys(methods) as Call[]) this.listen(call);
  }

  ask(call: Call, values: Values = {}, options: CallOptions = {}, { onSent, read }: Asking = {}): Promise<unknown> {
    const { method, hasSideEffects } = describe(call);
    const queue = this.waiting.get(call)!;
    return this.begin(call, method, hasSideEffects === true, values, options, (pending, args) => {
      queue.set(pending.uuid, { pending, read }); // the bridge may answer before it returns
      if (this.invoke(pending, args)) onSent?.();
    });
  }

  /** For calls that the terminal never answers. The promise is resolved when the call has been sent. */
  async tell(call: OneWayCall, values: Values = {}, options: CallOptions = {}, onSent?: () => void): Promise<void> {
    const { method } = oneWayMethods[call];
    await this.begin(call, method, true, values, options, (pending, args) => {
      if (!this.invoke(pending, args)) return;
      onSent?.();
      pending.resolve();
    });
  }

  /** The connection is open: sends what was held back, in order. */
  release(): void {
    for (const [pending, send] of this.held) {
      if (this.link.state !== 'open') return;
      this.held.delete(pending);
      if (pending.inTime) send();
      else pending.timeOut(); // its timer is late, because the machine slept
    }
  }

  /** The connection has ended. What is held back waits on only if there will be another connection. */
  interrupt(willReconnect: boolean): void {
    const waiting = [...this.waiting.values()].flatMap((queue) => [...queue.values()]);
    for (const { pending } of waiting) pending.connectionClosed();
    if (!willReconnect) for (const call of [...this.held.keys()]) call.connectionClosed();
  }

  close(): void {
    for (const stop of this.stopListening.splice(0)) stop();
    this.interrupt(false);
  }

  private begin(
    call: Call | OneWayCall,
    method: string,
    hasSideEffects: boolean,
    values: Values,
    { timeoutMs = this.options.timeoutMs ?? defaultTimeoutMs, signal }: CallOptions,
    send: (pending: PendingCall, args: unknown[]) => void,
  ): Promise<unknown> {
    return new Promise((resolve, reject) => {
      const uuid = this.nextUuid();
      const args = argumentList(call, uuid, values);
      if (!(timeoutMs >= 0)) throw new RangeError(`${call}: timeoutMs must be a number of milliseconds`);
      if (signal?.aborted) throw reasonOf(signal);
      if (this.link.state === 'closed') throw new NotSentError(method, uuid, 'the connection is closed');
      const forget = (settled: PendingCall) => {
        this.held.delete(settled);
        this.waiting.get(call as Call)?.delete(uuid);
      };
      const pending = new PendingCall(method, uuid, hasSideEffects, timeoutMs, signal, { resolve, reject, forget });
      if (this.link.state === 'open') send(pending, args);
      else this.held.set(pending, () => send(pending, args));
    });
  }

  private invoke(pending: PendingCall, args: unknown[]): boolean {
    pending.sent = true;
    try {
      this.bridge.invokeMethod(pending.method, ...args);
      return true;
    } catch (error) {
      pending.reject(new NotSentError(pending.method, pending.uuid, `the bridge threw: ${String(error)}`, error));
      return false;
    }
  }

  private listen(call: Call): void {
    const event = answeredCalls[methods[call].method];
    const queue: Queue = new Map();
    this.waiting.set(call, queue);
    const onReply = (reply: unknown) => {
      const settled = reply === '' ? settleEmpty(call, queue) : settleBy(call, queue, reply);
      if (!settled) this.options.onUnpaired?.(event, reply);
    };
    this.bridge.addEventListener(event, onReply);
    this.stopListening.push(() => this.bridge.removeEventListener(event, onReply));
  }
}

/**
 * Answers come in the order of the calls, so an empty reply belongs to the oldest one. Deferred answers have no order, so
 * there it must be the only one. Calls with side effects are never guessed: if an accepted order looked refused, the page
 * would place it again.
 */
function settleEmpty(call: Call, queue: Queue): boolean {
  const { deferred, answersEmpty, hasSideEffects } = describe(call);
  if (hasSideEffects || (deferred && queue.size !== 1)) return false;
  const [oldest] = queue.values();
  if (!oldest) return false;
  const { method, uuid } = oldest.pending;
  if (answersEmpty) oldest.pending.resolve('');
  else oldest.pending.reject(new RejectedCallError(method, uuid));
  return true;
}

/** Settles the call that the reply names. */
function settleBy(call: Call, queue: Queue, reply: unknown): boolean {
  const envelope = parse(reply);
  const found = typeof envelope?.uuid === 'string' ? queue.get(envelope.uuid) : undefined;
  if (!envelope || !found) return false;
  const { pending, read } = found;
  const { method, uuid } = pending;
  const { code, msg, resultData } = envelope;
  const unexpected = (reason: string) => new UnexpectedReplyError(method, uuid, String(reply), reason);
  if (typeof code !== 'string' || typeof msg !== 'string') pending.reject(unexpected('code or msg is no text'));
  else if (code !== '0') pending.reject(new FailedCallError(method, uuid, code, msg, resultData));
  else {
    try {
      const answer = describe(call).answer(resultData);
      pending.resolve(read ? read(answer, unexpected) : answer);
    } catch (error) {
      pending.reject(error instanceof CallError ? error : unexpected(`resultData${(error as Error).message}`));
    }
  }
  return true;
}

function parse(reply: unknown): Record<string, unknown> | undefined {
  if (typeof reply !== 'string') return undefined;
  try {
    const value: unknown = JSON.parse(reply);
    return typeof value === 'object' && value !== null ? (value as Record<string, unknown>) : undefined;
  } catch {
    return undefined;
  }
}
