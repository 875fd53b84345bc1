import * as client from '@varnel/web-client';
import type { Texts } from './texts';

/** What went wrong, in the language of the desk. The terminal's own reason stays as it is. */
export function reasonOf(error: Error, t: Texts): string {
  if (error instanceof client.FailedCallError) return error.msg || t.refusedCall;
  if (error instanceof client.TimeoutError) return t.noAnswerWithin(error.timeoutMs / 1000);
  if (error instanceof client.OutcomeUnknownError) return t.outcomeUnknown;
  if (error instanceof client.NotSentError) return t.notSent;
  if (error instanceof client.ClosedError) return t.closedWhileWaiting;
  if (error instanceof client.UnexpectedReplyError) return t.unreadableAnswer;
  if (error instanceof client.RejectedCallError) return t.refusedCall;
  return error.message;
}
