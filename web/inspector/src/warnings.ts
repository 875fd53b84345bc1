import { oneWayMethods } from '@varnel/web-client';
import type { Row } from './entry';

/** A handler that takes longer holds up a frame of the terminal's windows. */
export const frameUs = 16_700;

/** A call that has waited so long counts as unanswered. Some never get an answer, which the protocol says. */
export const patienceUs = 5_000_000;

export type WarningKind = 'unhandled' | 'unanswered' | 'slow';

const oneWay = new Set<string>(Object.values(oneWayMethods).map(({ method }) => method));

/** What is wrong with a call at that time. */
export function warningOf({ kind, entry, end, reply }: Row, nowUs: number): WarningKind | undefined {
  if (kind !== 'call') return undefined;
  if (end && !end.isHandled) return 'unhandled';
  if (end && (end.duration ?? 0) > frameUs) return 'slow';
  const isWaiting = !reply && !oneWay.has(entry.name ?? '');
  return isWaiting && nowUs - (entry.time ?? 0) > patienceUs ? 'unanswered' : undefined;
}
