import { ClosedError, NotSentError, OutcomeUnknownError, TimeoutError } from './errors.js';
import { onAbort, reasonOf } from './signals.js';

export interface CallOptions {
  /** How long to wait for connection and answer together, in milliseconds. `Infinity` waits without an end. */
  timeoutMs?: number;
  /**
   * Ends the wait: the promise is rejected with the signal's reason. Only an order, a cancel or a strategy call that has
   * been sent cannot be taken back; it is rejected with an OutcomeUnknownError.
   */
  signal?: AbortSignal;
}

const longestTimerMs = 2 ** 31 - 1; // a longer timer would fire at once

/** A call from the moment it is made until it is answered or given up. */
export class PendingCall {
  /** Set when the bridge gets the call. Until then nothing has happened in the terminal. */
  sent = false;
  private readonly deadline: number;
  private readonly timer: ReturnType<typeof setTimeout> | undefined;
  private readonly forgetSignal: () => void;

  constructor(
    readonly method: string,
    readonly uuid: string,
    private readonly hasSideEffects: boolean,
    private readonly timeoutMs: number,
    signal: AbortSignal | undefined,
    private readonly settle: {
      resolve(answer: unknown): void;
      reject(reason: unknown): void;
      /** Called first. */
      forget(call: PendingCall): void;
    },
  ) {
    this.deadline = performance.now() + timeoutMs;
    this.timer = timeoutMs > longestTimerMs ? undefined : setTimeout(() => this.timeOut(), timeoutMs);
    this.forgetSignal = onAbort(signal, () => this.giveUp(reasonOf(signal!), reasonOf(signal!)));
  }

  get inTime(): boolean {
    return performance.now() < this.deadline;
  }

  resolve(answer?: unknown): void {
    this.end();
    this.settle.resolve(answer);
  }

  reject(reason: unknown): void {
    this.end();
    this.settle.reject(reason);
  }

  timeOut(): void {
    this.giveUp(
      new NotSentError(this.method, this.uuid, `not connected within ${this.timeoutMs} ms`),
      new TimeoutError(this.method, this.uuid, this.timeoutMs),
    );
  }

  connectionClosed(): void {
    this.giveUp(
      new NotSentError(this.method, this.uuid, 'the connection is closed'),
      new ClosedError(this.method, this.uuid),
    );
  }

  private giveUp(unsent: unknown, unanswered: unknown): void {
    if (!this.sent) this.reject(unsent);
    else if (!this.hasSideEffects) this.reject(unanswered);
    else this.reject(new OutcomeUnknownError(this.method, this.uuid, unanswered));
  }

  private end(): void {
    clearTimeout(this.timer);
    this.forgetSignal();
    this.settle.forget(this);
  }
}
