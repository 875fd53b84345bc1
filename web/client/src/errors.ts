/** Base of all errors of a call. */
export class CallError extends Error {
  override readonly name: string = 'CallError'; // spelt out: bundlers shorten class names

  constructor(
    readonly method: string,
    readonly uuid: string,
    message: string,
  ) {
    super(`${method}: ${message}`);
  }
}

/**
 * The terminal answered with an empty reply: arguments were missing, so the call was not carried out, or the answer
 * could not be put into text. An empty reply names no call. It counts as the answer to the oldest call of the method
 * that waits on this connection (see README).
 */
export class RejectedCallError extends CallError {
  override readonly name = 'RejectedCallError';

  constructor(method: string, uuid: string) {
    super(method, uuid, 'rejected with an empty reply');
  }
}

/** The terminal carried out the call and reports a failure: `code` is "-1" and `msg` says why. */
export class FailedCallError extends CallError {
  override readonly name = 'FailedCallError';

  constructor(
    method: string,
    uuid: string,
    readonly code: string,
    readonly msg: string,
    readonly resultData: unknown,
  ) {
    super(method, uuid, msg === '' ? `failed with code ${code}` : msg);
  }
}

/** No answer in time. The terminal may have carried the call out all the same. */
export class TimeoutError extends CallError {
  override readonly name = 'TimeoutError';

  constructor(
    method: string,
    uuid: string,
    /** How long the call waited, in milliseconds. */
    readonly timeoutMs: number,
  ) {
    super(method, uuid, noAnswerWithin(timeoutMs));
  }
}

/** A reply to this call arrived, but not in the form that the method promises. */
export class UnexpectedReplyError extends CallError {
  override readonly name = 'UnexpectedReplyError';

  constructor(
    method: string,
    uuid: string,
    readonly reply: string,
    reason: string,
  ) {
    super(method, uuid, `unexpected reply: ${reason}`);
  }
}

/** The connection ended while a question waited for its answer. */
export class ClosedError extends CallError {
  override readonly name = 'ClosedError';

  constructor(method: string, uuid: string) {
    super(method, uuid, connectionEnded);
  }
}

/**
 * The call was not sent, so the terminal knows nothing of it: the connection is closed, it did not open in time, or the
 * bridge threw (`cause` is what it threw).
 */
export class NotSentError extends CallError {
  override readonly name = 'NotSentError';

  constructor(
    method: string,
    uuid: string,
    reason: string,
    readonly cause?: unknown,
  ) {
    super(method, uuid, `not sent: ${reason}`);
  }
}

/**
 * An order, a cancel or a strategy call was sent, and no answer came: the time ran out, the connection ended, or the page
 * stopped waiting. The terminal may have carried the call out, so look at its lists before you send anything again.
 */
export class OutcomeUnknownError extends CallError {
  override readonly name = 'OutcomeUnknownError';

  constructor(
    method: string,
    uuid: string,
    /** A TimeoutError, a ClosedError, or the reason of the page's signal. */
    readonly cause: unknown,
  ) {
    super(method, uuid, `outcome unknown: ${whyUnknown(cause)}`);
  }
}

/** The page has no bridge: it was opened neither in the terminal nor with the simulator's script. */
export class NoBridgeError extends Error {
  override readonly name = 'NoBridgeError';

  constructor() {
    super('There is no window.CallBridge here: open this page in the terminal, or use connectSimulator().');
  }
}

const connectionEnded = 'the connection is closed';

function noAnswerWithin(timeoutMs: number): string {
  return `no answer within ${timeoutMs} ms`;
}

function whyUnknown(cause: unknown): string {
  if (cause instanceof TimeoutError) return noAnswerWithin(cause.timeoutMs);
  if (cause instanceof ClosedError) return connectionEnded;
  return 'the page stopped waiting';
}
