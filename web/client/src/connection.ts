import type { CallBridge } from './bridge.js';
import {
  ClosedError,
  FailedCallError,
  OutcomeUnknownError,
  RejectedCallError,
  TimeoutError,
  UnexpectedReplyError,
} from './errors.js';
import { argumentList, describe, methods, oneWayMethods, type Call, type OneWayCall } from './methods.js';
import { answeredCalls } from './protocol.js';
import type { PushEvent, PushName } from './protocol/pushes.js';
import { PushHub, type OnUnreadable, type PushListener } from './pushes.js';
import type { Calls, OneWayCalls } from './types.js';
import { uuidSource } from './uuid.js';
import type { SimulatorVocabulary, Vocabulary } from './vocabulary.js';

export interface CallOptions {
  /** How long to wait for the answer, in milliseconds. */
  timeoutMs?: number;
}

export interface ConnectOptions extends CallOptions {
  /** Called for every reply without a waiting call: late replies, and replies to calls made elsewhere. */
  onUnpaired?: (event: string, reply: unknown) => void;
  /** Called for every push of an unexpected form. Without it such pushes go to the console. */
  onUnreadable?: OnUnreadable;
}

/** One function for each call, `on` for pushes, and `close`. */
export type Connection<V extends Vocabulary = SimulatorVocabulary> = Calls<V> &
  OneWayCalls<V> & {
    /** Calls the listener for each push until the returned function is called. The name of the event works too. */
    on<P extends PushName | PushEvent>(push: P, listener: PushListener<P, V>): () => void;
    /** Stops listening and rejects waiting calls. Nothing is sent afterwards. */
    close(): void;
  };

interface Waiting {
  resolve(answer: unknown): void;
  reject(reason: Error): void;
}

const defaultTimeoutMs = 10_000;

/**
 * Gives typed access to calls and pushes. Use one connection for each page, so that empty replies find their call. A call
 * is never repeated: a repeated order is a second order.
 */
export function connect<V extends Vocabulary = SimulatorVocabulary>(
  bridge: CallBridge,
  options: ConnectOptions = {},
): Connection<V> {
  const nextUuid = uuidSource();
  const closers: (() => void)[] = [];
  let closed = false;

  function open(call: Call) {
    const { method, answer, deferred, answersEmpty, hasSideEffects } = describe(call);
    const unansweredError = (reason: TimeoutError | ClosedError) =>
      hasSideEffects ? new OutcomeUnknownError(reason) : reason;
    const event = answeredCalls[method];
    const waiting = new Map<string, Waiting>(); // by uuid, oldest first

    function take(uuid: string): Waiting | undefined {
      const found = waiting.get(uuid);
      waiting.delete(uuid);
      return found;
    }

    /**
     * Answers come in the order of the calls, so an empty reply belongs to the oldest one. Deferred answers have no
     * order, so there it must be the only one. Calls with side effects are never guessed: if an accepted order looked
     * refused, the page would place it again.
     */
    function takeForEmptyReply(): [string, Waiting] | undefined {
      if (hasSideEffects || (deferred && waiting.size !== 1)) return undefined;
      const [oldest] = waiting;
      if (oldest) waiting.delete(oldest[0]);
      return oldest;
    }

    function onReply(reply: unknown): void {
      if (reply === '') {
        const oldest = takeForEmptyReply();
        if (!oldest) options.onUnpaired?.(event, reply);
        else if (answersEmpty) oldest[1].resolve(reply);
        else oldest[1].reject(new RejectedCallError(method, oldest[0]));
        return;
      }
      const envelope = parse(reply);
      const uuid = envelope?.uuid;
      const found = typeof uuid === 'string' ? take(uuid) : undefined;
      if (!envelope || typeof uuid !== 'string' || !found) {
        options.onUnpaired?.(event, reply);
        return;
      }
      const { code, msg, resultData } = envelope;
      if (typeof code !== 'string' || typeof msg !== 'string') {
        found.reject(new UnexpectedReplyError(method, uuid, String(reply), 'code or msg is no text'));
      } else if (code !== '0') {
        found.reject(new FailedCallError(method, uuid, code, msg, resultData));
      } else {
        try {
          found.resolve(answer(resultData));
        } catch (error) {
          found.reject(new UnexpectedReplyError(method, uuid, String(reply), `resultData${(error as Error).message}`));
        }
      }
    }

    bridge.addEventListener(event, onReply);
    closers.push(() => {
      bridge.removeEventListener(event, onReply);
      for (const [uuid, { reject }] of waiting) reject(unansweredError(new ClosedError(method, uuid)));
      waiting.clear();
    });

    return (values: Readonly<Record<string, unknown>> = {}, callOptions: CallOptions = {}) =>
      new Promise((resolve, reject) => {
        const uuid = nextUuid();
        const args = argumentList(call, uuid, values);
        if (closed) throw new ClosedError(method, uuid);
        const timeoutMs = callOptions.timeoutMs ?? options.timeoutMs ?? defaultTimeoutMs;
        const timer = setTimeout(
          () => take(uuid)?.reject(unansweredError(new TimeoutError(method, uuid, timeoutMs))),
          timeoutMs,
        );
        waiting.set(uuid, {
          resolve(answered) {
            clearTimeout(timer);
            resolve(answered);
          },
          reject(reason) {
            clearTimeout(timer);
            reject(reason);
          },
        });
        try {
          bridge.invokeMethod(method, ...args); // may answer before it returns
        } catch (error) {
          take(uuid)?.reject(error as Error);
        }
      });
  }

  function send(call: OneWayCall) {
    const { method } = oneWayMethods[call];
    return (values: Readonly<Record<string, unknown>>) => {
      const uuid = nextUuid();
      const args = argumentList(call, uuid, values);
      if (closed) throw new ClosedError(method, uuid);
      bridge.invokeMethod(method, ...args);
    };
  }

  const calls = Object.fromEntries((Object.keys(methods) as Call[]).map((call) => [call, open(call)]));
  const oneWayCalls = Object.fromEntries(
    (Object.keys(oneWayMethods) as OneWayCall[]).map((call) => [call, send(call)]),
  );
  const hub = new PushHub<V>(bridge, options.onUnreadable);
  const close = () => {
    closed = true;
    for (const stop of closers.splice(0)) stop();
    hub.close();
  };
  return { ...calls, ...oneWayCalls, on: hub.on, close } as unknown as Connection<V>;
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
