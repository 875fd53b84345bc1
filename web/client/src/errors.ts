/** Base of all errors of a call that has been sent. */
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
    readonly timeoutMs: number,
  ) {
    super(method, uuid, `no answer within ${timeoutMs} ms`);
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

/** The connection was closed while the call waited, or before it was made. */
export class ClosedError extends CallError {
  override readonly name = 'ClosedError';

  constructor(method: string, uuid: string) {
    super(method, uuid, 'the connection is closed');
  }
}

/**
 * No answer came to an order, a cancel or a strategy call before the time-out or the close of the connection. The
 * terminal may have carried the call out, so look at its lists before you send anything again.
 */
export class OutcomeUnknownError extends CallError {
  override readonly name = 'OutcomeUnknownError';

  constructor(readonly cause: TimeoutError | ClosedError) {
    const because =
      cause instanceof TimeoutError ? `no answer within ${cause.timeoutMs} ms` : 'the connection is closed';
    super(cause.method, cause.uuid, `outcome unknown: ${because}`);
  }
}
